#include "shared/ast/treeMemory.hpp"

#include <gtest/gtest.h>
#include <malloc.h>

#include <memory>
#include <string>
#include <vector>

#include "shared/ast/node.hpp"

namespace krel {

namespace {

TEST(TreeMemoryTest, NodesAreGoneWithIt) {
    auto memory = std::make_unique<TreeMemory>();
    EXPECT_EQ(memory->nodeCount(), 0U);
    {
        const TreeMemory::Use use{*memory};
        for (int number = 0; number < 5000; ++number) {
            Node* list = new Node("ArgumentList", 1);
            for (int child = 0; child < 4; ++child) {
                list->addChild(new Node("DecimalLiteral", 0.5, 1));
            }
        }
        EXPECT_EQ(memory->nodeCount(), 25000U);
    }
    memory.reset();
}

TEST(TreeMemoryTest, DeletedNodesAreNotCounted) {
    TreeMemory memory;
    const TreeMemory::Use use{memory};
    Node* root = new Node("Block", new Node("StatementList", 1), 1);
    new Node("Identifier", "x", 1);
    EXPECT_EQ(memory.nodeCount(), 3U);
    delete root;
    EXPECT_EQ(memory.nodeCount(), 1U);
    new Node("Identifier", "y", 1);
    EXPECT_EQ(memory.nodeCount(), 2U);
}

TEST(TreeMemoryTest, NodesGoBackToWhereTheyWereMade) {
    TreeMemory first;
    TreeMemory second;
    Node* node = nullptr;
    {
        const TreeMemory::Use use{first};
        node = new Node("Block", 1);
    }
    const TreeMemory::Use use{second};
    new Node("Block", 1);
    delete node;
    EXPECT_EQ(first.nodeCount(), 0U);
    EXPECT_EQ(second.nodeCount(), 1U);
}

TEST(TreeMemoryTest, UsesNest) {
    TreeMemory outer;
    TreeMemory inner;
    const TreeMemory::Use useOuter{outer};
    new Node("Block", 1);
    {
        const TreeMemory::Use useInner{inner};
        new Node("Block", 1);
        new Node("Block", 1);
    }
    new Node("Block", 1);
    EXPECT_EQ(outer.nodeCount(), 2U);
    EXPECT_EQ(inner.nodeCount(), 2U);
}

TEST(TreeMemoryTest, ValuesOfOneDoNotDisturbThoseOfOthers) {
    const std::unique_ptr<Node> outside = std::make_unique<Node>("DecimalLiteral", 1.5, 1);
    for (int round = 0; round < 3; ++round) {
        TreeMemory memory;
        const TreeMemory::Use use{memory};
        const Node* first = new Node("DecimalLiteral", 2.5 + round, 1);
        const Node* second = new Node("DecimalLiteral", 3.5 + round, 1);
        EXPECT_EQ(first->getDoubleValue(), 2.5 + round);
        EXPECT_EQ(second->getDoubleValue(), 3.5 + round);
    }
    EXPECT_EQ(outside->getDoubleValue(), 1.5);
}

/// The sanitizer's allocator keeps no such figure: 0 then.
std::size_t bytesInUse() {
    const struct mallinfo2 figures = mallinfo2();
    return figures.uordblks + figures.hblkhd;
}

TEST(TreeMemoryTest, ValuesAreGivenBack) {
    constexpr std::size_t count = 10'000;
    const auto makeAndForget = [] {
        TreeMemory memory;
        const TreeMemory::Use use{memory};
        for (std::size_t number = 0; number < count; ++number) {
            new Node("DecimalLiteral", 0.5, 1);
        }
    };
    makeAndForget();
    const std::size_t before = bytesInUse();
    for (int round = 0; round < 50; ++round) {
        makeAndForget();
    }
    EXPECT_LT(bytesInUse(), before + 10 * count * sizeof(double));
}

TEST(NameScopeTest, NamesEndWithTheirScope) {
    std::uint32_t index = 0;
    {
        NameScope scope;
        const NameScope::Use use{scope};
        const Name name{"only in the scope"};
        EXPECT_EQ(name.text(), "only in the scope");
        EXPECT_EQ(Name{"only in the scope"}, name);
        index = name.index();
    }
    EXPECT_TRUE(Name::known("only in the scope").empty());
    EXPECT_EQ(Name::fromIndex(index).text(), "");
    EXPECT_EQ(Name{"next"}.index(), index);
}

TEST(NameScopeTest, NamesFromBeforeAreTheSame) {
    const Name before{"from before"};
    NameScope scope;
    const NameScope::Use use{scope};
    EXPECT_EQ(Name{"from before"}, before);
    EXPECT_EQ(Name{"Program"}, NodeKind::Program);
}

TEST(NameScopeTest, ScopesDoNotSeeEachOther) {
    NameScope first;
    NameScope second;
    Name inFirst;
    {
        const NameScope::Use use{first};
        inFirst = Name{"seen once"};
    }
    const NameScope::Use use{second};
    EXPECT_TRUE(Name::known("seen once").empty());
    const Name inSecond{"seen once"};
    EXPECT_FALSE(inFirst == inSecond);
    EXPECT_EQ(inFirst.text(), inSecond.text());
}

}  // namespace

}  // namespace krel
