#include <gtest/gtest.h>

#include <string>

#include "parse.hpp"

namespace krel {

namespace {

TEST(ParserStatementTest, Assignment) {
    EXPECT_EQ(statementsWithLines("x\n=\n1\n;"), "Assignment@2(Identifier'x'@2 IntLiteral1@4)");
    EXPECT_EQ(statementsWithLines("a\n[\n1\n]\n=\n2;"),
              "Assignment@2(ArrayAccess@2(Identifier'a'@2 IntLiteral1@4) IntLiteral2@7)");
}

TEST(ParserStatementTest, CompoundAssignment) {
    EXPECT_EQ(statementsWithLines("x\n+=\n1;"),
              "CompoundAssignment'+='@2(Identifier'x'@2 IntLiteral1@4)");
    EXPECT_EQ(statements("a[i] -= y;"),
              "CompoundAssignment'-='(ArrayAccess(Identifier'a' Identifier'i') Identifier'y')");
}

TEST(ParserStatementTest, UpdatesOfEachForm) {
    EXPECT_EQ(statements("++x;"), "PreIncrement'++'(Identifier'x')");
    EXPECT_EQ(statements("x++;"), "PostIncrement'++'(Identifier'x')");
    EXPECT_EQ(statements("++(x);"), "PreIncrement'++'(ParenthesizedExpression(Identifier'x'))");
    EXPECT_EQ(statements("(x)++;"), "PostIncrement'++'(ParenthesizedExpression(Identifier'x'))");
    EXPECT_EQ(statements("(++x);"), "PreIncrement'++'(Identifier'x')");
    EXPECT_EQ(statements("(x++);"), "PostIncrement'++'(Identifier'x')");
    EXPECT_EQ(statements("--x;"), "PreDecrement'--'(Identifier'x')");
    EXPECT_EQ(statements("x--;"), "PostDecrement'--'(Identifier'x')");
    EXPECT_EQ(statements("--(x);"), "PreDecrement'--'(ParenthesizedExpression(Identifier'x'))");
    EXPECT_EQ(statements("(x)--;"), "PostDecrement'--'(ParenthesizedExpression(Identifier'x'))");
    EXPECT_EQ(statements("(--x);"), "PreDecrement'--'(Identifier'x')");
    EXPECT_EQ(statements("(x--);"), "PostDecrement'--'(Identifier'x')");
}

TEST(ParserStatementTest, UpdatesOfElements) {
    EXPECT_EQ(statements("a[2]++;"), "PostIncrement'++'(ArrayAccess(Identifier'a' IntLiteral2))");
    EXPECT_EQ(statements("--(a[i]);"),
              "PreDecrement'--'(ParenthesizedExpression(ArrayAccess(Identifier'a' "
              "Identifier'i')))");
    EXPECT_EQ(statements("((x))++;"), "PostIncrement'++'(ParenthesizedExpression(Identifier'x'))");
}

TEST(ParserStatementTest, LinesOfUpdates) {
    EXPECT_EQ(statementsWithLines("++\nx;"), "PreIncrement'++'@2(Identifier'x'@3)");
    EXPECT_EQ(statementsWithLines("x\n++;"), "PostIncrement'++'@2(Identifier'x'@2)");
    EXPECT_EQ(statementsWithLines("++\n(\nx);"),
              "PreIncrement'++'@2(ParenthesizedExpression@3(Identifier'x'@4))");
    EXPECT_EQ(statementsWithLines("(\nx\n)\n++;"),
              "PostIncrement'++'@2(ParenthesizedExpression@2(Identifier'x'@3))");
    EXPECT_EQ(statementsWithLines("(\n--\nx);"), "PreDecrement'--'@2(Identifier'x'@4)");
    EXPECT_EQ(statementsWithLines("(\nx\n--);"), "PostDecrement'--'@2(Identifier'x'@3)");
}

const std::string incrementFault =
    ": Invalid increment/decrement target: expressions like ++(x + 1) or (x + 1)++ are not "
    "allowed.\n";
const std::string decrementFault =
    ": Invalid increment/decrement target: expressions like --(x + 1) or (x + 1)-- are not "
    "allowed.\n";

TEST(ParserStatementTest, UpdatesOfOtherOperandsAreReported) {
    EXPECT_EQ(errorsInBody("(x + 1)++;"), "Syntax error at line 1" + incrementFault);
    EXPECT_EQ(errorsInBody("\n++\n(x + 1);"), "Syntax error at line 2" + incrementFault);
    EXPECT_EQ(errorsInBody("\n(\ny * 2)--;"), "Syntax error at line 2" + decrementFault);
    EXPECT_EQ(errorsInBody("--(y * 2);"), "Syntax error at line 1" + decrementFault);
    EXPECT_EQ(errorsInBody("++(1);"), "Syntax error at line 1" + incrementFault);
    EXPECT_EQ(errorsInBody("(f())--;"), "Syntax error at line 1" + decrementFault);
}

TEST(ParserStatementTest, UpdateOfAnAssignmentIsReported) {
    EXPECT_EQ(errorsInBody("++(a = 1);"), "Syntax error at line 1" + incrementFault);
    EXPECT_EQ(errorsInBody("(a += 1)--;"), "Syntax error at line 1" + decrementFault);
}

TEST(ParserStatementTest, RejectedUpdateLeavesNoStatement) {
    const Parsed parsed = parse("void f() { return; (x + 1)++; }");
    EXPECT_EQ(parsed.status, 0);
    EXPECT_NE(parsed.tree.find("StatementList@1(ReturnStatement@1)"), std::string::npos);
}

TEST(ParserStatementTest, ParenthesisedStatements) {
    EXPECT_EQ(statementsWithLines("(\nx + 1);"),
              "ParenthesizedExpression@2(BinaryOp'+'@3(Identifier'x'@3 IntLiteral1@3))");
    EXPECT_EQ(statementsWithLines("(\nx = 1);"), "Assignment@3(Identifier'x'@3 IntLiteral1@3)");
    EXPECT_EQ(statements("((x));"), "ParenthesizedExpression(Identifier'x')");
}

TEST(ParserStatementTest, StandaloneOperandIsKeptAndReported) {
    const Parsed parsed = parse("void f() {\nx\n; a[0]; }");
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.errors,
              "Syntax error at line 2: Standalone variable or array access.\n"
              "Syntax error at line 3: Standalone variable or array access.\n");
    EXPECT_NE(withoutLines(parsed.tree)
                  .find("StatementList(Identifier'x' ArrayAccess(Identifier'a' IntLiteral0))"),
              std::string::npos);
}

TEST(ParserStatementTest, Call) {
    EXPECT_EQ(statementsWithLines("f\n(\n)\n;"), "CallStatement@2(Identifier'f'@2 ArgumentList@3)");
    EXPECT_EQ(statementsWithLines("f(\n1,\nx);"),
              "CallStatement@2(Identifier'f'@2 ArgumentList@3(IntLiteral1@3 Identifier'x'@4))");
}

TEST(ParserStatementTest, Print) {
    EXPECT_EQ(statementsWithLines("print\n(\n)\n;"), "PrintStatement@2(ArgumentList@3)");
    EXPECT_EQ(statements("print(\"a\", 1, x);"),
              "PrintStatement(ArgumentList(StringLiteral'a' IntLiteral1 Identifier'x'))");
}

TEST(ParserStatementTest, Exit) {
    EXPECT_EQ(statementsWithLines("exit\n(\n)\n;"), "ExitStatement@2(ArgumentList@3)");
    EXPECT_EQ(statements("exit(1);"), "ExitStatement(ArgumentList(IntLiteral1))");
}

TEST(ParserStatementTest, ExitOfSeveralArgumentsIsReportedAndDropped) {
    const Parsed parsed = parse("void f() {\nexit\n(1,\n2); return; }");
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.errors, "Syntax error at line 2: > 1 arguments passed to exit().\n");
    EXPECT_NE(parsed.tree.find("StatementList@1(ReturnStatement@4)"), std::string::npos);
}

