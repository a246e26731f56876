#include "codegen/irText.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace krel {

namespace {

/// The parts of an element as "name|index"; "none" for any other text.
std::string elementOf(std::string_view text) {
    std::string_view name;
    std::string_view index;
    if (!parseArrayAccess(text, name, index)) {
        return "none";
    }
    return std::string{name} + "|" + std::string{index};
}

/// The text after `text` among all texts over some characters, shorter ones first.
std::string successor(std::string text, std::string_view characters) {
    for (char& character : text) {
        const std::size_t place = characters.find(character) + 1;
        if (place < characters.size()) {
            character = characters[place];
            return text;
        }
        character = characters.front();
    }
    return text + characters.front();
}

/// The same by the pattern that defines elements.
std::string matchedElement(const std::string& text) {
    static const std::regex pattern{R"(^([A-Za-z_]\w*)\s*\[\s*(.+)\s*\]$)"};
    std::smatch match;
    if (!std::regex_match(text, match, pattern)) {
        return "none";
    }
    const std::string index = match[2];
    return match[1].str() + "|" + std::string{trim(index)};
}

}  // namespace

TEST(IRTextTest, TrimRemovesFourCharactersAtBothEnds) {
    EXPECT_EQ(trim(" \t\r\nx y\n\r\t "), "x y");
    EXPECT_EQ(trim("\v\fx\v\f"), "\v\fx\v\f");
    EXPECT_EQ(trim(""), "");
    EXPECT_EQ(trim(" \t\r\n"), "");
}

TEST(IRTextTest, SpacesAreThoseOfThePatterns) {
    for (int code = 0; code < 256; ++code) {
        const bool expected = code == ' ' || (code >= '\t' && code <= '\r');
        EXPECT_EQ(isSpace(static_cast<char>(code)), expected) << code;
    }
}

TEST(IRTextTest, NamesAreMadeOfAsciiLettersDigitsAndUnderscores) {
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
    const std::string digits = "0123456789";
    for (int code = 0; code < 256; ++code) {
        const char character = static_cast<char>(code);
        const bool isLetter = letters.find(character) != std::string::npos;
        const bool isDecimal = digits.find(character) != std::string::npos;
        EXPECT_EQ(beginsName(character), isLetter) << code;
        EXPECT_EQ(isDigit(character), isDecimal) << code;
        EXPECT_EQ(isNameCharacter(character), isLetter || isDecimal) << code;
    }
}

TEST(IRTextTest, IntegerLiterals) {
    for (const char* text : {"0", "007", "+7", "-7", "99999999999999999999"}) {
        EXPECT_TRUE(isIntegerLiteral(text)) << text;
    }
    for (const char* text : {"", "+", "-", "--7", "+-7", "7-", "7.", "0x7", "7 ", "a", "7a"}) {
        EXPECT_FALSE(isIntegerLiteral(text)) << text;
    }
}

TEST(IRTextTest, DoubleLiterals) {
    for (const char* text : {"1.5", "1.", ".5", "-0.25", "+.5", "-1.", "00.00"}) {
        EXPECT_TRUE(isDoubleLiteral(text)) << text;
    }
    for (const char* text : {"", ".", "+.", "-.", "1", "1.2.3", "..", "1e5", "1.5e5", "1.5 ", "-",
                             "--1.5", "1.-5", "a.5"}) {
        EXPECT_FALSE(isDoubleLiteral(text)) << text;
    }
}

TEST(IRTextTest, QuotedLiterals) {
    for (const char* text : {"\"\"", "\"a\"", "\"a\" + \"b\"", "\"\"\""}) {
        EXPECT_TRUE(isQuoted(text, '"')) << text;
    }
    for (const char* text : {"", "\"", "\"a", "a\"", "'a'", " \"a\""}) {
        EXPECT_FALSE(isQuoted(text, '"')) << text;
    }
    for (const char* text : {"''", "'a'", "'ab'", "'''", "'\\''"}) {
        EXPECT_TRUE(isQuoted(text, '\'')) << text;
    }
    for (const char* text : {"", "'", "'a", "a'", "\"a\""}) {
        EXPECT_FALSE(isQuoted(text, '\'')) << text;
    }
}

TEST(IRTextTest, Identifiers) {
    for (const char* text : {"a", "_", "Z9", "_t0", "B7", "goto"}) {
        EXPECT_TRUE(isIdentifier(text)) << text;
    }
    for (const char* text : {"", "9a", "a b", "a-b", "a[0]", "\xe9", "a\xe9"}) {
        EXPECT_FALSE(isIdentifier(text)) << text;
    }
}

