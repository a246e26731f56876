// The sizes in which strings are allocated. A block of 64 KB is cut into cells of one size; what
// does not fit half a block gets blocks of its own.
//
// A cell holds the text's length in eight bytes, the text and its NUL. The last bytes of a block
// belong to no cell, so that a chunk that begins in a cell never leaves the block.
#pragma once

#include <cstddef>
#include <cstdint>

#include "codegen/runtime/bytes.hpp"

namespace krel {

inline constexpr std::size_t blockSize = std::size_t{1} << 16;
inline constexpr std::size_t lengthFieldSize = sizeof(std::size_t);
inline constexpr std::size_t cellSpace = blockSize - chunkSize;

/// Every multiple of eight at first, then at most a quarter more than the size before; from 1 KB on
/// the sizes divide a block evenly, so the last two steps, to a third and to a half of a block, are
/// larger.
inline constexpr std::uint32_t cellSizes[] = {
    16,   24,   32,   40,   48,   56,   64,   72,   80,   88,   96,    104,   112,   120,   128,
    160,  192,  224,  256,  320,  384,  448,  512,  640,  768,  896,   1024,  1168,  1360,  1632,
    2032, 2336, 2720, 3264, 4080, 4672, 5456, 6544, 8176, 9344, 10912, 13104, 16368, 21840, 32752};
inline constexpr unsigned sizeClassCount = sizeof cellSizes / sizeof cellSizes[0];
inline constexpr std::size_t largestCell = cellSizes[sizeClassCount - 1];
inline constexpr std::size_t smallestCell = cellSizes[0];

/// One size of cells.
struct SizeClass {
    std::uint32_t cellSize;
    std::uint32_t cellCount;
    /// offset * reciprocal >> 32 is offset / cellSize for every offset in a block.
    std::uint32_t reciprocal;
};

/// Fills a table whose entry i is for i * step bytes.
template <std::size_t Count>
consteval void listServingClasses(std::uint8_t (&table)[Count], std::size_t step) {
    std::uint8_t serving = 0;
    for (std::size_t i = 0; i < Count; ++i) {
        while (cellSizes[serving] < i * step) {
            ++serving;
        }
        table[i] = serving;
    }
}

/// Which class serves how many bytes. For the smallest sizes that is computed; for the others it is
/// looked up in a table with fine steps or in one with coarse steps.
class SizeClasses {
public:
    /// Up to this size there is a class for every multiple of eight.
    static constexpr std::size_t smallLimit = 128;

    consteval SizeClasses() {
        for (unsigned i = 0; i < sizeClassCount; ++i) {
            const std::uint32_t size = cellSizes[i];
            classes[i] = {size, static_cast<std::uint32_t>(cellSpace / size),
                          static_cast<std::uint32_t>((std::uint64_t{1} << 32) / size + 1)};
        }
        listServingClasses(fine, fineStep);
        listServingClasses(coarse, coarseStep);
    }

    constexpr const SizeClass& operator[](unsigned sizeClass) const { return classes[sizeClass]; }

    /// The class of the smallest cell of at least `bytes` bytes. `bytes` must be more than
    /// smallestCell - 8, and at most smallLimit.
    static constexpr std::size_t ofSmall(std::size_t bytes) {
        return (bytes + fineStep - 1) / fineStep - smallestCell / fineStep;
    }

    /// The same for all sizes up to the largest cell's. Not always the smallest cell: within a
    /// coarse step all sizes are served alike.
    constexpr unsigned of(std::size_t bytes) const {
        if (bytes <= fineLimit) {
            return fine[(bytes + fineStep - 1) / fineStep];
        }
        const std::size_t step = (bytes + coarseStep - 1) / coarseStep;
        return step < sizeof coarse ? coarse[step] : sizeClassCount - 1;
    }

private:
    static constexpr std::size_t fineLimit = 1024;
    static constexpr std::size_t fineStep = 8;
    static constexpr std::size_t coarseStep = 128;

    SizeClass classes[sizeClassCount] = {};
    std::uint8_t fine[fineLimit / fineStep + 1] = {};
    std::uint8_t coarse[largestCell / coarseStep + 1] = {};
};

inline constexpr SizeClasses sizeClasses;

}  // namespace krel
