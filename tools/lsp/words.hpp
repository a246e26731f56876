#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "tools/syntax/tokens.hpp"

/// What there is to tell about the words of Krel that no program declares.
namespace krel::Lsp {

/// Where a word may begin something.
enum class Where : std::uint8_t { TopLevel = 1, Statement = 2, Both = 3, Value = 4 };

/// A reserved word.
struct ReservedWord {
    Syntax::Word word;
    std::string_view text;
    Where where;
    std::string_view explanation;  // Markdown
};

/// All reserved words, in alphabetical order.
std::span<const ReservedWord> reservedWords();
/// What an operator does that surprises; empty when nothing does.
std::string_view surpriseOf(Syntax::Word op);
/// A reserved word; null for any other token.
const ReservedWord* findReservedWord(Syntax::Word word);

/// A form to fill in. The gaps are written as the protocol has them: "${1:condition}", "$0".
struct Snippet {
    std::string_view label;
    Where where;
    std::string_view detail;
    std::string_view text;
};

std::span<const Snippet> snippets();

/// The functions that the language has: `print` and `exit`, as one would declare them.
std::string_view signatureOfBuiltIn(Syntax::Word word);

}  // namespace krel::Lsp
