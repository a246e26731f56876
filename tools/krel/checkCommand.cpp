// The command `krel check`. Comes in: its words, and the programs that they name. Goes out: what is
// wrong with them, or the same programs repaired.

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/check/check.hpp"
#include "tools/check/render.hpp"
#include "tools/files/sourceFiles.hpp"
#include "tools/krel/commands.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"
#include "tools/krel/standardInput.hpp"

namespace krel {

namespace {

/// The exit statuses of this command. A later one outdoes an earlier one.
enum CheckStatus : int { nothingFound = 0, found = 1, couldNot = 2 };

/// What messages call the program on standard input.
constexpr const char* standardInput = "stdin.krl";

struct CheckOptions {
    std::string colour = "auto";
    std::string format = "text";
    std::string fix;  // empty, "safe" or "all"
    bool difference = false;
    bool hints = false;
};

bool wantsColours(const CheckOptions& options) {
    if (options.colour != "auto") {
        return options.colour == "always";
    }
    const char* const refused = std::getenv("NO_COLOR");
    return (refused == nullptr || *refused == '\0') && isatty(STDOUT_FILENO) == 1;
}

/// Checks one file after the other and remembers how that went.
class Checking {
public:
    explicit Checking(const CheckOptions& itsOptions)
        : options(itsOptions), colours(wantsColours(itsOptions)) {}

    /// Checks a file, all programs in a directory, or standard input, which is "-". What cannot be
    /// done is told on standard error.
    void check(const std::string& path) {
        try {
            std::error_code ignored;
            if (path == "-") {
                take(standardInput, readStandardInput());
            } else if (std::filesystem::is_directory(path, ignored)) {
                for (const std::string& program : programsIn(path)) {
                    check(program);
                }
            } else {
                take(path, readSource(path));
            }
        } catch (const std::bad_alloc&) {
            fail(path + ": out of memory");
        } catch (const std::exception& fault) {
            fail(fault.what());
        }
    }

    /// Writes what is written at the end, and returns the exit status.
    int finish() {
        if (options.format == "json") {
            print(Check::jsonOf(files));
        } else if (options.format == "sarif") {
            print(Check::sarifOf(files));
        }
        return worst;
    }

private:
    void take(const std::string& path, std::string text) {
        const auto guesses = options.fix == "all" ? Check::Guesses::Taken : Check::Guesses::Left;
        Check::Report report = Check::check(text, path, guesses);
        if (!options.hints) {
            auto& findings = report.findings;
            findings.erase(std::remove_if(findings.begin(), findings.end(),
                                          [](const Check::Finding& finding) {
                                              return finding.severity == Check::Severity::Hint;
                                          }),
                           findings.end());
        }
        Check::CheckedFile file{path, std::move(text), std::move(report)};
        // Repairs of an accepted program may change what it does.
        const bool mayFix =
            !file.report.edits.empty() && (options.fix == "all" || !file.report.accepted);
        if (options.difference) {
            if (mayFix || options.fix.empty()) {
                showDifference(file);
            }
            return;
        }
        if (!options.fix.empty()) {
            repair(file, mayFix);
            return;
        }
        if (!file.report.findings.empty()) {
            worst = std::max(worst, CheckStatus::found);
        }
        if (options.format == "text") {
            print(Check::textOf(file, colours));
        } else {
            files.push_back(std::move(file));
        }
    }

    void showDifference(const Check::CheckedFile& file) {
        if (file.report.edits.empty()) {
            return;
        }
        print(Check::differenceOf(file, colours));
        worst = std::max(worst, CheckStatus::found);
    }

    /// Writes the repaired program, lists the edits, and checks what is left.
    void repair(Check::CheckedFile& file, bool mayFix) {
        const bool isInput = file.path == standardInput;
        std::string text = file.text;
        if (mayFix) {
            const LineIndex lines{file.text};
            std::string list;
            for (const Check::Edit& edit : file.report.edits) {
                const LineAndColumn place = lines.positionOf(edit.range.begin);
                list += file.path + ":" + std::to_string(place.line) + ":" +
                        std::to_string(place.column) + ": repaired: " + described(file.text, edit) +
                        "\n";
            }
            if (isInput) {
                complain("check: " + std::to_string(file.report.edits.size()) + " repairs");
            } else {
                print(list);
                replaceSource(file.path, file.report.fixed);
            }
            text = file.report.fixed;
        }
        if (isInput) {
            print(text);
        }
        Check::CheckedFile left{file.path, text, Check::check(text, file.path)};
        auto& findings = left.report.findings;
        findings.erase(std::remove_if(findings.begin(), findings.end(),
                                      [&](const Check::Finding& finding) {
                                          return finding.severity == Check::Severity::Hint &&
                                                 !options.hints;
                                      }),
                       findings.end());
        if (!findings.empty()) {
            worst = std::max(worst, CheckStatus::found);
            if (!isInput) {
                print(Check::textOf(left, colours));
            }
        }
    }

