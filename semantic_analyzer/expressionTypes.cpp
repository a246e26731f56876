// Types of expressions, and the resolution of casts. The rules are few and strict: both operands of
// a binary operator have the same type, which is the type of the result, of comparisons too.

#include <array>
#include <cstdlib>
#include <vector>

#include "semantic_analyzer/semanticAnalyzer.hpp"
#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"
#include "shared/error/internalError.hpp"
#include "shared/symboltable/symbolTable.hpp"

namespace krel {

namespace {

struct Cast {
    Name source;
    Name target;
    Name conversion;
};

/// Every cast there is, with the kind of node that it becomes; a null pointer for any other pair.
const Cast* findCast(Name source, Name target) {
    static const std::array<Cast, 7> casts = {{
        {TypeName::Int, TypeName::Double, NodeKind::IntToDouble},
        {TypeName::Int, TypeName::Character, NodeKind::IntToChar},
        {TypeName::Character, TypeName::String, NodeKind::CharToString},
        {TypeName::Int, TypeName::String, NodeKind::IntToString},
        {TypeName::Double, TypeName::String, NodeKind::DoubleToString},
        {TypeName::Boolean, TypeName::String, NodeKind::BoolToString},
        {TypeName::Character, TypeName::Int, NodeKind::CharToInt},
    }};
    for (const Cast& cast : casts) {
        if (cast.source == source && cast.target == target) {
            return &cast;
        }
    }
    return nullptr;
}

const NameTable<Name>& literalTypes() {
    static const NameTable<Name> types = {
        {NodeKind::IntLiteral, TypeName::Int},
        {NodeKind::DecimalLiteral, TypeName::Double},
        {NodeKind::CharacterLiteral, TypeName::Character},
        {NodeKind::StringLiteral, TypeName::String},
        {NodeKind::BooleanLiteral, TypeName::Boolean},
    };
    return types;
}

/// Whether the node is an operation with as many operands as it should have.
bool isOperation(const Node& node) {
    const std::size_t operands = node.getChildren().size();
    return (node.kindName() == NodeKind::BinaryOp && operands == 2) ||
           (node.kindName() == NodeKind::UnaryOp && operands == 1);
}

}  // namespace

bool SemanticAnalyzer::isCastable(Name target, Name source) {
    return findCast(source, target) != nullptr;
}

bool SemanticAnalyzer::isNumericType(Name type) {
    return type == TypeName::Int || type == TypeName::Double;
}

bool SemanticAnalyzer::isLiteralKind(Name kind) {
    return !literalTypes().find(kind).empty();
}

Name SemanticAnalyzer::setExpressionType(Node* node, Name type) {
    if (node != nullptr && !type.empty()) {
        node->setSemanticType(type);
    }
    return type;
}

const NameTable<SemanticAnalyzer::Infer> SemanticAnalyzer::inferrers = {
    {NodeKind::IntLiteral, &SemanticAnalyzer::inferLiteralType},
    {NodeKind::DecimalLiteral, &SemanticAnalyzer::inferLiteralType},
    {NodeKind::CharacterLiteral, &SemanticAnalyzer::inferLiteralType},
    {NodeKind::StringLiteral, &SemanticAnalyzer::inferLiteralType},
    {NodeKind::BooleanLiteral, &SemanticAnalyzer::inferLiteralType},
    {NodeKind::ParenthesizedExpression, &SemanticAnalyzer::inferParenthesizedExpressionType},
    {NodeKind::Identifier, &SemanticAnalyzer::inferIdentifierType},
    {NodeKind::ArrayAccess, &SemanticAnalyzer::inferArrayAccessType},
    {NodeKind::CallStatement, &SemanticAnalyzer::inferCallStatementType},
    {NodeKind::UnaryOp, &SemanticAnalyzer::inferMalformedUnaryOp},
    {NodeKind::BinaryOp, &SemanticAnalyzer::inferMalformedBinaryOp},
    {NodeKind::CastExpression, &SemanticAnalyzer::inferCastExpressionType},
};

/// Operators associate to the left, so a chain of a million of them is a million levels deep on its
/// left side. That side is walked down and up again here; only right operands recurse.
Name SemanticAnalyzer::inferExpressionType(Node* node) {
    const std::size_t bottom = operations.size();
    while (node != nullptr && isOperation(*node)) {
        operations.push_back(node);
        node = node->getChildren()[0];
    }
    Name type;
    if (node != nullptr) {
        const Infer inferrer = inferrers.find(node->kindName());
        type = inferrer == nullptr ? Name{} : (this->*inferrer)(node);
    }
    while (operations.size() > bottom) {
        Node* operation = operations.back();
        operations.pop_back();
        type = operation->kindName() == NodeKind::UnaryOp ? setExpressionType(operation, type)
                                                          : binaryOpType(operation, type);
    }
    return type;
}

Name SemanticAnalyzer::inferLiteralType(Node* node) {
    return setExpressionType(node, literalTypes().find(node->kindName()));
}

Name SemanticAnalyzer::inferParenthesizedExpressionType(Node* node) {
    if (!node->hasChildren()) {
        Error::semantic("Invalid empty parenthesized expression.", node->getPlace());
        return {};
    }
    return setExpressionType(node, inferExpressionType(node->getChildren()[0]));
}

Name SemanticAnalyzer::inferIdentifierType(Node* node) {
    const Name name = node->stringValue();
    if (name.empty()) {
        internalError("Identifier node has no name.");
    }
    const Symbol* symbol = symbolTable.lookup(currentScope, name, node->getLine());
    if (symbol == nullptr) {
        Error::semantic("Undeclared identifier: '" + name.text() + "'.", node->getPlace());
        return {};
    }
    return setExpressionType(node, symbol->typeName());
}

/// The index is not examined (kept): it may have any type, and gets none.
Name SemanticAnalyzer::inferArrayAccessType(Node* node) {
    if (!node->hasChildren() || node->getChildren()[0]->kindName() != NodeKind::Identifier) {
        internalError("Array access has no array identifier.");
    }
    const Name name = node->getChildren()[0]->stringValue();
    const Symbol* symbol = symbolTable.lookup(currentScope, name, node->getLine());
    if (symbol == nullptr) {
        Error::semantic("Undeclared array: '" + name.text() + "'.", node->getPlace());
        return {};
    }
    return setExpressionType(node, symbol->typeName());
}

Name SemanticAnalyzer::inferCallStatementType(Node* node) {
    const NodeList& children = node->getChildren();
    if (children.empty() || children[0]->kindName() != NodeKind::Identifier) {
        internalError("Function call has no function name.");
    }
    const Name callee = children[0]->stringValue();
    if (callee.text() == "main") {
        Error::semantic("The 'main' function cannot be called.", node->getPlace());
        return {};
    }
    const Symbol* function = symbolTable.lookup(callee, callee, node->getLine());
    if (function == nullptr) {
        Error::semantic("Undeclared function: '" + callee.text() + "'.", node->getPlace());
        return {};
    }
    static const NodeList none{};
    const NodeList& arguments = children.size() > 1 ? children[1]->getChildren() : none;
    for (Node* argument : arguments) {
        inferExpressionType(argument);
    }
    const std::vector<Symbol*>& parameters = function->parameterSymbols();
    if (arguments.size() != parameters.size()) {
        Error::semantic("Argument count mismatch in function call to '" + callee.text() +
                            "'. Expected " + std::to_string(parameters.size()) +
                            " arguments, but got " + std::to_string(arguments.size()) + ".",
                        node->getPlace());
        return {};
    }
    for (std::size_t index = 0; index < parameters.size(); ++index) {
        const Name expected = parameters[index]->typeName();
        const Name actual = arguments[index]->semanticTypeName();
        if (expected != actual) {
            Error::semantic("Argument type mismatch in function call to '" + callee.text() +
                                "'. Expected type: '" + expected.text() + "', but got type: '" +
                                actual.text() + "'.",
                            node->getPlace());
            return {};
        }
    }
    return setExpressionType(node, function->typeName());
}

Name SemanticAnalyzer::inferMalformedUnaryOp(Node* node) {
    Error::semantic("Invalid unary expression.", node->getPlace());
    return {};
}

Name SemanticAnalyzer::inferMalformedBinaryOp(Node* node) {
    Error::semantic("Invalid binary expression.", node->getPlace());
    return {};
}

/// The type of a binary operation whose left operand has type `leftType`; types the right one.
Name SemanticAnalyzer::binaryOpType(Node* operation, Name leftType) {
    const Name rightType = inferExpressionType(operation->getChildren()[1]);
    if (leftType.empty() || rightType.empty()) {
        return {};
    }
    if (leftType != rightType) {
        Error::semantic(
            "Different types of operands can't be used in the binary operation. "
            "Left operand type: '" +
                leftType.text() + "', right operand type: '" + rightType.text() + "'.",
            operation->getPlace());
        return {};
    }
    return setExpressionType(operation, leftType);
}

Name SemanticAnalyzer::inferCastExpressionType(Node* node) {
    if (node->getChildren().size() != 2) {
        Error::semantic("Invalid cast expression.", node->getPlace());
        return {};
    }
    const Name target = node->getChildren()[0]->stringValue();
    const Name source = inferExpressionType(node->getChildren()[1]);
    if (target.empty() || source.empty()) {
        internalError("Cast expression has invalid target or source type.");
    }
    const Cast* cast = findCast(source, target);
    if (cast == nullptr) {
        Error::semantic(
            "Cannot cast from type '" + source.text() + "' to type '" + target.text() + "'.",
            node->getPlace());
        return {};
    }
    node->setKind(cast->conversion);
    node->removeChild(0);
    return setExpressionType(node, target);
}

}  // namespace krel