TEST(ParserStatementTest, Return) {
    EXPECT_EQ(statementsWithLines("return\n;"), "ReturnStatement@2");
    EXPECT_EQ(statementsWithLines("return\nx;"), "ReturnStatement@2(Identifier'x'@3)");
}

TEST(ParserStatementTest, BreakAndContinue) {
    EXPECT_EQ(statementsWithLines("break\n;\ncontinue\n;"), "BreakStatement@2 ContinueStatement@4");
}

TEST(ParserStatementTest, NestedBlock) {
    EXPECT_EQ(statementsWithLines("{\nreturn;\n{ }\n}"),
              "Block@2(StatementList@2(ReturnStatement@3 Block@4(StatementList@4)))");
}

const std::string emptyBlock = "Block(StatementList)";

TEST(ParserStatementTest, If) {
    EXPECT_EQ(statementsWithLines("if\n(\nc\n)\n{\n}"),
              "IfStatement@2(Identifier'c'@4 Block@6(StatementList@6))");
    EXPECT_EQ(statements("if (c) { } else { }"),
              "IfStatement(Identifier'c' " + emptyBlock + " ElseClause(" + emptyBlock + "))");
    EXPECT_EQ(statements("if (c) { } elseif (d) { }"),
              "IfStatement(Identifier'c' " + emptyBlock +
                  " ElseIfList(ElseIfClause(Identifier'd' " + emptyBlock + ")))");
}

