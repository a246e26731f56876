#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "shared/ast/name.hpp"
#include "shared/symboltable/symbol.hpp"

namespace krel {

/// Every symbol of the program, grouped by scope. A scope has the name of the function that opens
/// it and holds that function's symbol first, then its parameters and all its variables: scopes are
/// flat, and a look-up never goes on in another one. The table owns the symbols filed in it; a
/// symbol that it refuses stays the caller's.
class SymbolTable {
public:
    SymbolTable() = default;
    SymbolTable(const SymbolTable&) = delete;
    SymbolTable& operator=(const SymbolTable&) = delete;
    ~SymbolTable() = default;

    /// Opens `scope` with the symbol of its function. Reports a semantic error at `place`, and
    /// files nothing, when there is such a scope already. Returns whether the symbol was filed.
    bool insertSymbol(Name scope, const Place& place, Symbol* symbol);
    /// Files a variable or parameter in `scope`. Reports a semantic error at the symbol's place,
    /// and files nothing, when the scope was never opened or has the name already. The name of the
    /// function itself is among its names. Returns whether the symbol was filed.
    bool insertSymbol(Name scope, Symbol* symbol);
    /// The symbol named `name` in `scope`, or null. `line` is not used.
    Symbol* lookup(Name scope, Name name, int line) const;
    /// All symbols of `scope` in the order of their insertion; none when it was never opened.
    const std::vector<std::unique_ptr<Symbol>>& symbolsOf(Name scope) const;

    /// The names of all scopes in the order in which they were opened.
    const std::vector<Name>& scopesInOrder() const { return names; }

    /// Writes all scopes, ordered by name, to standard output, for debugging.
    void printSymbolTable() const;

private:
    struct Scope {
        std::vector<std::unique_ptr<Symbol>> symbols;  // in insertion order
        std::unordered_map<Name, Symbol*> byName;

        /// Takes the symbol, unless its name is taken already; returns whether it did.
        bool file(Symbol* symbol);
    };

    const Scope* findScope(Name name) const;

    std::unordered_map<Name, Scope> scopes;
    std::vector<Name> names;
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::SymbolTable;
