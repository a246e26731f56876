// The check as a whole: what one run says, and what it does not say.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shared/error/lineIndex.hpp"
#include "tools/check/check.hpp"

namespace krel::Check {

namespace {

using Lines = std::vector<std::string>;

/// Each finding as "LINE:COLUMN rule", errors with "!" behind it.
Lines found(const std::string& text) {
    const LineIndex index{text};
    Lines lines;
    for (const Finding& finding : check(text, "p.krl").findings) {
        const LineAndColumn place = index.positionOf(finding.range.begin);
        lines.push_back(std::to_string(place.line) + ":" + std::to_string(place.column) + " " +
                        std::string{finding.rule} +
                        (finding.severity == Severity::Error ? "!" : ""));
    }
    return lines;
}

TEST(CheckTest, SaysNothingAboutGoodPrograms) {
    EXPECT_EQ(found("void main() {\n    print(\"hello\\n\");\n}\n"), Lines{});
}

TEST(CheckTest, FaultsOfAllStagesAreFoundInOneRun) {
    EXPECT_EQ(found("void main() {\n"
                    "    int x;\n"
                    "    int y = missing;\n"
                    "    string s = 5 * y;\n"
                    "    double d = 0.5;\n"
                    "    d = d * 2.0;\n"
                    "    @\n"
                    "    print(x, s, d, other, \"\\n\");\n"
                    "    boolean b = d;\n"
                    "    if (b) { break; }\n"
                    "}\n"),
              (Lines{"2:9 initial-value!", "3:13 undeclared-name!", "4:16 implicit-conversion!",
                     "6:13 whole-double!", "7:5 illegal-character!", "8:20 undeclared-name!",
                     "9:13 type-mismatch!", "10:14 outside-loop!"}));
}

TEST(CheckTest, WhatFollowsFromAFaultIsNotShown) {
    EXPECT_EQ(found("void main() {\n    missing();\n    int t[missing];\n    t[0] = 1;\n"
                    "    print(t[0], twice(missing));\n}\nint twice(int x) { return x + x; }\n"),
              (Lines{"2:5 undeclared-name!", "3:11 undeclared-name!", "5:23 undeclared-name!"}));
}

TEST(CheckTest, SeveralSyntaxErrorsAreFound) {
    EXPECT_EQ(found("void main() {\n    int x = 1 2;\n    x = 3;\n    x = 4 5;\n}\n"),
              (Lines{"2:15 syntax!", "4:11 syntax!"}));
}

TEST(CheckTest, FaultsOfTheLinkerAreFound) {
    EXPECT_EQ(found("void start() {\n    print(\"a\\0b\");\n}\n"),
              (Lines{"1:6 unused-function", "2:11 nul-in-string!", "4:1 missing-main!"}));
}

TEST(CheckTest, NamesThatResembleAreSuggested) {
    const Report report =
        check("void main() {\n    int count = 1;\n    count = coutn;\n}\n", "p.krl");
    ASSERT_EQ(report.findings.size(), 2U);
    EXPECT_EQ(report.findings[1].help, "did you mean `count`?");
}

TEST(CheckTest, AcceptedProgramsHaveNoErrors) {
    EXPECT_EQ(
        found("double h() {\n    return 2.0;\n}\nvoid main() {\n    print(h(), \"\\n\");\n}\n"),
        Lines{"2:12 whole-double"});
}

TEST(CheckTest, CommentsSilenceWarnings) {
    const std::string begin = "void main() {\n";
    const std::string unused = "    int x = 1;";
    EXPECT_EQ(found(begin + unused + "\n}\n"), Lines{"2:9 unused-variable"});
    EXPECT_EQ(found(begin + unused + "  # krel: allow(unused-variable)\n}\n"), Lines{});
    EXPECT_EQ(found(begin + "    # krel: allow(other, unused-variable)\n" + unused + "\n}\n"),
              Lines{});
    EXPECT_EQ(found(begin + unused + "  # krel: allow(other)\n}\n"), Lines{"2:9 unused-variable"});
    EXPECT_EQ(found("# krel: allow-file(unused-variable)\n" + begin + unused + "\n}\n"), Lines{});
    EXPECT_EQ(found(begin + "    int x;  # krel: allow(initial-value)\n    print(x);\n}\n"),
              Lines{"2:9 initial-value!"});
}

TEST(CheckTest, FixedProgramsAreLaidOut) {
    const Report report = check("void main() {\nint x;\nprint(x*2);\n}", "p.krl");
    EXPECT_FALSE(report.accepted);
    EXPECT_TRUE(report.fixedIsAccepted);
    EXPECT_EQ(report.fixed, "void main() {\n    int x = 0;\n    print(x * 2);\n}\n");
    ASSERT_EQ(report.edits.size(), 1U);
    EXPECT_EQ(report.edits[0].text, " = 0");
}

TEST(CheckTest, GuessesAreTakenOnDemand) {
    const std::string text =
        "void main() {\n    int x;\n    if (x = 5) {\n        print(x);\n    }\n}\n";
    const Report careful = check(text, "p.krl");
    EXPECT_EQ(careful.fixed,
              "void main() {\n    int x = 0;\n    if (x = 5) {\n        print(x);\n    }\n}\n");
    EXPECT_FALSE(careful.fixedIsAccepted);
    const Report bold = check(text, "p.krl", Guesses::Taken);
    EXPECT_EQ(bold.fixed,
              "void main() {\n    int x = 0;\n    if (x == 5) {\n        print(x);\n    }\n}\n");
    EXPECT_TRUE(bold.fixedIsAccepted);
}

TEST(CheckTest, ForeignStatementsStayAsTheyAre) {
    const std::string good = "void g() {\n    int x;\n    print(x)\n}\n";
    const std::string better = "void g() {\n    int x = 0;\n    print(x);\n}\n";
    for (const char* const foreign :
         {"void main() {\n    switch (1) {\n        case 1: g();\n        case 2: g(); break;\n"
          "    }\n}\n",
          "void main() {\n    for (int v : missing) {\n        g();\n    }\n}\n",
          "def foo(x) {\n    return x + 1;\n}\n", "struct point {\n    int x;\n};\n",
          "void main() {\n    goto end;\n    end: g();\n}\n",
          "void main() {\n    int x = 1 @ 2;\n}\n", "void main() {\n    throw g();\n}\n"}) {
        const Report report = check(good + foreign, "p.krl");
        EXPECT_FALSE(report.fixedIsAccepted);
        EXPECT_EQ(report.fixed, better + foreign);
        EXPECT_NE(report.findings.size(), 0U);
    }
}

TEST(CheckTest, TheRestOfAFunctionIsRepaired) {
    const Report report = check(
        "void main() {\n    int x;\n    x = 1 @ 2;\n    if (x == 1) print(x);\n"
        "    goto end;\n    x *= 2;\n}\n",
        "p.krl");
    EXPECT_FALSE(report.fixedIsAccepted);
    EXPECT_EQ(report.fixed,
              "void main() {\n    int x = 0;\n    x = 1 @ 2;\n    if (x == 1) { print(x); }\n"
              "    goto end;\n    x = x * 2;\n}\n");
}

TEST(CheckTest, ForeignWordsAreExplained) {
    const Report report = check(
        "struct P { int x; };\nvoid main() {\n    int n = rand();\n    print(n);\n}\n", "p.krl");
    ASSERT_EQ(report.findings.size(), 2U);
    EXPECT_EQ(report.findings[0].message, "`struct`: there are no structures and classes");
    EXPECT_EQ(report.findings[1].help.substr(0, 28), "there are no random numbers:");
}

TEST(CheckTest, ArraysThatFunctionsTakeHideNothing) {
    EXPECT_EQ(found("int first(int t[], int n) {\n    int x;\n    return t[n - 1] + x;\n}\n"
                    "void main() {\n    int a[2] = {1, 2};\n    print(first(a, 1) % 2);\n}\n"),
              (Lines{"1:11 array-parameter!", "2:9 initial-value!", "3:14 index-expression!",
                     "7:23 remainder!"}));
}

TEST(CheckTest, SharedVariablesHideNothing) {
    EXPECT_EQ(found("int t[3];\nint count = 0;\nvoid g() {\n    t[0] = 1;\n    count++;\n}\n"
                    "void main() {\n    g();\n    print(t[1 + 1], count);\n}\n"),
              (Lines{"1:5 global-variable!", "2:5 global-variable!", "9:13 index-expression!"}));
}

TEST(CheckTest, ShortListsAreFound) {
    EXPECT_EQ(found("void main() {\n    int t[10] = {0};\n    t[3]++;\n    print(t[3]);\n}\n"),
              Lines{"2:17 list-length"});
    EXPECT_EQ(found("void main() {\n    double t[10] = {0.5};\n    print(t[3]);\n}\n"),
              Lines{"2:20 list-length"});
    EXPECT_EQ(found("void main() {\n    int t[2] = {0};\n    int i = 1;\n    t[i] = 1;\n"
                    "    print(t[1]);\n}\n"),
              Lines{});
}

TEST(CheckTest, ListsOfOtherTypesAreFound) {
    EXPECT_EQ(found("void main() {\n    int t[2] = {1.5, 2};\n    print(t[0]);\n}\n"),
              Lines{"2:17 implicit-conversion"});
    EXPECT_EQ(found("void main() {\n    double t[2] = {1, 0.5};\n    print(t[0]);\n}\n"),
              Lines{"2:20 implicit-conversion!"});
    EXPECT_EQ(found("void main() {\n    int t[2] = {\"a\", 2};\n    print(t[0]);\n}\n"),
              Lines{"2:17 type-mismatch"});
    EXPECT_EQ(found("void main() {\n    int t[2] = {'a', 2};\n    print(t[0]);\n}\n"), Lines{});
}

TEST(CheckTest, FindsClassicFaults) {
    EXPECT_EQ(found("int f(int x) {\n    if (x > 0) { return 1; }\n}\n"
                    "void main() {\n    int n = 3;\n    while (n > 0) { print(f(n)); }\n"
                    "    return;\n    print(n);\n}\n"),
              (Lines{"1:5 missing-return", "6:11 unchanging-loop", "8:5 unreachable-code"}));
    EXPECT_EQ(found("void main() {\n    int a[2] = {1, 2};\n    print(a[2], a[1]);\n"
                    "    if (a[q] > 1) { }\n}\n"),
              (Lines{"3:13 index-range", "4:11 untyped-name"}));
}

TEST(CheckTest, FindsValuesThatNothingUses) {
    EXPECT_EQ(found("void main() {\n    int x = 0;\n    x = 1;\n    x = 2;\n    x = x + 1;\n"
                    "    print(x);\n}\n"),
              Lines{"3:5 overwritten-value"});
    EXPECT_EQ(found("void main() {\n    int n = 1;\n    if (n > 1) {\n        int x = 1;\n"
                    "        n = x;\n    }\n    print(n, x);\n}\n"),
              Lines{"7:14 early-use"});
}

TEST(CheckTest, DoesNotTakeGoodLoopsAndPathsForFaults) {
    EXPECT_EQ(found("int f(int x) {\n    while (true) {\n        if (x > 3) { return x; }\n"
                    "        x++;\n    }\n}\n"
                    "int g(int x) {\n    if (x > 3) { return 1; } else { exit(); }\n}\n"
                    "void main() {\n    for (;;) { break; }\n    int n = 0;\n"
                    "    while (n < 3) { n = f(n) + g(n); }\n}\n"),
              Lines{});
}

}  // namespace

}  // namespace krel::Check