TEST(ParserStatementTest, IfWithAllParts) {
    EXPECT_EQ(statementsWithLines("if (a) {\n}\nelseif (b) {\n}\nelseif (c) {\n}\nelse\n{ }"),
              "IfStatement@2(Identifier'a'@2 Block@2(StatementList@2) "
              "ElseIfList@3(ElseIfClause@4(Identifier'b'@4 Block@4(StatementList@4)) "
              "ElseIfClause@6(Identifier'c'@6 Block@6(StatementList@6))) "
              "ElseClause@8(Block@9(StatementList@9)))");
}

TEST(ParserStatementTest, While) {
    EXPECT_EQ(statementsWithLines("while\n(\nc\n)\n{\n}"),
              "WhileStatement@2(Identifier'c'@4 Block@6(StatementList@6))");
}

TEST(ParserStatementTest, ForWithoutParts) {
    EXPECT_EQ(statementsWithLines("for\n(\n;\n;\n)\n{\n}"),
              "ForStatement@2(ForInit@3 ForCondition@4 ForUpdate@5 Block@7(StatementList@7))");
}

/// The header nodes of a for statement, without lines.
std::string forHeader(const std::string& header) {
    const std::string statement = statements("for (" + header + ") { }");
    const std::string begin = "ForStatement(";
    const std::string end = " " + emptyBlock + ")";
    return statement.starts_with(begin) && statement.ends_with(end)
               ? statement.substr(begin.size(), statement.size() - begin.size() - end.size())
               : statement;
}

TEST(ParserStatementTest, ForInitOfEachForm) {
    const std::string rest = " ForCondition ForUpdate";
    EXPECT_EQ(forHeader("int i = 0; ;"),
              "ForInit(Declaration(Type'int' DeclaratorList(Declarator'i'(Initializer("
              "IntLiteral0)))))" +
                  rest);
    EXPECT_EQ(forHeader("i = 0; ;"), "ForInit(Assignment(Identifier'i' IntLiteral0))" + rest);
    EXPECT_EQ(forHeader("i++; ;"), "ForInit(PostIncrement'++'(Identifier'i'))" + rest);
    EXPECT_EQ(forHeader("--i; ;"), "ForInit(PreDecrement'--'(Identifier'i'))" + rest);
    EXPECT_EQ(forHeader("i; ;"), "ForInit(Identifier'i')" + rest);
}

TEST(ParserStatementTest, ForConditionAndUpdateOfEachForm) {
    EXPECT_EQ(forHeader("; i < 3;"),
              "ForInit ForCondition(BinaryOp'<'(Identifier'i' IntLiteral3)) ForUpdate");
    const std::string rest = "ForInit ForCondition ";
    EXPECT_EQ(forHeader("; ; i -= 1"),
              rest + "ForUpdate(CompoundAssignment'-='(Identifier'i' IntLiteral1))");
    EXPECT_EQ(forHeader("; ; ++i"), rest + "ForUpdate(PreIncrement'++'(Identifier'i'))");
    EXPECT_EQ(forHeader("; ; i--"), rest + "ForUpdate(PostDecrement'--'(Identifier'i'))");
    EXPECT_EQ(forHeader("; ; f()"), rest + "ForUpdate(CallStatement(Identifier'f' ArgumentList))");
}

TEST(ParserStatementTest, LinesOfForParts) {
    EXPECT_EQ(statementsWithLines("for (\ni = 0;\ni < 3;\ni++) { }"),
              "ForStatement@2(ForInit@3(Assignment@3(Identifier'i'@3 IntLiteral0@3)) "
              "ForCondition@4(BinaryOp'<'@4(Identifier'i'@4 IntLiteral3@4)) "
              "ForUpdate@5(PostIncrement'++'@5(Identifier'i'@5)) Block@5(StatementList@5))");
}

}  // namespace

}  // namespace krel
