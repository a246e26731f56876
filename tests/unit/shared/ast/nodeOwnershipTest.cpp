// Who frees which node. What was freed can be told by where the next nodes are made, or under
// AddressSanitizer by what may not be touched any more.

#include <gtest/gtest.h>
#include <malloc.h>

#include <memory>
#include <set>
#include <vector>

#include "shared/ast/node.hpp"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

namespace krel {

namespace {

using Nodes = std::set<const Node*>;

std::unique_ptr<Node> leaf() {
    return std::make_unique<Node>("IntLiteral", 1, 1);
}

Node* newLeaf() {
    return leaf().release();
}

/// The nodes of a tree.
void collect(const Node& node, Nodes& nodes) {
    nodes.insert(&node);
    for (const Node* child : node.getChildren()) {
        collect(*child, nodes);
    }
}

#ifdef __SANITIZE_ADDRESS__

/// The sanitizer itself ends the test when a node is freed twice.
void expectFreedOnce(const Nodes& nodes) {
    for (const Node* node : nodes) {
        EXPECT_TRUE(__asan_address_is_poisoned(node));
    }
}

#else

/// The places that were freed are used first: exactly these, and none of them twice.
void expectFreedOnce(const Nodes& nodes) {
    std::vector<std::unique_ptr<Node> > again;
    Nodes places;
    for (std::size_t count = 0; count < nodes.size(); ++count) {
        again.push_back(leaf());
        places.insert(again.back().get());
    }
    EXPECT_EQ(places, nodes);
}

#endif

TEST(NodeOwnershipTest, DeletingTheRootFreesAllDescendantsOnce) {
    auto root = std::make_unique<Node>("StatementList", 1);
    for (int index = 0; index < 10; ++index) {
        root->addChild(new Node("Assignment", newLeaf(), newLeaf(), index));
    }
    Nodes nodes;
    collect(*root, nodes);
    ASSERT_EQ(nodes.size(), 31U);
    root.reset();
    expectFreedOnce(nodes);
}

TEST(NodeOwnershipTest, RemovedChildBelongsToTheCaller) {
    Node* child = newLeaf();
    auto root = std::make_unique<Node>("Assignment", child, newLeaf(), 1);
    root->removeChild(0);
    const std::unique_ptr<Node> removed{child};
    Nodes nodes;
    collect(*root, nodes);
    ASSERT_EQ(nodes.size(), 2U);
    root.reset();
    EXPECT_EQ(removed->getIntValue(), 1);
    expectFreedOnce(nodes);
}

TEST(NodeOwnershipTest, ReplacedChildBelongsToTheCallerAndItsSuccessorToTheNode) {
    auto root = std::make_unique<Node>("Initializer", newLeaf(), 1);
    Node* successor = newLeaf();
    const std::unique_ptr<Node> replaced{root->replaceChild(0, successor)};
    const Nodes nodes = {root.get(), successor};
    root.reset();
    EXPECT_EQ(replaced->getIntValue(), 1);
    expectFreedOnce(nodes);
}

TEST(NodeOwnershipTest, RefusedReplacementStaysWithTheCaller) {
    const auto spare = leaf();
    auto root = std::make_unique<Node>("Initializer", newLeaf(), 1);
    EXPECT_EQ(root->replaceChild(1, spare.get()), nullptr);
    EXPECT_EQ(root->replaceChild(0, nullptr), nullptr);
    Nodes nodes;
    collect(*root, nodes);
    ASSERT_EQ(nodes.size(), 2U);
    root.reset();
    EXPECT_EQ(spare->getIntValue(), 1);
    expectFreedOnce(nodes);
}

constexpr int deep = 300000;

TEST(NodeOwnershipTest, DeepLeftChainIsFreedWithoutDeepCalls) {
    Nodes nodes;
    auto sum = leaf();
    nodes.insert(sum.get());
    for (int level = 0; level < deep; ++level) {
        auto right = leaf();
        nodes.insert(right.get());
        sum = std::make_unique<Node>("BinaryOp", sum.release(), right.release(), 1);
        nodes.insert(sum.get());
    }
    sum.reset();
    expectFreedOnce(nodes);
}

TEST(NodeOwnershipTest, DeepSingleChainIsFreedWithoutDeepCalls) {
    Nodes nodes;
    auto negation = leaf();
    for (int level = 0; level < deep; ++level) {
        nodes.insert(negation.get());
        negation = std::make_unique<Node>("UnaryOp", Operator::Minus, negation.release(), 1);
    }
    nodes.insert(negation.get());
    negation.reset();
    expectFreedOnce(nodes);
}

void makeAndDeleteWideTree() {
    constexpr int width = 1000;
    const auto root = std::make_unique<Node>("StatementList", 1);
    for (int index = 0; index < width; ++index) {
        auto inner = std::make_unique<Node>("ArgumentList", 1);
        for (int argument = 0; argument < 10; ++argument) {
            inner->addChild(newLeaf());
        }
        root->addChild(inner.release());
    }
}

TEST(NodeOwnershipTest, LongChildListsGiveTheirMemoryBack) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer's allocator keeps no such figures";
#endif
    makeAndDeleteWideTree();
    const auto before = static_cast<long>(mallinfo2().uordblks);
    constexpr int rounds = 50;
    for (int round = 0; round < rounds; ++round) {
        makeAndDeleteWideTree();
    }
    // A thousand lists of more than ten places each would be lost in each round.
    constexpr long lost = rounds * 1000L * 10 * static_cast<long>(sizeof(Node*));
    EXPECT_LT(static_cast<long>(mallinfo2().uordblks) - before, lost / 10);
}

}  // namespace

}  // namespace krel
