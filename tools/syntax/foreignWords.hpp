#pragma once

#include <cstdint>
#include <string_view>

namespace krel::Syntax {

/// How much of the text belongs to a word of another language.
enum class Extent : std::uint8_t {
    Value,      // a name or a call; it begins nothing
    Word,       // the word alone; a statement follows
    Statement,  // up to the semicolon, or to the end of the line
    Header,     // up to the body, which is a statement
    Body        // all, up to the end of the block behind it
};

/// Words of other languages, and what Krel has instead.
struct ForeignWords {
    std::string_view words;  // with blanks between them
    Extent extent;
    bool isRemoved;            // by a repair; otherwise the text stays as it is
    std::string_view message;  // what there is not
    std::string_view help;     // what Krel has instead
};

/// The row of a word in the table of foreignWords.cpp; null when it has none.
const ForeignWords* findForeignWord(std::string_view word);

}  // namespace krel::Syntax
