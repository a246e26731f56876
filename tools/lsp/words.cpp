// The tables of Krel's words, for people.

#include "tools/lsp/words.hpp"

#include <algorithm>
#include <array>
#include <iterator>

namespace krel::Lsp {

using Syntax::Word;

namespace {

constexpr ReservedWord words[] = {
    {Word::Boolean, "boolean", Where::Both,
     "`true` or `false`. A comparison of ints is an `int`, so it cannot be stored in a `boolean`."},
    {Word::Break, "break", Where::Statement, "Leaves the innermost loop."},
    {Word::Character, "character", Where::Both, "One byte, as its code 0 to 255."},
    {Word::Continue, "continue", Where::Statement,
     "Goes on with the next round of the innermost loop; in a `for`, with its third part."},
    {Word::Double, "double", Where::Both,
     "A floating-point number of 64 bits. Nothing becomes a `double` by itself, and literals with "
     "a whole value, such as `2.0`, are refused or taken as integers: write `double two = (double) "
     "2;`."},
    {Word::Else, "else", Where::Statement,
     "What is done when no condition before it holds. The chained form is the one word `elseif`."},
    {Word::ElseIf, "elseif", Where::Statement,
     "Another condition, looked at when none before it holds. One word, not `else if`."},
    {Word::Exit, "exit", Where::Statement,
     "Ends the program with status 0. An argument is never evaluated: `exit(3)` ends with 0, too."},
    {Word::False, "false", Where::Value, "The `boolean` value that does not hold."},
    {Word::For, "for", Where::Statement,
     "A loop: the first part runs once, the second is the condition of each round, the third runs "
     "after each round. What the first part declares belongs to the whole function: a second "
     "`for (int i = 0; ...)` in it is refused."},
    {Word::If, "if", Where::Statement,
     "Does what is in the braces when the condition holds, which is when it is not zero. The "
     "braces are always needed. A condition cannot call functions, and names and types in it are "
     "not checked."},
    {Word::Int, "int", Where::Both,
     "A whole number of 64 bits with a sign; arithmetic wraps around. Literals are cut to 32 "
     "bits."},
    {Word::Print, "print", Where::Statement,
     "Writes its arguments one after the other, with nothing between or after them: end a line "
     "with `\"\\n\"`."},
    {Word::Return, "return", Where::Statement,
     "Leaves the function. The value has exactly the function's type; a `void` function returns "
     "none."},
    {Word::String, "string", Where::Both,
     "A text that never changes; `+` joins two into a new one. `==` compares addresses: only equal "
     "literals share one."},
    {Word::True, "true", Where::Value, "The `boolean` value that holds."},
    {Word::Void, "void", Where::TopLevel, "The type of functions that return nothing."},
    {Word::While, "while", Where::Statement,
     "Repeats what is in the braces as long as the condition holds. A condition cannot call "
     "functions, and names and types in it are not checked."},
};

constexpr Snippet forms[] = {
    {"if", Where::Statement, "if (...) { }", "if (${1:condition}) {\n    $0\n}"},
    {"elseif", Where::Statement, "elseif (...) { }", "elseif (${1:condition}) {\n    $0\n}"},
    {"else", Where::Statement, "else { }", "else {\n    $0\n}"},
    {"while", Where::Statement, "while (...) { }", "while (${1:condition}) {\n    $0\n}"},
    {"for", Where::Statement, "for (int i = 0; ...) { }",
     "for (int ${1:i} = 0; ${1:i} < ${2:count}; ${1:i}++) {\n    $0\n}"},
    {"print", Where::Statement, "print(..., \"\\n\");", "print(${1:value}, \"\\n\");$0"},
    {"return", Where::Statement, "return ...;", "return ${1:value};$0"},
    {"main", Where::TopLevel, "void main() { }", "void main() {\n    $0\n}"},
    {"function", Where::TopLevel, "int name() { }",
     "${1:int} ${2:name}(${3:parameters}) {\n    $0\n}"},
};

}  // namespace

std::span<const ReservedWord> reservedWords() {
    return words;
}

const ReservedWord* findReservedWord(Word word) {
    const auto* const found =
        std::find_if(std::begin(words), std::end(words),
                     [word](const ReservedWord& reserved) { return reserved.word == word; });
    return found == std::end(words) ? nullptr : found;
}

std::string_view surpriseOf(Word op) {
    if (op == Word::And || op == Word::Or) {
        return "Both sides are evaluated, always.";
    }
    if (op == Word::Divide) {
        return "Between ints, the result is cut towards zero.";
    }
    if (op >= Word::Less && op <= Word::NotEqual) {
        return "A comparison has the type of its operands. Strings are compared by their "
               "addresses.";
    }
    if (op == Word::PlusAssign || op == Word::MinusAssign) {
        return "The type of the right side is not checked, and it cannot call functions.";
    }
    return {};
}

std::span<const Snippet> snippets() {
    return forms;
}

std::string_view signatureOfBuiltIn(Word word) {
    return word == Word::Print  ? "void print(value, ...)"
           : word == Word::Exit ? "void exit()"
                                : std::string_view{};
}

}  // namespace krel::Lsp
