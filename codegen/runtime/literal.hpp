// Text of string literals: it reaches the runtime with the escapes of the intermediate
// representation in it, and they are turned into the characters that they stand for.
//
// The five escapes are a backslash followed by n, r, t, a double quote or a backslash. A backslash
// before anything else, or at the end, is an ordinary byte.
#pragma once

#include <cstddef>

#include "codegen/runtime/bytes.hpp"

namespace krel {

// The character that a backslash and `letter` stand for, or NUL if that is no escape.
constexpr char escapedCharacter(char letter) {
    switch (letter) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case '"':
        case '\\':
            return letter;
        default:
            return '\0';
    }
}

// Hands the text out in pieces that stand for themselves: calls piece(bytes, length) for each in
// order. The bytes are part of the literal, or one decoded character; they are not kept.
template <typename Piece>
inline void forEachPiece(const char* literal, Piece&& piece) {
    for (;;) {
        const char* end = findEnd<true>(literal);
        const char character = *end == '\0' ? '\0' : escapedCharacter(end[1]);
        const bool plainBackslash = *end != '\0' && character == '\0';
        const char* pieceEnd = end + (plainBackslash ? 1 : 0);
        if (pieceEnd != literal) {
            piece(literal, static_cast<std::size_t>(pieceEnd - literal));
        }
        if (*end == '\0') {
            return;
        }
        if (plainBackslash) {
            literal = pieceEnd;
            continue;
        }
        piece(&character, std::size_t{1});
        literal = end + 2;
    }
}

// The length of the text that the literal stands for.
inline std::size_t decodedLength(const char* literal) {
    std::size_t length = 0;
    forEachPiece(literal,
                 [&length](const char*, std::size_t pieceLength) { length += pieceLength; });
    return length;
}

// Writes the text that the literal stands for, without a NUL, and returns the byte after it.
inline char* decode(const char* literal, char* to) {
    forEachPiece(literal, [&to](const char* piece, std::size_t pieceLength) {
        copyBytes(to, piece, pieceLength);
        to += pieceLength;
    });
    return to;
}

}  // namespace krel
