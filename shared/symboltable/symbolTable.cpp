// Filing symbols and finding them again. Comes in: a symbol and the name of its scope. Goes out:
// the symbol of a name, or all symbols of a scope. Only an insertion changes the table; one that is
// refused reports a fault.

#include "shared/symboltable/symbolTable.hpp"

#include <iostream>
#include <map>

#include "shared/error/error.hpp"

namespace krel {

bool SymbolTable::Scope::file(Symbol* symbol) {
    if (!byName.try_emplace(symbol->symbolName(), symbol).second) {
        return false;
    }
    symbols.emplace_back(symbol);
    return true;
}

bool SymbolTable::insertSymbol(Name scope, const Place& place, Symbol* symbol) {
    const auto [entry, isNew] = scopes.try_emplace(scope);
    if (!isNew) {
        Error::semantic("Function '" + scope + "' already exists.", place);
        return false;
    }
    constexpr std::size_t usualSymbols = 8;
    entry->second.symbols.reserve(usualSymbols);
    entry->second.file(symbol);
    names.push_back(scope);
    return true;
}

bool SymbolTable::insertSymbol(Name scope, Symbol* symbol) {
    const auto entry = scopes.find(scope);
    if (entry == scopes.end()) {
        Error::semantic("Function symbol '" + scope + "' does not exist for variable '" +
                            symbol->symbolName() + "'.",
                        symbol->getPlace());
        return false;
    }
    if (!entry->second.file(symbol)) {
        Error::semantic(
            "Symbol '" + symbol->symbolName() + "' already exists in scope '" + scope + "'.",
            symbol->getPlace());
        return false;
    }
    return true;
}

const SymbolTable::Scope* SymbolTable::findScope(Name name) const {
    const auto entry = scopes.find(name);
    return entry == scopes.end() ? nullptr : &entry->second;
}

Symbol* SymbolTable::lookup(Name scope, Name name, int /*line*/) const {
    const Scope* const found = findScope(scope);
    if (found == nullptr) {
        return nullptr;
    }
    const auto symbol = found->byName.find(name);
    return symbol == found->byName.end() ? nullptr : symbol->second;
}

const std::vector<std::unique_ptr<Symbol>>& SymbolTable::symbolsOf(Name scope) const {
    static const std::vector<std::unique_ptr<Symbol>> none;
    const Scope* const found = findScope(scope);
    return found == nullptr ? none : found->symbols;
}

void SymbolTable::printSymbolTable() const {
    std::map<std::string, const Scope*> ordered;
    for (const auto& [name, scope] : scopes) {
        ordered.emplace(name.text(), &scope);
    }
    std::cout << std::endl << "Symbol Table:" << std::endl;
    for (const auto& [name, scope] : ordered) {
        std::cout << "Scope: " << name << std::endl;
        for (const auto& symbol : scope->symbols) {
            symbol->printSymbol();
        }
    }
}

}  // namespace krel
