// Reserving, taking and describing blocks. Comes in: a number of blocks and their use. Goes out:
// the number of the first one. The entries of the table change, never the blocks themselves.

#include "codegen/runtime/blockTable.hpp"

#include <initializer_list>

namespace krel {

namespace {

constexpr std::size_t fewestBlocks = 16;

// Sizes of the parts of a reservation: whole pages.
constexpr std::size_t heapSize(std::size_t count) {
    return (count + BlockTable::margin) * blockSize;
}
constexpr std::size_t tableSize(std::size_t count) {
    return (count * sizeof(Block) + pageSize - 1) / pageSize * pageSize;
}
constexpr std::size_t marksSize(std::size_t count) {
    return (count * sizeof(BlockMarks) + pageSize - 1) / pageSize * pageSize;
}
constexpr std::size_t reservationSize(std::size_t count) {
    return heapSize(count) + tableSize(count) + marksSize(count);
}

bool canReserve(std::size_t length) {
    const std::uintptr_t address = reserveAddresses(length);
    if (address == 0) {
        return false;
    }
    releaseAddresses(address, length);
    return true;
}

/// The greatest count for which there is room, to about a tenth.
std::size_t findCount(std::size_t limit, std::size_t leftToOthers) {
    std::size_t count = 0;
    for (std::size_t step = limit; step >= fewestBlocks && step >= count / 8; step /= 2) {
        if (count + step <= limit && canReserve(reservationSize(count + step) + leftToOthers)) {
            count += step;
        }
    }
    return count;
}

}  // namespace

/// Where too little remains to leave others their full share, they get half of what there is.
bool BlockTable::open(std::size_t limit) {
    return reserve(limit) || reserve(findCount(limit, addressesForOthers())) ||
           reserve(findCount(limit, 0) / 2);
}

bool BlockTable::reserve(std::size_t count) {
    const std::uintptr_t address = count != 0 ? reserveAddresses(reservationSize(count)) : 0;
    if (address == 0) {
        return false;
    }
    constexpr std::size_t heapPiece = std::size_t{1} << 20;
    constexpr std::size_t recordPiece = std::size_t{1} << 16;
    heap = AddressRange(address, heapSize(count), heapPiece);
    table = AddressRange(heap.begin() + heap.size(), tableSize(count), recordPiece);
    marks = AddressRange(table.begin() + table.size(), marksSize(count), recordPiece);
    return true;
}

BlockNumber BlockTable::take(std::uint32_t span, BlockUse use) {
    BlockNumber& cursor = span == 1 ? cursorForOne : cursorForMany;
    BlockNumber last = blockCount;
    for (; cursor != blockCount; cursor += entries()[cursor].span) {
        last = cursor;
        const Block& head = entries()[cursor];
        if (head.use != BlockUse::Free || head.span < span) {
            continue;
        }
        const BlockNumber first = cursor;
        const std::uint32_t rest = head.span - span;
        if (rest != 0) {
            const std::uint32_t resident = head.resident > span ? head.resident - span : 0;
            entries()[first + span] = {BlockUse::Free, 0, false, rest, noBlock, resident};
        }
        beginRegion(first, span, use);
        cursor += span;
        return first;
    }
    const bool endsFree = last != blockCount && entries()[last].use == BlockUse::Free;
    return extend(endsFree ? last : blockCount, span, use);
}

BlockNumber BlockTable::extend(BlockNumber first, std::uint32_t span, BlockUse use) {
    const std::size_t newEnd = std::size_t{first} + span;
    if (!heap.makeUsable((newEnd + margin) * blockSize) ||
        !table.makeUsable(newEnd * sizeof(Block)) ||
        !marks.makeUsable(newEnd * sizeof(BlockMarks))) {
        return noBlock;
    }
    beginRegion(first, span, use);
    // The old end may now lie within the region.
    for (BlockNumber* cursor : {&cursorForOne, &cursorForMany}) {
        if (*cursor == blockCount) {
            *cursor = static_cast<BlockNumber>(newEnd);
        }
    }
    blockCount = static_cast<BlockNumber>(newEnd);
    return first;
}

void BlockTable::beginRegion(BlockNumber first, std::uint32_t span, BlockUse use) {
    entries()[first] = {use, 0, false, span, noBlock, 0};
    for (std::uint32_t before = 1; before < span; ++before) {
        entries()[first + before] = {BlockUse::Inner, 0, false, before, noBlock, 0};
    }
}

}  // namespace krel
