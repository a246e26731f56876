// Copying long texts. Comes in: two places and a length. Goes out: the bytes, copied. The way of
// copying is chosen at the first call and remembered.

#include "codegen/runtime/bytes.hpp"

#include <immintrin.h>

namespace krel {

namespace {

using WidePart = __m256i;

[[gnu::target("avx")]] KREL_READS_FREELY inline WidePart loadWide(const char* from) {
    return _mm256_loadu_si256(reinterpret_cast<const WidePart*>(from));
}

[[gnu::target("avx")]] inline void storeWide(char* to, WidePart part) {
    _mm256_storeu_si256(reinterpret_cast<WidePart*>(to), part);
}

enum class LongCopy { Undecided, ByWideRegisters, ByStringInstruction };

constinit LongCopy longCopy = LongCopy::Undecided;

}  // namespace

bool hasWideRegisters() {
    constexpr unsigned featureLeaf = 1;
    unsigned features = 0;
    unsigned leaf = featureLeaf;
    asm("cpuid" : "+a"(leaf), "+c"(features) : : "ebx", "edx");
    constexpr unsigned needed = 1U << 27 | 1U << 28;  // the state can be read; AVX
    if ((features & needed) != needed) {
        return false;
    }
    constexpr unsigned keptRegisters = 6;
    unsigned state;
    asm("xgetbv" : "=a"(state) : "c"(0) : "edx");
    return (state & keptRegisters) == keptRegisters;
}

void copyLongText(char* to, const char* from, std::size_t length) {
    if (longCopy == LongCopy::Undecided) [[unlikely]] {
        longCopy = hasWideRegisters() ? LongCopy::ByWideRegisters : LongCopy::ByStringInstruction;
    }
    constexpr std::size_t tooLargeForCaches = std::size_t{1} << 18;
    if (longCopy == LongCopy::ByWideRegisters && length < tooLargeForCaches) {
        copyByWideRegisters(to, from, length);
    } else {
        copyByStringInstruction(to, from, length);
    }
}

/// Copies four parts at a time to aligned addresses. The first part and the last four are copied
/// separately, and may overlap with those.
[[gnu::target("avx")]] void copyByWideRegisters(char* to, const char* from, std::size_t length) {
    constexpr std::size_t width = sizeof(WidePart);
    constexpr std::size_t step = 4 * width;
    storeWide(to, loadWide(from));
    std::size_t done = width - reinterpret_cast<std::uintptr_t>(to) % width;
    for (; done + step < length; done += step) {
        const WidePart first = loadWide(from + done);
        const WidePart second = loadWide(from + done + width);
        const WidePart third = loadWide(from + done + 2 * width);
        const WidePart fourth = loadWide(from + done + 3 * width);
        storeWide(to + done, first);
        storeWide(to + done + width, second);
        storeWide(to + done + 2 * width, third);
        storeWide(to + done + 3 * width, fourth);
    }
    for (std::size_t back = step; back != 0; back -= width) {
        storeWide(to + length - back, loadWide(from + length - back));
    }
}

/// The processor copies many bytes fast if what it writes is aligned to cache lines.
void copyByStringInstruction(char* to, const char* from, std::size_t length) {
    constexpr std::size_t cacheLine = 64;
    copyChunks(to, from, cacheLine - 1);
    const std::size_t unaligned = -reinterpret_cast<std::uintptr_t>(to) % cacheLine;
    to += unaligned;
    from += unaligned;
    length -= unaligned;
    asm volatile("rep movsb" : "+D"(to), "+S"(from), "+c"(length) : : "memory");
}

}  // namespace krel
