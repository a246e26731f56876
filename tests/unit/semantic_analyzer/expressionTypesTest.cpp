// Expressions of shapes that the parser never builds, and the tables of types. What a source text
// can show is tested with whole programs, in tests/cases/typing.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "semantic_analyzer/semanticAnalyzer.hpp"
#include "tests/unit/support/internalErrors.hpp"
#include "tests/unit/symbols.hpp"

namespace krel {

namespace {

class ExpressionTypesTest : public testing::Test {
protected:
    /// The type of an expression, which is kept until the test ends.
    Name infer(Node* expression) {
        root.reset(expression);
        return analyzer.inferExpressionType(expression);
    }

    /// The type as text. `messages` holds what was written about the expression.
    std::string typeOf(Node* expression) {
        testing::internal::CaptureStderr();
        const Name type = infer(expression);
        messages = testing::internal::GetCapturedStderr();
        return type.text();
    }

    SymbolTable table;
    SemanticAnalyzer analyzer{table};
    std::unique_ptr<Node> root;
    std::string messages;
};

const char* const types[] = {"int", "double", "boolean", "character", "string", "void"};

}  // namespace

TEST_F(ExpressionTypesTest, NothingHasNoType) {
    EXPECT_EQ(typeOf(nullptr), "");
    EXPECT_EQ(messages, "");
}

TEST_F(ExpressionTypesTest, OtherKindsHaveNoTypeAndAreNotWalked) {
    for (const char* kind : {"Block", "Assignment", "PreIncrement", "inttostring", "chartoint"}) {
        Node* child = number(1);
        EXPECT_EQ(typeOf(node(kind, {child})), "") << kind;
        EXPECT_EQ(messages, "");
        EXPECT_FALSE(child->hasSemanticType());
    }
}

TEST_F(ExpressionTypesTest, ParenthesesHaveTheTypeOfWhatTheyHold) {
    EXPECT_EQ(typeOf(node("ParenthesizedExpression", {number(1)})), "int");
    EXPECT_EQ(root->getSemanticType(), "int");
    EXPECT_EQ(typeOf(node("ParenthesizedExpression", {name("nothing")})), "");
    EXPECT_FALSE(root->hasSemanticType());
}

TEST_F(ExpressionTypesTest, EmptyParentheses) {
    EXPECT_EQ(typeOf(node("ParenthesizedExpression", {}, 4)), "");
    EXPECT_EQ(messages, "Semantic error at line 4: Invalid empty parenthesized expression.\n");
}

TEST_F(ExpressionTypesTest, OperationsWithAnotherNumberOfOperands) {
    for (Node* operation :
         {named("UnaryOp", "-", {}, 4), named("UnaryOp", "-", {number(1), number(2)}, 4)}) {
        EXPECT_EQ(typeOf(operation), "");
        EXPECT_EQ(messages, "Semantic error at line 4: Invalid unary expression.\n");
    }
    for (Node* operation : {named("BinaryOp", "+", {}, 4), named("BinaryOp", "+", {number(1)}, 4),
                            named("BinaryOp", "+", {number(1), number(2), number(3)}, 4)}) {
        EXPECT_EQ(typeOf(operation), "");
        EXPECT_EQ(messages, "Semantic error at line 4: Invalid binary expression.\n");
    }
}

TEST_F(ExpressionTypesTest, MalformedOperandsSilenceTheOperation) {
    EXPECT_EQ(typeOf(named("BinaryOp", "+",
                           {named("UnaryOp", "-", {}, 2), named("BinaryOp", "*", {}, 3)})),
              "");
    EXPECT_EQ(messages,
              "Semantic error at line 2: Invalid unary expression.\n"
              "Semantic error at line 3: Invalid binary expression.\n");
}

TEST_F(ExpressionTypesTest, OperatorsAreNotExamined) {
    EXPECT_EQ(typeOf(named("BinaryOp", "no operator", {number(1), number(2)})), "int");
    EXPECT_EQ(typeOf(named("UnaryOp", "", {number(1)})), "int");
}

TEST_F(ExpressionTypesTest, CastsWithAnotherNumberOfChildren) {
    for (Node* cast :
         {node("CastExpression", {}, 4), node("CastExpression", {named("Type", "double")}, 4),
          node("CastExpression", {named("Type", "double"), number(1), number(2)}, 4)}) {
        EXPECT_EQ(typeOf(cast), "");
        EXPECT_EQ(messages, "Semantic error at line 4: Invalid cast expression.\n");
        EXPECT_EQ(cast->getKind(), "CastExpression");
    }
}

TEST_F(ExpressionTypesTest, RefusedCastStaysAsItIs) {
    EXPECT_EQ(typeOf(node("CastExpression", {named("Type", "boolean"), number(1)}, 4)), "");
    EXPECT_EQ(messages,
              "Semantic error at line 4: Cannot cast from type 'int' to type 'boolean'.\n");
    EXPECT_EQ(root->getKind(), "CastExpression");
    EXPECT_EQ(root->getChildren().size(), 2U);
    EXPECT_FALSE(root->hasSemanticType());
}

TEST_F(ExpressionTypesTest, ResolvedCastKeepsOnlyItsOperand) {
    Node* operand = number(65);
    const std::unique_ptr<Node> type{named("Type", "character")};
    EXPECT_EQ(typeOf(node("CastExpression", {type.get(), operand})), "character");
    EXPECT_EQ(root->getKind(), "inttochar");
    EXPECT_EQ(root->getSemanticType(), "character");
    ASSERT_EQ(root->getChildren().size(), 1U);
    EXPECT_EQ(root->getChildren()[0], operand);
}

TEST_F(ExpressionTypesTest, CastWithoutATypeOnEitherSide) {
    const std::string message = "Cast expression has invalid target or source type.";
    EXPECT_EQ(internalErrorOf([&] {
                  infer(node("CastExpression", {named("Type", ""), number(1)}));
              }),
              message);
    EXPECT_EQ(internalErrorOf([&] {
                  infer(node("CastExpression", {named("Type", "int"), node("Block")}));
              }),
              message);
    EXPECT_EQ(internalErrorOf([&] {
                  infer(node("CastExpression", {named("Type", "int"), name("x")}));
              }),
              message);
}

TEST_F(ExpressionTypesTest, NamesThatAreMissing) {
    EXPECT_EQ(internalErrorOf([&] { infer(name("")); }), "Identifier node has no name.");
    const std::string array = "Array access has no array identifier.";
    EXPECT_EQ(internalErrorOf([&] { infer(node("ArrayAccess")); }), array);
    EXPECT_EQ(internalErrorOf([&] { infer(node("ArrayAccess", {number(1), number(2)})); }), array);
    const std::string call = "Function call has no function name.";
    EXPECT_EQ(internalErrorOf([&] { infer(node("CallStatement")); }), call);
    EXPECT_EQ(internalErrorOf([&] { infer(node("CallStatement", {number(1)})); }), call);
}

TEST_F(ExpressionTypesTest, OnlyEqualTypesAreAssignable) {
    for (const char* target : types) {
        for (const char* value : types) {
            EXPECT_EQ(SemanticAnalyzer::isAssignable(target, value), std::string{target} == value);
        }
    }
}

TEST_F(ExpressionTypesTest, SevenPairsAreCastable) {
    const std::string castable =
        "int>double int>character int>string double>string boolean>string character>int "
        "character>string ";
    std::string found;
    for (const char* source : types) {
        for (const char* target : types) {
            if (SemanticAnalyzer::isCastable(target, source)) {
                found += std::string{source} + ">" + target + " ";
            }
        }
    }
    EXPECT_EQ(found, castable);
}

TEST_F(ExpressionTypesTest, NumericTypesAndLiteralKinds) {
    std::string numeric;
    for (const char* type : types) {
        numeric += SemanticAnalyzer::isNumericType(type) ? std::string{type} + " " : "";
    }
    EXPECT_EQ(numeric, "int double ");
    for (const char* kind :
         {"IntLiteral", "DecimalLiteral", "CharacterLiteral", "StringLiteral", "BooleanLiteral"}) {
        EXPECT_TRUE(SemanticAnalyzer::isLiteralKind(kind)) << kind;
    }
    for (const char* kind : {"", "Identifier", "BinaryOp", "Literal", "intliteral", "Type"}) {
        EXPECT_FALSE(SemanticAnalyzer::isLiteralKind(kind)) << kind;
    }
}

}  // namespace krel
