// The command `krel fmt`. Comes in: its words, and the programs that they name. Goes out: the same
// programs in their files, laid out, or the list of those that are not.

#include <algorithm>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "tools/files/sourceFiles.hpp"
#include "tools/format/format.hpp"
#include "tools/krel/commands.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"
#include "tools/krel/standardInput.hpp"

namespace krel {

namespace {

/// The exit statuses of this command. A later one outdoes an earlier one.
enum FormatStatus : int { done = 0, wouldChange = 1, couldNot = 2 };

/// What messages call the program on standard input.
constexpr const char* standardInput = "stdin.krl";

/// How many faults of a file are shown.
constexpr std::size_t mostFaults = 5;

/// Formats one file after the other and remembers how that went.
class Formatting {
public:
    /// Whether programs are only to be compared with how they would be.
    explicit Formatting(bool isCheckOnly) : checkOnly(isCheckOnly) {}

    /// Formats a file, all programs in a directory, or standard input, which is "-". What cannot be
    /// done is told on standard error.
    void format(const std::string& path) {
        try {
            std::error_code ignored;
            if (path == "-") {
                formatStandardInput();
            } else if (std::filesystem::is_directory(path, ignored)) {
                formatDirectory(path);
            } else {
                formatFile(path);
            }
        } catch (const std::exception& fault) {
            fail(fault.what());
        }
    }

    int status() const { return worst; }

private:
    void formatDirectory(const std::string& path) {
        for (const std::string& program : programsIn(path)) {
            format(program);
        }
    }

    void formatFile(const std::string& path) {
        const std::string source = readSource(path);
        const Format::Result result = formatted(source, path);
        if (!result.parses || result.text == source) {
            return;
        }
        if (checkOnly) {
            list(path);
        } else {
            replaceSource(path, result.text);
        }
    }

    void formatStandardInput() {
        const std::string source = readStandardInput();
        const Format::Result result = formatted(source, standardInput);
        if (!checkOnly) {
            print(result.text);
        } else if (result.parses && result.text != source) {
            list(standardInput);
        }
    }

    /// Says so when the text does not parse.
    Format::Result formatted(const std::string& source, const std::string& name) {
        Format::Result result;
        try {
            result = Format::format(source, name);
        } catch (const std::bad_alloc&) {
            throw std::runtime_error(name + ": out of memory");
        } catch (const std::exception& fault) {
            throw std::runtime_error(name + ": " + fault.what());
        }
        if (!result.parses) {
            failToParse(name, result.faults);
        }
        return result;
    }

    void failToParse(const std::string& name, const std::vector<std::string>& faults) {
        std::string text = name + ": left as it is, because it does not parse";
        const std::size_t shown = std::min(faults.size(), mostFaults);
        for (std::size_t i = 0; i < shown; ++i) {
            text += "\n  " + faults[i];
        }
        if (shown < faults.size()) {
            text += "\n  and " + std::to_string(faults.size() - shown) + " more";
        }
        fail(text);
    }

    void list(const std::string& name) {
        print(name + '\n');
        worst = std::max(worst, wouldChange);
    }

    void fail(const std::string& fault) {
        complain("fmt: " + fault);
        worst = couldNot;
    }

    bool checkOnly;
    FormatStatus worst = done;
};

int format(Words words) {
    CLI::App app;
    std::vector<std::string> paths;
    bool checkOnly = false;
    app.add_option("FILE", paths)->required();
    app.add_flag("--check", checkOnly, "Change nothing, list the files that would change");
    if (!readWithoutRest(app, formatCommand, words)) {
        return succeeded;
    }
    Formatting formatting{checkOnly};
    for (const std::string& path : paths) {
        formatting.format(path);
    }
    return formatting.status();
}

}  // namespace

constexpr Command formatCommand = {
    "fmt",
    "Lays programs out in the one style",
    "Lays programs out in the one style.\n"
    "\n"
    "Examples:\n"
    "  krel fmt hello.krl         rewrites the file, if it is not laid out like that already\n"
    "  krel fmt .                 all *.krl in this directory and below\n"
    "  krel fmt --check .         only lists the files that would change\n"
    "  krel fmt - < hello.krl     writes the program to standard output\n"
    "\n"
    "Usage: krel fmt [OPTIONS] FILE...\n"
    "\n"
    "Programs that do not parse are left as they are. The exit status is 0, 1 when --check has\n"
    "listed a file, and 2 when a file could not be read, parsed or written.\n",
    format,
};

}  // namespace krel