TEST(IRTextTest, BlockNamesAreBAndDigits) {
    for (const char* text : {"B0", "B7", "B12", "B007"}) {
        EXPECT_TRUE(isBlockName(text)) << text;
    }
    for (const char* text : {"", "B", "b7", "B7x", "BB7", "_B7", "7", "B 7"}) {
        EXPECT_FALSE(isBlockName(text)) << text;
    }
}

TEST(IRTextTest, Elements) {
    EXPECT_EQ(elementOf("a[0]"), "a|0");
    EXPECT_EQ(elementOf("_x9[i]"), "_x9|i");
    EXPECT_EQ(elementOf("a \v[ \t i \f]"), "a|i \f");
    EXPECT_EQ(elementOf("a [ i ] "), "none");
    EXPECT_EQ(elementOf("a[]"), "none");
    EXPECT_EQ(elementOf("a[ ]"), "a|");
    EXPECT_EQ(elementOf("a[b[0]]"), "a|b[0]");
    EXPECT_EQ(elementOf("a[0] = b[1]"), "a|0] = b[1");
    EXPECT_EQ(elementOf("a[0"), "none");
    EXPECT_EQ(elementOf("a0]"), "none");
    EXPECT_EQ(elementOf("9[0]"), "none");
    EXPECT_EQ(elementOf("[0]"), "none");
    EXPECT_EQ(elementOf("]"), "none");
    EXPECT_EQ(elementOf("a-b[0]"), "none");
    EXPECT_EQ(elementOf(""), "none");
}

TEST(IRTextTest, IndexesDoNotSpanLines) {
    EXPECT_EQ(elementOf("a[\n i \r\n]"), "a|i");
    EXPECT_EQ(elementOf("a[i\nj]"), "none");
    EXPECT_EQ(elementOf("a[i\n j ]"), "none");
    EXPECT_EQ(elementOf("a[ \n]"), "a|");
    EXPECT_EQ(elementOf("a[\n ]"), "a|");
    EXPECT_EQ(elementOf("a[\f\n]"), "a|\f");
    EXPECT_EQ(elementOf("a[\r\n]"), "none");
}

TEST(IRTextTest, ElementsAreThoseOfThePattern) {
    std::string inside;
    do {
        const std::string text = "a[" + inside + "]";
        ASSERT_EQ(elementOf(text), matchedElement(text)) << testing::PrintToString(text);
        inside = successor(inside, "i]\n\r\f ");
    } while (inside.size() <= 6);
}

TEST(IRTextTest, TextsThatAreNoElementLeaveTheArgumentsAlone) {
    std::string_view name = "n";
    std::string_view index = "i";
    EXPECT_FALSE(parseArrayAccess("a[", name, index));
    EXPECT_EQ(name, "n");
    EXPECT_EQ(index, "i");
}

TEST(IRTextTest, StringLiteralsEndAtTheirFirstUnescapedQuote) {
    EXPECT_EQ(stringLiteralEnd("\"\"", 0), 2U);
    EXPECT_EQ(stringLiteralEnd("x = \"a\" + \"b\"", 4), 7U);
    EXPECT_EQ(stringLiteralEnd(R"("a\"b")", 0), 6U);
    EXPECT_EQ(stringLiteralEnd(R"("a\\" b")", 0), 5U);
    EXPECT_EQ(stringLiteralEnd("\"", 0), std::string_view::npos);
    EXPECT_EQ(stringLiteralEnd("\"abc", 0), std::string_view::npos);
    EXPECT_EQ(stringLiteralEnd(R"("abc\")", 0), std::string_view::npos);
    EXPECT_EQ(stringLiteralEnd(R"("abc\)", 0), std::string_view::npos);
}

TEST(IRTextTest, LongStringLiteralsEndWhereShortOnesDo) {
    const std::string run(100, 'a');
    EXPECT_EQ(stringLiteralEnd("\"" + run + "\" b", 0), 102U);
    EXPECT_EQ(stringLiteralEnd("\"" + run + R"(\" b" c)", 0), 106U);
    EXPECT_EQ(stringLiteralEnd("\"" + run + R"(\\" b")", 0), 104U);
    EXPECT_EQ(stringLiteralEnd("\"" + run, 0), std::string_view::npos);
}

}  // namespace krel
