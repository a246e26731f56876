#pragma once

#include <cstdint>

namespace krel {

/// Bytes of a source text, counted from 0: from `begin` up to, not including, `end`.
struct SourceRange {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    friend bool operator==(const SourceRange&, const SourceRange&) = default;
};

/// Where something stands in the source: the line that messages and dumps name, and the bytes that
/// it takes. The range is empty when only the line is known.
struct Place {
    constexpr Place(int itsLine) : line(itsLine) {}
    constexpr Place(int itsLine, SourceRange itsRange) : line(itsLine), range(itsRange) {}

    int line;
    SourceRange range;

    friend bool operator==(const Place&, const Place&) = default;
};

}  // namespace krel
