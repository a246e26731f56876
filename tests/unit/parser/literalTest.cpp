#include <gtest/gtest.h>

#include <string>

#include "parse.hpp"

namespace krel {

namespace {

using namespace std::string_literals;

TEST(ParserLiteralTest, Numbers) {
    EXPECT_EQ(expression("42"), "IntLiteral42");
    EXPECT_EQ(expression("2.5"), "DecimalLiteral2.5d");
    EXPECT_EQ(expression("007"), "IntLiteral7");
}

TEST(ParserLiteralTest, Booleans) {
    EXPECT_EQ(expression("true"), "BooleanLiteraltrue");
    EXPECT_EQ(expression("false"), "BooleanLiteralfalse");
}

TEST(ParserLiteralTest, LinesOfLiterals) {
    EXPECT_EQ(statementsWithLines("f(\n1,\n2.5,\n\"s\",\n'c',\ntrue);"),
              "CallStatement@2(Identifier'f'@2 ArgumentList@3(IntLiteral1@3 DecimalLiteral2.5d@4 "
              "StringLiteral's'@5 CharacterLiteral%99@6 BooleanLiteraltrue@7))");
}

/// The decoded text of a string literal.
std::string decoded(const std::string& literal) {
    const std::string node = expression(literal);
    const std::string begin = "StringLiteral'";
    return node.starts_with(begin) ? node.substr(begin.size(), node.size() - begin.size() - 1)
                                   : "not a string: " + node;
}

TEST(ParserLiteralTest, StringsLoseTheirQuotes) {
    EXPECT_EQ(decoded(R"("")"), "");
    EXPECT_EQ(decoded(R"("plain text")"), "plain text");
    EXPECT_EQ(decoded(R"("'")"), "'");
}

TEST(ParserLiteralTest, EscapesOfStrings) {
    EXPECT_EQ(decoded(R"("a\tb\\")"), "a\tb\\");
    EXPECT_EQ(decoded(R"("\n\t\r\b\f")"), "\n\t\r\b\f");
    EXPECT_EQ(decoded(R"("\0")"), "\0"s);
    EXPECT_EQ(decoded(R"("\"\'")"), "\"'");
    EXPECT_EQ(decoded(R"("\\n")"), "\\n");
}

TEST(ParserLiteralTest, OtherEscapedCharactersStandForThemselves) {
    EXPECT_EQ(decoded(R"("\q\x41\1\a\v\u")"), "qx411avu");
}

TEST(ParserLiteralTest, BytesAbove127AreKept) {
    EXPECT_EQ(decoded("\"\xc3\xa4\xff\""), "\xc3\xa4\xff");
}

// The scanner hands over a C string. What it ends at a NUL has no closing quote, so the opening one
// is not dropped.
TEST(ParserLiteralTest, RawNulEndsAString) {
    EXPECT_EQ(decoded("\"ab\0cd\""s), "\"ab");
    EXPECT_EQ(decoded("\"\0\""s), "\"");
    EXPECT_EQ(decoded("\"a\\\0b\""s), "\"a\\");
}

/// The code of a character literal.
std::string code(const std::string& literal) {
    return expression(literal);
}

TEST(ParserLiteralTest, Characters) {
    EXPECT_EQ(code("'a'"), "CharacterLiteral%97");
    EXPECT_EQ(code("'\"'"), "CharacterLiteral%34");
    EXPECT_EQ(code("' '"), "CharacterLiteral%32");
    EXPECT_EQ(code("'\xe4'"), "CharacterLiteral%228");
}

TEST(ParserLiteralTest, EscapesOfCharacters) {
    EXPECT_EQ(code(R"('\n')"), "CharacterLiteral%10");
    EXPECT_EQ(code(R"('\t')"), "CharacterLiteral%9");
    EXPECT_EQ(code(R"('\r')"), "CharacterLiteral%13");
    EXPECT_EQ(code(R"('\b')"), "CharacterLiteral%8");
    EXPECT_EQ(code(R"('\f')"), "CharacterLiteral%12");
    EXPECT_EQ(code(R"('\\')"), "CharacterLiteral%92");
    EXPECT_EQ(code(R"('\'')"), "CharacterLiteral%39");
    EXPECT_EQ(code(R"('\"')"), "CharacterLiteral%34");
    EXPECT_EQ(code(R"('\q')"), "CharacterLiteral%113");
}

TEST(ParserLiteralTest, EmptyCharacterIsNul) {
    EXPECT_EQ(code("''"), "CharacterLiteral%0");
    EXPECT_EQ(code(R"('\0')"), "CharacterLiteral%0");
}

TEST(ParserLiteralTest, RawNulInACharacterLeavesItsQuote) {
    EXPECT_EQ(code("'\0'"s), "CharacterLiteral%39");
}

}  // namespace

}  // namespace krel
