#pragma once

#include <cstddef>
#include <string_view>

namespace krel {

namespace Format {

constexpr std::size_t indentationStep = 4;
/// Nothing is indented or moved to the right further than this, however deeply it is nested: so a
/// result is never larger than so many times its source.
constexpr std::size_t mostColumns = 100;

/// What may stand at the ends of a comment's line.
constexpr std::string_view blanks = " \t\r";

/// The text without the given characters at its end.
inline std::string_view withoutEnd(std::string_view text, std::string_view characters) {
    const std::size_t last = text.find_last_not_of(characters);
    return text.substr(0, last == text.npos ? 0 : last + 1);
}

/// The text without the given characters at both ends.
inline std::string_view withoutEnds(std::string_view text, std::string_view characters) {
    text = withoutEnd(text, characters);
    text.remove_prefix(text.empty() ? 0 : text.find_first_not_of(characters));
    return text;
}

/// Takes the first line and its line feed away from a text; returns the line.
inline std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return line;
}

/// The column behind a text that begins at a column. A tab leads to the next step of indentation,
/// the bytes of a UTF-8 character behind its first take no column.
inline std::size_t columnBehind(std::string_view text, std::size_t column = 0) {
    for (const char character : text) {
        if (character == '\t') {
            column += indentationStep - column % indentationStep;
        } else if ((static_cast<unsigned char>(character) & 0xC0U) != 0x80U) {
            ++column;
        }
    }
    return column;
}

}  // namespace Format

}  // namespace krel
