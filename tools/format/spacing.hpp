#pragma once

#include <cstdint>

namespace krel {

namespace Format {

/// What a word is for the layout.
enum class Role : std::uint8_t {
    Keyword,  // and the types
    Name,     // of what can be called: print and exit, too
    Literal,
    Operator,  // between two operands
    Assignment,
    Sign,     // before an operand
    Prefix,   // any other operator before an operand
    Postfix,  // ++ or -- behind one
    OpeningParenthesis,
    ClosingParenthesis,
    OpeningIndex,
    ClosingIndex,
    OpeningList,
    ClosingList,
    OpeningBlock,
    ClosingBlock,
    Comma,
    Semicolon
};

/// The role of a word. `code` is the parser's code for it, `previous` the role of the word before
/// (anything that is no operand when there is none), `inBrackets` whether a bracket is open around
/// it that is no block's.
Role roleOf(int code, Role previous, bool inBrackets);

/// Whether a bracket of any kind opens or closes here.
bool opens(Role role);
bool closes(Role role);

/// Whether there is a blank between two words on one line.
bool blankBetween(Role left, Role right);

/// Whether a line break that the user has put between two words of a statement stays.
bool keepsBreak(Role left, Role right);

}  // namespace Format

}  // namespace krel
