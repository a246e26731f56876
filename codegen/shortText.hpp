#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace krel {

/// A text of at most 23 characters that is kept in place: a register, an address, a number. It can
/// stand for a string view wherever one is taken.
class ShortText {
public:
    static constexpr std::size_t capacity = 23;

    constexpr ShortText() = default;

    template <std::size_t size>
    constexpr explicit ShortText(const char (&literal)[size]) {
        append(literal);
    }

    /// The number in decimal.
    template <std::integral Number>
    static ShortText of(Number number) {
        ShortText text;
        char* const begin = text.characters.data();
        text.length =
            static_cast<std::uint8_t>(std::to_chars(begin, begin + capacity, number).ptr - begin);
        return text;
    }

    /// There must be room for it.
    template <std::size_t size>
    constexpr void append(const char (&literal)[size]) {
        static_assert(size - 1 <= capacity);
        std::copy_n(literal, size - 1, characters.begin() + length);
        length = static_cast<std::uint8_t>(length + size - 1);
    }

    operator std::string_view() const { return {characters.data(), length}; }

    /// Copies the text to a place with room for any short text, which takes fewer instructions than
    /// to copy just its characters. Returns where the next part goes.
    friend char* writePart(char* at, const ShortText& text) {
        std::memcpy(at, text.characters.data(), capacity);
        return at + text.length;
    }

private:
    std::array<char, capacity> characters{};
    std::uint8_t length = 0;
};

}  // namespace krel
