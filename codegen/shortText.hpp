#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// A text of at most 23 characters, kept in place. All of them are copied whatever its size, which
/// takes a few moves and no call: this is how most of the assembly text (registers, addresses,
/// numbers) gets into the output.
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
        char* begin = text.characters.data();
        text.length =
            static_cast<std::uint8_t>(std::to_chars(begin, begin + capacity, number).ptr - begin);
        return text;
    }

    /// There must be room for it.
    template <std::size_t size>
    constexpr void append(const char (&literal)[size]) {
        static_assert(size - 1 <= capacity);
        for (std::size_t index = 0; index + 1 < size; ++index) {
            characters[length + index] = literal[index];
        }
        length = static_cast<std::uint8_t>(length + size - 1);
    }

    constexpr std::size_t size() const { return length; }
    /// `capacity` characters, of which size() count.
    const char* data() const { return characters.data(); }
    std::string_view view() const { return {characters.data(), length}; }

private:
    std::array<char, capacity> characters{};
    std::uint8_t length = 0;
};

// As a part of another text: `writePart` needs room for all the characters.
inline std::size_t partSize(const ShortText& text) {
    return text.size();
}
inline char* writePart(char* at, const ShortText& text) {
    std::memcpy(at, text.data(), ShortText::capacity);
    return at + text.size();
}
