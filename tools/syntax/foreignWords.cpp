// Words of other languages. Comes in: a word. Goes out: how much of the text belongs to it, and
// what Krel has instead.

#include "tools/syntax/foreignWords.hpp"

#include <array>
#include <unordered_map>

namespace krel::Syntax {

namespace {

constexpr std::array table = {
    ForeignWords{"include import using package from require", Extent::Statement, true,
                 "there are no libraries and no other files",
                 "remove it: `print` is part of the language, all else is written in this file"},
    ForeignWords{"try finally", Extent::Word, true, "there are no exceptions",
                 "return a value that says what went wrong, or end by `exit()`"},
    ForeignWords{"catch except", Extent::Body, true, "there are no exceptions",
                 "return a value that says what went wrong, or end by `exit()`"},
    ForeignWords{"throw raise assert", Extent::Statement, false, "there are no exceptions",
                 "return a value that says what went wrong, or end by `exit()`"},
    ForeignWords{"struct union record interface class", Extent::Body, false,
                 "there are no structures and classes",
                 "declare one variable for each part, or one array for each part of many"},
    ForeignWords{"template", Extent::Body, false, "a function has its types in its declaration",
                 "write one function for each type"},
    ForeignWords{"enum", Extent::Body, true, "there are no enumerations",
                 "write the numbers, from 0 on"},
    ForeignWords{"typedef type", Extent::Statement, false, "a type cannot get another name",
                 "write the type itself"},
    ForeignWords{"goto", Extent::Statement, false, "there are no jumps to labels",
                 "leave loops by `break`, functions by `return`"},
    ForeignWords{"def fn func fun function", Extent::Body, false,
                 "a function begins with the type of its value",
                 "write `int name(int parameter) { ... }`, or `void name() { ... }`"},
    ForeignWords{"switch match", Extent::Body, false, "there is no `switch`",
                 "write `if (...) { } elseif (...) { } else { }`"},
    ForeignWords{"unless until", Extent::Header, false, "there are only `if` and `while`",
                 "write `if (!(...)) { }` or `while (!(...)) { }`"},
    ForeignWords{"foreach", Extent::Header, false, "there is no loop over the elements of an array",
                 "count through it: `for (int i = 0; i < 10; i++) { }`"},
    ForeignWords{"loop", Extent::Word, false, "there are only `while` and `for`",
                 "write `while (true) { }`"},
    ForeignWords{"echo", Extent::Statement, false, "the word is `print`", "write `print(...)`"},
    ForeignWords{"null NULL nullptr nil None undefined", Extent::Value, false,
                 "there is no value for nothing",
                 "keep a `boolean` beside the variable, or a value that means nothing, such as -1"},
    ForeignWords{"delete", Extent::Statement, false, "no memory is taken or given back",
                 "declare an array; its size stands in its declaration"},
    ForeignWords{"new malloc calloc free", Extent::Value, false, "no memory is taken or given back",
                 "declare an array; its size stands in its declaration"},
    ForeignWords{"this self", Extent::Value, false, "there are no objects",
                 "hand over what a function needs as parameters"},
    ForeignWords{"cin scanf getchar gets fgets getline input readLine readline readln prompt",
                 Extent::Value, false, "a program reads nothing",
                 "put the values into the program, in an array for example"},
    ForeignWords{"rand srand random Random", Extent::Value, false, "there are no random numbers",
                 "compute the next number from the one before: `seed * 1103 + 12345`, and the "
                 "remainder of that"},
    ForeignWords{"sqrt pow abs fabs min max floor ceil round Math sin cos exp log", Extent::Value,
                 false, "there is no such function", "write it as a function of this program"},
    ForeignWords{"strlen strcmp strcpy strcat charAt substring substr equals indexOf toUpperCase",
                 Extent::Value, false, "texts are only joined, stored and printed",
                 "keep numbers or characters in variables and arrays, and join texts at the end"},
    ForeignWords{"endl", Extent::Value, false, "there is no name for the end of a line",
                 "write `\"\\n\"`"},
    ForeignWords{"len length size sizeof", Extent::Value, false, "nothing tells its length",
                 "an array's size stands in its declaration; keep it in a variable"},
};

using Rows = std::unordered_map<std::string_view, const ForeignWords*>;

Rows rowsByWord() {
    Rows rows;
    for (const ForeignWords& row : table) {
        std::string_view rest = row.words;
        while (!rest.empty()) {
            const std::string_view word = rest.substr(0, rest.find(' '));
            rows.emplace(word, &row);
            rest.remove_prefix(word.size() == rest.size() ? word.size() : word.size() + 1);
        }
    }
    return rows;
}

}  // namespace

const ForeignWords* findForeignWord(std::string_view word) {
    static const Rows rows = rowsByWord();
    const auto entry = rows.find(word);
    return entry == rows.end() ? nullptr : entry->second;
}

}  // namespace krel::Syntax
