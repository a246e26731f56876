// Repairs one at a time.

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/lsp/quickFixes.hpp"

namespace krel::Lsp {

namespace {

/// A program, and what repairs its findings.
class Program {
public:
    explicit Program(std::string itsText) : text(std::move(itsText)) {}

    /// The number of the only finding of a rule. Throws when there is none, or another one.
    std::size_t finding(std::string_view rule) {
        const std::vector<Check::Finding>& findings = analysis.report().findings;
        const auto isOfRule = [rule](const auto& each) { return each.rule == rule; };
        if (std::count_if(findings.begin(), findings.end(), isOfRule) != 1) {
            throw std::invalid_argument(std::string{rule} + " is not there once");
        }
        const auto found = std::find_if(findings.begin(), findings.end(), isOfRule);
        return static_cast<std::size_t>(found - findings.begin());
    }

    const std::vector<Check::Edit>& editsOf(std::string_view rule) {
        return fixes.of(finding(rule));
    }

    /// The text after the repair of the only finding of a rule; empty when there is no repair.
    std::string repaired(std::string_view rule) {
        const std::vector<Check::Edit>& edits = editsOf(rule);
        return edits.empty() ? "" : edited(text, edits);
    }

private:
    std::string text;
    Analysis analysis{text};
    QuickFixes fixes{analysis};
};

TEST(EditedTest, PutsTextsInThePlaceOfRanges) {
    EXPECT_EQ(edited("abc", {}), "abc");
    EXPECT_EQ(edited("abc", {{{0, 0}, "x"}, {{1, 2}, ""}, {{3, 3}, "yz"}}), "xacyz");
    EXPECT_EQ(edited("abc", {{{0, 1}, "1"}, {{1, 3}, "2"}}), "12");
}

TEST(QuickFixesTest, LeaveOtherFindingsAlone) {
    Program program{"void main() {\n    int x;\n    int n = 1\n    print(x, n);\n}\n"};
    EXPECT_EQ(program.repaired("initial-value"),
              "void main() {\n    int x = 0;\n    int n = 1\n    print(x, n);\n}\n");
    EXPECT_EQ(program.repaired("missing-token"),
              "void main() {\n    int x;\n    int n = 1;\n    print(x, n);\n}\n");
}

TEST(QuickFixesTest, BringTheNamesThatTheyNeed) {
    Program program{
        "int f() { return 1; }\n\nvoid main() {\n    int y;\n"
        "    if (f() == 1) {\n        print(y);\n    }\n}\n"};
    EXPECT_EQ(program.repaired("call-place"),
              "int f() { return 1; }\n\nvoid main() {\n    int y;\n"
              "    int fResult = f();\n    if (fResult == 1) {\n        print(y);\n    }\n}\n");
}

TEST(QuickFixesTest, FindingsOfOneStatementShareTheRepair) {
    Program program{
        "int f() { return 1; }\n\nvoid main() {\n    if (f() == 1) print(\"one\");\n}\n"};
    EXPECT_EQ(&program.editsOf("call-place"), &program.editsOf("braces"));
    EXPECT_EQ(program.repaired("braces"),
              "int f() { return 1; }\n\nvoid main() {\n    int fResult = f();\n"
              "    if (fResult == 1) { print(\"one\"); }\n}\n");
}

TEST(QuickFixesTest, WhatHasNoRepairHasNoEdits) {
    Program program{"void main() {\n    int x = 1;\n    print(x, nowhere);\n    int y;\n}\n"};
    EXPECT_EQ(program.repaired("undeclared-name"), "");
}

/// With a variable of its own the cast is at its place, but what it takes is as unknown as before.
TEST(QuickFixesTest, WhatLeavesAsManyErrorsIsNotOffered) {
    Program program{"void main() {\n    x = (int) y;\n}\n"};
    EXPECT_EQ(program.repaired("cast-place"), "");
}

}  // namespace

}  // namespace krel::Lsp
