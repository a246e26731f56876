// Copying and searching bytes sixteen at a time, without the C library.
#pragma once

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

// The searches read whole aligned sixteens. Such a read never crosses into another page, but it
// does read bytes beside the text, which the sanitizers would report.
#define KREL_READS_BESIDE_TEXT __attribute__((no_sanitize("address")))

namespace krel {

inline constexpr std::size_t chunkSize = 16;

inline __m128i loadChunk(const char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

inline void storeChunk(char* to, __m128i chunk) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), chunk);
}

// Copies `length` bytes and up to 15 more: both sides have to be accessible that far.
KREL_READS_BESIDE_TEXT inline void copyChunks(char* to, const char* from, std::size_t length) {
    for (std::size_t done = 0; done < length; done += chunkSize) {
        storeChunk(to + done, loadChunk(from + done));
    }
}

// Copies exactly `length` bytes between places that do not overlap.
inline void copyBytes(char* to, const char* from, std::size_t length) {
    asm volatile("rep movsb" : "+D"(to), "+S"(from), "+c"(length) : : "memory");
}

// Returns the first byte from `text` on that is NUL, or, where `Escapes` holds, a backslash.
template <bool Escapes>
KREL_READS_BESIDE_TEXT inline const char* findEnd(const char* text) {
    const auto misalignment = reinterpret_cast<std::uintptr_t>(text) % chunkSize;
    const char* chunk = text - misalignment;
    unsigned beforeText = (1U << misalignment) - 1U;
    for (;;) {
        const __m128i bytes = _mm_load_si128(reinterpret_cast<const __m128i*>(chunk));
        __m128i hits = _mm_cmpeq_epi8(bytes, _mm_setzero_si128());
        if constexpr (Escapes) {
            hits = _mm_or_si128(hits, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\')));
        }
        const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(hits)) & ~beforeText;
        if (mask != 0) {
            return chunk + __builtin_ctz(mask);
        }
        beforeText = 0;
        chunk += chunkSize;
    }
}

// The length of a NUL-terminated text, in bytes.
inline std::size_t textLength(const char* text) {
    return static_cast<std::size_t>(findEnd<false>(text) - text);
}

}  // namespace krel
