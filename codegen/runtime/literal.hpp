// String literals. Their text reaches the runtime with the escapes of the intermediate
// representation in it. Here the escapes are turned into the characters that they stand for.
//
// The five escapes are a backslash followed by n, r, t, a double quote or a backslash. A backslash
// before anything else, or at the end, is an ordinary byte.
#pragma once

#include "codegen/runtime/bytes.hpp"

namespace krel {

/// For each byte after a backslash the character that the two stand for; NUL if they are no escape.
struct EscapedCharacters {
    char characters[256] = {};

    consteval EscapedCharacters() {
        set('n', '\n');
        set('r', '\r');
        set('t', '\t');
        set('"', '"');
        set('\\', '\\');
    }

    constexpr char operator[](char letter) const {
        return characters[static_cast<unsigned char>(letter)];
    }

private:
    consteval void set(char letter, char character) {
        characters[static_cast<unsigned char>(letter)] = character;
    }
};

inline constexpr EscapedCharacters escapedCharacters;

/// Decodes one character: a byte, or an escape.
inline void decodeCharacter(const char*& from, char*& to) {
    const char escaped = *from == '\\' ? escapedCharacters[from[1]] : '\0';
    *to++ = escaped != '\0' ? escaped : *from;
    from += escaped != '\0' ? 2 : 1;
}

/// Decodes a part of the literal, at most a chunk, and moves both pointers behind what was read and
/// written. Returns false at the literal's end. Up to 15 bytes beyond are written with anything.
KREL_READS_FREELY inline bool decodePart(const char*& from, char*& to) {
    if (!chunkStaysInPage(from)) [[unlikely]] {
        if (*from == '\0') {
            return false;
        }
        decodeCharacter(from, to);
        return true;
    }
    const __m128i chunk = loadChunk(from);
    storeChunk(to, chunk);
    const unsigned special = findInChunk(chunk, '\0') | findInChunk(chunk, '\\');
    const int plain = special != 0 ? __builtin_ctz(special) : static_cast<int>(chunkSize);
    from += plain;
    to += plain;
    if (special == 0) {
        return true;
    }
    if (*from == '\0') {
        return false;
    }
    decodeCharacter(from, to);
    return true;
}

/// What measureLiteral finds out.
struct LiteralExtent {
    std::size_t length;  // in bytes, as it stands
    /// Set only if the literal has no escapes and may be copied in chunks: the bytes that are then
    /// read beyond it lie in the same page.
    bool isPlain;
};

/// Measures a literal. Reads whole aligned chunks, none of which crosses into another page.
KREL_READS_FREELY inline LiteralExtent measureLiteral(const char* literal) {
    const auto misalignment = reinterpret_cast<std::uintptr_t>(literal) % chunkSize;
    const char* chunk = literal - misalignment;
    __m128i bytes = loadChunk(chunk);
    unsigned ends = findInChunk(bytes, '\0') >> misalignment << misalignment;
    unsigned backslashes = findInChunk(bytes, '\\') >> misalignment;
    while (ends == 0) {
        chunk += chunkSize;
        bytes = loadChunk(chunk);
        ends = findInChunk(bytes, '\0');
        backslashes |= findInChunk(bytes, '\\');
    }
    const char* end = chunk + __builtin_ctz(ends);
    return {static_cast<std::size_t>(end - literal), backslashes == 0 && chunkStaysInPage(end)};
}

/// Whether the literal is a line feed and nothing else. That is the most frequent literal by far.
inline bool isLineFeed(const char* literal) {
    return literal[0] == '\\' && literal[1] == 'n' && literal[2] == '\0';
}

/// Writes the text that a literal stands for, without a NUL, and returns the byte after it. It is
/// never longer than the literal. Up to 15 bytes beyond its NUL are written with anything.
inline char* decode(const char* literal, char* to) {
    while (decodePart(literal, to)) {
    }
    return to;
}

}  // namespace krel
