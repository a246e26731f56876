// Trees of shapes that the parser and the analyser never give. What a source text can show is
// tested with whole programs, in tests/cases/ir and tests/cases/control-flow.

#include "KrelIR/KrelIR.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/unit/support/internalErrors.hpp"
#include "tests/unit/trees.hpp"

namespace krel {

namespace {

class KrelIRTest : public testing::Test {
protected:
    /// The dump of a tree, which is kept until the test ends.
    std::string lower(Node* tree) {
        root.reset(tree);
        return generator.analyze(tree).toString();
    }

    /// The instructions that the statements of an int function are lowered to, a line each.
    std::string linesOf(std::initializer_list<Node*> statements) {
        const std::string dump = lower(function("int", "f", statements));
        std::string lines;
        for (const IRBasicBlock& block : generator.getProgram().getFunctions()[0].getBlocks()) {
            for (const IRInstruction& instruction : block.getInstructions()) {
                lines += std::string{instruction.getText()} + "\n";
            }
        }
        return lines;
    }

    KrelIR generator;
    std::unique_ptr<Node> root;
};

Node* assignment(Node* target, Node* value) {
    return node("Assignment", {target, value});
}

Node* sum(Node* left, Node* right) {
    return named("BinaryOp", "+", {left, right});
}

Node* element(Node* array, Node* index) {
    return node("ArrayAccess", {array, index});
}

Node* parentheses(Node* expression) {
    return node("ParenthesizedExpression", {expression});
}

}  // namespace

TEST_F(KrelIRTest, NullRootGivesAnEmptyProgram) {
    EXPECT_EQ(lower(nullptr), "");
}

TEST_F(KrelIRTest, FunctionsAreFoundBelowAnyNode) {
    EXPECT_EQ(lower(node("Block", {node("Declaration", {function("void", "f", {})}),
                                   function("int", "g", {})})),
              "f:\n"
              "B1:\n"
              "    return\n"
              "\n"
              "g:\n"
              "B1:\n"
              "\n");
}

TEST_F(KrelIRTest, StatementsOutsideFunctionsAreSkipped) {
    EXPECT_EQ(lower(node("Program", {assignment(name("x"), number(1))})), "");
}

TEST_F(KrelIRTest, EachAnalysisReplacesTheLast) {
    EXPECT_EQ(lower(function("void", "f", {})),
              "f:\n"
              "B1:\n"
              "    return\n"
              "\n");
    EXPECT_EQ(lower(function("void", "g", {})),
              "g:\n"
              "B1:\n"
              "    return\n"
              "\n");
    EXPECT_EQ(&generator.analyze(nullptr), &generator.getProgram());
    EXPECT_TRUE(generator.getProgram().getFunctions().empty());
}

TEST_F(KrelIRTest, SuccessorsAreKnownAfterwards) {
    lower(function("void", "f", {node("WhileStatement", {name("x"), block({})})}));
    const auto& blocks = generator.getProgram().getFunctions()[0].getBlocks();
    ASSERT_EQ(blocks.size(), 4U);
    const std::vector<std::vector<int>> expected = {{2}, {4, 3}, {2}, {}};
    for (std::size_t index = 0; index < blocks.size(); ++index) {
        const IRSuccessors& successors = blocks[index].getSuccessors();
        EXPECT_EQ(std::vector<int>(successors.begin(), successors.end()), expected[index]);
    }
}

TEST_F(KrelIRTest, MalformedFunctions) {
    EXPECT_EQ(
        internalErrorOf([&] {
            lower(named("FunctionDeclaration", "f", {named("Type", "int"), node("ParameterList")}));
        }),
        "FunctionDeclaration node has fewer than 3 children.");
    EXPECT_EQ(internalErrorOf([&] {
                  lower(named("FunctionDeclaration", "f",
                              {named("Type", "int"),
                               node("ParameterList", {named("Parameter", "p")}), block({})}));
              }),
              "FunctionDeclaration node has malformed parameter.");
}

TEST_F(KrelIRTest, MalformedStatements) {
    EXPECT_EQ(internalErrorOf([&] { linesOf({node("Declaration", {named("Type", "int")})}); }),
              "Declaration node has fewer than 2 children.");
    EXPECT_EQ(internalErrorOf([&] {
                  linesOf({node("ForStatement",
                                {node("ForInit"), node("ForCondition"), node("ForUpdate")})});
              }),
              "ForStatement node has fewer than 4 children.");
    EXPECT_EQ(internalErrorOf([&] { linesOf({node("Program")}); }),
              "Unsupported statement node: Program");
}

TEST_F(KrelIRTest, MalformedExpressions) {
    EXPECT_EQ(internalErrorOf([&] {
                  linesOf({assignment(name("x"),
                                      node("CastExpression", {named("Type", "int"), number(1)}))});
              }),
              "CastExpression should have been resolved during semantic "
              "analysis.");
    EXPECT_EQ(internalErrorOf([&] { linesOf({assignment(name("x"), node("Block"))}); }),
              "Unsupported expression node: Block");
    EXPECT_EQ(internalErrorOf([&] { linesOf({assignment(number(1), number(2))}); }),
              "Unsupported lvalue node: IntLiteral");
    EXPECT_EQ(internalErrorOf([&] { linesOf({node("CallStatement")}); }),
              "CallStatement node has no callee.");
    EXPECT_EQ(internalErrorOf([&] { linesOf({node("CallStatement", {number(1)})}); }),
              "Unsupported lvalue node: IntLiteral");
}

TEST_F(KrelIRTest, NodesWithoutAnOperand) {
    EXPECT_EQ(internalErrorOf(
                  [&] { linesOf({assignment(name("x"), named("BinaryOp", "+", {number(1)}))}); }),
              "BinaryOp node has fewer than 2 children.");
    EXPECT_EQ(internalErrorOf([&] { linesOf({assignment(name("x"), named("BinaryOp", "+"))}); }),
              "BinaryOp node has fewer than 1 children.");
    EXPECT_EQ(internalErrorOf([&] { linesOf({assignment(name("x"), named("UnaryOp", "-"))}); }),
              "UnaryOp node has fewer than 1 children.");
    EXPECT_EQ(
        internalErrorOf([&] { linesOf({assignment(name("x"), element(name("a"), nullptr))}); }),
        "ArrayAccess node has fewer than 2 children.");
    EXPECT_EQ(internalErrorOf([&] { linesOf({node("Assignment", {name("x")})}); }),
              "Assignment node has fewer than 2 children.");
    EXPECT_EQ(internalErrorOf([&] { linesOf({node("WhileStatement", {number(1)})}); }),
              "WhileStatement node has fewer than 2 children.");
    EXPECT_EQ(internalErrorOf([&] {
                  linesOf({node("IfStatement", {named("BinaryOp", "<", {number(1)}), block({})})});
              }),
              "BinaryOp node has fewer than 2 children.");
}

TEST_F(KrelIRTest, OnlyTheStatementListsOfABlockAreLowered) {
    EXPECT_EQ(lower(named("FunctionDeclaration", "f",
                          {named("Type", "void"), node("ParameterList"),
                           node("Block", {assignment(name("x"), number(1)),
                                          node("StatementList", {assignment(name("y"), number(2))}),
                                          node("StatementList", {node("ReturnStatement")})})})),
              "f:\n"
              "B1:\n"
              "    y = 2\n"
              "    return\n"
              "    return\n"
              "\n");
}

TEST_F(KrelIRTest, FinalReturnIsLookedForInTheFirstListOnly) {
    EXPECT_EQ(lower(named("FunctionDeclaration", "f",
                          {named("Type", "void"), node("ParameterList"), node("Block")})),
              "f:\n"
              "B1:\n"
              "    return\n"
              "\n");
    EXPECT_EQ(lower(named("FunctionDeclaration", "f",
                          {named("Type", "void"), node("ParameterList"),
                           node("Block", {node("StatementList", {node("ReturnStatement")}),
                                          node("StatementList")})})),
              "f:\n"
              "B1:\n"
              "    return\n"
              "\n");
}

TEST_F(KrelIRTest, ExpressionStatementsLowerTheStatementTheyHold) {
    EXPECT_EQ(linesOf({node("ExpressionStatement"),
                       node("ExpressionStatement", {assignment(name("x"), number(1))})}),
              "x = 1\n");
}

TEST_F(KrelIRTest, DeclaratorsWithoutAnInitializerGiveNothing) {
    EXPECT_EQ(linesOf({node(
                  "Declaration",
                  {named("Type", "int"),
                   node("DeclaratorList",
                        {named("Declarator", "a"), named("Declarator", "b", {node("Initializer")}),
                         named("Declarator", "c", {number(1)}),
                         named("Declarator", "d", {node("Initializer", {number(2)})})})})}),
              "d = 2\n");
}

TEST_F(KrelIRTest, EmptyPrintPrintsTheEmptyText) {
    EXPECT_EQ(linesOf({node("PrintStatement", {node("ArgumentList")}), node("PrintStatement")}),
              "arg \"\"\n"
              "call print, 1\n"
              "arg \"\"\n"
              "call print, 1\n");
}

TEST_F(KrelIRTest, CallWithoutArgumentListPassesNothing) {
    EXPECT_EQ(linesOf({node("CallStatement", {name("g")})}), "_t0 = call g, 0\n");
}

TEST_F(KrelIRTest, OnlyCallsTypedVoidHaveNoResult) {
    Node* typed = node("CallStatement", {name("g"), node("ArgumentList", {number(1)})});
    typed->setSemanticType("void");
    Node* other = node("CallStatement", {name("g"), node("ArgumentList", {number(1)})});
    other->setSemanticType("double");
    EXPECT_EQ(linesOf({typed, other}),
              "arg 1\n"
              "call g, 1\n"
              "arg 1\n"
              "_t0 = call g, 1\n");
}

TEST_F(KrelIRTest, CopyTakesItsTemporaryBeforeTheIndex) {
    EXPECT_EQ(linesOf({assignment(name("x"), element(name("a"), sum(name("i"), number(1))))}),
              "_t1 = i + 1\n"
              "_t0 = a[_t1]\n"
              "x = _t0\n");
}

TEST_F(KrelIRTest, IndexIsLoweredBeforeTheArray) {
    EXPECT_EQ(linesOf({assignment(element(sum(name("a"), number(1)), sum(name("i"), number(2))),
                                  number(3))}),
              "_t0 = i + 2\n"
              "_t1 = a + 1\n"
              "_t1[_t0] = 3\n");
}

TEST_F(KrelIRTest, TargetIsLoweredBeforeTheValue) {
    EXPECT_EQ(linesOf({assignment(element(name("a"), sum(name("i"), number(1))),
                                  sum(name("x"), number(2)))}),
              "_t0 = i + 1\n"
              "_t1 = x + 2\n"
              "a[_t0] = _t1\n");
    EXPECT_EQ(linesOf({named(
                  "CompoundAssignment", "-=",
                  {element(name("a"), sum(name("i"), number(1))), sum(name("x"), number(2))})}),
              "_t0 = i + 1\n"
              "_t1 = x + 2\n"
              "_t2 = a[_t0] - _t1\n"
              "a[_t0] = _t2\n");
}

TEST_F(KrelIRTest, ParenthesesAreTransparentInExpressions) {
    EXPECT_EQ(linesOf({assignment(name("x"), parentheses(parentheses(name("y"))))}), "x = y\n");
    EXPECT_EQ(linesOf({node("ReturnStatement", {parentheses(name("y"))})}), "return y\n");
}

TEST_F(KrelIRTest, ParenthesesAreTransparentInConditions) {
    const auto loop = [](Node* condition) {
        return node("WhileStatement", {condition, block({})});
    };
    EXPECT_EQ(linesOf({loop(parentheses(parentheses(named("UnaryOp", "!", {name("x")}))))}),
              "if x goto B4\n"
              "goto B2\n");
    EXPECT_EQ(linesOf({loop(parentheses(named("BinaryOp", "<", {name("x"), number(1)})))}),
              "_t0 = x >= 1\n"
              "if _t0 goto B4\n"
              "goto B2\n");
}

TEST_F(KrelIRTest, AssignmentsAsValuesGiveTheirPlace) {
    EXPECT_EQ(linesOf({assignment(name("x"), assignment(name("y"), number(1)))}),
              "y = 1\n"
              "x = y\n");
    EXPECT_EQ(linesOf({assignment(name("x"), named("CompoundAssignment", "+=",
                                                   {element(name("a"), number(0)), number(1)}))}),
              "_t0 = a[0] + 1\n"
              "a[0] = _t0\n"
              "x = a[0]\n");
}

TEST_F(KrelIRTest, UpdatesAsValuesGiveTheOldOrTheNewValue) {
    const auto valueOf = [this](const char* kind) {
        return linesOf({assignment(name("x"), named(kind, "", {name("y")}))});
    };
    EXPECT_EQ(valueOf("PostIncrement"),
              "_t0 = y\n"
              "_t1 = y + 1\n"
              "y = _t1\n"
              "x = _t0\n");
    EXPECT_EQ(valueOf("PreIncrement"),
              "_t0 = y\n"
              "_t1 = y + 1\n"
              "y = _t1\n"
              "x = _t1\n");
    EXPECT_EQ(valueOf("PostDecrement"),
              "_t0 = y\n"
              "_t1 = y - 1\n"
              "y = _t1\n"
              "x = _t0\n");
    EXPECT_EQ(valueOf("PreDecrement"),
              "_t0 = y\n"
              "_t1 = y - 1\n"
              "y = _t1\n"
              "x = _t1\n");
}

TEST_F(KrelIRTest, ForInitIsLoweredBeforeTheBlocksOfItsLoopAreNumbered) {
    Node* init = node("ForInit", {node("WhileStatement", {name("x"), block({})})});
    EXPECT_EQ(linesOf({node("ForStatement", {init, node("ForCondition"), node("ForUpdate"),
                                             block({node("BreakStatement")})})}),
              "_t0 = !x\n"
              "if _t0 goto B4\n"
              "goto B2\n"
              "goto B8\n"
              "goto B7\n"
              "goto B5\n");
}

TEST_F(KrelIRTest, ElseClauseWithoutABlockIsNoElse) {
    EXPECT_EQ(lower(function("int", "f",
                             {node("IfStatement", {name("x"), block({}), node("ElseClause")})})),
              "f:\n"
              "B1:\n"
              "    _t0 = !x\n"
              "    if _t0 goto B2\n"
              "\n"
              "B3:\n"
              "    goto B2\n"
              "\n"
              "B2:\n"
              "\n");
}

TEST_F(KrelIRTest, EmptyElseIfListIsNoArm) {
    EXPECT_EQ(lower(function("int", "f",
                             {node("IfStatement", {name("x"), block({}), node("ElseIfList"),
                                                   node("ElseClause", {block({})})})})),
              "f:\n"
              "B1:\n"
              "    _t0 = !x\n"
              "    if _t0 goto B4\n"
              "\n"
              "B3:\n"
              "    goto B2\n"
              "\n"
              "B4:\n"
              "\n"
              "B2:\n"
              "\n");
}

TEST_F(KrelIRTest, LiteralsAreSpelledByTheirValue) {
    EXPECT_EQ(linesOf({assignment(name("x"), number(-5)),
                       assignment(name("x"), new Node("DecimalLiteral", -0.25, 1)),
                       assignment(name("x"), new Node("DecimalLiteral", 1e100, 1)),
                       node("ReturnStatement", {number(-5)})}),
              "x = -5\n"
              "x = -0.25\n"
              "x = 1e+100\n"
              "return -5\n");
}

TEST_F(KrelIRTest, LiteralsEscapeTheirOwnQuotationMarkOnly) {
    EXPECT_EQ(linesOf({assignment(name("x"), new Node("StringLiteral", "'\"\\\n\r\t\x01\xff", 1)),
                       assignment(name("x"), new Node("CharacterLiteral", '\'', 1)),
                       assignment(name("x"), new Node("CharacterLiteral", '"', 1))}),
              "x = \"'\\\"\\\\\\n\\r\\t\x01\xff\"\n"
              "x = '\\''\n"
              "x = '\"'\n");
}

TEST_F(KrelIRTest, LongLiteralsAreEscapedWhereverItIsNeeded) {
    const std::string run(40, 'a');
    const std::string tail(16, 'b');
    EXPECT_EQ(linesOf({assignment(name("x"), new Node("StringLiteral", run + "\n\"" + tail, 1)),
                       assignment(name("x"), new Node("StringLiteral", "\t" + run + "\\", 1))}),
              "x = \"" + run + "\\n\\\"" + tail + "\"\n" +  //
                  "x = \"\\t" + run + "\\\\\"\n");
}

}  // namespace krel
