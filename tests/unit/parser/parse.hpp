#pragma once

#include <cstddef>
#include <string>

namespace krel {

/// What the parser made of a text.
struct Parsed {
    int status;          // what yyparse returned
    bool hasTree;        // whether `ast` was set
    std::size_t queued;  // symbols left without a scope
    std::string tree;    // see below
    std::string table;   // as printSymbolTable writes it
    std::string scopes;  // a line for each function of the tree, see below
    std::string errors;  // standard error
};

/// Parses a text in a process of its own. The tree is given as
///     Kind<value>@line(child child ...)
/// where the value is 'text', 12, 2.5d, %65 (the code of a character), true, or left out, and the
/// parentheses are left out without children. The scopes are given as
///     function: name@scope name@scope ...
/// with the symbols that are filed below the function's name, in their order.
Parsed parse(const std::string& text);

/// The tree's text without the lines.
std::string withoutLines(const std::string& tree);

/// The statements of a function body, separated by blanks. The text begins on line 2. Anything but
/// a parse without errors gives the errors instead.
std::string statementsWithLines(const std::string& text);
std::string statements(const std::string& text);

/// The value of "x = <text>;", without lines.
std::string expression(const std::string& text);

/// What is reported for a whole file, and for a function body that begins on line 1.
std::string errorsIn(const std::string& text);
std::string errorsInBody(const std::string& text);

}  // namespace krel
