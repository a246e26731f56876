#include "codegen/runtime/blockTable.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <random>
#include <vector>

#include "tests/unit/support/childProcess.hpp"

using krel::BlockNumber;
using krel::BlockTable;
using krel::BlockUse;
using krel::noBlock;

namespace {

constexpr std::size_t megabyte = std::size_t{1} << 20;

/// What a collection does with a region that holds nothing alive.
void setFree(BlockTable& table, BlockNumber number) {
    table[number].use = BlockUse::Free;
    table[number].resident = table[number].span;
}

using Heads = std::vector<std::size_t>;
constexpr std::size_t none = noBlock;

/// For each block the head of the region in use that it is part of.
Heads headsOf(BlockTable& table) {
    Heads heads;
    for (std::size_t number = 0; number < table.end(); ++number) {
        std::size_t head = number;
        heads.push_back(table.findHead(head) ? head : none);
    }
    return heads;
}

void fill(BlockTable& table, BlockNumber number, char byte) {
    auto* bytes = reinterpret_cast<char*>(table.addressOf(number));
    for (std::size_t i = 0; i < table[number].span * krel::blockSize; i += 4096) {
        bytes[i] = byte;
    }
}

}  // namespace

TEST(BlockTableTest, TakesBlocksOneAfterTheOther) {
    BlockTable table;
    ASSERT_TRUE(table.open(64));
    EXPECT_EQ(table.end(), 0U);
    EXPECT_EQ(table.take(1, BlockUse::Cells), 0U);
    EXPECT_EQ(table.take(3, BlockUse::Single), 1U);
    EXPECT_EQ(table.take(1, BlockUse::Cells), 4U);
    EXPECT_EQ(table.end(), 5U);
    EXPECT_EQ(table[1].use, BlockUse::Single);
    EXPECT_EQ(table[1].span, 3U);
    fill(table, 1, 'x');
}

TEST(BlockTableTest, KnowsWhereBlocksLie) {
    BlockTable table;
    ASSERT_TRUE(table.open(64));
    const std::uintptr_t first = table.addressOf(0);
    EXPECT_EQ(first % 4096, 0U);
    EXPECT_EQ(table.addressOf(2), first + 2 * krel::blockSize);
    EXPECT_EQ(table.numberAt(first + 2 * krel::blockSize - 1), 1U);
    EXPECT_TRUE(table.contains(first));
    const std::uintptr_t end = first + (64 + BlockTable::margin) * krel::blockSize;
    EXPECT_TRUE(table.contains(end - 1));
    EXPECT_FALSE(table.contains(end));
    EXPECT_FALSE(table.contains(first - 1));
    table.take(1, BlockUse::Cells);
    EXPECT_GE(table.numberAt(first - 1), table.end());
    EXPECT_GE(table.numberAt(0), table.end());
}

TEST(BlockTableTest, EveryBlockLeadsToItsRegion) {
    BlockTable table;
    ASSERT_TRUE(table.open(64));
    table.take(2, BlockUse::Single);
    table.take(6, BlockUse::Single);
    table.take(1, BlockUse::Cells);
    EXPECT_EQ(headsOf(table), (Heads{0, 0, 2, 2, 2, 2, 2, 2, 8}));
    setFree(table, 2);
    EXPECT_EQ(headsOf(table), (Heads{0, 0, none, none, none, none, none, none, 8}));
    // The later blocks of the free region still say what they were.
    table.restartSearch();
    table.take(3, BlockUse::Single);
    EXPECT_EQ(headsOf(table), (Heads{0, 0, 2, 2, 2, none, none, none, 8}));
    table.take(1, BlockUse::Cells);
    table.take(2, BlockUse::Single);
    EXPECT_EQ(headsOf(table), (Heads{0, 0, 2, 2, 2, 5, 6, 6, 8}));
    setFree(table, 2);
    EXPECT_EQ(headsOf(table), (Heads{0, 0, none, none, none, 5, 6, 6, 8}));
    // And a region that begins among them may reach further than its predecessor.
    table.restartSearch();
    table.take(1, BlockUse::Cells);
    table.take(2, BlockUse::Single);
    EXPECT_EQ(headsOf(table), (Heads{0, 0, 2, 3, 3, 5, 6, 6, 8}));
}

TEST(BlockTableTest, MemoryBehindTheLastRegionCanBeRead) {
    BlockTable table;
    ASSERT_TRUE(table.open(64));
    for (BlockNumber taken = 0; taken < 64; ++taken) {
        ASSERT_EQ(table.take(1, BlockUse::Cells), taken);
        const std::uintptr_t end = table.addressOf(table.end() + BlockTable::margin);
        EXPECT_EQ(*reinterpret_cast<const volatile char*>(end - 1), '\0');
    }
}

TEST(BlockTableTest, ReusesFreeRegionsAndSplitsThem) {
    BlockTable table;
    ASSERT_TRUE(table.open(64));
    table.take(8, BlockUse::Single);
    table.take(1, BlockUse::Cells);
    setFree(table, 0);
    table.restartSearch();
    EXPECT_EQ(table.take(1, BlockUse::Cells), 0U);
    EXPECT_EQ(table.take(3, BlockUse::Single), 1U);
    EXPECT_EQ(table[4].use, BlockUse::Free);
    EXPECT_EQ(table[4].span, 4U);
    EXPECT_EQ(table[4].resident, 4U);
    EXPECT_EQ(table.take(5, BlockUse::Single), 9U);  // four are free in a row, not five
    EXPECT_EQ(table.end(), 14U);
    EXPECT_EQ(table.take(1, BlockUse::Cells), 4U);
}

