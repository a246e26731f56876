// Copying and searching bytes in chunks of sixteen, without the C library.
#pragma once

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

// For functions that read memory outside of their own objects: the rest of a chunk around a text's
// end, the words of the stack. AddressSanitizer would report that.
#define KREL_READS_FREELY __attribute__((no_sanitize("address")))

namespace krel {

inline constexpr std::size_t chunkSize = 16;
inline constexpr std::size_t pageSize = 4096;

KREL_READS_FREELY inline __m128i loadChunk(const char* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

inline void storeChunk(char* to, __m128i chunk) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), chunk);
}

/// One bit for each byte of the chunk that equals `byte`.
inline unsigned findInChunk(__m128i chunk, char byte) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, _mm_set1_epi8(byte))));
}

/// Whether a chunk may be read from the first byte of a text: it does not reach into the next page,
/// which may not be there.
inline bool chunkStaysInPage(const char* text) {
    return reinterpret_cast<std::uintptr_t>(text) % pageSize <= pageSize - chunkSize;
}

/// Copies a text of `length` bytes in chunks. Up to 15 bytes beyond its NUL are read, and written
/// with anything.
KREL_READS_FREELY inline void copyChunks(char* to, const char* from, std::size_t length) {
    std::size_t done = 0;
    do {
        storeChunk(to + done, loadChunk(from + done));
        done += chunkSize;
    } while (done <= length);
}

inline constexpr std::size_t longTextLength = 256;

/// Copies exactly `length` bytes, at least longTextLength, between places that do not overlap. Uses
/// wide registers if the processor has them and the text is not too large for its caches, and the
/// string instruction otherwise.
void copyLongText(char* to, const char* from, std::size_t length);
void copyByWideRegisters(char* to, const char* from, std::size_t length);
void copyByStringInstruction(char* to, const char* from, std::size_t length);

/// Whether the processor has AVX and the system keeps its registers.
bool hasWideRegisters();

/// Copies a text of any length; reads and writes beyond it like copyChunks.
inline void copyText(char* to, const char* from, std::size_t length) {
    if (length < longTextLength) {
        copyChunks(to, from, length);
    } else {
        copyLongText(to, from, length);
    }
}

}  // namespace krel
