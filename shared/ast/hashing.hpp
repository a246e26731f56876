#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
#include <string_view>

/// Numbers made of texts, for tables that are searched by open addressing. Those of short texts are
/// their characters side by side: cheaper than a hash, and different for different texts.

/// The longest ASCII text whose characters fit.
inline constexpr std::size_t maxPackedSize = 9;

/// The number of a short text one character longer than that of `packed`; no characters give 0. The
/// topmost bit stays clear.
inline std::uint64_t packNext(std::uint64_t packed, char next) {
    return std::rotl(packed, 7) ^ static_cast<unsigned char>(next);
}

/// The number of a text: its characters, or a hash when it is too long for them.
inline std::uint64_t numberOf(std::string_view text) {
    return text.size() <= maxPackedSize
               ? std::accumulate(text.begin(), text.end(), std::uint64_t{0}, packNext)
               : std::hash<std::string_view>{}(text);
}

/// A hash of a number, for use as an index: all bits depend on all bits below them, and the low
/// ones are left out.
inline std::uint32_t hashOf(std::uint64_t number) {
    return static_cast<std::uint32_t>(number * 0x9E3779B97F4A7C15 >> 32);
}