TEST(BlockTableTest, ExtendsAFreeRegionAtTheEnd) {
    BlockTable table;
    ASSERT_TRUE(table.open(64));
    table.take(1, BlockUse::Cells);
    table.take(4, BlockUse::Single);
    setFree(table, 1);
    table.restartSearch();
    EXPECT_EQ(table.take(10, BlockUse::Single), 1U);
    EXPECT_EQ(table.end(), 11U);
    EXPECT_EQ(table.take(1, BlockUse::Cells), 11U);
    EXPECT_EQ(table.take(2, BlockUse::Single), 12U);
}

TEST(BlockTableTest, RefusesWhatGoesBeyondTheLimit) {
    BlockTable table;
    ASSERT_TRUE(table.open(64));
    EXPECT_EQ(table.take(65, BlockUse::Single), noBlock);
    EXPECT_EQ(table.end(), 0U);
    EXPECT_EQ(table.take(64, BlockUse::Single), 0U);
    fill(table, 0, 'x');
    EXPECT_EQ(table.take(1, BlockUse::Cells), noBlock);
    EXPECT_EQ(table.end(), 64U);
}

TEST(BlockTableTest, WithoutAReservationThereAreNoBlocks) {
    BlockTable table;
    EXPECT_FALSE(table.contains(0));
    EXPECT_FALSE(table.contains(1));
    EXPECT_EQ(table.take(1, BlockUse::Cells), noBlock);
}

// Takes and frees at random, joining free neighbours as a collection does. The regions always cover
// the blocks without gaps, and no two regions in use share a block.
TEST(BlockTableTest, RegionsNeverOverlap) {
    std::mt19937 random(5);
    BlockTable table;
    ASSERT_TRUE(table.open(512));
    std::vector<std::pair<BlockNumber, char>> taken;
    for (int round = 0; round < 200; ++round) {
        for (int i = 0; i < 20; ++i) {
            const auto span = static_cast<std::uint32_t>(random() % 3 == 0 ? 1 + random() % 20 : 1);
            const BlockNumber number = table.take(span, BlockUse::Single);
            if (number == noBlock) {
                break;
            }
            const char byte = static_cast<char>('a' + random() % 26);
            fill(table, number, byte);
            taken.emplace_back(number, byte);
        }
        for (const auto& [number, byte] : taken) {
            ASSERT_EQ(table[number].use, BlockUse::Single);
            const auto* bytes = reinterpret_cast<const char*>(table.addressOf(number));
            for (std::size_t i = 0; i < table[number].span * krel::blockSize; i += 4096) {
                ASSERT_EQ(bytes[i], byte);
            }
        }
        std::erase_if(taken, [&](const auto& entry) {
            const bool dies = random() % 2 == 0;
            if (dies) {
                setFree(table, entry.first);
            }
            return dies;
        });
        std::size_t inUse = 0;
        Heads expectedHeads;
        BlockNumber number = 0;
        while (number < table.end()) {
            krel::Block& block = table[number];
            ASSERT_NE(block.span, 0U);
            BlockNumber next = number + block.span;
            while (block.use == BlockUse::Free && next < table.end() &&
                   table[next].use == BlockUse::Free) {
                block.span += table[next].span;
                next = number + block.span;
            }
            inUse += block.use == BlockUse::Free ? 0 : 1;
            expectedHeads.resize(next, block.use == BlockUse::Free ? none : number);
            number = next;
        }
        ASSERT_EQ(number, table.end());
        ASSERT_EQ(inUse, taken.size());
        ASSERT_EQ(headsOf(table), expectedHeads);
        table.restartSearch();
    }
}

#ifndef __SANITIZE_ADDRESS__  // its shadow memory is larger than any limit

TEST(BlockTableTest, MakesDoWithLimitedAddresses) {
    const ChildResult child = runInChild([] {
        const rlimit stack = {8 * megabyte, 8 * megabyte};
        const rlimit addresses = {256 * megabyte, 256 * megabyte};
        setrlimit(RLIMIT_STACK, &stack);
        setrlimit(RLIMIT_AS, &addresses);
        BlockTable table;
        if (!table.open(std::size_t{1} << 28)) {
            return 1;
        }
        // Most of the limit is the table's, and the stack can still grow.
        const std::size_t count = 100 * megabyte / krel::blockSize;
        return table.take(count, BlockUse::Single) == 0 && krel::reserveAddresses(8 * megabyte) != 0
                   ? 0
                   : 2;
    });
    EXPECT_TRUE(child.hasExitedWith(0)) << child.status;
}

TEST(BlockTableTest, RefusedMemoryChangesNothing) {
    const ChildResult child = runInChild([] {
        BlockTable table;
        if (!table.open(std::size_t{1} << 28) || table.take(1, BlockUse::Cells) != 0) {
            return 1;
        }
        const rlimit memory = {32 * megabyte, 32 * megabyte};
        setrlimit(RLIMIT_DATA, &memory);
        if (table.take(64 * megabyte / krel::blockSize, BlockUse::Single) != noBlock ||
            table.end() != 1) {
            return 2;
        }
        return table.take(1, BlockUse::Cells) == 1 ? 0 : 3;
    });
    EXPECT_TRUE(child.hasExitedWith(0)) << child.status;
}

#endif
