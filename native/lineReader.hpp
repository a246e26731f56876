#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "native/wordTable.hpp"

namespace krel::Native {

inline bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Characters that the assembler allows in names and labels.
inline constexpr std::array<bool, 256> nameCharacters = [] {
    std::array<bool, 256> isIncluded{};
    for (const char character : std::string_view{"abcdefghijklmnopqrstuvwxyz_."
                                                 "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"}) {
        isIncluded[static_cast<unsigned char>(character)] = true;
    }
    return isIncluded;
}();

/// A text that is read from left to right, line by line. It has to end in a line feed: whatever
/// stops in front of one stays in the text.
class LineReader {
public:
    explicit LineReader(std::string_view text) : next(text.data()), textEnd(next + text.size()) {}

    bool isAtEndOfText() const { return next == textEnd; }
    bool isAtEndOfLine() const { return *next == '\n'; }
    bool isAt(char character) const { return *next == character; }
    bool isAtDigit() const { return isDigit(*next); }
    /// What is left of the text.
    std::string_view rest() const { return {next, static_cast<std::size_t>(textEnd - next)}; }
    /// To be called in front of that many characters.
    void skip(std::size_t count) { next += count; }

    /// Skips a text without line feeds that stands here, and tells whether it does.
    bool take(std::string_view expected) {
        if (!rest().starts_with(expected)) {
            return false;
        }
        next += expected.size();
        return true;
    }

    /// The characters of a name that stand here, possibly none.
    std::string_view takeName() {
        const char* const begin = next;
        while (nameCharacters[static_cast<unsigned char>(*next)]) {
            ++next;
        }
        return {begin, static_cast<std::size_t>(next - begin)};
    }

    /// All up to a character, or to the end of the line.
    PackedWord takeWordBefore(char limit) {
        PackedWord word;
        for (; *next != limit && *next != '\n'; ++next) {
            word.add(*next);
        }
        return word;
    }

    std::string_view takeRestOfLine() {
        const char* const begin = next;
        while (*next != '\n') {
            ++next;
        }
        return {begin, static_cast<std::size_t>(next - begin)};
    }

    /// The digits that stand here as a number. False when there are none, when they are too many,
    /// and when another digit follows a zero: such a number is octal for other assemblers.
    bool takeDigits(std::uint64_t& value) {
        const char* const begin = next;
        value = 0;
        for (; isAtDigit(); ++next) {
            if (__builtin_mul_overflow(value, 10U, &value) ||
                __builtin_add_overflow(value, static_cast<unsigned>(*next - '0'), &value)) {
                return false;
            }
        }
        return next != begin && (*begin != '0' || next - begin == 1);
    }

private:
    const char* next;
    const char* textEnd;
};

}  // namespace krel::Native
