#include "codegen/runtime/bytes.hpp"

#include <immintrin.h>

namespace krel {

namespace {

// The way to copy texts that are longer than a few chunks; chosen once, by what the processor has.
enum class LongCopy { unknown, stringInstruction, wideRegisters };

constinit LongCopy longCopy = LongCopy::unknown;

// Whether the processor has AVX and the system keeps its registers.
bool hasWideRegisters() {
    constexpr unsigned featureLeaf = 1;
    unsigned features = 0;
    unsigned ignored = featureLeaf;
    asm("cpuid" : "+a"(ignored), "+c"(features) : : "ebx", "edx");
    constexpr unsigned needed = 1U << 27 | 1U << 28;  // reading the state, AVX
    if ((features & needed) != needed) {
        return false;
    }
    constexpr unsigned keptRegisters = 6;
    unsigned state;
    asm("xgetbv" : "=a"(state) : "c"(0) : "edx");
    return (state & keptRegisters) == keptRegisters;
}

using WidePart = __m256i;

[[gnu::target("avx")]] KREL_READS_FREELY inline WidePart loadWide(const char* from) {
    return _mm256_loadu_si256(reinterpret_cast<const WidePart*>(from));
}

[[gnu::target("avx")]] inline void storeWide(char* to, WidePart part) {
    _mm256_storeu_si256(reinterpret_cast<WidePart*>(to), part);
}

// Copies four parts at a time, aligned where they are written; the first part and the last four
// overlap with them.
[[gnu::target("avx")]] void copyWide(char* to, const char* from, std::size_t length) {
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

// The processor's own copying is fast for many bytes if what it writes is aligned to cache lines.
void copyByStringInstruction(char* to, const char* from, std::size_t length) {
    constexpr std::size_t cacheLine = 64;
    copyChunks(to, from, cacheLine - 1);
    const std::size_t unaligned = -reinterpret_cast<std::uintptr_t>(to) % cacheLine;
    to += unaligned;
    from += unaligned;
    length -= unaligned;
    asm volatile("rep movsb" : "+D"(to), "+S"(from), "+c"(length) : : "memory");
}

}  // namespace

void copyLongText(char* to, const char* from, std::size_t length) {
    if (longCopy == LongCopy::unknown) [[unlikely]] {
        longCopy = hasWideRegisters() ? LongCopy::wideRegisters : LongCopy::stringInstruction;
    }
    constexpr std::size_t beyondCaches = std::size_t{1} << 18;
    if (longCopy == LongCopy::wideRegisters && length < beyondCaches) {
        copyWide(to, from, length);
    } else {
        copyByStringInstruction(to, from, length);
    }
}

}  // namespace krel
