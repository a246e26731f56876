#pragma once

#include <cstddef>
#include <string_view>

namespace krel {

/// The run of plain characters of a text that begins at `from`: up to the first one that is
/// special, or to the end of the text. It may be empty. Texts that are escaped, decoded or searched
/// for their end consist mostly of such runs:
///
///     say \"hello\"    has the runs  say  and  hello ; behind each of them stands an escape
///
/// `from` must not be beyond the end.
template <typename IsSpecial>
std::string_view plainRun(std::string_view text, std::size_t from, IsSpecial isSpecial) {
    // A block is tested as a whole, which compilers turn into a few vector instructions.
    constexpr std::size_t blockSize = 16;
    std::size_t end = from;
    for (bool isPlain = true; isPlain && text.size() - end >= blockSize;) {
        unsigned char specials = 0;
        for (std::size_t index = 0; index < blockSize; ++index) {
            specials |= static_cast<unsigned char>(isSpecial(text[end + index]));
        }
        isPlain = specials == 0;
        end += isPlain ? blockSize : 0;
    }
    while (end < text.size() && !isSpecial(text[end])) {
        ++end;
    }
    return text.substr(from, end - from);
}

}  // namespace krel
