#include "codegen/runtime/stringHeap.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/unit/codegen/runtime/mainStack.hpp"

using krel::StringHeap;

namespace {

constexpr std::size_t megabyte = std::size_t{1} << 20;

using Roots = std::vector<std::uintptr_t>;

/// A heap that collects only when it is told to, and whose strings need not be on the stack.
std::unique_ptr<StringHeap> openHeap(std::size_t blockLimit = blocksForATest) {
    auto heap = std::make_unique<StringHeap>();
    heap->open(0, blockLimit);
    return heap;
}

std::string patternOf(std::size_t length, std::size_t seed) {
    std::string text(length, '\0');
    for (std::size_t i = 0; i < length; ++i) {
        text[i] = static_cast<char>('!' + (i * 31 + seed * 17 + i / 93) % 90);
    }
    return text;
}

/// Makes a string the way the runtime does: in chunks that go as far beyond it as they may.
const char* make(StringHeap& heap, const std::string& text) {
    char* room = heap.allocate(text.size());
    if (room == nullptr) {
        return nullptr;
    }
    std::copy(text.begin(), text.end(), room);
    std::fill_n(room + text.size(), 16, '#');
    return StringHeap::setEnd(room, room + text.size());
}

std::uintptr_t addressOf(const char* text) {
    return reinterpret_cast<std::uintptr_t>(text);
}

void collect(StringHeap& heap, const Roots& roots) {
    heap.collect(roots.data(), roots.data() + roots.size());
}

/// Every length around the sizes of cells and of blocks.
std::vector<std::size_t> interestingLengths() {
    std::vector<std::size_t> lengths;
    const std::size_t overhead = krel::lengthFieldSize + 1;
    for (const std::uint32_t size : krel::cellSizes) {
        for (std::size_t length = size - overhead - 1; length <= size - overhead + 2; ++length) {
            lengths.push_back(length);
        }
    }
    for (const std::size_t blocks : {1UL, 2UL, 5UL}) {
        for (std::size_t less = 76; less < 90; ++less) {
            lengths.push_back(blocks * krel::blockSize - less);
        }
        lengths.push_back(blocks * krel::blockSize);
    }
    for (std::size_t length = 0; length < 40; ++length) {
        lengths.push_back(length);
    }
    return lengths;
}

/// The places in a text of that length, its NUL among them; only some of those in a long one.
std::vector<std::size_t> offsetsIn(std::size_t length) {
    std::vector<std::size_t> offsets;
    for (std::size_t offset = 0; offset <= length; ++offset) {
        if (offset < 50 || offset + 50 > length || offset % 499 == 0) {
            offsets.push_back(offset);
        }
    }
    return offsets;
}

/// How many bytes of the pages that the text lies on are in memory.
std::size_t residentBytes(const char* text, std::size_t length) {
    constexpr std::uintptr_t pageSize = 4096;
    const std::uintptr_t begin = addressOf(text) / pageSize * pageSize;
    std::vector<unsigned char> pages((length + 2 * pageSize) / pageSize);
    mincore(reinterpret_cast<void*>(begin), length, pages.data());
    std::size_t resident = 0;
    for (const unsigned char page : pages) {
        resident += (page & 1) != 0 ? pageSize : 0;
    }
    return resident;
}

}  // namespace

TEST(StringHeapTest, StringsOfEveryLengthKeepTheirContents) {
    auto heap = openHeap();
    std::vector<std::pair<const char*, std::string>> strings;
    for (const std::size_t length : interestingLengths()) {
        for (unsigned copy = 0; copy < 3; ++copy) {
            const std::string text = patternOf(length, copy);
            strings.emplace_back(make(*heap, text), text);
        }
    }
    for (const auto& [string, text] : strings) {
        ASSERT_EQ(StringHeap::lengthOf(string), text.size());
        ASSERT_EQ(std::string_view(string, text.size()), text);
        ASSERT_EQ(string[text.size()], '\0');
        ASSERT_TRUE(heap->owns(string));
    }
}

TEST(StringHeapTest, ShortWayGivesTheSameKindOfRoom) {
    auto heap = openHeap();
    char* text = nullptr;
    EXPECT_FALSE(heap->allocateShort(5, text));  // no cell is at hand yet
    ASSERT_NE(make(*heap, "hello"), nullptr);
    ASSERT_TRUE(heap->allocateShort(5, text));
    EXPECT_TRUE(heap->owns(text));
    EXPECT_FALSE(heap->allocateShort(krel::SizeClasses::smallLimit, text));
}

