#include "shared/symboltable/symbolTable.hpp"

#include <iostream>
#include <map>

#include "shared/error/error.hpp"

bool SymbolTable::Scope::file(Symbol* symbol) {
    if (!byName.insert(symbol->symbolName(), symbol)) {
        return false;
    }
    symbols.emplace_back(symbol);
    return true;
}

bool SymbolTable::insertSymbol(Name scope, int line, Symbol* symbol) {
    if (scopes.find(scope) != nullptr) {
        Error::semantic("Function '" + scope.text() + "' already exists.", line);
        return false;
    }
    constexpr std::size_t usualSymbols = 8;
    auto opened = std::make_unique<Scope>();
    opened->symbols.reserve(usualSymbols);
    opened->file(symbol);
    scopes.insert(scope, std::move(opened));
    return true;
}

bool SymbolTable::insertSymbol(Name scope, Symbol* symbol) {
    const std::unique_ptr<Scope>* entry = scopes.find(scope);
    if (entry == nullptr) {
        Error::semantic("Function symbol '" + scope.text() + "' does not exist for variable '" +
                            symbol->getName() + "'.",
                        symbol->getLine());
        return false;
    }
    if (!(*entry)->file(symbol)) {
        Error::semantic(
            "Symbol '" + symbol->getName() + "' already exists in scope '" + scope.text() + "'.",
            symbol->getLine());
        return false;
    }
    return true;
}

Symbol* SymbolTable::lookup(Name scope, Name name, int /*line*/) const {
    const std::unique_ptr<Scope>* entry = scopes.find(scope);
    if (entry == nullptr) {
        return nullptr;
    }
    Symbol* const* symbol = (*entry)->byName.find(name);
    return symbol == nullptr ? nullptr : *symbol;
}

const std::vector<std::unique_ptr<Symbol>>& SymbolTable::symbolsOf(Name scope) const {
    static const std::vector<std::unique_ptr<Symbol>> none;
    const std::unique_ptr<Scope>* entry = scopes.find(scope);
    return entry == nullptr ? none : (*entry)->symbols;
}

void SymbolTable::printSymbolTable() const {
    std::map<std::string, const Scope*> ordered;
    scopes.forEach([&](Name name, const std::unique_ptr<Scope>& scope) {
        ordered.emplace(name.text(), scope.get());
    });
    std::cout << std::endl << "Symbol Table:" << std::endl;
    for (const auto& [name, scope] : ordered) {
        std::cout << "Scope: " << name << std::endl;
        for (const auto& symbol : scope->symbols) {
            symbol->printSymbol();
        }
    }
}
