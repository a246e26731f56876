// Small trees for the tests of the passes, built by hand so that they can have shapes that no
// source text gives. Every function returns a node that the caller owns.
#pragma once

#include <initializer_list>

#include "shared/ast/node.hpp"

namespace krel {

inline Node* node(const char* kind, std::initializer_list<Node*> children = {}, int line = 1) {
    Node* made = new Node(kind, line);
    for (Node* child : children) {
        made->addChild(child);
    }
    return made;
}

inline Node* named(const char* kind, const char* text, std::initializer_list<Node*> children = {},
                   int line = 1) {
    Node* made = new Node(kind, text, line);
    for (Node* child : children) {
        made->addChild(child);
    }
    return made;
}

inline Node* name(const char* text, int line = 1) {
    return named("Identifier", text, {}, line);
}

inline Node* number(int value, int line = 1) {
    return new Node("IntLiteral", value, line);
}

inline Node* block(std::initializer_list<Node*> statements) {
    return node("Block", {node("StatementList", statements)});
}

/// A function without parameters.
inline Node* function(const char* type, const char* text, std::initializer_list<Node*> statements) {
    return named("FunctionDeclaration", text,
                 {named("Type", type), node("ParameterList"), block(statements)});
}

}  // namespace krel
