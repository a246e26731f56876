#include "shared/ast/nodeList.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "shared/ast/node.hpp"

namespace krel {

namespace {

/// Nodes that outlive the lists under test, which own nothing.
class NodeListTest : public testing::Test {
protected:
    static constexpr std::size_t manyNodes = 1000;

    void SetUp() override {
        for (std::size_t index = 0; index < manyNodes; ++index) {
            nodes.push_back(std::make_unique<Node>("IntLiteral", static_cast<int>(index), 1));
        }
    }

    void push(std::size_t count) {
        for (std::size_t index = 0; index < count; ++index) {
            list.push(nodes[index].get());
        }
    }

    /// The int values of the nodes in the list.
    std::vector<int> values() const {
        std::vector<int> result;
        for (const Node* node : list) {
            result.push_back(node->getIntValue());
        }
        return result;
    }

    std::vector<std::unique_ptr<Node>> nodes;
    NodeList list;
};

TEST_F(NodeListTest, IsEmptyAtFirst) {
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.size(), 0U);
    EXPECT_EQ(list.begin(), list.end());
}

TEST_F(NodeListTest, KeepsTheOrderOfAnyNumber) {
    for (std::size_t count = 1; count <= manyNodes; ++count) {
        list.push(nodes[count - 1].get());
        ASSERT_EQ(list.size(), count);
        ASSERT_EQ(list.front(), nodes[0].get());
        ASSERT_EQ(list.back(), nodes[count - 1].get());
        ASSERT_EQ(static_cast<std::size_t>(list.end() - list.begin()), count);
    }
    for (std::size_t index = 0; index < manyNodes; ++index) {
        ASSERT_EQ(list[index], nodes[index].get());
    }
}

TEST_F(NodeListTest, EraseMovesLaterEntriesUp) {
    push(4);
    list.erase(1);
    EXPECT_EQ(values(), (std::vector<int>{0, 2, 3}));
    list.erase(2);
    EXPECT_EQ(values(), (std::vector<int>{0, 2}));
    list.erase(0);
    EXPECT_EQ(values(), (std::vector<int>{2}));
    list.erase(0);
    EXPECT_TRUE(list.empty());
}

TEST_F(NodeListTest, EraseOfOneOfTwo) {
    push(2);
    list.erase(0);
    EXPECT_EQ(values(), (std::vector<int>{1}));
}

TEST_F(NodeListTest, GrowsAgainAfterErasing) {
    push(5);
    list.erase(0);
    push(5);
    EXPECT_EQ(values(), (std::vector<int>{1, 2, 3, 4, 0, 1, 2, 3, 4}));
}

TEST_F(NodeListTest, ExchangeReturnsTheOldEntry) {
    push(3);
    EXPECT_EQ(list.exchange(1, nodes[9].get()), nodes[1].get());
    EXPECT_EQ(values(), (std::vector<int>{0, 9, 2}));
    EXPECT_EQ(list.exchange(2, nodes[8].get()), nodes[2].get());
    EXPECT_EQ(values(), (std::vector<int>{0, 9, 8}));
}

TEST_F(NodeListTest, ExchangeInAShortList) {
    push(1);
    EXPECT_EQ(list.exchange(0, nodes[5].get()), nodes[0].get());
    EXPECT_EQ(values(), (std::vector<int>{5}));
}

TEST_F(NodeListTest, ClearForgetsTheEntries) {
    push(10);
    list.clear();
    EXPECT_TRUE(list.empty());
    push(1);
    EXPECT_EQ(values(), (std::vector<int>{0}));
}

TEST_F(NodeListTest, AtChecksTheIndex) {
    EXPECT_THROW(static_cast<void>(list.at(0)), std::out_of_range);
    push(3);
    EXPECT_EQ(list.at(2), nodes[2].get());
    EXPECT_THROW(static_cast<void>(list.at(3)), std::out_of_range);
}

TEST_F(NodeListTest, EqualsAnySequenceOfTheSameNodes) {
    push(2);
    EXPECT_TRUE((list == std::vector<Node*>{nodes[0].get(), nodes[1].get()}));
    EXPECT_FALSE((list == std::vector<Node*>{nodes[0].get()}));
    EXPECT_TRUE((list != std::vector<Node*>{nodes[1].get(), nodes[0].get()}));
    NodeList same;
    same.push(nodes[0].get());
    EXPECT_FALSE(list == same);
    same.push(nodes[1].get());
    EXPECT_TRUE(list == same);
}

}  // namespace

}  // namespace krel
