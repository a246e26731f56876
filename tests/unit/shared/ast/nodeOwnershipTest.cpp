// Who frees which node. Double frees and leaks of single nodes show as a wrong count of live
// objects; the memory of long child lists, which `new` does not allocate, as growth of the heap.

#include <gtest/gtest.h>
#include <malloc.h>

#include <memory>

#include "shared/ast/node.hpp"
#include "tests/unit/support/allocationCount.hpp"
#include "allocationCount.hpp"
#include "shared/ast/node.hpp"
#include "tests/unit/support/allocationCount.hpp"

namespace {

Node* newLeaf() {
    return new Node("IntLiteral", 1, 1);
}

/// Runs `body` and returns how many more objects are alive than before.
template <typename Body>
long growthAfter(Body body) {
    const long before = liveObjects();
    body();
    return liveObjects() - before;
}

TEST(NodeOwnershipTest, EveryNodeIsOneObject) {
    const auto body = [] {
        const Node root{"Assignment", newLeaf(), newLeaf(), 1};
        EXPECT_EQ(root.getChildren().size(), 2U);
    };
    const long before = liveObjects();
    Node* node = newLeaf();
    EXPECT_EQ(liveObjects() - before, 1);
    delete node;
    EXPECT_EQ(growthAfter(body), 0);
}

TEST(NodeOwnershipTest, DeletingTheRootFreesAllDescendantsOnce) {
    const auto body = [] {
        const long before = liveObjects();
        auto root = std::make_unique<Node>("StatementList", 1);
        for (int index = 0; index < 10; ++index) {
            root->addChild(new Node("Assignment", newLeaf(), newLeaf(), index));
        }
        EXPECT_EQ(liveObjects() - before, 31);
    };
    EXPECT_EQ(growthAfter(body), 0);
}

TEST(NodeOwnershipTest, RemovedChildBelongsToTheCaller) {
    const auto body = [] {
        Node* removed = newLeaf();
        {
            Node root{"Assignment", removed, newLeaf(), 1};
            root.removeChild(0);
        }
        EXPECT_EQ(removed->getIntValue(), 1);
        delete removed;
    };
    EXPECT_EQ(growthAfter(body), 0);
}

TEST(NodeOwnershipTest, ReplacedChildBelongsToTheCallerAndItsSuccessorToTheNode) {
    const auto body = [] {
        Node* replaced = newLeaf();
        {
            Node root{"Initializer", replaced, 1};
            root.replaceChild(0, newLeaf());
        }
        EXPECT_EQ(replaced->getIntValue(), 1);
        delete replaced;
    };
    EXPECT_EQ(growthAfter(body), 0);
}

TEST(NodeOwnershipTest, RefusedReplacementStaysWithTheCaller) {
    const auto body = [] {
        const std::unique_ptr<Node> spare{newLeaf()};
        Node root{"Initializer", newLeaf(), 1};
        root.replaceChild(1, spare.get());
        root.replaceChild(0, nullptr);
    };
    EXPECT_EQ(growthAfter(body), 0);
}

constexpr int deep = 300000;

TEST(NodeOwnershipTest, DeepLeftChainIsFreedWithoutDeepCalls) {
    const auto body = [] {
        Node* sum = newLeaf();
        for (int level = 0; level < deep; ++level) {
            sum = new Node("BinaryOp", sum, newLeaf(), 1);
        }
        delete sum;
    };
    EXPECT_EQ(growthAfter(body), 0);
}

TEST(NodeOwnershipTest, DeepSingleChainIsFreedWithoutDeepCalls) {
    const auto body = [] {
        Node* negation = newLeaf();
        for (int level = 0; level < deep; ++level) {
            negation = new Node("UnaryOp", Operator::Minus, negation, 1);
        }
        delete negation;
    };
    EXPECT_EQ(growthAfter(body), 0);
}

void makeAndDeleteWideTree() {
    constexpr int width = 1000;
    const auto root = std::make_unique<Node>("StatementList", 1);
    for (int index = 0; index < width; ++index) {
        Node* inner = new Node("ArgumentList", 1);
        for (int argument = 0; argument < 10; ++argument) {
            inner->addChild(newLeaf());
        }
        root->addChild(inner);
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