TEST(StringHeapTest, OwnsNothingElse) {
    auto heap = openHeap();
    char onStack[] = "text";
    make(*heap, "text");
    EXPECT_FALSE(heap->owns(onStack));
    EXPECT_FALSE(heap->owns("literal"));
    EXPECT_FALSE(heap->owns(nullptr));
}

TEST(StringHeapTest, UnreachableStringsAreTakenBack) {
    auto heap = openHeap();
    for (const std::size_t length : interestingLengths()) {
        collect(*heap, {});
        const char* string = make(*heap, patternOf(length, 0));
        collect(*heap, {});
        EXPECT_EQ(make(*heap, patternOf(length, 1)), string) << length;
    }
}

TEST(StringHeapTest, ReachableStringsAreKept) {
    auto heap = openHeap();
    for (const std::size_t length : interestingLengths()) {
        const std::string text = patternOf(length, 7);
        const char* string = make(*heap, text);
        for (unsigned round = 0; round < 3; ++round) {
            collect(*heap, {addressOf(string)});
            for (unsigned i = 0; i < 5; ++i) {
                ASSERT_NE(make(*heap, patternOf(length, i)), string) << length;
            }
        }
        ASSERT_EQ(std::string_view(string, length), text);
        ASSERT_EQ(StringHeap::lengthOf(string), length);
    }
}

