// Declarations for the tests of the passes, filed as the parser files them.
#pragma once

#include <memory>

#include "shared/symboltable/symbolTable.hpp"
#include "tests/unit/trees.hpp"

namespace krel {

/// A function without parameters; opens the scope of its name.
inline void declareFunction(SymbolTable& table, const char* type, const char* text) {
    const std::unique_ptr<Node> declaration{function(type, text, {})};
    table.insertSymbol(text, 1, new Symbol(declaration->getChildren()[0], declaration.get()));
}

/// A scalar of a function, initialised with `value`.
inline void declareVariable(SymbolTable& table, const char* scope, const char* type,
                            const char* text, int value = 0) {
    const std::unique_ptr<Node> typeNode{named("Type", type)};
    const std::unique_ptr<Node> declarator{
        named("Declarator", text, {node("Initializer", {number(value)})})};
    table.insertSymbol(scope, new Symbol(typeNode.get(), declarator.get()));
}

/// An array of a function.
inline void declareArray(SymbolTable& table, const char* scope, const char* type, const char* text,
                         int size) {
    const std::unique_ptr<Node> typeNode{named("Type", type)};
    const std::unique_ptr<Node> declarator{named("ArrayDeclarator", text, {number(size)})};
    table.insertSymbol(scope, new Symbol(typeNode.get(), declarator.get()));
}

}  // namespace krel
