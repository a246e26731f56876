#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "shared/error/place.hpp"

namespace krel::Lsp {

/// What the columns of a line count: bytes, 16-bit units of UTF-16, or characters.
enum class Encoding : std::uint8_t { Utf8, Utf16, Utf32 };

/// A place as editors name it; lines and columns count from 0.
struct Position {
    std::uint64_t line = 0;
    std::uint64_t character = 0;

    friend bool operator==(const Position&, const Position&) = default;
};

/// The lines of a text as editors see them. They end with a line feed, a carriage return, or both;
/// that is not so in Krel, where only a line feed ends a line. Finding a place takes no longer in a
/// long line than in a short one. The text, which is UTF-8, must outlive the object.
class Lines {
public:
    Lines(std::string_view itsText, Encoding itsEncoding);

    /// The place of a byte; within a character, that of the character. Bytes behind the text count
    /// as its end.
    Position positionOf(std::uint32_t offset) const;
    /// The byte at a place. A column behind the end of its line is that end, a line behind the last
    /// is the end of the text; a column within a character is the character's first byte.
    std::uint32_t offsetOf(Position position) const;
    /// The range of a line without its line end; empty behind the last.
    SourceRange line(std::uint64_t number) const;
    std::uint64_t count() const { return begins.size(); }

private:
    void findBegins();
    void countUnits();
    std::uint64_t unitsBefore(std::uint32_t offset) const;
    std::uint32_t widthAt(std::uint32_t offset) const;

    std::string_view text;
    Encoding encoding;
    std::vector<std::uint32_t> begins;  // of all lines; the first is 0
    std::vector<std::uint32_t> blocks;  // units before each block; none if bytes are units
};

}  // namespace krel::Lsp
