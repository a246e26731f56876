// The memory of the strings that the program makes, and the collector that takes it back.
//
// All strings lie in one reserved address range, so that a pointer's value tells whether a text was
// made here or is a literal. A string is its length in eight bytes, the text and a NUL. The program
// holds a string by the address of its first byte, or of a later one up to the NUL, which stands
// for the rest of the text. Such addresses are in stack slots and nowhere else; a string holds
// none. So a string is alive if an address on the stack points into it, and one look at each word
// of the stack finds all live strings.
#pragma once

#include <cstddef>
#include <cstdint>

#include "codegen/runtime/blockTable.hpp"
#include "codegen/runtime/sizeClasses.hpp"

// Defined to 1, every allocation collects first and what is collected is overwritten: a string that
// is taken back too early shows at once. For tests only.
#ifndef KREL_COLLECT_ALWAYS
#define KREL_COLLECT_ALWAYS 0
#endif

namespace krel {

/// Hands out room for strings and takes back that of dead ones.
class StringHeap {
public:
    /// At least so much is handed out between two collections. It is so little that memory that is
    /// used over and over stays in the processor's second cache.
    static constexpr std::size_t smallestBudget = std::size_t{1} << 17;

    /// Nothing is collected before this many bytes have been handed out.
    static constexpr std::size_t bytesBeforeFirstCollection = std::size_t{4} << 20;

    /// The greatest number of blocks, 16 TB: enough for any machine, a small part of the addresses.
    static constexpr std::size_t mostBlocks = std::size_t{1} << 28;

    constexpr StringHeap() = default;
    StringHeap(const StringHeap&) = delete;
    StringHeap& operator=(const StringHeap&) = delete;

    /// Reserves addresses for up to `blockLimit` blocks; where that fails, so does every
    /// allocation. `endOfStack` is the address above the frames that hold strings, on the stack of
    /// the later calls; when it is 0, only calls of collect collect anything.
    void open(std::uintptr_t endOfStack, std::size_t blockLimit = mostBlocks);

    /// Returns room for a text of up to `length` bytes, or nullptr when memory is exhausted. The
    /// room becomes a string by setEnd. Up to 15 bytes beyond the room for the NUL may be written
    /// with anything. The call may first take back strings into which no address on the stack
    /// points, except those of `left` and `right`; these two may also be addresses of anything
    /// else.
    [[nodiscard]] char* allocate(std::size_t length, const char* left = nullptr,
                                 const char* right = nullptr) {
        const std::size_t bytes = lengthFieldSize + length + 1;
        char* text;
        if (bytes <= largestCell) {
            const unsigned sizeClass = sizeClasses.of(bytes);
            if (takeCell(runs[sizeClass], sizeClasses[sizeClass].cellSize, text)) [[likely]] {
                return text;
            }
        }
        return allocateSlowly(length, left, right);
    }

    /// Sets `text` to the same kind of room if the text is short and a free cell is at hand, or
    /// else returns false. Nothing is ever taken back for it.
    [[nodiscard]] bool allocateShort(std::size_t length, char*& text) {
        const std::size_t bytes = lengthFieldSize + length + 1;
        if (bytes > SizeClasses::smallLimit) [[unlikely]] {
            return false;
        }
        const std::size_t sizeClass = SizeClasses::ofSmall(bytes);
        return takeCell(runs[sizeClass], smallestCell + sizeClass * 8, text);
    }

    /// Whether the text is one that this heap handed out, or the end of one. The first bytes of the
    /// heap are no text, and what is before them cannot be read.
    bool owns(const char* text) const {
        return blocks.contains(reinterpret_cast<std::uintptr_t>(text) - lengthFieldSize);
    }

    /// The length of the string of this heap that begins at `text`. At a later byte of a string's
    /// text, and at its NUL, the result is 2^56 or more: its highest byte is then a byte of the
    /// text, which is never 0.
    static std::size_t lengthOf(const char* text) {
        struct [[gnu::packed, gnu::may_alias]] Unaligned {
            std::size_t value;
        };
        return reinterpret_cast<const Unaligned*>(text - lengthFieldSize)->value;
    }

