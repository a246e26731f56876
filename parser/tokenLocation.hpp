#pragma once

#include <cstdint>

#include "shared/error/place.hpp"

namespace krel {

/// Where a token or a phrase stands. Lines are those of messages and dumps: a token's is the one on
/// which it ends. Columns are not counted, and the scanner sets them to 0; the bytes tell the exact
/// place. An empty phrase stands where the token before it ends.
struct TokenLocation {
    int first_line = 1;
    int first_column = 1;
    int last_line = 1;
    int last_column = 1;
    std::uint32_t begin = 0;  // bytes of the source, from 0 on
    std::uint32_t end = 0;

    SourceRange range() const { return {begin, end}; }
    operator Place() const { return {first_line, range()}; }
};

}  // namespace krel
