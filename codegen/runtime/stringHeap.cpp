// Allocation of strings beyond the quick case, and their collection. Comes in: lengths, and the
// words of the stack. Goes out: room for texts. The marks, the runs and the block table change; the
// bytes of a live string never do.

#include "codegen/runtime/stringHeap.hpp"

namespace krel {

namespace {

/// Where the text of a string with blocks of its own begins in the first one: on a cache line.
constexpr std::size_t singleTextOffset = 64;

constexpr std::size_t longestText = StringHeap::mostBlocks * blockSize / 2;
static_assert(longestText >> 56 == 0, "the byte before a text is 0");

/// The callee-saved registers, written to memory where the scan of the stack sees them.
struct SavedRegisters {
    std::uintptr_t values[6];

    [[gnu::always_inline]] SavedRegisters() {
        asm volatile(
            "movq %%rbx, 0(%0)\n\t"
            "movq %%rbp, 8(%0)\n\t"
            "movq %%r12, 16(%0)\n\t"
            "movq %%r13, 24(%0)\n\t"
            "movq %%r14, 32(%0)\n\t"
            "movq %%r15, 40(%0)"
            :
            : "r"(values)
            : "memory");
    }
};

template <typename Number>
constexpr Number smaller(Number one, Number other) {
    return one < other ? one : other;
}

bool isMarked(const BlockMarks& marks, std::uint32_t cell) {
    return (marks.words[cell / markWordBits] >> cell % markWordBits & 1) != 0;
}

/// The first cell from `cell` on, but before `count`, that is marked or is not; `count` if none is.
std::uint32_t findCell(const BlockMarks& marks, std::uint32_t cell, std::uint32_t count,
                       bool marked) {
    while (cell < count) {
        const std::uint64_t word = marks.words[cell / markWordBits];
        const std::uint64_t hits = (marked ? word : ~word) >> cell % markWordBits;
        if (hits != 0) {
            const std::uint32_t found = cell + static_cast<std::uint32_t>(__builtin_ctzll(hits));
            return found < count ? found : count;
        }
        cell = (cell / markWordBits + 1) * markWordBits;
    }
    return count;
}

std::size_t usedMarkWords(const Block& block) {
    return (sizeClasses[block.sizeClass].cellCount + markWordBits - 1) / markWordBits;
}

}  // namespace

constinit StringHeap stringHeap;

void StringHeap::open(std::uintptr_t endOfStack, std::size_t blockLimit) {
    blocks.open(blockLimit);
    stackEnd = endOfStack;
    budget = bytesBeforeFirstCollection;
    activeClasses = (std::uint64_t{1} << sizeClassCount) - 1;
    resetRuns();
}

// ---- Addresses ----

/// Finds the room that an address points into: into the text there, its NUL or the unused rest
/// behind it. Returns false when it points elsewhere. The room may also be free.
[[gnu::always_inline]] inline bool StringHeap::findPlace(std::uintptr_t address, Place& place) {
    std::size_t head = blocks.numberAt(address);
    if (head >= blocks.end() || !blocks.findHead(head)) {
        return false;
    }
    const Block& block = blocks[head];
    const std::size_t offset = address - blocks.addressOf(head);
    std::size_t textOffset = singleTextOffset;
    place.head = head;
    if (block.use == BlockUse::Single) {
        place.capacity = block.span * blockSize - singleTextOffset - chunkSize;
    } else {
        const SizeClass& sizeClass = sizeClasses[block.sizeClass];
        place.cell = static_cast<std::uint32_t>(offset * sizeClass.reciprocal >> 32);
        if (place.cell >= sizeClass.cellCount) {
            return false;
        }
        place.capacity = sizeClass.cellSize - lengthFieldSize;
        textOffset = std::size_t{place.cell} * sizeClass.cellSize + lengthFieldSize;
    }
    place.before = offset - textOffset;
    return place.before < place.capacity;
}

[[gnu::noinline]] std::size_t StringHeap::measure(const char* text) {
    Place place;
    if (!findPlace(reinterpret_cast<std::uintptr_t>(text), place)) {
        return 0;
    }
    const std::size_t length = lengthOf(text - place.before);
    return length < place.capacity && place.before <= length ? length - place.before : 0;
}

// ---- Allocation ----

[[gnu::noinline]] char* StringHeap::allocateSlowly(std::size_t length, const char* left,
                                                   const char* right) {
    if (length > longestText) {
        return nullptr;
    }
    pinned[0] = reinterpret_cast<std::uintptr_t>(left);
    pinned[1] = reinterpret_cast<std::uintptr_t>(right);
    if constexpr (KREL_COLLECT_ALWAYS) {
        collectFromStack();
    }
    const std::size_t bytes = lengthFieldSize + length + 1;
    char* text = bytes <= largestCell ? allocateCell(bytes) : allocateBlocks(length);
    pinned[0] = pinned[1] = 0;
    return text;
}

char* StringHeap::allocateCell(std::size_t bytes) {
    const unsigned sizeClass = sizeClasses.of(bytes);
    Run& run = runs[sizeClass];
    if (run.next == run.end && !refill(sizeClass)) {
        return nullptr;
    }
    const std::uintptr_t cell = run.next;
    run.next += sizeClasses[sizeClass].cellSize;
    return reinterpret_cast<char*>(cell + lengthFieldSize);
}

bool StringHeap::refill(unsigned sizeClass) {
    endRun(sizeClass);
    if (isCollectionDue()) {
        collectFromStack();
    }
    if (findRun(sizeClass) || takeBlock(sizeClass)) {
        return true;
    }
    collectFromStack();
    return findRun(sizeClass) || takeBlock(sizeClass);
}

void StringHeap::endRun(unsigned sizeClass) {
    Run& run = runs[sizeClass];
    Supply& supply = supplies[sizeClass];
    handedOutBefore += run.next - supply.runBegin;
    supply.runBegin = run.end = run.next;
}

/// Goes on to the next free cells of the block in use, or of the blocks on the list.
bool StringHeap::findRun(unsigned sizeClass) {
    Supply& supply = supplies[sizeClass];
    while (!findRunInBlock(sizeClass)) {
        supply.block = supply.firstPartial;
        if (supply.block == noBlock) {
            return false;
        }
        supply.firstPartial = blocks[supply.block].nextPartial;
        supply.searchFrom = 0;
    }
    return true;
}

bool StringHeap::findRunInBlock(unsigned sizeClass) {
    Supply& supply = supplies[sizeClass];
    if (supply.block == noBlock) {
        return false;
    }
    const auto [cellSize, count, reciprocal] = sizeClasses[sizeClass];
    // Runs are kept short: at the end of each one it is time to think of a collection.
    const std::uint32_t longest = 1 + static_cast<std::uint32_t>(smallestBudget / 2) / cellSize;
    const BlockMarks& marks = blocks.marksOf(supply.block);
    while (supply.searchFrom < count) {
        const std::uint32_t first = findCell(marks, supply.searchFrom, count, false);
        const std::uint32_t limit = smaller(count, first + longest);
        const std::uint32_t next = findCell(marks, first, limit, true);
        supply.searchFrom = next;
        // The cell before a live one stays unused: writes may go beyond a cell's end.
        const bool isLiveNext = next < count && isMarked(marks, next);
        const std::uint32_t end = next - (isLiveNext && first < next ? 1 : 0);
        if (first < end) {
            const std::uintptr_t block = blocks.addressOf(supply.block);
            runs[sizeClass] = {block + std::uintptr_t{first} * cellSize,
                               block + std::uintptr_t{end} * cellSize};
            supply.runBegin = runs[sizeClass].next;
            activeClasses |= std::uint64_t{1} << sizeClass;
            return true;
        }
    }
    return false;
}

bool StringHeap::takeBlock(unsigned sizeClass) {
    const BlockNumber number = blocks.take(1, BlockUse::Cells);
    if (number == noBlock) {
        return false;
    }
    blocks[number].sizeClass = static_cast<std::uint8_t>(sizeClass);
    clearMarks(number);
    supplies[sizeClass].block = number;
    supplies[sizeClass].searchFrom = 0;
    return findRunInBlock(sizeClass);
}

char* StringHeap::allocateBlocks(std::size_t length) {
    const std::size_t bytes = singleTextOffset + length + 1 + chunkSize;
    const auto span = static_cast<std::uint32_t>((bytes + blockSize - 1) / blockSize);
    if (isCollectionDue()) {
        collectFromStack();
    }
    BlockNumber number = blocks.take(span, BlockUse::Single);
    if (number == noBlock) {
        collectFromStack();
        number = blocks.take(span, BlockUse::Single);
    }
    if (number == noBlock) {
        return nullptr;
    }
    handedOutBefore += span * blockSize;
    return reinterpret_cast<char*>(blocks.addressOf(number) + singleTextOffset);
}

// ---- Collection ----

bool StringHeap::isCollectionDue() const {
    std::size_t handedOut = handedOutBefore;
    for (std::uint64_t classes = activeClasses; classes != 0; classes &= classes - 1) {
        const int sizeClass = __builtin_ctzll(classes);
        handedOut += runs[sizeClass].next - supplies[sizeClass].runBegin;
    }
    return handedOut >= budget;
}

/// Everything that the program holds lies above this frame, or in a register that its callers
/// expect to be preserved.
[[gnu::noinline]] void StringHeap::collectFromStack() {
    if (stackEnd == 0) {
        return;
    }
    const SavedRegisters registers;
    collect(registers.values, reinterpret_cast<const std::uintptr_t*>(stackEnd));
}

KREL_READS_FREELY void StringHeap::collect(const std::uintptr_t* first,
                                           const std::uintptr_t* last) {
    clearMarks();
    mark(pinned[0]);
    mark(pinned[1]);
    // A minus before a string negates its address, and a second one gives the string back.
    const std::uintptr_t begin = blocks.addressOf(0);
    const std::size_t size = footprint();
    for (const std::uintptr_t* word = first; word < last; ++word) {
        if (*word - begin < size) {
            mark(*word);
        } else if (-*word - begin < size) {
            mark(-*word);
        }
    }
    resetRuns();
    const Census census = sweep();
    // A collection looks at every word of the stack and at the marks of every region. So much is
    // handed out before the next one that this stays a small part of the work.
    const auto stackBytes =
        first < last ? static_cast<std::size_t>(last - first) * sizeof *first : 0;
    budget = smallestBudget + 4 * stackBytes + census.regions * blockSize / 8;
    releaseExcess(census);
    ++collectionCount;
}

void StringHeap::clearMarks() {
    for (BlockNumber number = 0; number < blocks.end(); number += blocks[number].span) {
        blocks[number].marked = false;
        if (blocks[number].use == BlockUse::Cells) {
            clearMarks(number);
        }
    }
}

void StringHeap::clearMarks(BlockNumber number) {
    const std::size_t count = usedMarkWords(blocks[number]);
    BlockMarks& marks = blocks.marksOf(number);
    for (std::size_t i = 0; i < count; ++i) {
        marks.words[i] = 0;
    }
}

/// Marks the string that the address points into, if there is one.
void StringHeap::mark(std::uintptr_t word) {
    Place place;
    if (!findPlace(word, place)) {
        return;
    }
    if (blocks[place.head].use == BlockUse::Single) {
        blocks[place.head].marked = true;
    } else {
        blocks.marksOf(place.head).words[place.cell / markWordBits] |= std::uint64_t{1}
                                                                       << place.cell % markWordBits;
    }
}

void StringHeap::resetRuns() {
    for (; activeClasses != 0; activeClasses &= activeClasses - 1) {
        const int sizeClass = __builtin_ctzll(activeClasses);
        runs[sizeClass] = {0, 0};
        supplies[sizeClass] = {0, noBlock, 0, noBlock, noBlock};
    }
    handedOutBefore = 0;
}

bool StringHeap::isAlive(BlockNumber number) {
    const Block& block = blocks[number];
    if (block.use != BlockUse::Cells) {
        return block.marked;
    }
    const BlockMarks& marks = blocks.marksOf(number);
    for (std::size_t i = 0; i < usedMarkWords(block); ++i) {
        if (marks.words[i] != 0) {
            return true;
        }
    }
    return false;
}

/// Frees the regions without a live string, joins free neighbours, and lists for each size class
/// the blocks that may have free cells.
StringHeap::Census StringHeap::sweep() {
    Census census = {};
    BlockNumber freeBefore = noBlock;
    BlockNumber next;
    for (BlockNumber number = 0; number < blocks.end(); number = next) {
        Block& block = blocks[number];
        next = number + block.span;
        if constexpr (KREL_COLLECT_ALWAYS) {
            overwriteDead(number);
        }
        if (isAlive(number)) {
            freeBefore = noBlock;
            if (block.use == BlockUse::Cells) {
                addPartial(number);
            }
            ++census.regions;
            census.usedBlocks += block.span;
            continue;
        }
        if (block.use != BlockUse::Free) {
            block.use = BlockUse::Free;
            block.resident = block.span;
        }
        census.residentFreeBlocks += block.resident;
        if (freeBefore == noBlock) {
            freeBefore = number;
        } else {
            Block& head = blocks[freeBefore];
            head.resident = block.resident != 0 ? head.span + block.resident : head.resident;
            head.span += block.span;
        }
    }
    blocks.restartSearch();
    return census;
}

void StringHeap::addPartial(BlockNumber number) {
    Block& block = blocks[number];
    block.nextPartial = noBlock;
    Supply& supply = supplies[block.sizeClass];
    if (supply.firstPartial == noBlock) {
        supply.firstPartial = number;
    } else {
        blocks[supply.lastPartial].nextPartial = number;
    }
    supply.lastPartial = number;
    activeClasses |= std::uint64_t{1} << block.sizeClass;
}

/// Gives memory of free blocks back to the system. Keeps what will soon be used again: as many
/// blocks as are in use now, and some more.
void StringHeap::releaseExcess(const Census& census) {
    std::size_t kept = census.usedBlocks + (bytesBeforeFirstCollection + budget) / blockSize;
    if (census.residentFreeBlocks <= kept) {
        return;
    }
    for (BlockNumber number = 0; number < blocks.end(); number += blocks[number].span) {
        Block& block = blocks[number];
        if (block.use != BlockUse::Free) {
            continue;
        }
        const auto keptHere =
            static_cast<std::uint32_t>(smaller<std::size_t>(kept, block.resident));
        kept -= keptHere;
        if (keptHere != block.resident) {
            releaseMemory(blocks.addressOf(number + keptHere),
                          std::size_t{block.resident - keptHere} * blockSize);
            block.resident = keptHere;
        }
    }
}

void StringHeap::overwriteDead(BlockNumber number) {
    constexpr char trace = '\xDB';
    constexpr std::size_t tracedLength = 0xDBDBDBDBDBDBDBDB;
    const Block& block = blocks[number];
    if (block.use == BlockUse::Single && !block.marked) {
        char* bytes = reinterpret_cast<char*>(blocks.addressOf(number));
        for (std::size_t i = 0; i < blockSize; ++i) {
            bytes[i] = trace;
        }
    }
    if (block.use != BlockUse::Cells) {
        return;
    }
    const SizeClass& sizeClass = sizeClasses[block.sizeClass];
    for (std::uint32_t cell = 0; cell < sizeClass.cellCount; ++cell) {
        char* bytes = reinterpret_cast<char*>(blocks.addressOf(number) +
                                              std::uintptr_t{cell} * sizeClass.cellSize);
        if (isMarked(blocks.marksOf(number), cell) ||
            lengthOf(bytes + lengthFieldSize) == tracedLength) {
            continue;
        }
        for (std::size_t i = 0; i < sizeClass.cellSize; ++i) {
            bytes[i] = trace;
        }
    }
}

}  // namespace krel
