#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "lexer/scanner.hpp"
#include "parser/parser.hpp"
#include "scan.hpp"

namespace krel {

namespace {

using namespace std::string_literals;

TEST(LexerTest, TokenCodes) {
    EXPECT_EQ(T_INT_LITERAL, firstTokenCode);
    EXPECT_EQ(T_RETURN, 306);
    EXPECT_EQ(UMINUS, 307);
    EXPECT_EQ(UPLUS, 308);
    EXPECT_EQ(tokenNames.size(), 51U);
}

TEST(LexerTest, NothingScansToNothing) {
    EXPECT_EQ(scan(""), "");
    EXPECT_EQ(scan(" \t\n\n"), "");
}

TEST(LexerTest, LocationIsLineOneColumnOneAtFirst) {
    const TokenLocation location;
    EXPECT_EQ(location.first_line, 1);
    EXPECT_EQ(location.first_column, 1);
    EXPECT_EQ(location.last_line, 1);
    EXPECT_EQ(location.last_column, 1);
}

TEST(LexerTest, EveryOperator) {
    EXPECT_EQ(tokensOf("+= -= ++ -- <= >= == != && || + - * /"),
              "T_PLUS_ASSIGN T_MINUS_ASSIGN T_INCREMENT T_DECREMENT T_LESS_EQUAL T_GREATER_EQUAL "
              "T_EQUAL T_NOT_EQUAL T_AND T_OR T_PLUS T_MINUS T_TIMES T_DIVIDE");
    EXPECT_EQ(tokensOf("( ) { } [ ] ; , = < > !"),
              "T_LPAREN T_RPAREN T_LBRACE T_RBRACE T_LBRACKET T_RBRACKET T_SEMICOLON T_COMMA "
              "T_ASSIGN T_LESS T_GREATER T_NOT");
}

TEST(LexerTest, EveryKeyword) {
    EXPECT_EQ(tokensOf("int double boolean character void string"),
              "T_INT T_DOUBLE T_BOOLEAN T_CHARACTER T_VOID T_STRING");
    EXPECT_EQ(tokensOf("if else elseif exit print true false"),
              "T_IF T_ELSE T_ELSEIF T_EXIT T_PRINT T_TRUE T_FALSE");
    EXPECT_EQ(tokensOf("for while continue break return"),
              "T_FOR T_WHILE T_CONTINUE T_BREAK T_RETURN");
}

TEST(LexerTest, ElseIfIsTwoTokens) {
    EXPECT_EQ(tokensOf("else if"), "T_ELSE T_IF");
    EXPECT_EQ(tokensOf("elseif"), "T_ELSEIF");
    EXPECT_EQ(tokensOf("else#\nif"), "T_ELSE T_IF");
}

TEST(LexerTest, LongestMatchMakesIdentifiersOfKeywords) {
    EXPECT_EQ(tokensOf("integer format if_ elseifs print1 _int"),
              "T_ID integer T_ID format T_ID if_ T_ID elseifs T_ID print1 T_ID _int");
}

TEST(LexerTest, OtherSpellingsAreIdentifiers) {
    EXPECT_EQ(tokensOf("char bool float Int elif IF"),
              "T_ID char T_ID bool T_ID float T_ID Int T_ID elif T_ID IF");
}

TEST(LexerTest, Identifiers) {
    EXPECT_EQ(tokensOf("a Z9 _ __x1 aBc"), "T_ID a T_ID Z9 T_ID _ T_ID __x1 T_ID aBc");
    EXPECT_EQ(tokensOf("1a"), "T_INT_LITERAL 1 T_ID a");
}

TEST(LexerTest, OperatorsTakeTheLongestMatch) {
    EXPECT_EQ(tokensOf("x+=1"), "T_ID x T_PLUS_ASSIGN T_INT_LITERAL 1");
    EXPECT_EQ(tokensOf("x*=1"), "T_ID x T_TIMES T_ASSIGN T_INT_LITERAL 1");
    EXPECT_EQ(tokensOf("+++"), "T_INCREMENT T_PLUS");
    EXPECT_EQ(tokensOf("---x"), "T_DECREMENT T_MINUS T_ID x");
    EXPECT_EQ(tokensOf("==="), "T_EQUAL T_ASSIGN");
    EXPECT_EQ(tokensOf("<=="), "T_LESS_EQUAL T_ASSIGN");
    EXPECT_EQ(tokensOf("!=="), "T_NOT_EQUAL T_ASSIGN");
    EXPECT_EQ(tokensOf("=<"), "T_ASSIGN T_LESS");
}

TEST(LexerTest, LogicalOperatorsAreDouble) {
    EXPECT_EQ(tokensOf("a&&b"), "T_ID a T_AND T_ID b");
    EXPECT_EQ(tokensOf("a&b"), "T_ID a Lexer error at line 1: illegal character '&' T_ID b");
    EXPECT_EQ(tokensOf("|||"), "T_OR Lexer error at line 1: illegal character '|'");
}

TEST(LexerTest, IntegerLiterals) {
    EXPECT_EQ(tokensOf("0 7 007 2147483647"),
              "T_INT_LITERAL 0 T_INT_LITERAL 7 T_INT_LITERAL 7 T_INT_LITERAL 2147483647");
    EXPECT_EQ(tokensOf("-5"), "T_MINUS T_INT_LITERAL 5");
    EXPECT_EQ(tokensOf("0x1F"), "T_INT_LITERAL 0 T_ID x1F");
}

TEST(LexerTest, IntegerLiteralsBeyondIntAreWhatAtoiMakesOfThem) {
    for (const char* digits : {"2147483648", "4294967296", "99999999999999999999999"}) {
        EXPECT_EQ(tokensOf(digits), "T_INT_LITERAL " + std::to_string(std::atoi(digits)));
    }
}

TEST(LexerTest, DecimalLiterals) {
    EXPECT_EQ(tokensOf("2.5 0.25 00.50"),
              "T_DECIMAL_LITERAL 2.5 T_DECIMAL_LITERAL 0.25 T_DECIMAL_LITERAL 0.5");
    EXPECT_EQ(tokensOf("0.1"), "T_DECIMAL_LITERAL 0.10000000000000001");
}

TEST(LexerTest, DecimalLiteralsNeedDigitsOnBothSides) {
    EXPECT_EQ(tokensOf("1."), "T_INT_LITERAL 1 Lexer error at line 1: illegal character '.'");
    EXPECT_EQ(tokensOf(".5"), "Lexer error at line 1: illegal character '.' T_INT_LITERAL 5");
    EXPECT_EQ(tokensOf("1.2.3"),
              "T_DECIMAL_LITERAL 1.2 Lexer error at line 1: illegal character '.' "
              "T_INT_LITERAL 3");
}

TEST(LexerTest, NumbersHaveNoExponent) {
    EXPECT_EQ(tokensOf("1e5"), "T_INT_LITERAL 1 T_ID e5");
    EXPECT_EQ(tokensOf("1.5e3"), "T_DECIMAL_LITERAL 1.5 T_ID e3");
}

TEST(LexerTest, StringLiteralsKeepQuotesAndEscapes) {
    EXPECT_EQ(tokensOf("\"\""), "T_STRING_LITERAL \"\"");
    EXPECT_EQ(tokensOf("\"a b\""), "T_STRING_LITERAL \"a b\"");
    EXPECT_EQ(tokensOf(R"("a\"b")"), R"(T_STRING_LITERAL "a\"b")");
    EXPECT_EQ(tokensOf(R"("\\" "\q")"), R"(T_STRING_LITERAL "\\" T_STRING_LITERAL "\q")");
    EXPECT_EQ(tokensOf("\"#{ 'x' }#\""), "T_STRING_LITERAL \"#{ 'x' }#\"");
}

TEST(LexerTest, StringLiteralsKeepBytesAbove127) {
    EXPECT_EQ(tokensOf("\"\xc3\xa4\x80\xff\""), "T_STRING_LITERAL \"\xc3\xa4\x80\xff\"");
}

TEST(LexerTest, StringLiteralMayHoldACarriageReturnButNoLineFeed) {
    EXPECT_EQ(tokensOf("\"a\rb\""), "T_STRING_LITERAL \"a\rb\"");
    EXPECT_EQ(scan("\"a\nb\""),
              "Lexer error at line 1: illegal character '\"'\n"
              "1 T_ID a\n"
              "2 T_ID b\n"
              "Lexer error at line 2: illegal character '\"'\n");
}

TEST(LexerTest, ValueOfALiteralEndsAtANul) {
    EXPECT_EQ(tokensOf("\"a\0b\" c"s), "T_STRING_LITERAL \"a T_ID c");
    EXPECT_EQ(tokensOf("'\0' c"s), "T_CHARACTER_LITERAL ' T_ID c");
}

TEST(LexerTest, UnterminatedStringIsAnIllegalQuote) {
    EXPECT_EQ(tokensOf("\"abc"), "Lexer error at line 1: illegal character '\"' T_ID abc");
    EXPECT_EQ(scan("x = \"a b\ny = \"c\";"),
              "1 T_ID x\n"
              "1 T_ASSIGN\n"
              "Lexer error at line 1: illegal character '\"'\n"
              "1 T_ID a\n"
              "1 T_ID b\n"
              "2 T_ID y\n"
              "2 T_ASSIGN\n"
              "2 T_STRING_LITERAL \"c\"\n"
              "2 T_SEMICOLON\n");
}

TEST(LexerTest, EscapedQuoteAtTheEndOfALineClosesNothing) {
    EXPECT_EQ(scan("\"\\\"\n"),
              "Lexer error at line 1: illegal character '\"'\n"
              "Lexer error at line 1: illegal character '\\'\n"
              "Lexer error at line 1: illegal character '\"'\n");
}

TEST(LexerTest, CharacterLiterals) {
    EXPECT_EQ(tokensOf("'a' '' '\"' '#'"),
              "T_CHARACTER_LITERAL 'a' T_CHARACTER_LITERAL '' T_CHARACTER_LITERAL '\"' "
              "T_CHARACTER_LITERAL '#'");
    EXPECT_EQ(tokensOf(R"('\'' '\\' '\n' '\q')"),
              R"(T_CHARACTER_LITERAL '\'' T_CHARACTER_LITERAL '\\' T_CHARACTER_LITERAL '\n' )"
              R"(T_CHARACTER_LITERAL '\q')");
    EXPECT_EQ(tokensOf("'\xe4'"), "T_CHARACTER_LITERAL '\xe4'");
}

TEST(LexerTest, CharacterLiteralsHoldAtMostOneItem) {
    EXPECT_EQ(tokensOf("'ab'"),
              "Lexer error at line 1: illegal character ''' T_ID ab "
              "Lexer error at line 1: illegal character '''");
    EXPECT_EQ(tokensOf("'\n'"),
              "Lexer error at line 1: illegal character ''' "
              "Lexer error at line 2: illegal character '''");
    EXPECT_EQ(tokensOf("'''"),
              "T_CHARACTER_LITERAL '' Lexer error at line 1: illegal character '''");
}

TEST(LexerTest, LineComments) {
    EXPECT_EQ(scan("a # b \"c\" #{ }#\nd"),
              "1 T_ID a\n"
              "2 T_ID d\n");
    EXPECT_EQ(scan("#"), "");
    EXPECT_EQ(scan("#\n#\nx"), "3 T_ID x\n");
}

TEST(LexerTest, SlashesBeginNoComment) {
    EXPECT_EQ(tokensOf("// a"), "T_DIVIDE T_DIVIDE T_ID a");
    EXPECT_EQ(tokensOf("/* a */"), "T_DIVIDE T_TIMES T_ID a T_TIMES T_DIVIDE");
}

TEST(LexerTest, BlockCommentOnOneLineIsALineComment) {
    EXPECT_EQ(scan("#{ a }# int x = 1;\ny"), "2 T_ID y\n");
    EXPECT_EQ(scan("#{}#"), "");
    EXPECT_EQ(scan("#{ a }#\nb"), "2 T_ID b\n");
}

TEST(LexerTest, BlockCommentOverLinesEndsAtItsClose) {
    EXPECT_EQ(scan("#{ a\n b }# c\nd"),
              "2 T_ID c\n"
              "3 T_ID d\n");
    EXPECT_EQ(scan("#{\n\n}#x"), "3 T_ID x\n");
    EXPECT_EQ(scan("#{\n}\n}#x"), "3 T_ID x\n");
    EXPECT_EQ(scan("#{\n#{\n}# x }#"),
              "3 T_ID x\n"
              "3 T_RBRACE\n");
}

TEST(LexerTest, SecondBraceOfAPairClosesNothing) {
    EXPECT_EQ(scan("#{\n}}#\nx\n}# y"), "4 T_ID y\n");
    EXPECT_EQ(scan("#{\n}}}# y"), "2 T_ID y\n");
    EXPECT_EQ(scan("#{\n}}}}# z\n}#y"), "3 T_ID y\n");
}

TEST(LexerTest, UnclosedBlockCommentIsALineComment) {
    EXPECT_EQ(scan("#{ a\nb\nc"),
              "2 T_ID b\n"
              "3 T_ID c\n");
    EXPECT_EQ(scan("#{\nb }"),
              "2 T_ID b\n"
              "2 T_RBRACE\n");
    EXPECT_EQ(scan("#{\n}}#\nx"),
              "2 T_RBRACE\n"
              "2 T_RBRACE\n"
              "3 T_ID x\n");
    EXPECT_EQ(scan("#{\n#{\na"), "3 T_ID a\n");
}

TEST(LexerTest, StringsAreFoundAfterAnUnclosedBlockComment) {
    EXPECT_EQ(scan("#{\n\"a\" \"b\n\"c\""),
              "2 T_STRING_LITERAL \"a\"\n"
              "Lexer error at line 2: illegal character '\"'\n"
              "2 T_ID b\n"
              "3 T_STRING_LITERAL \"c\"\n");
}

TEST(LexerTest, BlockCommentsAreFoundAfterAnUnclosedString) {
    EXPECT_EQ(scan("\" #{\n}# x \"y\""),
              "Lexer error at line 1: illegal character '\"'\n"
              "2 T_ID x\n"
              "2 T_STRING_LITERAL \"y\"\n");
}

TEST(LexerTest, UnclosedBlockCommentBehindAnUnclosedString) {
    const std::string errors = "Lexer error at line 1: illegal character '\"'\n";
    EXPECT_EQ(scan("\" #{\n\"a\" b"), errors +
                                          "2 T_STRING_LITERAL \"a\"\n"
                                          "2 T_ID b\n");
    EXPECT_EQ(scan("\" a #{ b\n\n \"c\""), errors +
                                               "1 T_ID a\n"
                                               "3 T_STRING_LITERAL \"c\"\n");
    EXPECT_EQ(scan("\" #{\n\"a\" \"b\n\"c\" #{\n\"d\""),
              errors + "2 T_STRING_LITERAL \"a\"\n" +
                  "Lexer error at line 2: illegal character '\"'\n"
                  "2 T_ID b\n" +
                  "3 T_STRING_LITERAL \"c\"\n"
                  "4 T_STRING_LITERAL \"d\"\n");
}

TEST(LexerTest, UnclosedStringBehindAnUnclosedBlockComment) {
    EXPECT_EQ(scan("#{\na \" b #{\n\"c\" #{ \"d\"\n\"e\""),
              "2 T_ID a\n"
              "Lexer error at line 2: illegal character '\"'\n"
              "2 T_ID b\n"
              "3 T_STRING_LITERAL \"c\"\n"
              "4 T_STRING_LITERAL \"e\"\n");
}

TEST(LexerTest, LinesCountLineFeedsOnly) {
    EXPECT_EQ(scan("a\nb\n\n\nc"),
              "1 T_ID a\n"
              "2 T_ID b\n"
              "5 T_ID c\n");
    EXPECT_EQ(scan(" \n \n a"), "3 T_ID a\n");
    EXPECT_EQ(scan("a\r\nb"),
              "1 T_ID a\n"
              "Lexer error at line 1: illegal character '\r'\n"
              "2 T_ID b\n");
}

TEST(LexerTest, OtherWhiteSpaceIsIllegal) {
    EXPECT_EQ(tokensOf("a\fb"), "T_ID a Lexer error at line 1: illegal character '\f' T_ID b");
    EXPECT_EQ(tokensOf("a\vb"), "T_ID a Lexer error at line 1: illegal character '\v' T_ID b");
}

TEST(LexerTest, EveryCharacterOutsideTheRulesIsIllegal) {
    for (const char character : "&|.%:?$^~\\@`\r\x01\x7f\x80\xff"s) {
        EXPECT_EQ(scan("\n"s + character + "x"), "Lexer error at line 2: illegal character '"s +
                                                     character +
                                                     "'\n"
                                                     "2 T_ID x\n");
    }
}

TEST(LexerTest, IllegalNulIsWrittenRaw) {
    EXPECT_EQ(scan("a\0b"s),
              "1 T_ID a\n"
              "Lexer error at line 1: illegal character '\0'\n"
              "1 T_ID b\n"s);
}

constexpr std::size_t manyTimesTheBuffer = 1000000;

TEST(LexerTest, TokensMayBeLongerThanTheBuffer) {
    const std::string letters(manyTimesTheBuffer, 'a');
    EXPECT_EQ(scan(letters + "\n1"), "1 T_ID " + letters +
                                         "\n"
                                         "2 T_INT_LITERAL 1\n");
    EXPECT_EQ(scan("\"" + letters + "\""), "1 T_STRING_LITERAL \"" + letters + "\"\n");
    EXPECT_EQ(scan("#{" + letters + "\n" + letters + "}#1"), "2 T_INT_LITERAL 1\n");
    EXPECT_EQ(scan(std::string(manyTimesTheBuffer, '\n') + "x"), "1000001 T_ID x\n");
}

TEST(LexerTest, ManyOpenersThatNothingClosesTakeLinearTime) {
    constexpr int lines = 100000;
    std::string text;
    for (int line = 0; line < lines; ++line) {
        text += "#{\n";
    }
    EXPECT_EQ(scan(text + "x"), std::to_string(lines + 1) + " T_ID x\n");
}

TEST(LexerTest, ManyQuotesThatNothingClosesTakeLinearTime) {
    constexpr std::size_t quotes = 100000;
    std::string text = "\"";
    for (std::size_t quote = 0; quote < quotes; ++quote) {
        text += "\\\"";
    }
    const std::string errors = scan(text);
    constexpr std::size_t errorSize =
        std::string_view{"Lexer error at line 1: illegal character '\"'\n"}.size();
    EXPECT_EQ(errors.size(), errorSize * (2 * quotes + 1));
}

/// The bytes of every token of a text, and of what the scanner passes over, in order.
std::vector<std::string> piecesOf(const std::string& text) {
    testing::internal::CaptureStderr();
    std::vector<Trivia> trivia;
    Scanner scanner{text, &trivia};
    std::map<std::uint32_t, std::string> pieces;
    const auto add = [&](SourceRange range, const std::string& mark) {
        pieces[range.begin] = mark + text.substr(range.begin, range.end - range.begin);
    };
    KREL_STYPE value;
    TokenLocation location;
    while (const int token = krel_lex(&value, &location, scanner.handle())) {
        add(location.range(), "");
        if (token == T_STRING_LITERAL || token == T_CHARACTER_LITERAL) {
            std::free(value.text);
        }
    }
    EXPECT_EQ(location.range(), (SourceRange{static_cast<std::uint32_t>(text.size()),
                                             static_cast<std::uint32_t>(text.size())}));
    for (const auto& [kind, range] : trivia) {
        add(range, kind == Trivia::Kind::Comment ? "comment " : "illegal ");
    }
    testing::internal::GetCapturedStderr();
    std::vector<std::string> ordered;
    for (const auto& [begin, piece] : pieces) {
        ordered.push_back(piece);
    }
    return ordered;
}

using Pieces = std::vector<std::string>;

TEST(ScannerRangeTest, TokensReachFromTheirFirstByteToTheirLast) {
    EXPECT_EQ(piecesOf("int x1=12;"), (Pieces{"int", "x1", "=", "12", ";"}));
    EXPECT_EQ(piecesOf(" a <= 1.5\n\t\"s\\\"\" 'c' "),
              (Pieces{"a", "<=", "1.5", "\"s\\\"\"", "'c'"}));
    EXPECT_EQ(piecesOf(""), Pieces{});
    EXPECT_EQ(piecesOf(" \n"), Pieces{});
}

TEST(ScannerRangeTest, WhatIsCutEndsWhereItIsCut) {
    EXPECT_EQ(piecesOf("1."), (Pieces{"1", "illegal ."}));
    EXPECT_EQ(piecesOf("\"abc\nx"), (Pieces{"illegal \"", "abc", "x"}));
    EXPECT_EQ(piecesOf("'ab'"), (Pieces{"illegal '", "ab", "illegal '"}));
    EXPECT_EQ(piecesOf("#{ a\nb"), (Pieces{"comment #{ a", "b"}));
}

TEST(ScannerRangeTest, CommentsAreWhatTheScannerTakesForThem) {
    EXPECT_EQ(piecesOf("a # b\nc"), (Pieces{"a", "comment # b", "c"}));
    EXPECT_EQ(piecesOf("#{ a\n }# b"), (Pieces{"comment #{ a\n }#", "b"}));
    EXPECT_EQ(piecesOf("#{ a }# b\nc"), (Pieces{"comment #{ a }# b", "c"}));
    EXPECT_EQ(piecesOf("@#"), (Pieces{"illegal @", "comment #"}));
}

TEST(ScannerRangeTest, ScannersDoNotKnowOfEachOther) {
    Scanner first{
        "a\n"
        "b"};
    Scanner second{"c"};
    KREL_STYPE value;
    TokenLocation location;
    EXPECT_EQ(krel_lex(&value, &location, first.handle()), T_ID);
    EXPECT_EQ(krel_lex(&value, &location, second.handle()), T_ID);
    EXPECT_EQ(location.first_line, 1);
    EXPECT_EQ(krel_lex(&value, &location, first.handle()), T_ID);
    EXPECT_EQ(location.first_line, 2);
    EXPECT_EQ(krel_lex(&value, &location, second.handle()), 0);
}

}  // namespace

}  // namespace krel
