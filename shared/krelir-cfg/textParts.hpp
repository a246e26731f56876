// Texts that are put together from parts: string literals, whose size is known and whose copying is
// compiled to a few moves, and other texts. `partSize` gives the size of a part. `writePart` copies
// it to a place with room for it and returns where the next one goes.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace krel {

template <std::size_t size>
constexpr std::size_t partSize(const char (&/*literal*/)[size]) {
    return size - 1;
}
inline std::size_t partSize(std::string_view text) {
    return text.size();
}

template <std::size_t size>
char* writePart(char* at, const char (&literal)[size]) {
    std::memcpy(at, literal, size - 1);
    return at + size - 1;
}
/// An empty text may be a null pointer, which memcpy does not take.
inline char* writePart(char* at, std::string_view text) {
    return at + text.copy(at, text.size());
}

/// String literals that the compiler has put together; stands for a string view.
template <std::size_t size>
class JoinedText {
public:
    template <std::size_t... sizes>
    constexpr explicit JoinedText(const char (&... literals)[sizes]) {
        char* at = characters.data();
        ((at = std::copy_n(literals, sizes - 1, at)), ...);
    }

    constexpr operator std::string_view() const { return {characters.data(), size}; }

private:
    std::array<char, size> characters{};
};
template <std::size_t... sizes>
JoinedText(const char (&... literals)[sizes]) -> JoinedText<((sizes - 1) + ...)>;

}  // namespace krel
