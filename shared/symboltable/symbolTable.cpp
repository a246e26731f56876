#include "shared/symboltable/symbolTable.hpp"

#include <iostream>
#include <map>

#include "shared/error/error.hpp"

void SymbolTable::Scope::file(Symbol* symbol) {
    symbols.emplace_back(symbol);
    byName.emplace(symbol->symbolName(), symbol);
}

bool SymbolTable::insertSymbol(Name scope, int line, Symbol* symbol) {
    const auto [entry, isNew] = scopes.try_emplace(scope);
    if (!isNew) {
        Error::semantic("Function '" + scope.text() + "' already exists.", line);
        return false;
    }
    entry->second.file(symbol);
    return true;
}

bool SymbolTable::insertSymbol(Name scope, Symbol* symbol) {
    const auto entry = scopes.find(scope);
    if (entry == scopes.end()) {
        Error::semantic("Function symbol '" + scope.text() + "' does not exist for variable '" +
                            symbol->getName() + "'.",
                        symbol->getLine());
        return false;
    }
    if (entry->second.byName.contains(symbol->symbolName())) {
        Error::semantic(
            "Symbol '" + symbol->getName() + "' already exists in scope '" + scope.text() + "'.",
            symbol->getLine());
        return false;
    }
    entry->second.file(symbol);
    return true;
}

Symbol* SymbolTable::lookup(Name scope, Name name, int /*line*/) const {
    const auto entry = scopes.find(scope);
    if (entry == scopes.end()) {
        return nullptr;
    }
    const auto symbol = entry->second.byName.find(name);
    return symbol == entry->second.byName.end() ? nullptr : symbol->second;
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
