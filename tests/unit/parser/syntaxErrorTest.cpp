// Messages of syntax errors, what is refused, and the order in which diagnostics come out.

#include <gtest/gtest.h>

#include <string>

#include "parse.hpp"

namespace krel {

namespace {

std::string syntaxError(int line, const std::string& rest) {
    return "Syntax error at line " + std::to_string(line) + ": syntax error, unexpected " + rest +
           "\n";
}

TEST(SyntaxErrorTest, EndsTheParseWithoutATree) {
    const Parsed parsed = parse("void f() { } void { x;");
    EXPECT_EQ(parsed.status, 1);
    EXPECT_FALSE(parsed.hasTree);
    EXPECT_EQ(parsed.errors, syntaxError(1, "T_LBRACE, expecting T_ID"));
}

TEST(SyntaxErrorTest, OnlyTheFirstIsReported) {
    EXPECT_EQ(errorsIn("void 1\nint 2\n"), syntaxError(1, "T_INT_LITERAL, expecting T_ID"));
}

TEST(SyntaxErrorTest, LineIsThatOfTheUnexpectedToken) {
    EXPECT_EQ(errorsInBody("\nint x\n\n;"),
              syntaxError(4, "T_SEMICOLON, expecting T_LBRACKET or T_ASSIGN"));
}

TEST(SyntaxErrorTest, ListsUpToFourExpectedTokens) {
    EXPECT_EQ(errorsIn("int x;"),
              syntaxError(1, "T_SEMICOLON, expecting T_LPAREN or T_LBRACKET or T_ASSIGN"));
    EXPECT_EQ(errorsInBody("int x;"),
              syntaxError(1, "T_SEMICOLON, expecting T_LBRACKET or T_ASSIGN"));
    EXPECT_EQ(errorsInBody("if (c) x = 1;"), syntaxError(1, "T_ID, expecting T_LBRACE"));
    EXPECT_EQ(errorsInBody("int x = (int) \"a\";"),
              syntaxError(1,
                          "T_STRING_LITERAL, expecting T_INT_LITERAL or T_ID or "
                          "T_CHARACTER_LITERAL or T_DECIMAL_LITERAL"));
}

TEST(SyntaxErrorTest, ListsNothingWhenMoreAreExpected) {
    EXPECT_EQ(errorsInBody("x = ;"), syntaxError(1, "T_SEMICOLON"));
    EXPECT_EQ(errorsIn("int f(int a, ) { }"), syntaxError(1, "T_RPAREN"));
}

// A reduction that needs no particular token is made before the error is found: a list of
// declarators is complete, and so is a program.
TEST(SyntaxErrorTest, ListsWhatIsExpectedAfterDefaultReductions) {
    EXPECT_EQ(errorsInBody("int a[1] { 2 };"), syntaxError(1, "T_LBRACE, expecting T_SEMICOLON"));
    EXPECT_EQ(errorsIn("}"), syntaxError(1, "T_RBRACE, expecting end of file"));
}

TEST(SyntaxErrorTest, EndOfFileHasAName) {
    EXPECT_EQ(errorsIn("int"), syntaxError(1, "end of file, expecting T_ID"));
    EXPECT_EQ(errorsIn("void f() {"), syntaxError(1, "end of file"));
}

TEST(SyntaxErrorTest, LineAtTheEndOfFileIsThatOfTheLastMatch) {
    EXPECT_EQ(errorsIn("int\n\n\n"), syntaxError(4, "end of file, expecting T_ID"));
    EXPECT_EQ(errorsIn("int\n# comment"), syntaxError(2, "end of file, expecting T_ID"));
}

/// That a text gives a syntax error at its token `unexpected`.
void expectRefused(const std::string& body, const std::string& unexpected) {
    const std::string errors = errorsInBody(body);
    EXPECT_TRUE(
        errors.starts_with("Syntax error at line 1: syntax error, unexpected " + unexpected))
        << body << " gives <" << errors << ">";
}

TEST(SyntaxErrorTest, RefusesWhatTheGrammarLeavesOut) {
    expectRefused("int n = 0, a[3];", "T_LBRACKET");
    expectRefused("int a[3], b[3];", "T_LBRACKET");
    expectRefused("int a[2] = {};", "T_RBRACE");
    expectRefused("int a[] = {1};", "T_RBRACKET");
    expectRefused("x = a[i+1];", "T_PLUS");
    expectRefused("x = a[-1];", "T_MINUS");
    expectRefused("x = a[f()];", "T_LPAREN");
    expectRefused("x = a[b[0]];", "T_LBRACKET");
    expectRefused("int x = (int) y + 1;", "T_PLUS");
    expectRefused("int x = (int) -1;", "T_MINUS");
    expectRefused("x = (int) y;", "T_INT");
    expectRefused("f((int) y);", "T_INT");
    expectRefused("return (int) y;", "T_INT");
    expectRefused("if ((int) y) { }", "T_INT");
    expectRefused("a = b = c;", "T_ASSIGN");
    expectRefused("x = (a = 1);", "T_ASSIGN");
    expectRefused("x = -f();", "T_LPAREN");
    expectRefused("x = !f();", "T_LPAREN");
    expectRefused("x = --y;", "T_DECREMENT");
    expectRefused("x = y++;", "T_INCREMENT");
    expectRefused("else if (c) { }", "T_ELSE");
    expectRefused("if (c) { } else if (d) { }", "T_IF");
    expectRefused("if (c) { } else { } else { }", "T_ELSE");
    expectRefused("if (c) { } else { } elseif (d) { }", "T_ELSEIF");
    expectRefused("int g() { }", "T_LPAREN");
    expectRefused("x + 1;", "T_PLUS");
    expectRefused("1;", "T_INT_LITERAL");
    expectRefused(";", "T_SEMICOLON");
    expectRefused("for (;) { }", "T_RPAREN");
    expectRefused("for (; int i = 0; ) { }", "T_INT");
    expectRefused("for (; ; int i = 0) { }", "T_INT");
    expectRefused("print 1;", "T_INT_LITERAL");
    expectRefused("f(1,);", "T_RPAREN");
}

TEST(SyntaxErrorTest, RefusesMalformedFunctions) {
    EXPECT_EQ(errorsIn("int f(void) { }"), syntaxError(1, "T_RPAREN, expecting T_ID"));
    EXPECT_EQ(errorsIn("f() { }"), syntaxError(1, "T_LBRACE, expecting T_SEMICOLON"));
    EXPECT_EQ(errorsIn("int f();"), syntaxError(1, "T_SEMICOLON, expecting T_LBRACE"));
}

TEST(SyntaxErrorTest, NestingBeyondTheStackIsMemoryExhausted) {
    constexpr std::size_t tooDeep = 10001;
    const Parsed parsed = parse("void f() {\nx = " + std::string(tooDeep, '(') + "1;");
    EXPECT_EQ(parsed.status, 2);
    EXPECT_FALSE(parsed.hasTree);
    EXPECT_EQ(parsed.errors, "Syntax error at line 2: memory exhausted\n");
}

TEST(SyntaxErrorTest, NestingWithinTheStackIsParsed) {
    constexpr std::size_t deep = 9900;
    const std::string text =
        "void f() { x = " + std::string(deep, '(') + "1" + std::string(deep, ')') + "; }";
    const Parsed parsed = parse(text);
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.errors, "");
}

const std::string illegal = "Lexer error at line 1: illegal character '&'\n";

TEST(DiagnosticOrderTest, AllKindsBeforeASyntaxErrorAreReported) {
    EXPECT_EQ(errorsIn("x = 1; & void f() { y; exit(1, 2); } int"),
              "Semantic error at line 1: all statements must be inside a function\n" + illegal +
                  "Syntax error at line 1: Standalone variable or array access.\n"
                  "Syntax error at line 1: > 1 arguments passed to exit().\n" +
                  syntaxError(1, "end of file, expecting T_ID"));
}

TEST(DiagnosticOrderTest, CompleteStatementsAreCheckedWithoutALookahead) {
    EXPECT_EQ(errorsInBody("x; &"),
              "Syntax error at line 1: Standalone variable or array access.\n" + illegal);
    EXPECT_EQ(errorsInBody("exit(1, 2) & ;"),
              "Syntax error at line 1: > 1 arguments passed to exit().\n" + illegal);
    EXPECT_EQ(errorsIn("while (c) { } &"),
              "Semantic error at line 1: all statements must be inside a function\n" + illegal);
}

TEST(DiagnosticOrderTest, StatementsThatMayGoOnWaitForTheNextToken) {
    EXPECT_EQ(errorsIn("if (c) { } &"),
              illegal + "Semantic error at line 1: all statements must be inside a function\n");
    EXPECT_EQ(errorsIn("if (c) { } else { } &"),
              "Semantic error at line 1: all statements must be inside a function\n" + illegal);
}

TEST(DiagnosticOrderTest, DeclarationsAreFiledAtTheEndOfTheirFunction) {
    EXPECT_EQ(errorsIn("void f() { int x = 1; int x = 2; y; } &"),
              "Syntax error at line 1: Standalone variable or array access.\n"
              "Semantic error at line 1: Symbol 'x' already exists in scope 'f'.\n" +
                  illegal);
}

}  // namespace

}  // namespace krel
