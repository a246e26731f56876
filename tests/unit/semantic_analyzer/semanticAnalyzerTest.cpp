// Statements and declarations of shapes that the parser never builds. What a source text can show
// is tested with whole programs, in tests/cases/semantic.

#include "semantic_analyzer/semanticAnalyzer.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "shared/error/error.hpp"
#include "tests/unit/support/internalErrors.hpp"
#include "tests/unit/symbols.hpp"

namespace krel {

namespace {

class SemanticAnalyzerTest : public testing::Test {
protected:
    SemanticAnalyzerTest() {
        declareFunction(table, "void", "f");
        declareVariable(table, "f", "int", "x");
    }

    /// Analyses a tree, which is kept until the test ends.
    void analyze(Node* tree) {
        root.reset(tree);
        SemanticAnalyzer{table}.analyze(tree);
    }

    /// Analyses a statement of the void function f.
    void analyzeInF(Node* statement) { analyze(function("void", "f", {statement})); }

    /// What the analyser writes about a tree.
    std::string messages(Node* tree) {
        testing::internal::CaptureStderr();
        analyze(tree);
        return testing::internal::GetCapturedStderr();
    }

    std::string messagesInF(Node* statement) {
        return messages(function("void", "f", {statement}));
    }

    SymbolTable table;
    std::unique_ptr<Node> root;
};

std::string error(const std::string& message, int line = 1) {
    return "Semantic error at line " + std::to_string(line) + ": " + message + "\n";
}

}  // namespace

TEST_F(SemanticAnalyzerTest, NullRootIsIgnored) {
    EXPECT_EQ(messages(nullptr), "");
    EXPECT_FALSE(Error::hasErrors());
}

TEST_F(SemanticAnalyzerTest, FunctionWithoutType) {
    EXPECT_EQ(internalErrorOf([&] { analyze(named("FunctionDeclaration", "f")); }),
              "FunctionDeclaration node has no type child.");
    EXPECT_EQ(internalErrorOf([&] { analyze(named("FunctionDeclaration", "f", {node("Block")})); }),
              "FunctionDeclaration node has no type child.");
}

TEST_F(SemanticAnalyzerTest, ScopeAndReturnTypeAreRestoredAfterAFunction) {
    EXPECT_EQ(messages(node("Program", {function("void", "f", {}),
                                        node("Assignment", {name("x"), number(1)}, 2),
                                        node("ReturnStatement", {}, 3)})),
              error("Undeclared identifier: 'x'.", 2) +
                  error("Non-void function must return a value in function ''.", 3));
}

TEST_F(SemanticAnalyzerTest, ScopeAndReturnTypeStayAfterAMainThatIsNotVoid) {
    declareFunction(table, "double", "main");
    declareVariable(table, "main", "int", "y");
    EXPECT_EQ(messages(node("Program", {function("double", "main", {}),
                                        node("Assignment", {name("y"), number(1)}, 2),
                                        node("ReturnStatement", {number(1)}, 3)})),
              error("The 'main' function must have a return type of 'void'.") +
                  error("Return type mismatch. Expected 'double', but got 'int'.", 3));
}

TEST_F(SemanticAnalyzerTest, MalformedDeclarations) {
    const std::string malformed = error("Malformed declaration.", 4);
    EXPECT_EQ(messagesInF(node("Declaration", {}, 4)), malformed);
    EXPECT_EQ(messagesInF(node("Declaration", {named("Type", "int")}, 4)), malformed);
    EXPECT_EQ(messagesInF(node("Declaration", {node("DeclaratorList"), node("DeclaratorList")}, 4)),
              malformed);
    EXPECT_EQ(messagesInF(node("Declaration", {named("Type", "int"), node("Declarator")}, 4)),
              malformed);
}

TEST_F(SemanticAnalyzerTest, DeclaratorsOfNoneAreFine) {
    EXPECT_EQ(messagesInF(node("Declaration", {named("Type", "int"), node("DeclaratorList")})), "");
}

TEST_F(SemanticAnalyzerTest, MalformedDeclarators) {
    const auto declaration = [](Node* declarator) {
        return node("Declaration", {named("Type", "int"), node("DeclaratorList", {declarator})});
    };
    EXPECT_EQ(internalErrorOf([&] { analyzeInF(declaration(named("Declarator", "x"))); }),
              "Declarator node has no children.");
    const std::string malformed = "Initializer node is malformed.";
    EXPECT_EQ(internalErrorOf([&] {
                  analyzeInF(declaration(named("Declarator", "x", {node("Initializer")})));
              }),
              malformed);
    EXPECT_EQ(
        internalErrorOf([&] { analyzeInF(declaration(named("Declarator", "x", {number(1)}))); }),
        malformed);
    EXPECT_EQ(internalErrorOf([&] {
                  analyzeInF(declaration(
                      named("Declarator", "x", {node("Initializer", {number(1)}), number(1)})));
              }),
              malformed);
}

TEST_F(SemanticAnalyzerTest, MalformedDeclaratorIsShown) {
    try {
        analyzeInF(node("Declaration", {named("Type", "int"),
                                        node("DeclaratorList", {named("Declarator", "xyz")})}));
        FAIL() << "nothing was thrown";
    } catch (const InternalError& error) {
        EXPECT_TRUE(
            error.details().starts_with("kind: Declarator\n"
                                        "type: string\n"
                                        "semantic type: \n"
                                        "string value: xyz\n"))
            << error.details();
    }
}

TEST_F(SemanticAnalyzerTest, InitializerIsTheLastChildOfADeclarator) {
    EXPECT_EQ(
        messagesInF(node(
            "Declaration",
            {named("Type", "int"),
             node("DeclaratorList",
                  {named("Declarator", "x", {number(1), node("Initializer", {number(1)})})})})),
        "");
}

TEST_F(SemanticAnalyzerTest, ArrayDeclaratorWithoutSize) {
    EXPECT_EQ(
        internalErrorOf([&] {
            analyzeInF(node("Declaration", {named("Type", "int"), named("ArrayDeclarator", "a")}));
        }),
        "ArrayDeclarator node has no children.");
}

TEST_F(SemanticAnalyzerTest, ArraySizeThatIsNoIntIsCalledAnIdentifier) {
    EXPECT_EQ(messagesInF(node("Declaration", {named("Type", "int"),
                                               named("ArrayDeclarator", "a",
                                                     {new Node("DecimalLiteral", 2.5, 7)})})),
              error("Array size identifier must be of type 'int'.", 7));
}

TEST_F(SemanticAnalyzerTest, MalformedAssignments) {
    EXPECT_EQ(messagesInF(node("Assignment", {name("x")}, 5)), error("Malformed assignment.", 5));
    EXPECT_EQ(messagesInF(node("Assignment", {}, 5)), error("Malformed assignment.", 5));
}

TEST_F(SemanticAnalyzerTest, AssignmentToNeitherVariableNorElementHasNoName) {
    const std::string undeclared = error("Undeclared identifier: ''.", 5);
    EXPECT_EQ(messagesInF(node("Assignment", {number(1), number(1)}, 5)), undeclared);
    EXPECT_EQ(messagesInF(node("Assignment", {name(""), number(1)}, 5)), undeclared);
    EXPECT_EQ(messagesInF(node("Assignment", {node("ArrayAccess"), number(1)}, 5)), undeclared);
    EXPECT_EQ(messagesInF(node("Assignment", {node("ArrayAccess", {number(1)}), number(1)}, 5)),
              undeclared);
}

TEST_F(SemanticAnalyzerTest, AssignmentToAnElementWithoutIndexIsChecked) {
    EXPECT_EQ(messagesInF(
                  node("Assignment",
                       {node("ArrayAccess", {name("x")}), new Node("BooleanLiteral", true, 1)}, 5)),
              error("Cannot assign value of type 'boolean' to type 'int'.", 5));
}

TEST_F(SemanticAnalyzerTest, MalformedPrints) {
    const std::string malformed = error("Malformed print statement.", 6);
    EXPECT_EQ(messagesInF(node("PrintStatement", {}, 6)), malformed);
    EXPECT_EQ(messagesInF(node("PrintStatement", {number(1)}, 6)), malformed);
    EXPECT_EQ(messagesInF(node("PrintStatement", {node("ArgumentList"), node("ArgumentList")}, 6)),
              malformed);
}

TEST_F(SemanticAnalyzerTest, PrintedNumberIsWrappedAtItsLine) {
    Node* argument = number(7, 3);
    Node* list = node("ArgumentList", {argument});
    EXPECT_EQ(messagesInF(node("PrintStatement", {list}, 2)), "");
    const Node* conversion = list->getChildren()[0];
    EXPECT_EQ(conversion->getKind(), "inttostring");
    EXPECT_EQ(conversion->getSemanticType(), "string");
    EXPECT_EQ(conversion->getLine(), 3);
    ASSERT_EQ(conversion->getChildren().size(), 1U);
    EXPECT_EQ(conversion->getChildren()[0], argument);
}

TEST_F(SemanticAnalyzerTest, EveryOtherKindIsWalkedThrough) {
    for (const char* kind : {"Block", "StatementList", "IfStatement", "WhileStatement",
                             "ForStatement", "ExpressionStatement", "CompoundAssignment",
                             "PreIncrement", "ExitStatement", "BinaryOp", "no such kind"}) {
        EXPECT_EQ(messagesInF(node(kind, {number(1), node("Assignment", {name("y"), number(1)})})),
                  error("Undeclared identifier: 'y'."))
            << kind;
    }
}

}  // namespace krel
