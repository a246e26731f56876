#include "shared/error/error.hpp"

#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "tests/unit/support/childProcess.hpp"

namespace krel {

namespace {

/// What one report writes, with `sourceFile` as the path set before it. In a process of its own, as
/// everything here that sets or counts something: nothing of it can be undone.
template <typename Report>
std::string lineOf(const std::string& sourceFile, Report report) {
    const ChildResult child = runInChild([&] {
        Error::setSourceFile(sourceFile);
        report();
        return 0;
    });
    return child.err;
}

std::string storedFor(const std::string& path) {
    const ChildResult child = runInChild([&] {
        Error::setSourceFile(path);
        std::cout << Error::getSourceFile();
        return 0;
    });
    return child.out;
}

TEST(ErrorTest, SourceFileIsEmptyUntilSet) {
    const ChildResult fresh = runInChild([] { return Error::getSourceFile().empty() ? 0 : 1; });
    EXPECT_TRUE(fresh.hasExitedWith(0));
}

TEST(ErrorTest, KeepsWhatFollowsTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(storedFor("dir\\sub/a.krl"), "a.krl");
    EXPECT_EQ(storedFor("dir/sub\\a.krl"), "a.krl");
    EXPECT_EQ(storedFor("/a.krl"), "a.krl");
    EXPECT_EQ(storedFor("\\a.krl"), "a.krl");
}

TEST(ErrorTest, KeepsAPathWithoutSeparatorWhole) {
    EXPECT_EQ(storedFor("a.krl"), "a.krl");
    EXPECT_EQ(storedFor(".."), "..");
    EXPECT_EQ(storedFor(""), "");
}

TEST(ErrorTest, KeepsNothingOfAPathThatEndsInASeparator) {
    EXPECT_EQ(storedFor("dir/"), "");
    EXPECT_EQ(storedFor("dir\\"), "");
}

TEST(ErrorTest, WritesPrefixFileLineAndMessage) {
    const auto report = [] { Error::semantic("Malformed assignment.", 12); };
    EXPECT_EQ(lineOf("src/prog.krl", report),
              "Semantic error in prog.krl at line 12: Malformed assignment.\n");
}

TEST(ErrorTest, EachKindHasItsPrefix) {
    EXPECT_EQ(lineOf("p.krl", [] { Error::lexer("m", 1); }), "Lexer error in p.krl at line 1: m\n");
    EXPECT_EQ(lineOf("p.krl", [] { Error::parser("m", 1); }),
              "Syntax error in p.krl at line 1: m\n");
    EXPECT_EQ(lineOf("p.krl", [] { Error::semantic("m", 1); }),
              "Semantic error in p.krl at line 1: m\n");
}

TEST(ErrorTest, LeavesOutAFileThatWasNotSet) {
    EXPECT_EQ(lineOf("", [] { Error::lexer("Malformed assignment.", 4); }),
              "Lexer error at line 4: Malformed assignment.\n");
}

TEST(ErrorTest, LeavesOutALineOfZeroOrLess) {
    EXPECT_EQ(lineOf("p.krl", [] { Error::lexer("m", 0); }), "Lexer error in p.krl: m\n");
    EXPECT_EQ(lineOf("p.krl", [] { Error::semantic("m", -1); }), "Semantic error in p.krl: m\n");
    EXPECT_EQ(lineOf("", [] { Error::parser("m", -2147483647); }), "Syntax error: m\n");
    EXPECT_EQ(lineOf("", [] { Error::parser("m", 2147483647); }),
              "Syntax error at line 2147483647: m\n");
}

TEST(ErrorTest, LeavesOutAnEmptyMessage) {
    EXPECT_EQ(lineOf("p.krl", [] { Error::lexer("", 3); }), "Lexer error in p.krl at line 3\n");
    EXPECT_EQ(lineOf("p.krl", [] { Error::parser("", 3); }), "Syntax error in p.krl at line 3\n");
    EXPECT_EQ(lineOf("p.krl", [] { Error::semantic("", 3); }),
              "Semantic error in p.krl at line 3\n");
    EXPECT_EQ(lineOf("", [] { Error::semantic("", 0); }), "Semantic error\n");
}

TEST(ErrorTest, StockTextIsNoMessageForParserAndSemantic) {
    EXPECT_EQ(lineOf("prog.krl", [] { Error::parser("syntax error", 3); }),
              "Syntax error in prog.krl at line 3\n");
    EXPECT_EQ(lineOf("prog.krl", [] { Error::semantic("syntax error", 3); }),
              "Semantic error in prog.krl at line 3\n");
}

TEST(ErrorTest, StockTextIsAMessageForLexer) {
    EXPECT_EQ(lineOf("prog.krl", [] { Error::lexer("syntax error", 3); }),
              "Lexer error in prog.krl at line 3: syntax error\n");
}

TEST(ErrorTest, OnlyTheExactStockTextIsDropped) {
    EXPECT_EQ(lineOf("", [] { Error::parser("syntax error, unexpected T_ID", 1); }),
              "Syntax error at line 1: syntax error, unexpected T_ID\n");
    EXPECT_EQ(lineOf("", [] { Error::parser("Syntax error", 1); }),
              "Syntax error at line 1: Syntax error\n");
    EXPECT_EQ(lineOf("", [] { Error::semantic("syntax error ", 1); }),
              "Semantic error at line 1: syntax error \n");
}

TEST(ErrorTest, WritesBytesOfTheMessageAsTheyAre) {
    EXPECT_EQ(lineOf("", [] { Error::lexer(std::string("'\0\x80\r'", 5), 1); }),
              std::string("Lexer error at line 1: '\0\x80\r'\n", 29));
}

TEST(ErrorTest, GoesToStandardErrorAlone) {
    const ChildResult child = runInChild([] {
        Error::lexer("m", 1);
        return 0;
    });
    EXPECT_EQ(child.err, "Lexer error at line 1: m\n");
    EXPECT_EQ(child.out, "");
}

TEST(ErrorTest, NothingIsReportedAtFirst) {
    EXPECT_TRUE(runInChild([] { return Error::hasErrors() ? 1 : 0; }).hasExitedWith(0));
}

TEST(ErrorTest, SettingTheSourceFileIsNoError) {
    const ChildResult child = runInChild([] {
        Error::setSourceFile("a/b");
        return Error::hasErrors() ? 1 : 0;
    });
    EXPECT_TRUE(child.hasExitedWith(0));
}

/// Whether a report, the first of its process, makes hasErrors() true.
template <typename Report>
bool counts(Report report) {
    const auto body = [&] {
        report();
        return Error::hasErrors() ? 0 : 1;
    };
    return runInChild(body).hasExitedWith(0);
}

TEST(ErrorTest, EveryReportCounts) {
    EXPECT_TRUE(counts([] { Error::lexer("m", 1); }));
    EXPECT_TRUE(counts([] { Error::parser("m", 1); }));
    EXPECT_TRUE(counts([] { Error::semantic("m", 1); }));
    EXPECT_TRUE(counts([] { Error::lexer("", 0); }));
    EXPECT_TRUE(counts([] { Error::parser("syntax error", 0); }));
    EXPECT_TRUE(counts([] { Error::semantic("", 0); }));
}

}  // namespace

}  // namespace krel
