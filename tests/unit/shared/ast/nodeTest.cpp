#include "shared/ast/node.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "tests/unit/support/childProcess.hpp"

namespace krel {

namespace {

using ValueType = Node::ValueType;

/// All value fields, of which at most one is expected to differ from zero.
struct Values {
    std::string string{};
    int integer = 0;
    double real = 0.0;
    char character = '\0';
    bool boolean = false;
};

void expectValues(const Node& node, ValueType type, const Values& values) {
    EXPECT_EQ(node.getValueType(), type);
    EXPECT_EQ(node.hasValue(), type != ValueType::None);
    EXPECT_EQ(node.getStringValue(), values.string);
    EXPECT_EQ(node.stringValue().text(), values.string);
    EXPECT_EQ(node.getIntValue(), values.integer);
    EXPECT_EQ(node.getDoubleValue(), values.real);
    EXPECT_EQ(node.getCharValue(), values.character);
    EXPECT_EQ(node.getBoolValue(), values.boolean);
}

std::unique_ptr<Node> leaf(const char* name) {
    return std::make_unique<Node>("Identifier", name, 1);
}

TEST(NodeTest, ValueTypesAreNumbered) {
    EXPECT_EQ(static_cast<int>(ValueType::None), 0);
    EXPECT_EQ(static_cast<int>(ValueType::String), 1);
    EXPECT_EQ(static_cast<int>(ValueType::Int), 2);
    EXPECT_EQ(static_cast<int>(ValueType::Double), 3);
    EXPECT_EQ(static_cast<int>(ValueType::Char), 4);
    EXPECT_EQ(static_cast<int>(ValueType::Bool), 5);
}

TEST(NodeTest, WithoutValue) {
    const Node node{"BreakStatement", 7};
    EXPECT_EQ(node.getKind(), "BreakStatement");
    EXPECT_EQ(node.kindName(), NodeKind::BreakStatement);
    EXPECT_EQ(node.getLine(), 7);
    EXPECT_FALSE(node.hasChildren());
    EXPECT_TRUE(node.getChildren().empty());
    EXPECT_FALSE(node.hasSemanticType());
    EXPECT_EQ(node.getSemanticType(), "");
    expectValues(node, ValueType::None, {});
}

TEST(NodeTest, WithString) {
    const std::string value = "counter";
    expectValues(Node{"Identifier", value, 1}, ValueType::String, {.string = "counter"});
    expectValues(Node{"Identifier", "counter", 1}, ValueType::String, {.string = "counter"});
    expectValues(Node{"StringLiteral", std::string{}, 1}, ValueType::String, {});
}

TEST(NodeTest, StringMayHoldAnyBytes) {
    const std::string value{"a\0\n\xff", 4};
    expectValues(Node{"StringLiteral", value, 1}, ValueType::String, {.string = value});
}

TEST(NodeTest, NullTextIsAnEmptyString) {
    const Node node{"Identifier", static_cast<const char*>(nullptr), 1};
    expectValues(node, ValueType::String, {});
    EXPECT_TRUE(node.hasValue());
}

TEST(NodeTest, WithInt) {
    expectValues(Node{"IntLiteral", -5, 1}, ValueType::Int, {.integer = -5});
    constexpr int largest = std::numeric_limits<int>::max();
    constexpr int smallest = std::numeric_limits<int>::min();
    expectValues(Node{"IntLiteral", largest, 1}, ValueType::Int, {.integer = largest});
    expectValues(Node{"IntLiteral", smallest, 1}, ValueType::Int, {.integer = smallest});
}

TEST(NodeTest, LiteralZeroIsAnIntAndNoChild) {
    const Node list{"ExternalList", 0, 1};
    expectValues(list, ValueType::Int, {});
    EXPECT_TRUE(list.hasValue());
    EXPECT_FALSE(list.hasChildren());
}

TEST(NodeTest, WithDouble) {
    expectValues(Node{"DecimalLiteral", 2.5, 1}, ValueType::Double, {.real = 2.5});
}

TEST(NodeTest, WithChar) {
    expectValues(Node{"CharacterLiteral", 'a', 1}, ValueType::Char, {.character = 'a'});
    expectValues(Node{"CharacterLiteral", '\0', 1}, ValueType::Char, {});
    expectValues(Node{"CharacterLiteral", '\xe9', 1}, ValueType::Char, {.character = '\xe9'});
}

TEST(NodeTest, WithBool) {
    expectValues(Node{"BooleanLiteral", true, 1}, ValueType::Bool, {.boolean = true});
    expectValues(Node{"BooleanLiteral", false, 1}, ValueType::Bool, {});
}

TEST(NodeTest, WithOneChild) {
    Node* child = leaf("a").release();
    const Node node{"Initializer", child, 3};
    expectValues(node, ValueType::None, {});
    ASSERT_EQ(node.getChildren().size(), 1U);
    EXPECT_EQ(node.getChildren()[0], child);
    EXPECT_TRUE(node.hasChildren());
    EXPECT_EQ(node.getLine(), 3);
}

TEST(NodeTest, WithNullChild) {
    const Node literal{"Block", nullptr, 5};
    EXPECT_FALSE(literal.hasChildren());
    EXPECT_EQ(literal.getLine(), 5);
    expectValues(literal, ValueType::None, {});
    Node* none = nullptr;
    const Node variable{"Block", none, 5};
    EXPECT_FALSE(variable.hasChildren());
    expectValues(variable, ValueType::None, {});
}

TEST(NodeTest, WithStringAndChild) {
    Node* child = leaf("a").release();
    const Node node{"UnaryOp", std::string{"-"}, child, 2};
    expectValues(node, ValueType::String, {.string = "-"});
    ASSERT_EQ(node.getChildren().size(), 1U);
    EXPECT_EQ(node.getChildren()[0], child);
    EXPECT_EQ(node.getLine(), 2);
    Node* none = nullptr;
    EXPECT_FALSE((Node{"UnaryOp", std::string{"-"}, none, 2}.hasChildren()));
}

TEST(NodeTest, WithTwoChildren) {
    Node* first = leaf("a").release();
    Node* second = leaf("b").release();
    const Node node{"Assignment", first, second, 4};
    expectValues(node, ValueType::None, {});
    ASSERT_EQ(node.getChildren().size(), 2U);
    EXPECT_EQ(node.getChildren()[0], first);
    EXPECT_EQ(node.getChildren()[1], second);
    EXPECT_EQ(node.getLine(), 4);
}

TEST(NodeTest, WithThreeChildren) {
    Node* first = leaf("a").release();
    Node* second = leaf("b").release();
    Node* third = leaf("c").release();
    const Node node{"IfStatement", first, second, third, 9};
    expectValues(node, ValueType::None, {});
    ASSERT_EQ(node.getChildren().size(), 3U);
    EXPECT_EQ(node.getChildren()[0], first);
    EXPECT_EQ(node.getChildren()[1], second);
    EXPECT_EQ(node.getChildren()[2], third);
    EXPECT_EQ(node.getLine(), 9);
}

TEST(NodeTest, ConstructorsDropNullChildren) {
    Node* none = nullptr;
    EXPECT_EQ((Node{"Program", leaf("a").release(), none, 1}.getChildren().size()), 1U);
    EXPECT_EQ((Node{"Program", none, leaf("a").release(), 1}.getChildren().size()), 1U);
    EXPECT_EQ((Node{"Program", none, none, 1}.getChildren().size()), 0U);
    Node* kept = leaf("b").release();
    const Node three{"IfStatement", none, kept, none, 1};
    ASSERT_EQ(three.getChildren().size(), 1U);
    EXPECT_EQ(three.getChildren()[0], kept);
}

TEST(NodeTest, IsNotCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Node>);
    EXPECT_FALSE(std::is_copy_assignable_v<Node>);
}

TEST(NodeTest, AddChildAppendsAndChains) {
    Node node{"StatementList", 1};
    Node* first = leaf("a").release();
    Node* second = leaf("b").release();
    EXPECT_EQ(node.addChild(first)->addChild(second), &node);
    ASSERT_EQ(node.getChildren().size(), 2U);
    EXPECT_EQ(node.getChildren()[0], first);
    EXPECT_EQ(node.getChildren()[1], second);
}

TEST(NodeTest, AddChildDropsNull) {
    Node node{"StatementList", 1};
    EXPECT_EQ(node.addChild(nullptr), &node);
    EXPECT_FALSE(node.hasChildren());
}

TEST(NodeTest, RemoveChildTakesOutOneEntry) {
    const auto first = leaf("a");
    Node node{"CastExpression", first.get(), leaf("b").release(), leaf("c").release(), 1};
    node.removeChild(0);
    ASSERT_EQ(node.getChildren().size(), 2U);
    EXPECT_EQ(node.getChildren()[0]->getStringValue(), "b");
    EXPECT_EQ(node.getChildren()[1]->getStringValue(), "c");
    EXPECT_EQ(first->getStringValue(), "a");
}

TEST(NodeTest, RemoveChildTakesOutTheLastEntry) {
    const auto last = leaf("c");
    Node node{"CastExpression", leaf("a").release(), leaf("b").release(), last.get(), 1};
    node.removeChild(2);
    ASSERT_EQ(node.getChildren().size(), 2U);
    EXPECT_EQ(node.getChildren()[1]->getStringValue(), "b");
}

TEST(NodeTest, RemoveChildOutOfRangeChangesNothing) {
    Node node{"Assignment", leaf("a").release(), leaf("b").release(), 1};
    node.removeChild(7);
    node.removeChild(2);
    EXPECT_EQ(node.getChildren().size(), 2U);
    Node empty{"StatementList", 1};
    empty.removeChild(0);
    EXPECT_FALSE(empty.hasChildren());
}

TEST(NodeTest, ReplaceChildReturnsTheOldOne) {
    Node* old = leaf("a").release();
    Node* other = leaf("c").release();
    Node node{"Assignment", old, leaf("b").release(), 1};
    const std::unique_ptr<Node> returned{node.replaceChild(0, other)};
    EXPECT_EQ(returned.get(), old);
    EXPECT_EQ(returned->getStringValue(), "a");
    ASSERT_EQ(node.getChildren().size(), 2U);
    EXPECT_EQ(node.getChildren()[0], other);
    EXPECT_EQ(node.getChildren()[1]->getStringValue(), "b");
}

TEST(NodeTest, ReplaceChildKeepsOldOnNull) {
    Node* old = leaf("a").release();
    Node node{"Initializer", old, 1};
    EXPECT_EQ(node.replaceChild(0, nullptr), nullptr);
    ASSERT_EQ(node.getChildren().size(), 1U);
    EXPECT_EQ(node.getChildren()[0], old);
}

TEST(NodeTest, ReplaceChildOutOfRangeChangesNothing) {
    const auto spare = leaf("spare");
    Node node{"Initializer", leaf("a").release(), 1};
    EXPECT_EQ(node.replaceChild(1, spare.get()), nullptr);
    ASSERT_EQ(node.getChildren().size(), 1U);
    EXPECT_EQ(node.getChildren()[0]->getStringValue(), "a");
}

TEST(NodeTest, SemanticTypeIsSetAndReplaced) {
    Node node{"Identifier", "x", 1};
    node.setSemanticType("int");
    EXPECT_TRUE(node.hasSemanticType());
    EXPECT_EQ(node.getSemanticType(), "int");
    EXPECT_EQ(node.semanticTypeName(), TypeName::Int);
    node.setSemanticType("double");
    EXPECT_EQ(node.getSemanticType(), "double");
    node.setSemanticType("");
    EXPECT_FALSE(node.hasSemanticType());
}

TEST(NodeTest, SetKindKeepsEverythingElse) {
    Node node{"CastExpression", leaf("Type").release(), leaf("x").release(), 6};
    node.setKind("inttodouble");
    EXPECT_EQ(node.getKind(), "inttodouble");
    EXPECT_EQ(node.getChildren().size(), 2U);
    EXPECT_EQ(node.getLine(), 6);
    Node literal{"IntLiteral", 3, 1};
    literal.setKind("Whatever");
    EXPECT_EQ(literal.getKind(), "Whatever");
    expectValues(literal, ValueType::Int, {.integer = 3});
}

TEST(NodeTest, AnyLineIsKept) {
    EXPECT_EQ((Node{"Block", 0}.getLine()), 0);
    EXPECT_EQ((Node{"Block", -1}.getLine()), -1);
    constexpr int last = std::numeric_limits<int>::max();
    EXPECT_EQ((Node{"Block", last}.getLine()), last);
}

TEST(NodeTest, AnyNameCanBeAKindOrTypeHoweverManyThereAre) {
    for (int count = 0; count < 0x20000; ++count) {
        static_cast<void>(Name{"name" + std::to_string(count)});
    }
    Node flower{"Flower", 1};
    Node tree{"Tree", 1};
    EXPECT_EQ(flower.getKind(), "Flower");
    EXPECT_EQ(flower.kindName(), Name{"Flower"});
    EXPECT_EQ(tree.getKind(), "Tree");
    tree.setKind("Flower");
    EXPECT_EQ(tree.getKind(), "Flower");
    EXPECT_FALSE(flower.hasSemanticType());
    flower.setSemanticType("petal");
    EXPECT_TRUE(flower.hasSemanticType());
    EXPECT_EQ(flower.getSemanticType(), "petal");
    EXPECT_EQ(flower.semanticTypeName(), Name{"petal"});
    flower.setSemanticType("int");
    EXPECT_EQ(flower.getSemanticType(), "int");
    EXPECT_EQ(flower.getKind(), "Flower");
    flower.setSemanticType("");
    EXPECT_FALSE(flower.hasSemanticType());
}

TEST(NodeTest, TooManyKindsAreAnError) {
    const auto makeKinds = [] {
        for (int count = 0; count < 0x2000; ++count) {
            static_cast<void>(Name{"name" + std::to_string(count)});
        }
        for (int count = 0; count < 0x2000; ++count) {
            Node{"kind" + std::to_string(count), 1};
        }
    };
    // In a process of its own: no kind is left to other tests.
    const ChildResult result = runInChild([&] {
        EXPECT_THROW(makeKinds(), std::length_error);
        return testing::Test::HasFailure() ? 1 : 0;
    });
    EXPECT_TRUE(result.hasExitedWith(0)) << result.out;
}

}  // namespace

}  // namespace krel
