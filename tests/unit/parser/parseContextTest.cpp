#include "parser/parseContext.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "shared/ast/node.hpp"
#include "shared/error/diagnostics.hpp"

namespace krel {

namespace {

/// A parse with its own memory and diagnostics.
struct Parse {
    explicit Parse(const std::string& source) : text(source) {
        const Diagnostics::Use use{diagnostics};
        status = parse(text, context);
    }

    std::string text;
    std::vector<std::string> messages;
    Diagnostics diagnostics{[this](const Diagnostic& diagnostic) {
        messages.push_back(text.substr(diagnostic.place.range.begin,
                                       diagnostic.place.range.end - diagnostic.place.range.begin) +
                           ": " + std::string{diagnostic.message});
    }};
    ParseContext context;
    int status = -1;
};

/// Every node of a tree as its kind and the bytes that it stands for.
void describe(const Node& node, const std::string& text, std::vector<std::string>& lines) {
    const SourceRange range = node.getRange();
    lines.push_back(node.getKind() + " " + text.substr(range.begin, range.end - range.begin));
    for (const Node* child : node.getChildren()) {
        describe(*child, text, lines);
    }
}

std::vector<std::string> rangesOf(const std::string& text) {
    const Parse parsed{text};
    std::vector<std::string> lines;
    describe(*parsed.context.root, text, lines);
    return lines;
}

using Lines = std::vector<std::string>;

TEST(ParseContextTest, NodesStandForTheirBytes) {
    EXPECT_EQ(
        rangesOf(" double f(int a, int b) { return a+b ; } \n"),
        (Lines{"Program  double f(int a, int b) { return a+b ; }",
               "ExternalList double f(int a, int b) { return a+b ; }",
               "FunctionDeclaration double f(int a, int b) { return a+b ; }", "Type double",
               "ParameterList int a, int b", "Parameter int a", "Type int", "Parameter int b",
               "Type int", "Block { return a+b ; }", "StatementList return a+b ;",
               "ReturnStatement return a+b", "BinaryOp a+b", "Identifier a", "Identifier b"}));
}

TEST(ParseContextTest, ListsBeginWithTheirFirstEntryAndEmptyOnesAreNowhere) {
    const std::string whole = "void f() { if (1) { } \n elseif (2) { } else { g(1, 2); } }";
    EXPECT_EQ(rangesOf(whole),
              (Lines{"Program " + whole,
                     "ExternalList " + whole,
                     "FunctionDeclaration " + whole,
                     "Type void",
                     "ParameterList ",
                     "Block { if (1) { } \n elseif (2) { } else { g(1, 2); } }",
                     "StatementList if (1) { } \n elseif (2) { } else { g(1, 2); }",
                     "IfStatement if (1) { } \n elseif (2) { } else { g(1, 2); }",
                     "IntLiteral 1",
                     "Block { }",
                     "StatementList ",
                     "ElseIfList elseif (2) { }",
                     "ElseIfClause elseif (2) { }",
                     "IntLiteral 2",
                     "Block { }",
                     "StatementList ",
                     "ElseClause else { g(1, 2); }",
                     "Block { g(1, 2); }",
                     "StatementList g(1, 2);",
                     "CallStatement g(1, 2)",
                     "Identifier g",
                     "ArgumentList 1, 2",
                     "IntLiteral 1",
                     "IntLiteral 2"}));
}

TEST(ParseContextTest, EveryKindOfStatementStandsForItsBytes) {
    const Lines lines = rangesOf(
        "void f() { int x = (int) 'c', y = -1; int a[2] = {1, 2}; a[x] += 3; (y)++; --a[1]; "
        "for (int i = 0; i < 2; i++) { break; } while (!x) { continue; } print(\"s\", 2.5); "
        "exit(); }");
    for (const char* line : {"Declaration int x = (int) 'c', y = -1",
                             "DeclaratorList x = (int) 'c', y = -1",
                             "Declarator x = (int) 'c'",
                             "Initializer = (int) 'c'",
                             "CastExpression (int) 'c'",
                             "CharacterLiteral 'c'",
                             "UnaryOp -1",
                             "ArrayDeclarator a[2] = {1, 2}",
                             "InitializationList 1, 2",
                             "CompoundAssignment a[x] += 3",
                             "ArrayAccess a[x]",
                             "PostIncrement (y)++",
                             "ParenthesizedExpression (y)",
                             "PreDecrement --a[1]",
                             "ForStatement for (int i = 0; i < 2; i++) { break; }",
                             "ForInit int i = 0",
                             "ForCondition i < 2",
                             "ForUpdate i++",
                             "BreakStatement break;",
                             "WhileStatement while (!x) { continue; }",
                             "UnaryOp !x",
                             "ContinueStatement continue;",
                             "PrintStatement print(\"s\", 2.5)",
                             "StringLiteral \"s\"",
                             "DecimalLiteral 2.5",
                             "ExitStatement exit()"}) {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << line;
    }
}

TEST(ParseContextTest, SymbolsStandWhereTheyAreDeclared) {
    const Parse parsed{"int f(int p) { int v = 1; }"};
    const ParseContext::Use use{const_cast<ParseContext&>(parsed.context)};
    const auto placeOf = [&](const char* name) {
        const SourceRange range = parsed.context.symbolTable.lookup("f", name, 0)->getPlace().range;
        return parsed.text.substr(range.begin, range.end - range.begin);
    };
    EXPECT_EQ(placeOf("f"), parsed.text);
    EXPECT_EQ(placeOf("p"), "int p");
    EXPECT_EQ(placeOf("v"), "v = 1");
}

TEST(ParseContextTest, FaultsStandWhereTheyAreFound) {
    EXPECT_EQ(Parse{"void f() { @ x; f(1; }"}.messages,
              (Lines{"@: illegal character '@'", "x: Standalone variable or array access.",
                     ";: syntax error, unexpected T_SEMICOLON, expecting T_RPAREN"}));
    EXPECT_EQ(Parse{"int x = 1; void g() { } int g() { return 1; }"}.messages,
              (Lines{
                  "int x = 1;: all statements must be inside a function",
                  "int g() { return 1; }: Function 'g' already exists.",
              }));
    EXPECT_EQ(Parse{"void f() { \n"}.messages, (Lines{": syntax error, unexpected end of file"}));
}

TEST(ParseContextTest, ManyLiveAtATime) {
    std::vector<std::unique_ptr<Parse>> parses;
    for (int number = 0; number < 20; ++number) {
        const std::string name = "name" + std::to_string(number);
        parses.push_back(std::make_unique<Parse>(
            "void " + name + "() { double d = " + std::to_string(number) + ".5; }"));
    }
    parses.erase(parses.begin() + 3);
    parses.push_back(std::make_unique<Parse>("void later() { }"));
    EXPECT_EQ(parses.front()->context.root->getChildren()[0]->getChildren()[0]->getStringValue(),
              "name0");
    EXPECT_EQ(parses.back()->context.root->getChildren()[0]->getChildren()[0]->getStringValue(),
              "later");
    const Node* declaration = parses[10]
                                  ->context.root->getChildren()[0]
                                  ->getChildren()[0]
                                  ->getChildren()[2]
                                  ->getChildren()[0]
                                  ->getChildren()[0];
    EXPECT_EQ(declaration->getKind(), "Declaration");
    const Node* literal =
        declaration->getChildren()[1]->getChildren()[0]->getChildren()[0]->getChildren()[0];
    EXPECT_EQ(literal->getDoubleValue(), 11.5);
}

// Also those that no tree holds: parts of a failed parse, refused parameters and variables.
TEST(ParseContextTest, OwnsEverythingThatAParseMakes) {
    for (const char* text :
         {"", "void f() { }", "void f(int a, int a) { int a = 1; }", "void f() {",
          "int x = 1, y = 2;", "void f() { exit(1, 2); (1 + 2)++; }",
          "void f() { print(\"a\", \"b\" \"c\"); }"}) {
        const Parse parsed{text};
        EXPECT_EQ(parsed.context.nodeCount() > 0, *text != '\0' || parsed.context.root != nullptr);
    }
}

TEST(ParseContextTest, DetachedNodesAreTheContexts) {
    Parse parsed{"void f() { int x = 1; }"};
    const std::size_t count = parsed.context.nodeCount();
    parsed.context.root->removeChild(0);
    EXPECT_EQ(parsed.context.nodeCount(), count);
    const ParseContext::Use use{parsed.context};
    delete parsed.context.root;
    EXPECT_EQ(parsed.context.nodeCount(), count - 1);
    parsed.context.root = nullptr;
}

}  // namespace

}  // namespace krel
