// Declarations and statements. Comes in: the tree as parsed, and the symbol table. Goes out: the
// same tree, typed, with print arguments wrapped in conversions. Expressions are typed in
// expressionTypes.cpp.

#include "semantic_analyzer/semanticAnalyzer.hpp"

#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"
#include "shared/error/internalError.hpp"
#include "shared/symboltable/symbolTable.hpp"

namespace krel {

namespace {

/// The name that an assignment stores to; empty when the target is neither a variable nor an
/// element.
Name targetName(const Node& target) {
    if (target.kindName() == NodeKind::Identifier) {
        return target.stringValue();
    }
    if (target.kindName() == NodeKind::ArrayAccess && target.hasChildren() &&
        target.getChildren()[0]->kindName() == NodeKind::Identifier) {
        return target.getChildren()[0]->stringValue();
    }
    return {};
}

void reportUndeclared(Name name, const Place& place) {
    Error::semantic("Undeclared identifier: '" + name.text() + "'.", place);
}

}  // namespace

void SemanticAnalyzer::analyze(Node* root) {
    visit(root);
}

const NameTable<SemanticAnalyzer::Visit> SemanticAnalyzer::visitors = {
    {NodeKind::Program, &SemanticAnalyzer::visitProgram},
    {NodeKind::FunctionDeclaration, &SemanticAnalyzer::visitFunctionDeclaration},
    {NodeKind::Declaration, &SemanticAnalyzer::visitDeclaration},
    {NodeKind::Assignment, &SemanticAnalyzer::visitAssignment},
    {NodeKind::ReturnStatement, &SemanticAnalyzer::visitReturnStatement},
    {NodeKind::CallStatement, &SemanticAnalyzer::visitCallStatement},
    {NodeKind::PrintStatement, &SemanticAnalyzer::visitPrintStatement},
};

/// Kinds without a visitor are not checked; their children are, in order. The nodes still to visit
/// wait in a list, last first: an unchecked expression may be a million levels deep.
void SemanticAnalyzer::visit(Node* node) {
    if (node == nullptr) {
        return;
    }
    const std::size_t bottom = waiting.size();
    waiting.push_back(node);
    while (waiting.size() > bottom) {
        Node* next = waiting.back();
        waiting.pop_back();
        if (const Visit visitor = visitors.find(next->kindName()); visitor != nullptr) {
            (this->*visitor)(next);
            continue;
        }
        const NodeList& children = next->getChildren();
        for (std::size_t index = children.size(); index > 0; --index) {
            waiting.push_back(children[index - 1]);
        }
    }
}

void SemanticAnalyzer::visitProgram(Node* node) {
    for (Node* child : node->getChildren()) {
        visit(child);
    }
}

void SemanticAnalyzer::visitFunctionDeclaration(Node* node) {
    const Name outerScope = currentScope;
    const Name outerReturnType = currentReturnType;
    currentScope = node->stringValue();
    const NodeList& children = node->getChildren();
    if (children.empty() || children[0]->kindName() != NodeKind::Type) {
        internalError("FunctionDeclaration node has no type child.");
    }
    currentReturnType = children[0]->stringValue();
    if (currentScope.text() == "main" && currentReturnType != TypeName::Void) {
        Error::semantic("The 'main' function must have a return type of 'void'.", node->getPlace());
        return;  // kept: neither scope nor return type is restored here
    }
    for (Node* child : children) {
        visit(child);
    }
    currentScope = outerScope;
    currentReturnType = outerReturnType;
}

void SemanticAnalyzer::visitDeclaration(Node* node) {
    const NodeList& children = node->getChildren();
    if (children.size() < 2 || children[0]->kindName() != NodeKind::Type) {
        Error::semantic("Malformed declaration.", node->getPlace());
        return;
    }
    Node* declared = children[1];
    if (declared->kindName() == NodeKind::DeclaratorList) {
        for (Node* declarator : declared->getChildren()) {
            visitDeclarator(declarator, children[0]->stringValue());
        }
    } else if (declared->kindName() == NodeKind::ArrayDeclarator) {
        visitArrayDeclarator(declared);
    } else {
        Error::semantic("Malformed declaration.", node->getPlace());
    }
}

void SemanticAnalyzer::visitDeclarator(Node* node, Name declaredType) {
    if (!node->hasChildren()) {
        throw InternalError{"Declarator node has no children.", node->description()};
    }
    Node* initializer = node->getChildren().back();
    if (initializer->kindName() != NodeKind::Initializer || !initializer->hasChildren()) {
        internalError("Initializer node is malformed.");
    }
    const Name type = inferExpressionType(initializer->getChildren()[0]);
    if (!type.empty() && !isAssignable(declaredType, type)) {
        reportTypeMismatch(declaredType, type, node->getPlace());
    }
}

/// Neither the number nor the types of the elements of an initialiser list are checked (kept).
void SemanticAnalyzer::visitArrayDeclarator(Node* node) {
    if (!node->hasChildren()) {
        internalError("ArrayDeclarator node has no children.");
    }
    Node* size = node->getChildren()[0];
    const bool isVariable = size->kindName() == NodeKind::Identifier;
    if (inferExpressionType(size) != TypeName::Int) {
        Error::semantic("Array size identifier must be of type 'int'.", size->getPlace());
        return;
    }
    if (!isVariable) {
        if (size->getIntValue() < 1) {
            Error::semantic("Array size must be a positive integer.", size->getPlace());
        }
        return;
    }
    const Symbol* symbol = symbolTable.lookup(currentScope, size->stringValue(), size->getLine());
    if (symbol == nullptr) {
        reportUndeclared(size->stringValue(), size->getPlace());
    } else if (symbol->typeName() == TypeName::Int && symbol->getIntValue() < 1) {
        Error::semantic("Array size identifier must be a positive integer.", size->getPlace());
    }
}

void SemanticAnalyzer::visitAssignment(Node* node) {
    const NodeList& children = node->getChildren();
    if (children.size() < 2) {
        Error::semantic("Malformed assignment.", node->getPlace());
        return;
    }
    const Name target = targetName(*children[0]);
    const Symbol* symbol =
        target.empty() ? nullptr : symbolTable.lookup(currentScope, target, node->getLine());
    if (symbol == nullptr) {
        reportUndeclared(target, node->getPlace());
        return;
    }
    const Name type = inferExpressionType(children[1]);
    if (!type.empty() && !isAssignable(symbol->typeName(), type)) {
        reportTypeMismatch(symbol->typeName(), type, node->getPlace());
    }
}

void SemanticAnalyzer::visitReturnStatement(Node* node) {
    if (currentReturnType == TypeName::Void) {
        if (node->hasChildren()) {
            Error::semantic("Void function should not return a value in function '" +
                                currentScope.text() + "'.",
                            node->getPlace());
        }
        return;
    }
    if (!node->hasChildren()) {
        Error::semantic(
            "Non-void function must return a value in function '" + currentScope.text() + "'.",
            node->getPlace());
        return;
    }
    const Name type = inferExpressionType(node->getChildren()[0]);
    if (!type.empty() && !isAssignable(currentReturnType, type)) {
        Error::semantic("Return type mismatch. Expected '" + currentReturnType.text() +
                            "', but got '" + type.text() + "'.",
                        node->getPlace());
    }
}

/// A faulty call has the empty type and draws this message as well (kept).
void SemanticAnalyzer::visitCallStatement(Node* node) {
    if (inferCallStatementType(node) != TypeName::Void) {
        Error::semantic("Function call used as a statement must have void return type.",
                        node->getPlace());
    }
}

void SemanticAnalyzer::visitPrintStatement(Node* node) {
    static const NameTable<Name> conversions = {
        {TypeName::Int, NodeKind::IntToString},
        {TypeName::Double, NodeKind::DoubleToString},
        {TypeName::Boolean, NodeKind::BoolToString},
        {TypeName::Character, NodeKind::CharToString},
    };
    const NodeList& children = node->getChildren();
    if (children.size() != 1 || children[0]->kindName() != NodeKind::ArgumentList) {
        Error::semantic("Malformed print statement.", node->getPlace());
        return;
    }
    Node* arguments = children[0];
    if (!arguments->hasChildren()) {
        Error::semantic("Print statement must have at least one argument.", node->getPlace());
        return;
    }
    for (std::size_t index = 0; index < arguments->getChildren().size(); ++index) {
        Node* argument = arguments->getChildren()[index];
        const Name type = inferExpressionType(argument);
        if (type.empty()) {
            return;
        }
        if (type == TypeName::String) {
            continue;
        }
        const Name conversion = conversions.find(type);
        if (conversion.empty()) {
            Error::semantic("Print argument has unsupported type '" + type.text() + "'.",
                            argument->getPlace());
            return;
        }
        Node* converted = new Node(conversion, argument, argument->getPlace());
        converted->setSemanticType(TypeName::String);
        arguments->replaceChild(index, converted);
    }
}

void SemanticAnalyzer::reportTypeMismatch(Name expected, Name actual, const Place& place) {
    Error::semantic(
        "Cannot assign value of type '" + actual.text() + "' to type '" + expected.text() + "'.",
        place);
}

}  // namespace krel
