#include "tools/format/format.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace krel {

namespace {

using Format::format;
using Lines = std::vector<std::string>;

std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

/// How many columns the most indented line has before its first character.
std::size_t deepestIndentation(const std::string& text) {
    std::size_t most = 0;
    for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1) {
        most = std::max(most, text.find_first_not_of(' ', begin) - begin);
    }
    return most;
}

TEST(FormatTest, SaysWhyATextDoesNotParse) {
    const Format::Result result = format("void main() {\n    @ x;\n    f(1;\n", "dir/p.krl");
    EXPECT_FALSE(result.parses);
    EXPECT_EQ(result.text, "");
    EXPECT_EQ(result.faults, (Lines{"Lexer error in p.krl at line 2: illegal character '@'",
                                    "Syntax error in p.krl at line 2: Standalone variable or array "
                                    "access.",
                                    "Syntax error in p.krl at line 3: syntax error, unexpected "
                                    "T_SEMICOLON, expecting T_RPAREN"}));
}

TEST(FormatTest, LeavesCarriageReturnsElsewhereToTheScanner) {
    EXPECT_FALSE(format("void main() { \r}\n", "p.krl").parses);
    EXPECT_FALSE(format("void main() { }\r", "p.krl").parses);
    EXPECT_EQ(format("void g() { }\r\r\n# a\rb\r", "p.krl").text, "void g() { }\n# a\rb\n");
}

TEST(FormatTest, WhatTheParserFindsBesidesSyntaxErrorsDoesNotMatter) {
    const Format::Result result = format("int i=1;void f(int a,int a){}void f(){}", "p.krl");
    EXPECT_EQ(result.text, "int i = 1;\nvoid f(int a, int a) { }\nvoid f() { }\n");
    EXPECT_TRUE(result.faults.empty());
}

TEST(FormatTest, AnIndentationHasALimit) {
    const std::string open = repeated("{ ", 200);
    const std::string close = repeated("} ", 200);
    const std::string blocks = format("void main() { " + open + "g(); " + close + "}", "p").text;
    EXPECT_EQ(deepestIndentation(blocks), 100U);
    EXPECT_EQ(format(blocks, "p").text, blocks);

    const std::string calls =
        "void main() { g(" + repeated("f(\n", 200) + "1" + repeated("\n)", 200) + "); }";
    const std::string nested = format(calls, "p").text;
    EXPECT_EQ(deepestIndentation(nested), 100U);
    EXPECT_EQ(format(nested, "p").text, nested);

    const std::string longLine = "void main() { print(\"" + repeated("x", 200) + "\", f(1,\n2)); }";
    const std::string aligned = format(longLine, "p").text;
    EXPECT_EQ(deepestIndentation(aligned), 100U);
    EXPECT_EQ(format(aligned, "p").text, aligned);
}

TEST(FormatTest, ACommentIsMovedToTheRightByALimitedDistance) {
    const std::string text =
        "void main() { print(\"" + repeated("x", 200) + "\")\n;#{ first\n  second }#\n}";
    const std::string moved = format(text, "p").text;
    EXPECT_NE(moved.find("    #{ first\n" + repeated(" ", 102) + "second }#\n"), moved.npos);
    EXPECT_EQ(format(moved, "p").text, moved);
}

/// The text behind a long line does not grow with the square of its size.
TEST(FormatTest, TheResultIsNotMuchLargerThanTheSource) {
    const std::string longLine = "print(\"" + repeated("x", 10000) + "\")\n;# long\n";
    const std::string text = "void main() {" + longLine + repeated("# comment\n", 1000) +
                             repeated("g();# c\n", 1000) + "}";
    const std::string result = format(text, "p").text;
    EXPECT_LT(result.size(), 3 * text.size());
    EXPECT_EQ(format(result, "p").text, result);
}

}  // namespace

}  // namespace krel
