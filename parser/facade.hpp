// Parsing for a process that compiles one program: its input and what comes of it, under one name
// each. All of it belongs to ParseContext::ofTheProcess().
#pragma once

#include <cstdio>
#include <queue>

namespace krel {
class Node;
class Symbol;
class SymbolTable;
}  // namespace krel

/// The source: set to an open file before yyparse is called; the file stays the caller's. Standard
/// input when it is null.
extern std::FILE* yyin;
/// The root of the tree; null until a whole file has been parsed.
extern krel::Node* ast;
/// All declarations of the program.
extern krel::SymbolTable& symbolTable;
/// Symbols of declarations that wait for the end of the function around them.
extern std::queue<krel::Symbol*>& symbols;

/// Reads yyin to its end and parses it, once per process. Returns what `parse` does; or
/// `unreadableSource`, with errno set, when a read fails, the first one or a later one.
int yyparse();
inline constexpr int unreadableSource = 3;
