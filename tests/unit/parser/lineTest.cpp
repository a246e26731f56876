// The line of every node that a rule of the grammar builds. Each token stands on a line of its own,
// so a node that took its line from another symbol of its rule, or from the end of the right one,
// shows.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "parse.hpp"

namespace krel {

namespace {

/// Tokens separated by single blanks. A line in a tree or a message is the number of a token.
struct Lines {
    std::string tokens;
    std::string tree;
};

std::string onePerLine(std::string tokens) {
    std::replace(tokens.begin(), tokens.end(), ' ', '\n');
    return tokens;
}

/// The tree of a whole file, or its errors.
std::string fileTree(const std::string& tokens) {
    const Parsed parsed = parse(onePerLine(tokens));
    return parsed.errors.empty() ? parsed.tree : parsed.errors;
}

/// The tree of a statement in a function; the statement's first token is on line 1.
std::string statementTree(const std::string& tokens) {
    const std::string tree = fileTree("void\tf()\t{\t" + tokens + " }");
    const std::string begin =
        "Program@1(ExternalList0@1(FunctionDeclaration'f'@1(Type'void'@1 ParameterList@1 "
        "Block@1(StatementList@1(";
    const std::string end = ")))))";
    return tree.starts_with(begin)
               ? tree.substr(begin.size(), tree.size() - begin.size() - end.size())
               : tree;
}

void expectStatements(const std::vector<Lines>& table) {
    for (const Lines& row : table) {
        EXPECT_EQ(statementTree(row.tokens), row.tree) << row.tokens;
    }
}

/// The tree of the value of an assignment; its first token is on line 3.
void expectValues(const std::vector<Lines>& table) {
    for (const Lines& row : table) {
        EXPECT_EQ(statementTree("x = " + row.tokens + " ;"),
                  "Assignment@1(Identifier'x'@1 " + row.tree + ")")
            << row.tokens;
    }
}

TEST(ParserLineTest, ProgramAndListBeginOnLineOne) {
    EXPECT_EQ(fileTree(""), "Program@1(ExternalList0@1)");
    EXPECT_EQ(fileTree("  "), "Program@1(ExternalList0@1)");
    EXPECT_EQ(
        fileTree(" void f ( ) { } int g ( ) { }"),
        "Program@1(ExternalList0@1("
        "FunctionDeclaration'f'@2(Type'void'@2 ParameterList@4 Block@6(StatementList@6)) "
        "FunctionDeclaration'g'@8(Type'int'@8 ParameterList@10 Block@12(StatementList@12))))");
}

TEST(ParserLineTest, FunctionAndParameters) {
    EXPECT_EQ(fileTree(" int f ( int a ) { x = 1 ; }"),
              "Program@1(ExternalList0@1(FunctionDeclaration'f'@2(Type'int'@2 "
              "ParameterList@5(Parameter'a'@5(Type'int'@5)) "
              "Block@8(StatementList@8(Assignment@9(Identifier'x'@9 IntLiteral1@11))))))");
    EXPECT_EQ(fileTree(" int f ( int a , double b , string c ) { }"),
              "Program@1(ExternalList0@1(FunctionDeclaration'f'@2(Type'int'@2 "
              "ParameterList@5(Parameter'a'@5(Type'int'@5) Parameter'b'@8(Type'double'@8) "
              "Parameter'c'@11(Type'string'@11)) Block@14(StatementList@14))))");
}

TEST(ParserLineTest, EveryType) {
    for (const std::string type : {"int", "double", "boolean", "character", "void", "string"}) {
        const std::string node = "Type'" + type + "'";
        EXPECT_EQ(
            fileTree(" " + type + " f ( " + type + " a ) { " + type + " x = 1 ; }"),
            "Program@1(ExternalList0@1(FunctionDeclaration'f'@2(" + node +
                "@2 ParameterList@5(Parameter'a'@5(" + node +
                "@5)) Block@8(StatementList@8(Declaration@9(" + node +
                "@9 DeclaratorList@10(Declarator'x'@10(Initializer@11(IntLiteral1@12)))))))))");
    }
}

TEST(ParserLineTest, Declarations) {
    expectStatements({
        {"int x = a + b ;",
         "Declaration@1(Type'int'@1 DeclaratorList@2(Declarator'x'@2("
         "Initializer@3(BinaryOp'+'@4(Identifier'a'@4 Identifier'b'@6)))))"},
        {"int x = 1 , y = 2 ;",
         "Declaration@1(Type'int'@1 DeclaratorList@2("
         "Declarator'x'@2(Initializer@3(IntLiteral1@4)) "
         "Declarator'y'@6(Initializer@7(IntLiteral2@8))))"},
        {"int a [ 3 ] ;", "Declaration@1(Type'int'@1 ArrayDeclarator'a'@2(IntLiteral3@4))"},
        {"int a [ n ] = { b + c , 5 } ;",
         "Declaration@1(Type'int'@1 ArrayDeclarator'a'@2(Identifier'n'@4 InitializationList@8("
         "BinaryOp'+'@8(Identifier'b'@8 Identifier'c'@10) IntLiteral5@12)))"},
        {"int a [ 3 ] , y = 2 ;",
         "Declaration@1(Type'int'@1 ArrayDeclarator'a'@2(IntLiteral3@4 "
         "Declarator'y'@7(Initializer@8(IntLiteral2@9))))"},
    });
}

TEST(ParserLineTest, Casts) {
    const std::vector<Lines> operands = {{"n", "Identifier'n'@7"},
                                         {"3", "IntLiteral3@7"},
                                         {"2.5", "DecimalLiteral2.5d@7"},
                                         {"'c'", "CharacterLiteral%99@7"}};
    for (const Lines& operand : operands) {
        EXPECT_EQ(statementTree("int x = ( double ) " + operand.tokens + " ;"),
                  "Declaration@1(Type'int'@1 DeclaratorList@2(Declarator'x'@2(Initializer@3("
                  "CastExpression@4(Type'double'@5 " +
                      operand.tree + ")))))");
    }
}

TEST(ParserLineTest, Assignments) {
    expectStatements({
        {"x = y + z ;",
         "Assignment@1(Identifier'x'@1 BinaryOp'+'@3(Identifier'y'@3 Identifier'z'@5))"},
        {"a [ i ] = 1 ;",
         "Assignment@1(ArrayAccess@1(Identifier'a'@1 Identifier'i'@3) IntLiteral1@6)"},
        {"a [ 2 ] += 1 ;",
         "CompoundAssignment'+='@1(ArrayAccess@1(Identifier'a'@1 IntLiteral2@3) IntLiteral1@6)"},
        {"a [ 2 ] -= 1 ;",
         "CompoundAssignment'-='@1(ArrayAccess@1(Identifier'a'@1 IntLiteral2@3) IntLiteral1@6)"},
        {"( x = 1 ) ;", "Assignment@2(Identifier'x'@2 IntLiteral1@4)"},
    });
}

TEST(ParserLineTest, PlainStatements) {
    expectStatements({
        {"return ;", "ReturnStatement@1"},
        {"return a + b ;", "ReturnStatement@1(BinaryOp'+'@2(Identifier'a'@2 Identifier'b'@4))"},
        {"( a + b ) ;",
         "ParenthesizedExpression@1(BinaryOp'+'@2(Identifier'a'@2 Identifier'b'@4))"},
        {"break ; continue ;", "BreakStatement@1 ContinueStatement@3"},
        {"{ { } }", "Block@1(StatementList@1(Block@2(StatementList@2)))"},
    });
}

TEST(ParserLineTest, ArgumentLists) {
    expectStatements({
        {"print ( ) ;", "PrintStatement@1(ArgumentList@2)"},
        {"print ( a + b , c ) ;",
         "PrintStatement@1(ArgumentList@3(BinaryOp'+'@3(Identifier'a'@3 Identifier'b'@5) "
         "Identifier'c'@7))"},
        {"exit ( ) ;", "ExitStatement@1(ArgumentList@2)"},
        {"exit ( a + b ) ;",
         "ExitStatement@1(ArgumentList@3(BinaryOp'+'@3(Identifier'a'@3 Identifier'b'@5)))"},
        {"f ( ) ;", "CallStatement@1(Identifier'f'@1 ArgumentList@2)"},
        {"f ( a + b , c ) ;",
         "CallStatement@1(Identifier'f'@1 ArgumentList@3("
         "BinaryOp'+'@3(Identifier'a'@3 Identifier'b'@5) Identifier'c'@7))"},
    });
}

TEST(ParserLineTest, Conditionals) {
    expectStatements({
        {"if ( a + b ) { }",
         "IfStatement@1(BinaryOp'+'@3(Identifier'a'@3 Identifier'b'@5) Block@7(StatementList@7))"},
        {"if ( a ) { } else { }",
         "IfStatement@1(Identifier'a'@3 Block@5(StatementList@5) "
         "ElseClause@7(Block@8(StatementList@8)))"},
        {"if ( a ) { } elseif ( b ) { } elseif ( c ) { } else { }",
         "IfStatement@1(Identifier'a'@3 Block@5(StatementList@5) ElseIfList@6("
         "ElseIfClause@7(Identifier'b'@9 Block@11(StatementList@11)) "
         "ElseIfClause@13(Identifier'c'@15 Block@17(StatementList@17))) "
         "ElseClause@19(Block@20(StatementList@20)))"},
    });
}

TEST(ParserLineTest, While) {
    expectStatements({
        {"while ( a + b ) { break ; }",
         "WhileStatement@1(BinaryOp'+'@3(Identifier'a'@3 Identifier'b'@5) "
         "Block@7(StatementList@7(BreakStatement@8)))"},
    });
}

TEST(ParserLineTest, EveryFormOfForInit) {
    expectStatements({
        {"for ( int i = 0 ; ; ) { }",
         "ForStatement@1(ForInit@3(Declaration@3(Type'int'@3 "
         "DeclaratorList@4(Declarator'i'@4(Initializer@5(IntLiteral0@6))))) "
         "ForCondition@7 ForUpdate@8 Block@10(StatementList@10))"},
        {"for ( i = 0 ; ; ) { }",
         "ForStatement@1(ForInit@3(Assignment@3(Identifier'i'@3 IntLiteral0@5)) "
         "ForCondition@6 ForUpdate@7 Block@9(StatementList@9))"},
        {"for ( i -= 2 ; ; ) { }",
         "ForStatement@1(ForInit@3(CompoundAssignment'-='@3(Identifier'i'@3 IntLiteral2@5)) "
         "ForCondition@6 ForUpdate@7 Block@9(StatementList@9))"},
        {"for ( ++ i ; ; ) { }",
         "ForStatement@1(ForInit@3(PreIncrement'++'@3(Identifier'i'@4)) "
         "ForCondition@5 ForUpdate@6 Block@8(StatementList@8))"},
        {"for ( i -- ; ; ) { }",
         "ForStatement@1(ForInit@3(PostDecrement'--'@3(Identifier'i'@3)) "
         "ForCondition@5 ForUpdate@6 Block@8(StatementList@8))"},
        {"for ( a + b ; ; ) { }",
         "ForStatement@1(ForInit@3(BinaryOp'+'@3(Identifier'a'@3 Identifier'b'@5)) "
         "ForCondition@6 ForUpdate@7 Block@9(StatementList@9))"},
        {"for ( f ( ) ; ; ) { }",
         "ForStatement@1(ForInit@3(CallStatement@3(Identifier'f'@3 ArgumentList@4)) "
         "ForCondition@6 ForUpdate@7 Block@9(StatementList@9))"},
        {"for ( ; ; ) { }",
         "ForStatement@1(ForInit@2 ForCondition@3 ForUpdate@4 Block@6(StatementList@6))"},
    });
}

TEST(ParserLineTest, EveryFormOfForCondition) {
    expectStatements({
        {"for ( ; a < b ; ) { }",
         "ForStatement@1(ForInit@2 "
         "ForCondition@4(BinaryOp'<'@4(Identifier'a'@4 Identifier'b'@6)) "
         "ForUpdate@7 Block@9(StatementList@9))"},
        {"for ( i = 0 ; ; i = 1 ) { }",
         "ForStatement@1(ForInit@3(Assignment@3(Identifier'i'@3 IntLiteral0@5)) ForCondition@6 "
         "ForUpdate@8(Assignment@8(Identifier'i'@8 IntLiteral1@10)) Block@12(StatementList@12))"},
    });
}

TEST(ParserLineTest, EveryFormOfForUpdate) {
    expectStatements({
        {"for ( ; ; i = 0 ) { }",
         "ForStatement@1(ForInit@2 ForCondition@3 "
         "ForUpdate@5(Assignment@5(Identifier'i'@5 IntLiteral0@7)) Block@9(StatementList@9))"},
        {"for ( ; ; ++ i ) { }",
         "ForStatement@1(ForInit@2 ForCondition@3 "
         "ForUpdate@5(PreIncrement'++'@5(Identifier'i'@6)) Block@8(StatementList@8))"},
        {"for ( ; ; i -- ) { }",
         "ForStatement@1(ForInit@2 ForCondition@3 "
         "ForUpdate@5(PostDecrement'--'@5(Identifier'i'@5)) Block@8(StatementList@8))"},
        {"for ( ; ; a + b ) { }",
         "ForStatement@1(ForInit@2 ForCondition@3 "
         "ForUpdate@5(BinaryOp'+'@5(Identifier'a'@5 Identifier'b'@7)) Block@9(StatementList@9))"},
    });
}

TEST(ParserLineTest, IncrementsAndDecrements) {
    const std::vector<Lines> updates = {{"++", "Increment'++'"}, {"--", "Decrement'--'"}};
    for (const auto& [op, node] : updates) {
        const std::string pre = "Pre" + node;
        const std::string post = "Post" + node;
        const std::string element = "ArrayAccess@1(Identifier'a'@1 Identifier'i'@3)";
        expectStatements({
            {op + " x ;", pre + "@1(Identifier'x'@2)"},
            {"a [ i ] " + op + " ;", post + "@1(" + element + ")"},
            {op + " ( x ) ;", pre + "@1(ParenthesizedExpression@2(Identifier'x'@3))"},
            {"( x ) " + op + " ;", post + "@1(ParenthesizedExpression@1(Identifier'x'@2))"},
            {"( " + op + " x ) ;", pre + "@1(Identifier'x'@3)"},
            {"( x " + op + " ) ;", post + "@1(Identifier'x'@2)"},
        });
    }
}

TEST(ParserLineTest, EveryBinaryOperatorIsWhereItsLeftOperandBegins) {
    for (const std::string op :
         {"||", "&&", "==", "!=", "<", ">", "<=", ">=", "+", "-", "*", "/"}) {
        const std::string node = "BinaryOp'" + op + "'@3(";
        expectValues({
            {"a [ 0 ] " + op + " ( - b )", node + "ArrayAccess@3(Identifier'a'@3 IntLiteral0@5) "
                                                  "UnaryOp'-'@9(Identifier'b'@10))"},
            {"( a ) " + op + " b", node + "Identifier'a'@4 Identifier'b'@7)"},
            {"a " + op + " b " + op + " c",
             node + node + "Identifier'a'@3 Identifier'b'@5) Identifier'c'@7)"},
            {"a " + op + " ( b " + op + " c )",
             node + "Identifier'a'@3 BinaryOp'" + op + "'@6(Identifier'b'@6 Identifier'c'@8))"},
        });
    }
}

TEST(ParserLineTest, UnaryOperators) {
    expectValues({
        {"! - + a", "UnaryOp'!'@3(UnaryOp'-'@4(UnaryOp'+'@5(Identifier'a'@6)))"},
        {"+ ( a + b )", "UnaryOp'+'@3(BinaryOp'+'@5(Identifier'a'@5 Identifier'b'@7))"},
    });
}

TEST(ParserLineTest, Primaries) {
    expectValues({
        {"y", "Identifier'y'@3"},
        {"a [ i ]", "ArrayAccess@3(Identifier'a'@3 Identifier'i'@5)"},
        {"a [ 1 ]", "ArrayAccess@3(Identifier'a'@3 IntLiteral1@5)"},
        {"7", "IntLiteral7@3"},
        {"2.5", "DecimalLiteral2.5d@3"},
        {"\"s\"", "StringLiteral's'@3"},
        {"'c'", "CharacterLiteral%99@3"},
        {"true", "BooleanLiteraltrue@3"},
        {"false", "BooleanLiteralfalse@3"},
        {"( ( y ) )", "Identifier'y'@5"},
        {"f ( a ) + b",
         "BinaryOp'+'@3(CallStatement@3(Identifier'f'@3 ArgumentList@5(Identifier'a'@5)) "
         "Identifier'b'@8)"},
    });
}

TEST(ParserLineTest, ErrorsOfActions) {
    const std::string target = "Invalid increment/decrement target: expressions like ";
    const std::vector<Lines> table = {
        {"a [ i ] ;", "Syntax error at line 1: Standalone variable or array access.\n"},
        {"exit ( 1 , 2 ) ;", "Syntax error at line 1: > 1 arguments passed to exit().\n"},
        {"x = 1 ; exit ( 1 , 2 ) ;", "Syntax error at line 5: > 1 arguments passed to exit().\n"},
        {"++ ( x + 1 ) ;",
         "Syntax error at line 1: " + target + "++(x + 1) or (x + 1)++ are not allowed.\n"},
        {"( x + 1 ) -- ;",
         "Syntax error at line 1: " + target + "--(x + 1) or (x + 1)-- are not allowed.\n"},
    };
    for (const Lines& row : table) {
        EXPECT_EQ(statementTree(row.tokens), row.tree) << row.tokens;
    }
    EXPECT_EQ(fileTree(" void f ( ) { } if ( a ) { } else { }"),
              "Semantic error at line 8: all statements must be inside a function\n");
}

}  // namespace

}  // namespace krel