TEST(StringHeapTest, NegatedAddressesKeepStringsToo) {
    auto heap = openHeap();
    for (const std::size_t length : {7UL, 5000UL, 200'000UL}) {
        const std::string text = patternOf(length, 3);
        const char* string = make(*heap, text);
        collect(*heap, {-addressOf(string)});
        EXPECT_NE(make(*heap, patternOf(length, 4)), string) << length;
        EXPECT_EQ(string, text);
    }
}

TEST(StringHeapTest, AddressesInAStringStandForTheRestOfIt) {
    auto heap = openHeap();
    for (const std::size_t length : interestingLengths()) {
        // Three neighbours; the bytes of the others are as close to a length's as a text's can be.
        for (const std::string& text :
             {patternOf(length, 1), std::string(length, '\x01'), std::string(length, '\xFF')}) {
            const char* string = make(*heap, text);
            for (const std::size_t offset : offsetsIn(length)) {
                ASSERT_EQ(heap->lengthFrom(string + offset), length - offset) << length;
                ASSERT_TRUE(heap->owns(string + offset));
                ASSERT_EQ(StringHeap::lengthOf(string + offset) >> 56 == 0, offset == 0);
            }
        }
    }
}

TEST(StringHeapTest, AnyAddressInAStringKeepsIt) {
    auto heap = openHeap();
    for (const std::size_t length : interestingLengths()) {
        for (const std::size_t offset : {length, length / 2, std::size_t{1}}) {
            if (offset > length) {
                continue;
            }
            collect(*heap, {});
            const std::string text = patternOf(length, 5);
            make(*heap, text);
            const char* string = make(*heap, text);
            collect(*heap, {addressOf(string) + offset});
            ASSERT_NE(make(*heap, patternOf(length, 6)), string) << length;
            collect(*heap, {-(addressOf(string) + offset)});
            for (unsigned i = 0; i < 3; ++i) {
                ASSERT_NE(make(*heap, patternOf(length, i)), string) << length;
            }
            ASSERT_EQ(std::string_view(string, length), text);
            ASSERT_EQ(heap->lengthFrom(string + offset), length - offset);
        }
    }
}

TEST(StringHeapTest, AddressesBesideAStringDoNotKeepIt) {
    auto heap = openHeap();
    for (const std::uint32_t size : krel::cellSizes) {
        collect(*heap, {});
        const std::size_t length = size - krel::lengthFieldSize - 1;
        const char* neighbour = make(*heap, patternOf(length, 0));
        const char* string = make(*heap, patternOf(length, 1));
        const auto cellSize = static_cast<std::size_t>(string - neighbour);
        Roots roots;
        for (std::size_t before = 1; before <= krel::lengthFieldSize; ++before) {
            roots.push_back(addressOf(string) - before);
            roots.push_back(-(addressOf(string) + cellSize - before));
        }
        collect(*heap, roots);
        make(*heap, patternOf(length, 2));
        EXPECT_EQ(make(*heap, patternOf(length, 3)), string) << length;
    }
    for (const std::size_t length : {40'000UL, 200'000UL}) {
        collect(*heap, {});
        const char* string = make(*heap, patternOf(length, 0));
        const std::uintptr_t end = (addressOf(string) + length) / krel::blockSize * krel::blockSize;
        collect(*heap, {addressOf(string) - 1, addressOf(string) - 64, end + 2 * krel::blockSize,
                        end + 9 * krel::blockSize});
        EXPECT_EQ(make(*heap, patternOf(length, 1)), string) << length;
    }
}

// Wherever an address lies, what it stands for can be read. Each word in the strings, and behind
// them, could be the length of another string.
TEST(StringHeapTest, AddressesInNoStringCanBeRead) {
    for (const std::size_t plausible : {0UL, 1UL, 100UL, 65'535UL, 65'536UL, 65'537UL, 1UL << 55}) {
        constexpr std::size_t blockCount = 16;
        auto heap = openHeap(blockCount);
        const char* first = nullptr;
        for (const std::size_t length : {300'000UL, 10UL, 32'000UL, 500'000UL, 1000UL}) {
            char* room = heap->allocate(length);
            ASSERT_NE(room, nullptr);
            first = first == nullptr ? room : first;
            for (std::size_t i = 0; i + sizeof plausible <= length + 1; i += sizeof plausible) {
                std::memcpy(room + i, &plausible, sizeof plausible);
            }
            StringHeap::setEnd(room, room + length);
        }
        collect(*heap, {addressOf(first)});
        ASSERT_EQ(heap->footprint(), blockCount * krel::blockSize);
        const char* begin = first - 64;
        std::size_t read = 0;
        for (std::size_t offset = 0; offset < blockCount * krel::blockSize; ++offset) {
            const char* text = begin + offset;
            // What is before the heap cannot be read.
            ASSERT_EQ(heap->owns(text), offset >= krel::lengthFieldSize);
            if (!heap->owns(text)) {
                continue;
            }
            const std::size_t length = heap->lengthFrom(text);
            ASSERT_LE(length, 500'000U);
            read += static_cast<unsigned char>(const_cast<const volatile char*>(text)[length + 15]);
        }
        EXPECT_LT(read, std::size_t{256} * blockCount * krel::blockSize);
    }
}

TEST(StringHeapTest, FreeBlocksHoldTheEmptyText) {
    auto heap = openHeap();
    const char* string = make(*heap, patternOf(300'000, 0));
    collect(*heap, {});
    EXPECT_EQ(heap->lengthFrom(string), 0U);
    EXPECT_EQ(heap->lengthFrom(string + 1), 0U);
    EXPECT_EQ(heap->lengthFrom(string + 200'000), 0U);
}

TEST(StringHeapTest, RootsOutsideTheHeapAreIgnored) {
    auto heap = openHeap();
    const char* string = make(*heap, "kept");
    const Roots roots = {0,
                         ~std::uintptr_t{0},
                         addressOf(string) + (std::uintptr_t{1} << 40),
                         addressOf(string) - (std::uintptr_t{1} << 20),
                         addressOf("literal"),
                         addressOf(string)};
    collect(*heap, roots);
    EXPECT_STREQ(string, "kept");
    EXPECT_NE(make(*heap, "next"), string);
}

// Many strings come and go. Whatever is still held has to be as it was made, and the memory has to
// stay within a small multiple of what is held.
TEST(StringHeapTest, RandomStringsSurviveCollections) {
    auto heap = openHeap();
    std::mt19937 random(11);
    std::map<const char*, std::string> held;
    std::size_t heldBytes = 0;
    std::size_t mostHeldBytes = 0;
    for (unsigned step = 0; step < 300; ++step) {
        for (unsigned i = 0; i < 400; ++i) {
            std::size_t length = random() % 60;
            if (random() % 16 == 0) {
                length = random() % 5000;
            } else if (random() % 256 == 0) {
                length = random() % 300'000;
            }
            const std::string text = patternOf(length, static_cast<unsigned>(random()));
            const char* string = make(*heap, text);
            ASSERT_NE(string, nullptr);
            ASSERT_TRUE(held.emplace(string, text).second) << "handed out twice";
            heldBytes += length;
        }
        mostHeldBytes = std::max(mostHeldBytes, heldBytes);
        Roots roots;
        std::erase_if(held, [&](const auto& entry) {
            if (random() % 4 != 0) {
                heldBytes -= entry.second.size();
                return true;
            }
            const std::uintptr_t address =
                addressOf(entry.first) + random() % (entry.second.size() + 1);
            roots.push_back(random() % 2 == 0 ? address : -address);
            return false;
        });
        collect(*heap, roots);
        for (const auto& [string, text] : held) {
            ASSERT_EQ(std::string_view(string, StringHeap::lengthOf(string)), text);
            const std::size_t offset = random() % (text.size() + 1);
            ASSERT_EQ(heap->lengthFrom(string + offset), text.size() - offset);
        }
    }
    EXPECT_LT(heap->footprint(), 3 * mostHeldBytes + 4 * megabyte);
}

namespace {

/// Hands out strings until the first collection; returns how many bytes that were.
[[gnu::noinline]] std::size_t bytesUntilFirstCollection(StringHeap& heap, std::size_t length) {
    std::size_t bytes = 0;
    while (heap.collections() == 0) {
        make(heap, std::string(length, 'x'));
        bytes += length + krel::lengthFieldSize + 1;
    }
    return bytes;
}

/// Keeps a string in each of many frames, while others come and go.
[[gnu::noinline]] int countLostInFrames(StringHeap& heap, int depth) {
    const char* volatile own = make(heap, "frame " + std::to_string(depth));
    for (int i = 0; i < 10; ++i) {
        make(heap, std::string(static_cast<std::size_t>(i) * 40, '.'));
    }
    const int lost = depth == 0 ? 0 : countLostInFrames(heap, depth - 1);
    return lost + (own == "frame " + std::to_string(depth) ? 0 : 1);
}

}  // namespace

TEST(StringHeapTest, NothingIsCollectedBeforeFourMegabytes) {
    for (const std::size_t length : {7UL, 100UL, 5000UL, 50'000UL}) {
        StringHeap heap;
        heap.open(endOfMainStack, blocksForATest);
        const std::size_t bytes = bytesUntilFirstCollection(heap, length);
        EXPECT_GT(bytes, 4 * megabyte * 6 / 10) << length;  // what is in the cells counts too
        EXPECT_LT(bytes, 5 * megabyte) << length;
    }
}

TEST(StringHeapTest, WithoutAStackNothingIsCollected) {
    auto heap = openHeap();
    for (int i = 0; i < 100; ++i) {
        make(*heap, std::string(100'000, 'x'));
    }
    EXPECT_EQ(heap->collections(), 0U);
}

TEST(StringHeapTest, StringsInFramesSurvive) {
    StringHeap heap;
    heap.open(endOfMainStack, blocksForATest);
    EXPECT_EQ(countLostInFrames(heap, 5000), 0);
    EXPECT_GT(heap.collections(), 0U);
}

TEST(StringHeapTest, OperandsSurviveWithoutBeingOnTheStack) {
    StringHeap heap;
    // No frame lies between these addresses: every collection takes all strings but the operands.
    heap.open(8);
    const std::string text(1000, 'l');
    const std::string other(1000, 'r');
    const char* left = make(heap, text);
    const char* right = make(heap, other);
    while (heap.collections() < 3) {
        // Any address in an operand will do.
        const std::size_t offset = heap.collections() * 500;
        char* room = heap.allocate(1000, left + offset, right + 1000 - offset);
        std::memset(room, '?', 1000);
        StringHeap::setEnd(room, room + 1000);
        ASSERT_EQ(left, text);
        ASSERT_EQ(right, other);
    }
}

TEST(StringHeapTest, ALoopRunsInConstantMemory) {
    StringHeap heap;
    heap.open(endOfMainStack, blocksForATest);
    const char* volatile held = "";
    for (int i = 0; i < 1'000'000; ++i) {
        held = make(heap, std::to_string(i));
    }
    EXPECT_STREQ(held, "999999");
    EXPECT_LT(heap.footprint(), 4 * megabyte + megabyte / 2);
    // So much is handed out between two of them that they take no time.
    EXPECT_GT(heap.collections(), 50U);
    EXPECT_LT(heap.collections(), 5000U);
}

/// How many collections it takes to hand out 64 MB in strings of 1000 bytes.
std::size_t collectionsFor64Megabytes(StringHeap& heap) {
    const std::size_t before = heap.collections();
    const std::string text(990, 'x');
    for (int i = 0; i < 64'000; ++i) {
        make(heap, text);
    }
    return heap.collections() - before;
}

TEST(StringHeapTest, ADeepStackIsScannedSeldom) {
    StringHeap heap;
    heap.open(endOfMainStack, blocksForATest);
    volatile char deep[4 * megabyte];
    deep[0] = 'd';
    EXPECT_LE(collectionsFor64Megabytes(heap), 64 / 16 + 1);  // four times the stack's size
    EXPECT_EQ(deep[0], 'd');
}

TEST(StringHeapTest, ManyLargeStringsAreLookedAtSeldom) {
    StringHeap heap;
    heap.open(endOfMainStack, blocksForATest);
    std::array<const char* volatile, 2000> held;
    for (const char* volatile& string : held) {
        char* room = heap.allocate(40'000);
        string = StringHeap::setEnd(room, room + 1);
    }
    EXPECT_LE(collectionsFor64Megabytes(heap), 64 / 16 + 1);  // 8 KB for each of them
    EXPECT_EQ(held[0][1], '\0');
}

TEST(StringHeapTest, OneLargeStringCostsNothing) {
    StringHeap heap;
    heap.open(endOfMainStack, blocksForATest);
    const std::size_t without = collectionsFor64Megabytes(heap);
    const char* volatile held = make(heap, std::string(100 * megabyte, 'l'));
    EXPECT_LE(collectionsFor64Megabytes(heap), without * 5 / 4);
    EXPECT_EQ(held[0], 'l');
}

TEST(StringHeapTest, AGrowingStringNeedsAFewTimesItsLength) {
    StringHeap heap;
    heap.open(endOfMainStack, blocksForATest);
    const std::size_t step = 20'000;
    const std::size_t greatest = 20 * megabyte;
    const char* volatile held = "";
    for (std::size_t length = step; length < greatest; length += step) {
        char* room = heap.allocate(length, held);
        room[0] = 'g';
        held = StringHeap::setEnd(room, room + length);
    }
    EXPECT_EQ(held[0], 'g');
    EXPECT_LT(heap.footprint(), 4 * greatest);
}

TEST(StringHeapTest, MemoryOfLargeStringsGoesBackToTheSystem) {
    auto heap = openHeap();
    const std::size_t length = 64 * megabyte;
    const char* string = make(*heap, std::string(length, 'x'));
    EXPECT_GE(residentBytes(string, length), length);
    collect(*heap, {});
    EXPECT_LT(residentBytes(string, length), 8 * megabyte);
    // And comes back when it is needed.
    const std::string text = patternOf(length, 1);
    EXPECT_EQ(make(*heap, text), text);
}

// A region that has kept some of its memory is joined with one that has all of it, and the memory
// of both is given back then.
TEST(StringHeapTest, MemoryOfJoinedLargeStringsGoesBackToTheSystem) {
    auto heap = openHeap();
    const std::size_t length = 32 * megabyte;
    const char* first = make(*heap, std::string(length, 'x'));
    const char* second = make(*heap, std::string(length, 'y'));
    const char* third = make(*heap, std::string(length, 'z'));
    collect(*heap, {addressOf(second), addressOf(third)});
    collect(*heap, {addressOf(third)});
    collect(*heap, {});
    EXPECT_LT(residentBytes(first, length), 8 * megabyte);
    EXPECT_LT(residentBytes(second, length), megabyte);
    EXPECT_LT(residentBytes(third, length), megabyte);
    // The same for two that die at once.
    first = make(*heap, std::string(length, 'x'));
    second = make(*heap, std::string(length / 2, 'y'));
    collect(*heap, {});
    EXPECT_LT(residentBytes(first, length), 8 * megabyte);
    EXPECT_LT(residentBytes(second, length / 2), megabyte);
}

TEST(StringHeapTest, ExhaustedMemoryIsNoRoom) {
    auto heap = openHeap(64);
    EXPECT_EQ(heap->allocate(64 * krel::blockSize), nullptr);
    EXPECT_EQ(heap->allocate(~std::size_t{0} - 100), nullptr);
    Roots roots;
    for (const char* string = make(*heap, std::string(1000, 'x')); string != nullptr;
         string = make(*heap, std::string(1000, 'x'))) {
        roots.push_back(addressOf(string));
    }
    EXPECT_GT(roots.size(), 64 * krel::blockSize / 1200);
    EXPECT_EQ(make(*heap, "short"), nullptr);  // a class of its own would need a block
    collect(*heap, {roots[0]});
    EXPECT_NE(make(*heap, "short"), nullptr);
    EXPECT_NE(heap->allocate(40 * krel::blockSize), nullptr);
}

TEST(StringHeapTest, ExhaustedMemoryIsCollectedFirst) {
    StringHeap heap;
    heap.open(endOfMainStack, 60);  // less than is handed out before the first collection
    for (int i = 0; i < 1000; ++i) {
        ASSERT_NE(make(heap, std::string(10 * krel::blockSize, 'x')), nullptr) << i;
    }
}

TEST(StringHeapTest, WithoutAddressesThereIsNoRoom) {
    StringHeap heap;  // never opened
    EXPECT_FALSE(heap.owns("x"));
    EXPECT_FALSE(heap.owns(nullptr));
}
