// Programs, functions and declarations.

#include <gtest/gtest.h>

#include <string>

#include "parse.hpp"

namespace krel {

namespace {

std::string program(const std::string& text) {
    const Parsed parsed = parse(text);
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.errors, "");
    return parsed.tree;
}

TEST(ParserProgramTest, EmptyFile) {
    EXPECT_EQ(program(""), "Program@1(ExternalList0@1)");
}

TEST(ParserProgramTest, FileOfBlanksBeginsOnLineOneToo) {
    EXPECT_EQ(program("\n\n# nothing\n\n"), "Program@1(ExternalList0@1)");
}

TEST(ParserProgramTest, FunctionWithLinesOfItsTokens) {
    EXPECT_EQ(program("\nint\nf\n(\n)\n{\n}\n"),
              "Program@1(ExternalList0@1(FunctionDeclaration'f'@2(Type'int'@2 ParameterList@4 "
              "Block@6(StatementList@6))))");
}

TEST(ParserProgramTest, ParametersWithLinesOfTheirTypes) {
    EXPECT_EQ(program("void f(\nint\na,\ndouble b,string\nc) {\nreturn; }"),
              "Program@1(ExternalList0@1(FunctionDeclaration'f'@1(Type'void'@1 "
              "ParameterList@2(Parameter'a'@2(Type'int'@2) Parameter'b'@4(Type'double'@4) "
              "Parameter'c'@4(Type'string'@4)) Block@5(StatementList@5(ReturnStatement@6)))))");
}

TEST(ParserProgramTest, EveryType) {
    for (const std::string type : {"int", "double", "boolean", "character", "void", "string"}) {
        EXPECT_EQ(withoutLines(program(type + " f() { }")),
                  "Program(ExternalList0(FunctionDeclaration'f'(Type'" + type +
                      "' ParameterList Block(StatementList))))");
    }
}

TEST(ParserProgramTest, FunctionsInOrder) {
    EXPECT_EQ(withoutLines(program("void f() { } int g() { }")),
              "Program(ExternalList0(FunctionDeclaration'f'(Type'void' ParameterList "
              "Block(StatementList)) FunctionDeclaration'g'(Type'int' ParameterList "
              "Block(StatementList))))");
}

TEST(ParserProgramTest, StatementOutsideOfAFunctionIsKeptAndReported) {
    const Parsed parsed = parse("void f() { }\nx\n= 1; void g() { }");
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.errors,
              "Semantic error at line 2: all statements must be inside a function\n");
    EXPECT_EQ(withoutLines(parsed.tree),
              "Program(ExternalList0(FunctionDeclaration'f'(Type'void' ParameterList "
              "Block(StatementList)) Assignment(Identifier'x' IntLiteral1) "
              "FunctionDeclaration'g'(Type'void' ParameterList Block(StatementList))))");
}

TEST(ParserProgramTest, EachStatementOutsideOfAFunctionIsReported) {
    EXPECT_EQ(errorsIn("int x = 1;\nwhile (x) {\nx = 0; }\n{ }\n"),
              "Semantic error at line 1: all statements must be inside a function\n"
              "Semantic error at line 2: all statements must be inside a function\n"
              "Semantic error at line 4: all statements must be inside a function\n");
}

TEST(ParserProgramTest, OnlyStatementsKeepTheProgramOnLineOne) {
    EXPECT_EQ(parse("\n\nreturn;").tree, "Program@1(ExternalList0@1(ReturnStatement@3))");
}

TEST(ParserDeclarationTest, OneDeclaratorWithLinesOfItsTokens) {
    EXPECT_EQ(statementsWithLines("int\nx\n=\n1\n;"),
              "Declaration@2(Type'int'@2 DeclaratorList@3(Declarator'x'@3(Initializer@4("
              "IntLiteral1@5))))");
}

TEST(ParserDeclarationTest, SeveralDeclarators) {
    EXPECT_EQ(statementsWithLines("int a = 1,\nb = c,\nd = 2;"),
              "Declaration@2(Type'int'@2 DeclaratorList@2(Declarator'a'@2(Initializer@2("
              "IntLiteral1@2)) Declarator'b'@3(Initializer@3(Identifier'c'@3)) "
              "Declarator'd'@4(Initializer@4(IntLiteral2@4))))");
}

TEST(ParserDeclarationTest, Array) {
    EXPECT_EQ(statementsWithLines("double\na\n[\n3\n];"),
              "Declaration@2(Type'double'@2 ArrayDeclarator'a'@3(IntLiteral3@5))");
    EXPECT_EQ(statements("int a[n];"), "Declaration(Type'int' ArrayDeclarator'a'(Identifier'n'))");
}

TEST(ParserDeclarationTest, ArrayWithInitialisers) {
    EXPECT_EQ(statementsWithLines("int a[3] = {\n1,\nx + 2, f() };"),
              "Declaration@2(Type'int'@2 ArrayDeclarator'a'@2(IntLiteral3@2 "
              "InitializationList@3(IntLiteral1@3 BinaryOp'+'@4(Identifier'x'@4 IntLiteral2@4) "
              "CallStatement@4(Identifier'f'@4 ArgumentList@4))))");
}

TEST(ParserDeclarationTest, DeclaratorsBehindAnArrayBecomeItsChildren) {
    EXPECT_EQ(statements("int a[3], n = 0, m = 1;"),
              "Declaration(Type'int' ArrayDeclarator'a'(IntLiteral3 "
              "Declarator'n'(Initializer(IntLiteral0)) "
              "Declarator'm'(Initializer(IntLiteral1))))");
    EXPECT_EQ(statements("int a[1] = {2}, n = 0;"),
              "Declaration(Type'int' ArrayDeclarator'a'(IntLiteral1 "
              "InitializationList(IntLiteral2) Declarator'n'(Initializer(IntLiteral0))))");
}

TEST(ParserDeclarationTest, CastsOfEveryOperand) {
    EXPECT_EQ(statementsWithLines("int x =\n(\nint\n)\ny;"),
              "Declaration@2(Type'int'@2 DeclaratorList@2(Declarator'x'@2(Initializer@2("
              "CastExpression@3(Type'int'@4 Identifier'y'@6)))))");
    const auto castOf = [](const std::string& operand) {
        return "Declaration(Type'string' DeclaratorList(Declarator's'(Initializer(CastExpression("
               "Type'string' " +
               operand + ")))))";
    };
    EXPECT_EQ(statements("string s = (string) 7;"), castOf("IntLiteral7"));
    EXPECT_EQ(statements("string s = (string) 2.5;"), castOf("DecimalLiteral2.5d"));
    EXPECT_EQ(statements("string s = (string) 'a';"), castOf("CharacterLiteral%97"));
    EXPECT_EQ(statements("string s = (string) v;"), castOf("Identifier'v'"));
}

}  // namespace

}  // namespace krel
