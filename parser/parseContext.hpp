#pragma once

#include <memory>
#include <optional>
#include <queue>
#include <string>
#include <utility>
#include <vector>

#include "shared/ast/treeMemory.hpp"
#include "shared/symboltable/symbolTable.hpp"

namespace krel {

class Node;

/// What a parse needs and makes: the tree, the symbols, and the memory of nodes and names. It owns
/// all of them. There can be any number of contexts, each for one parse, and one may be in use
/// inside of another.
class ParseContext {
public:
    ParseContext();
    ParseContext(const ParseContext&) = delete;
    ParseContext& operator=(const ParseContext&) = delete;
    ~ParseContext();

    /// The context of a process that compiles one program. Its tree is in the memory of the
    /// process, which is never freed.
    static ParseContext& ofTheProcess();

    /// As long as this object lives, nodes and names are made in the context. The passes after the
    /// parser need it; `parse` uses the context by itself.
    class Use {
    public:
        explicit Use(ParseContext& context);

    private:
        std::optional<TreeMemory::Use> memory;
    };

    /// Keeps a symbol that the table has refused, but that other symbols refer to.
    void keep(std::unique_ptr<Symbol> symbol) { refused.push_back(std::move(symbol)); }

    /// How many nodes there are, linked or not.
    std::size_t nodeCount() const;

    /// The root of the tree; null until a whole text has been parsed. It is in the memory.
    Node* root = nullptr;
    /// All declarations of the program, filed while it is parsed.
    SymbolTable symbolTable;
    /// Symbols of declarations that wait for the end of the function around them, to get its scope.
    /// The context owns them. At the end of the text it may still hold those declared outside of
    /// any function.
    std::queue<Symbol*> symbols;

private:
    explicit ParseContext(std::nullptr_t) {}

    std::unique_ptr<TreeMemory> memory;  // null when it is that of the process
    std::vector<std::unique_ptr<Symbol>> refused;
};

/// Parses a text into a context that has not been used before. Faults are reported as they are
/// found. Returns 0 when the text could be parsed, 1 after a syntax error, 2 when the parser's
/// stacks are exhausted. Texts have less than two gigabytes.
int parse(std::string text, ParseContext& context);

}  // namespace krel
