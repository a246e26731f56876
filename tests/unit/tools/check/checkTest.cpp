// The check as a whole: what one run says, and what it does not say.

#include <gtest/gtest.h>

#include <algorithm>
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
    const char* const runsOn =
        "void main() {\n    switch (1) {\n        case 1: g();\n        case 2: g(); break;\n"
        "    }\n}\n";
    for (const char* const foreign :
         {runsOn, "void main() {\n    for (int v : missing) {\n        g();\n    }\n}\n",
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

/// The first help that the check gives about a rule; the message, if `isMessage`.
std::string saidOf(const std::string& text, const std::string& rule, bool isMessage = false) {
    for (const Finding& finding : check(text, "p.krl").findings) {
        if (finding.rule == rule) {
            return isMessage ? finding.message : finding.help;
        }
    }
    return "nothing about " + rule;
}

std::string inMain(const std::string& statements) {
    return "int f(int x) { return x; }\nboolean h(int x) { return true; }\nvoid main() {\n" +
           statements + "\n}\n";
}

TEST(CheckTest, WordsOfKrelAreNoNames) {
    const std::string text = "void main() {\n    int if = 3;\n    print(\"x\");\n}\n";
    EXPECT_EQ(found(text), Lines{"2:9 reserved-name!"});
    EXPECT_EQ(check(text, "p.krl").fixed, text);
    EXPECT_EQ(saidOf(text, "reserved-name"), "use another name");
    EXPECT_EQ(found("void main() {\n    int print = 4;\n}\n"), Lines{"2:9 reserved-name!"});
    EXPECT_EQ(found("int return(int k) { return k; }\nvoid main() { }\n"),
              Lines{"1:5 reserved-name!"});
}

TEST(CheckTest, FunctionsGetTheirParentheses) {
    const std::string text = "void hello {\n    print(\"x\");\n}\nvoid main() {\n    hello();\n}\n";
    EXPECT_EQ(found(text), Lines{"1:11 missing-token!"});
    EXPECT_EQ(check(text, "p.krl").fixed.substr(0, 14), "void hello() {");
    EXPECT_EQ(check("int g {\n    return 1;\n}\nvoid main() {\n    print(g());\n}\n", "p.krl")
                  .fixed.substr(0, 9),
              "int g() {");
}

TEST(CheckTest, LinesWithUnknownCharactersStayAsTheyAre) {
    for (const std::string text :
         {"void main() {\n    int n = 3;\n    print(`n is ${n}`, \"\\n\");\n}\n",
          "void main() {\n    boolean b = true;\n    while b:\n        b = false;\n}\n"}) {
        EXPECT_EQ(check(text, "p.krl").fixed, text);
    }
}

TEST(CheckTest, WhatIsInsertedIsNotUnexpected) {
    for (const std::string& line : found("x")) {
        EXPECT_EQ(line.find("syntax"), line.npos) << line;
    }
}

TEST(CheckTest, MembersAreOneFinding) {
    EXPECT_EQ(found("void main() {\n    string s = \"x\";\n    print(s.length());\n}\n"),
              Lines{"3:12 foreign-construct!"});
    EXPECT_EQ(found("void main() {\n    double x = Math.sqrt(0.5);\n    print(x);\n}\n"),
              Lines{"2:20 foreign-construct!"});
    EXPECT_EQ(saidOf(inMain("int n = 1;\nn.x = 3;"), "foreign-construct"),
              "declare one variable for each part, or write a function");
}

TEST(CheckTest, FunctionsAreDefinedOnce) {
    const std::string text =
        "int f(int a) { return a; }\ndouble f(double a) { return a; }\nvoid main() { }\n";
    Lines lines = found(text);
    lines.erase(std::remove(lines.begin(), lines.end(), "1:5 unused-function"), lines.end());
    lines.erase(std::remove(lines.begin(), lines.end(), "2:8 unused-function"), lines.end());
    EXPECT_EQ(lines, Lines{"2:1 redeclaration!"});
    EXPECT_EQ(saidOf(text, "redeclaration"),
              "give it another name: parameters do not tell functions apart");
}

TEST(CheckTest, HelpsWithWhatTheParserDoesNotExpect) {
    EXPECT_EQ(
        saidOf("int add(int a, int b = 2) { return a + b; }\nvoid main() { print(add(1)); }\n",
               "syntax"),
        "a parameter has no default value: hand the value over in each call");
    EXPECT_EQ(saidOf(inMain("print \"x\";"), "syntax"),
              "what is printed stands in parentheses: `print(...);`");
    EXPECT_EQ(saidOf(inMain("print(\"a\" \"b\");"), "syntax"),
              "join texts by `+`, or separate them by a comma in `print`");
    EXPECT_EQ(saidOf("function fib(n) { return n; }\nvoid main() { }\n", "syntax"),
              "a function begins with the type of its value: write `int name(int parameter) "
              "{ ... }`, or `void name() { ... }`");
}

TEST(CheckTest, HelpsShowWhatTheyNeed) {
    const std::string begin = "int a = 7;\nint b = 2;\ndouble d = 0.5;\n";
    EXPECT_EQ(saidOf(inMain(begin + "d = d * 2;"), "implicit-conversion"),
              "declare `double two = (double) 2;`, and write `two`");
    EXPECT_EQ(saidOf(inMain(begin + "d++;"), "double-step"),
              "declare `double one = (double) 1;`, and write `d = d + one`");
    EXPECT_EQ(saidOf(inMain(begin + "if (d) { }"), "double-condition"),
              "declare `double zero = (double) 0;`, and write `d != zero`");
    EXPECT_EQ(saidOf(inMain(begin + "b = (a + 1) % b;"), "remainder"),
              "store it first, `int dividend = a + 1;`, and write `dividend - dividend / b * b`");
    EXPECT_EQ(saidOf(inMain(begin + "b = 3 - a % b;"), "remainder"), "write `(a - a / b * b)`");
    EXPECT_EQ(saidOf(inMain(begin + "a %= b;"), "compound-assignment"),
              "write `a = a - a / b * b`");
    EXPECT_EQ(saidOf(inMain(begin + "a *= b + 1;"), "compound-assignment"),
              "write `a = a * (b + 1)`");
    EXPECT_EQ(saidOf(inMain(begin + "a <<= 2;"), "bit-operator"), "write `a = a * 4`");
    EXPECT_EQ(saidOf(inMain(begin + "d = 6.022e20;"), "double-form"),
              "compute it: `double value6022 = (double) 6022; int units = 100000000 * 1000000000;"
              " double scale = (double) units; double large = value6022 * scale;`, and write"
              " `large`");
}

TEST(CheckTest, HelpsForCallsFollowTheCondition) {
    const std::string begin = "int n = 0;\n";
    EXPECT_EQ(saidOf(inMain(begin + "while (f(n) < 3) { n++; }"), "call-place"),
              "store the result in each round: `while (true) { int fResult = f(n); "
              "if (!(fResult < 3)) { break; } ... }`");
    EXPECT_EQ(saidOf(inMain(begin + "while (h(n)) { n++; }"), "call-place"),
              "store the result in each round: `while (true) { boolean hResult = h(n); "
              "if (!hResult) { break; } ... }`");
    EXPECT_EQ(saidOf(inMain(begin + "if (n == 0) { } elseif (h(n)) { }"), "call-place"),
              "store the result in an `else`: `else { boolean hResult = h(n); if (hResult) { ... "
              "} }`");
    EXPECT_EQ(saidOf(inMain(begin + "if (n == 0 && h(n)) { }"), "call-place"),
              "store the result where the left side is decided, in an `if` of its own: `boolean "
              "hResult = h(n); if (hResult) { ... }`");
    EXPECT_EQ(saidOf(inMain(begin + "if (f(n) == 1) { }"), "call-place"),
              "store the result first: `int fResult = f(n);`");
}

TEST(CheckTest, SwitchesThatRunOnAreExplained) {
    EXPECT_EQ(
        saidOf(inMain("int n = 0;\nswitch (n) { case 0: n = 1; default: n = 2; }"), "switch", true),
        "there is no `switch`, and in this one a case runs on into the next");
}

TEST(CheckTest, ConditionsThatAreMissingAreRefused) {
    const Report report = check("void main() {\n    do { print(1); } @\n}\n", "p.krl");
    EXPECT_FALSE(report.accepted);
    EXPECT_NE(report.findings.size(), 0U);
}

TEST(CheckTest, OneFaultIsOneFinding) {
    EXPECT_EQ(found("void main() {\n    int a[3];\n    int i = 0;\n    a[i++] = 1;\n    "
                    "print(a[0], i);\n}\n"),
              Lines{"4:7 step-value!"});
    EXPECT_EQ(found("int two() { return 2; }\nvoid main() { int ignored = two(); }\n"), Lines{});
    EXPECT_EQ(found("void main() { int ignored = 2; }\n"), Lines{"1:19 unused-variable"});
}

TEST(CheckTest, HelpsWithCommentsAndLoopsOfOtherLanguages) {
    EXPECT_EQ(saidOf("/* one\n * two */\nvoid main() { }\n", "foreign-comment"),
              "write `#{ ... }#`");
    EXPECT_EQ(saidOf("// " + std::string(80, 'x') + "\nvoid main() { }\n", "foreign-comment"),
              "write `#` in place of `//`");
    EXPECT_EQ(check("/*\n * two\n */\nvoid main() { }\n", "p.krl").fixed.substr(0, 12),
              "#{\n * two\n }");
    EXPECT_EQ(saidOf(inMain("for k in range(5) { print(k); }"), "foreign-construct"),
              "write `for (int k = 0; k < 5; k++) { }`");
    EXPECT_EQ(saidOf(inMain("string s = \"x\";\nprint(s[0]);"), "not-an-array"),
              "only arrays have elements; texts are only joined, stored and printed");
}

TEST(CheckTest, SaysWhyFunctionsAreLeft) {
    EXPECT_EQ(saidOf("int sum(int t[], int n) {\n    if (n == 0) { return 0; }\n"
                     "    return sum(t, n - 1);\n}\n"
                     "void main() { int t[2] = {1, 2}; print(sum(t, 2)); }\n",
                     "array-parameter"),
              "declare the array in `main`, and write there a loop in place of the calls; `--fix` "
              "leaves it, because `sum` calls itself");
    EXPECT_EQ(saidOf("int moves = 0;\nvoid go(int n) {\n    moves++;\n"
                     "    if (n > 0) { go(n - 1); }\n}\nvoid main() { go(2); print(moves); }\n",
                     "global-variable"),
              "declare it in `main`, hand it over as a parameter, and return its new value: `moves "
              "= change(moves);`; `--fix` leaves it, because `go` calls itself");
}

TEST(CheckTest, DoesNotTakeGoodSwitchesAndCallsForFaults) {
    EXPECT_EQ(found("string level(int n) {\n    switch (n) {\n        case 1: return \"one\";\n"
                    "        default: return \"many\";\n    }\n}\n"
                    "void main() { print(level(1)); }\n"),
              Lines{"2:5 switch!"});
    EXPECT_EQ(found("int done = 0;\nvoid step() { done = 1; }\n"
                    "void main() { while (done == 0) { step(); } }\n"),
              Lines{"1:5 global-variable!"});
    EXPECT_EQ(
        found("void fill(int t[], int n) {\n    for (int i = 0; i < n; i++) { t[i] = i; }\n}\n"
              "void main() {\n    int t[5];\n    fill(t, 5);\n    print(t[2]);\n}\n"),
        Lines{"1:11 array-parameter!"});
}

}  // namespace

}  // namespace krel::Check
