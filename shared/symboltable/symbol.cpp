// What a symbol takes from its declaration. Comes in: the nodes of the declaration and of its type,
// which are only read. Goes out: the symbol, and for a function a symbol for each parameter.

#include "shared/symboltable/symbol.hpp"

#undef NDEBUG  // the check of the type node stands in every build
#include <cassert>
#include <iostream>

#include "shared/ast/node.hpp"
#include "shared/error/internalError.hpp"

namespace krel {

namespace {

bool declaresSymbol(Name kind) {
    static const NameTable<bool> kinds{{NodeKind::Declarator, true},
                                       {NodeKind::FunctionDeclaration, true},
                                       {NodeKind::ArrayDeclarator, true},
                                       {NodeKind::Parameter, true}};
    return kinds.find(kind);
}

}  // namespace

Symbol::Symbol(Node* type, Node* declaration) {
    if (declaration == nullptr || !declaresSymbol(declaration->kindName())) {
        internalError("Symbol constructed from invalid node kind: " +
                      (declaration == nullptr ? "<null>" : declaration->getKind()));
    }
    name = declaration->stringValue();
    // As assert writes it, but for the namespace.
    if (type->getKind() != "Type") {
        __assert_fail("type->getKind() == \"Type\"", __FILE__, __LINE__,
                      "Symbol::Symbol(Node*, Node*)");
    }
    declaredType = type->stringValue();
    const Name kind = declaration->kindName();
    const NodeList& children = declaration->getChildren();
    if (kind == NodeKind::FunctionDeclaration) {
        readFunction(*declaration);
    } else if (kind == NodeKind::Declarator) {
        if (!children.empty() && children[0]->hasChildren()) {
            readInitialValue(*children[0]->getChildren()[0]);
        }
    } else if (kind == NodeKind::ArrayDeclarator) {
        isArray = true;
        if (!children.empty()) {
            readArraySize(*children[0]);
        }
    }
    place = declaration->getPlace();
}

void Symbol::readFunction(const Node& declaration) {
    isFunction = true;
    scope = name;
    const NodeList& children = declaration.getChildren();
    if (children.size() < 2 || children[1]->kindName() != NodeKind::ParameterList) {
        internalError("FunctionDeclaration node has no ParameterList child.");
    }
    for (Node* parameter : children[1]->getChildren()) {
        if (parameter->kindName() == NodeKind::Parameter) {
            parameters.push_back(new Symbol(parameter->getChildren()[0], parameter));
        }
    }
}

/// Takes whatever value the node carries (kept): the name of an identifier or the operator of an
/// operation becomes the string value.
void Symbol::readInitialValue(const Node& value) {
    intValue = value.getIntValue();
    doubleValue = value.getDoubleValue();
    charValue = value.getCharValue();
    boolValue = value.getBoolValue();
    stringValue = value.stringValue();
}

void Symbol::readArraySize(const Node& size) {
    if (size.kindName() == NodeKind::IntLiteral) {
        arraySizeValue = size.getIntValue();
    } else {
        arraySizeSymbolName = size.stringValue();
    }
}

int Symbol::getArraySize() const {
    return arraySizeSymbol != nullptr ? arraySizeSymbol->getIntValue() : arraySizeValue;
}

void Symbol::printSymbol() const {
    std::cout << "name: " << name.text() << std::endl
              << "type: " << declaredType.text() << std::endl;
    if (!isArray && scope.text() != "global") {
        printValue();
    } else if (isArray && arraySizeValue > 0) {
        std::cout << "array size: " << arraySizeValue << std::endl;
    } else if (isArray && arraySizeSymbol != nullptr) {
        std::cout << "array size symbol: " << arraySizeSymbol->getName() << std::endl;
    }
    if (isFunction) {
        std::cout << "function parameters: ";
        for (const Symbol* parameter : parameters) {
            std::cout << parameter->getName() << " (" << parameter->getType() << "), ";
        }
        std::cout << std::endl;
    }
    std::cout << "source line: " << place.line << std::endl << std::string(26, '-') << std::endl;
}

void Symbol::printValue() const {
    if (declaredType == TypeName::Int) {
        std::cout << "integer value: " << intValue;
    } else if (declaredType == TypeName::Double) {
        std::cout << "double value: " << doubleValue;
    } else if (declaredType == TypeName::Character) {
        std::cout << "character value: " << charValue;
    } else if (declaredType == TypeName::Boolean) {
        std::cout << "boolean value: " << (boolValue ? "true" : "false");
    } else if (declaredType == TypeName::String) {
        std::cout << "string value: " << stringValue.text();
    } else if (declaredType == TypeName::Void) {
        std::cout << "void type";
    } else {
        std::cout << "value: <unknown type>";
    }
    std::cout << std::endl;
}

}  // namespace krel
