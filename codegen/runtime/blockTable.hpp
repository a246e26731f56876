// The blocks that string memory consists of, and what each one is used for.
//
// Blocks are numbered from 0. They form regions, runs of blocks with one use, which cover the
// blocks up to end() without gaps. The entry of a region's first block, its head, describes it. The
// other entries of a large string say how far back the head is. Those of a free region are left
// over from earlier uses, but none of them looks like a part of a region in use. So every block
// leads to its region: see findHead.
//
//     number      0       1        2       3       4       5         6
//     use       Cells   Single   Inner   Inner   Free   (Inner)   Cells
//     span        1       3        1       2       2      (1)       1
#pragma once

#include <cstddef>
#include <cstdint>

#include "codegen/runtime/addressRange.hpp"
#include "codegen/runtime/sizeClasses.hpp"

namespace krel {

using BlockNumber = std::uint32_t;
inline constexpr BlockNumber noBlock = ~BlockNumber{0};

/// What a block is used for.
enum class BlockUse : std::uint8_t {
    Free,    // nothing lives here
    Cells,   // one block, cut into the cells of a size class
    Single,  // one large string
    Inner    // a later block of a large string; or left over in a free region
};

/// The entry of a block.
struct Block {
    BlockUse use;
    std::uint8_t sizeClass;   // of cells
    bool marked;              // of a single string: it is alive
    std::uint32_t span;       // how many blocks the region has, or has before an inner block
    BlockNumber nextPartial;  // of cells: the next block on the list of its size class
    std::uint32_t resident;   // of a free region: only so many blocks have memory behind them
};

/// One bit for each cell of a block, set when the cell is alive.
inline constexpr unsigned markWordBits = 64;
struct BlockMarks {
    std::uint64_t words[blockSize / smallestCell / markWordBits];
};

/// All blocks: their memory, their entries and their marks, side by side in one reservation.
class BlockTable {
public:
    /// Reserves addresses for as many blocks as the system allows, up to `limit`. Returns false
    /// when it does not allow enough to be of use; then there are none.
    bool open(std::size_t limit);

    /// The memory of so many blocks behind the last region can be read as well.
    static constexpr std::size_t margin = 2;

    /// Whether a string, or the margin, could lie there.
    bool contains(std::uintptr_t address) const { return heap.contains(address); }

    /// The address of a block's first byte.
    std::uintptr_t addressOf(std::size_t number) const { return heap.begin() + number * blockSize; }

    /// The number of the block that holds the address; end() or more for an address outside of the
    /// regions.
    std::size_t numberAt(std::uintptr_t address) const {
        return (address - heap.begin()) / blockSize;
    }

    /// Goes from a block below end() to the head of its region. Returns false for a free block;
    /// `number` then means nothing.
    bool findHead(std::size_t& number) {
        const Block* block = entries() + number;
        if (block->use == BlockUse::Inner) [[unlikely]] {
            const std::uint32_t before = block->span;
            number -= before;
            block = entries() + number;
            return block->use == BlockUse::Single && before < block->span;
        }
        return block->use != BlockUse::Free;
    }

    /// The entry of a block. It describes a region if the block is the head of one.
    Block& operator[](std::size_t number) { return entries()[number]; }

    /// The marks of a block that is in use for cells.
    BlockMarks& marksOf(std::size_t number) {
        return reinterpret_cast<BlockMarks*>(marks.begin())[number];
    }

    /// The number of the block after the last region.
    BlockNumber end() const { return blockCount; }

    /// Takes `span` blocks for a use. They come from the first free region with room, searched from
    /// where the last search of this kind ended, or from behind the last region. Returns noBlock
    /// when the addresses or the memory do not suffice.
    BlockNumber take(std::uint32_t span, BlockUse use);

    /// Lets the next searches begin at the first block again.
    void restartSearch() { cursorForOne = cursorForMany = 0; }

private:
    Block* entries() { return reinterpret_cast<Block*>(table.begin()); }
    bool reserve(std::size_t count);
    void beginRegion(BlockNumber first, std::uint32_t span, BlockUse use);
    BlockNumber extend(BlockNumber first, std::uint32_t span, BlockUse use);

    AddressRange heap;
    AddressRange table;
    AddressRange marks;
    BlockNumber blockCount = 0;
    /// Both stand on heads of regions, or at the end.
    BlockNumber cursorForOne = 0;
    BlockNumber cursorForMany = 0;
};

}  // namespace krel
