// Checks programs and holds the findings against the compiler: a program without errors is
// accepted, one that is refused has an error at the line that krelcc names. Then the repaired
// program: that it is accepted if the check says so, and that repairing it again changes nothing.
//
// Usage: krel_check_fidelity [--warnings] < PROGRAMS
// Each program comes as a line "NAME SIZE" and as many bytes. Prints each fault, with --warnings
// also what is found in accepted programs, and how many programs were accepted and repaired; the
// status is 1 if there is a fault.
#include <algorithm>
#include <iostream>
#include <string>
#include <string_view>

#include "frontend/frontEnd.hpp"
#include "shared/error/lineIndex.hpp"
#include "tools/check/check.hpp"

namespace {

using namespace krel;
using Check::Finding;
using Check::Severity;

bool isError(const Finding& finding) {
    return finding.severity == Severity::Error;
}

/// Rules that only the assembler and the linker stand behind.
bool isLinkFault(const Finding& finding) {
    return finding.rule == "missing-main" || finding.rule == "nul-in-string" ||
           finding.rule == "undeclared-call" || finding.rule == "linked-name";
}

std::string applied(const std::string& text, const std::vector<Check::Edit>& edits) {
    std::string made;
    std::size_t at = 0;
    for (const Check::Edit& edit : edits) {
        made += text.substr(at, edit.range.begin - at) + edit.text;
        at = edit.range.end;
    }
    return made + text.substr(at);
}

class Fidelity {
public:
    explicit Fidelity(bool showsWarnings) : warnings(showsWarnings) {}

    void run(const std::string& name, const std::string& text) {
        program = name;
        const auto made = FrontEnd::compile(text, "p.krl");
        const Check::Report report = Check::check(text, "p.krl");
        const auto& findings = report.findings;
        const bool complete = made->outcome() == FrontEnd::Outcome::Complete;
        const bool unlinked = std::any_of(findings.begin(), findings.end(), isLinkFault);
        const bool errors = std::any_of(findings.begin(), findings.end(), isError);
        expect(errors == (!complete || unlinked),
               complete ? "accepted, but has an error" : "refused, but has no error");
        expect(report.accepted == !errors, "the report is wrong about acceptance");
        checkLines(*made, findings);
        checkRepair(text, report);
        if (!errors) {
            ++accepted;
            list(*made, report);
        }
    }

    int finish() const {
        std::cout << programs << " programs, " << accepted << " accepted, " << repaired << " of "
                  << programs - accepted << " others repaired, " << faults << " faults\n";
        return faults == 0 ? 0 : 1;
    }

private:
    void expect(bool holds, std::string_view fault) {
        if (!holds) {
            ++faults;
            std::cout << program << ": " << fault << "\n";
        }
    }

    void checkLines(const FrontEnd::Compilation& made, const std::vector<Finding>& findings) {
        ++programs;
        for (const FrontEnd::Fault& fault : made.faults()) {
            const bool isReturn = fault.message.find('\r') != std::string::npos;
            const bool found =
                std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
                    const int first = made.lines().positionOf(finding.range.begin).line;
                    const int last = made.lines().positionOf(finding.range.end).line;
                    return isError(finding) &&
                           ((first <= fault.place.line && fault.place.line <= last) ||
                            (isReturn && finding.rule == "carriage-return"));
                });
            expect(found, "no error at the line of: " + fault.line);
        }
        for (const Finding& finding : findings) {
            expect(
                finding.range.begin <= finding.range.end && finding.range.end <= made.text().size(),
                "a range outside of the text: " + finding.message);
            expect(!finding.message.empty() && !finding.rule.empty(), "a finding without words");
        }
    }

    void checkRepair(const std::string& text, const Check::Report& report) {
        if (report.edits.empty()) {
            expect(report.fixed == text, "changed without an edit");
            return;
        }
        for (std::size_t index = 1; index < report.edits.size(); ++index) {
            expect(report.edits[index - 1].range.end <= report.edits[index].range.begin,
                   "edits overlap");
        }
        const auto raw = FrontEnd::compile(applied(text, report.edits), "p.krl");
        const bool complete = raw->outcome() == FrontEnd::Outcome::Complete;
        expect(report.fixedIsAccepted == complete, "the edits do not give the repaired text");
        const Check::Report again = Check::check(report.fixed, "p.krl");
        if (report.fixedIsAccepted) {
            repaired += report.accepted ? 0 : 1;
            const auto fixed = FrontEnd::compile(report.fixed, "p.krl");
            expect(fixed->outcome() == FrontEnd::Outcome::Complete, "the repaired text is refused");
            expect(again.edits.empty(), "repairing again changes something");
        }
    }

    void list(const FrontEnd::Compilation& made, const Check::Report& report) {
        for (const Finding& finding : report.findings) {
            if (warnings && finding.severity == Severity::Warning) {
                std::cout << "warning " << program << " "
                          << made.lines().positionOf(finding.range.begin).line << " "
                          << finding.rule << " | " << finding.message << "\n";
            }
        }
    }

    bool warnings;
    std::string program;
    std::size_t programs = 0;
    std::size_t accepted = 0;
    std::size_t repaired = 0;
    std::size_t faults = 0;
};

}  // namespace

int main(int argc, char** argv) {
    Fidelity fidelity{argc > 1 && std::string_view{argv[1]} == "--warnings"};
    std::string name;
    std::size_t size = 0;
    while (std::cin >> name >> size) {
        std::cin.get();
        std::string text(size, '\0');
        std::cin.read(text.data(), static_cast<std::streamsize>(size));
        fidelity.run(name, text);
    }
    return fidelity.finish();
}
