// Texts that are put together from parts: string literals, whose size is known and whose copying is
// compiled to a few moves, and other texts. `partSize` gives the size of a part. `writePart` copies
// it to a place with room for it and returns where the next one goes.
#pragma once

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

}  // namespace krel