    /// What is written, or what is left out.
    static std::string described(const std::string& text, const Check::Edit& edit) {
        const SourceRange range = edit.range;
        const std::string written = oneLine(edit.text);
        const std::string gone = oneLine(text.substr(range.begin, range.end - range.begin));
        return !written.empty() ? written : gone.empty() ? "(removed)" : "(removed) " + gone;
    }

    /// In one line, and not longer than people read.
    static std::string oneLine(const std::string& text) {
        constexpr std::size_t longest = 100;
        std::string line;
        bool behindBlank = true;
        for (const char byte : text) {
            const bool isBlank = static_cast<unsigned char>(byte) <= ' ';
            const bool beginsLetter = (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
            if (line.size() >= longest && beginsLetter) {
                return line + "...";
            }
            if (!isBlank || !behindBlank) {
                line.push_back(isBlank ? ' ' : byte);
            }
            behindBlank = isBlank;
        }
        return line;
    }

    void fail(const std::string& fault) {
        complain("check: " + fault);
        worst = couldNot;
    }

    const CheckOptions& options;
    bool colours;
    std::vector<Check::CheckedFile> files;
    CheckStatus worst = nothingFound;
};

/// An option with a word from a list. `value` has to live as long as the options are read.
CLI::Option* addChoice(CLI::App& app, const char* name, std::string& value, const char* words,
                       const char* help) {
    return app.add_option(name, value, help)->type_name(words);
}

void addOptions(CLI::App& app, CheckOptions& options, std::vector<std::string>& paths) {
    app.add_option("FILE", paths)->required();
    const auto oneOf = [](std::set<std::string> words) {
        return CLI::IsMember(std::move(words)).description("");
    };
    app.add_flag("--fix{safe}", options.fix,
                 "Repair refused programs; with --fix=all, accepted ones, too")
        ->check(oneOf({"safe", "all"}));
    app.add_flag("--diff", options.difference, "Show the repairs instead of writing them");
    app.add_flag("--hints", options.hints, "Show guesses, too");
    addChoice(app, "--format", options.format, "text|json|sarif",
              "How findings are written; the default is text")
        ->check(oneOf({"text", "json", "sarif"}));
    addChoice(app, "--color", options.colour, "always|never|auto",
              "Colours; the default is auto: on a terminal only")
        ->check(oneOf({"always", "never", "auto"}));
}

int check(Words words) {
    CLI::App app;
    CheckOptions options;
    std::vector<std::string> paths;
    addOptions(app, options, paths);
    if (!readWithoutRest(app, checkCommand, words)) {
        return succeeded;
    }
    Checking checking{options};
    for (const std::string& path : paths) {
        checking.check(path);
    }
    return checking.finish();
}

}  // namespace

constexpr Command checkCommand = {
    "check",
    "Finds what is wrong with programs, all at once, and repairs it",
    "Finds what is wrong with programs, all at once, and repairs it.\n"
    "\n"
    "Examples:\n"
    "  krel check hello.krl           lists what the compiler refuses, and what surprises\n"
    "  krel check .                   the same for all *.krl in this directory and below\n"
    "  krel check --diff hello.krl    shows how the program would be repaired\n"
    "  krel check --fix hello.krl     repairs it, if the compiler refuses it\n"
    "  krel check --fix=all .         repairs surprises in accepted programs, too\n"
    "\n"
    "Usage: krel check [OPTIONS] FILE...\n"
    "\n"
    "`krel explain RULE` tells more about a finding. The exit status is 0, 1 when there are\n"
    "findings, and 2 when a file could not be read or written.\n",
    check,
};

}  // namespace krel