    /// Fewer bytes than that, and 15 more, can be read from every address in a block.
    static constexpr std::size_t readableLength = (BlockTable::margin - 1) * blockSize + 1;

    /// The length of the text from an address of this heap on, which need not be where the string
    /// begins. For an address in no string the result may be any number, but so many bytes, and 15
    /// more, can be read there.
    std::size_t lengthFrom(const char* text) {
        const std::size_t length = lengthOf(text);
        if (length < readableLength) [[likely]] {
            return length;
        }
        return measure(text);
    }

    /// Makes what was written to the room at `text` a string that ends before `end`.
    static const char* setEnd(char* text, char* end) {
        reinterpret_cast<std::size_t*>(text)[-1] = static_cast<std::size_t>(end - text);
        *end = '\0';
        return text;
    }

    /// Takes back every string into which none of the words from `first` up to `last` points.
    void collect(const std::uintptr_t* first, const std::uintptr_t* last);

    /// How many collections there have been.
    std::size_t collections() const { return collectionCount; }

    /// How many bytes of memory the strings alive and free cells between them take, at most.
    std::size_t footprint() const { return std::size_t{blocks.end()} * blockSize; }

private:
    /// Free cells in a row, from which a size class is served. A chunk may be written beyond the
    /// last one's end: what follows is no live cell.
    struct Run {
        std::uintptr_t next;
        std::uintptr_t end;
    };

    /// Where a size class gets its runs.
    struct Supply {
        std::uintptr_t runBegin;   // of the run in use
        BlockNumber block;         // the run in use is part of it
        std::uint32_t searchFrom;  // the cell of the block where the next search begins
        /// A list of further blocks that may have free cells, in order.
        BlockNumber firstPartial;
        BlockNumber lastPartial;
    };

    /// What a collection found.
    struct Census {
        std::size_t regions;             // with live strings: blocks of cells, and larger strings
        std::size_t usedBlocks;          // all blocks of live strings
        std::size_t residentFreeBlocks;  // free blocks with memory behind them
    };

    /// What an address points into: room for one string.
    struct Place {
        std::size_t head;      // of the region
        std::uint32_t cell;    // of a block of cells
        std::size_t capacity;  // for the text and its NUL
        std::size_t before;    // how many bytes of that lie before the address
    };

    static bool takeCell(Run& run, std::size_t cellSize, char*& text) {
        const std::uintptr_t cell = run.next;
        if (cell == run.end || KREL_COLLECT_ALWAYS) [[unlikely]] {
            return false;
        }
        run.next = cell + cellSize;
        text = reinterpret_cast<char*>(cell + lengthFieldSize);
        return true;
    }

    std::size_t measure(const char* text);
    bool findPlace(std::uintptr_t address, Place& place);
    char* allocateSlowly(std::size_t length, const char* left, const char* right);
    char* allocateCell(std::size_t bytes);
    char* allocateBlocks(std::size_t length);
    bool refill(unsigned sizeClass);
    void endRun(unsigned sizeClass);
    bool findRun(unsigned sizeClass);
    bool findRunInBlock(unsigned sizeClass);
    bool takeBlock(unsigned sizeClass);
    void clearMarks(BlockNumber number);

    bool isCollectionDue() const;
    void collectFromStack();
    void clearMarks();
    void mark(std::uintptr_t word);
    void resetRuns();
    bool isAlive(BlockNumber number);
    Census sweep();
    void addPartial(BlockNumber number);
    void releaseExcess(const Census& census);
    void overwriteDead(BlockNumber number);

    static_assert(sizeClassCount <= 64);

    BlockTable blocks;
    Run runs[sizeClassCount] = {};
    Supply supplies[sizeClassCount] = {};
    std::uintptr_t stackEnd = 0;
    std::uintptr_t pinned[2] = {};    // the operands of the allocation in progress
    std::uint64_t activeClasses = 0;  // one bit for each size class with a run or blocks to use
    std::size_t handedOutBefore = 0;  // since the last collection, without the runs in use
    std::size_t budget = 0;           // so much may be handed out before the next collection
    std::size_t collectionCount = 0;
};

/// The heap of the program's strings.
extern StringHeap stringHeap;

}  // namespace krel
