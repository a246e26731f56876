// Expressions, calls, assignments and conditions. Each operation returns the operand that stands
// for the value in later instructions, and emits the instructions that compute it. Temporaries are
// numbered in the order in which they are taken; that order is part of the output.

#include <array>
#include <charconv>
#include <vector>

#include "KrelIR/KrelIR.hpp"
#include "shared/ast/node.hpp"
#include "shared/ast/textRuns.hpp"
#include "shared/error/internalError.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

namespace {

/// The comparison that holds exactly when `op` does not; empty when `op` is no comparison. Doubles
/// are inverted by the same table (kept: a NaN makes both false, or both true).
Name inverseComparison(Name op) {
    static const NameTable<Name> inverses = {
        {Operator::Equal, Operator::NotEqual},    {Operator::NotEqual, Operator::Equal},
        {Operator::Less, Operator::GreaterEqual}, {Operator::LessEqual, Operator::Greater},
        {Operator::Greater, Operator::LessEqual}, {Operator::GreaterEqual, Operator::Less},
    };
    return inverses.find(op);
}

/// Whether a character is written as a backslash and a letter between two quotation marks.
bool isEscaped(char character, char quotationMark) {
    return character == '\\' || character == quotationMark || character == '\n' ||
           character == '\r' || character == '\t';
}

/// The letter behind the backslash of an escaped character.
char escapeLetter(char character) {
    switch (character) {
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '\t':
            return 't';
        default:
            return character;
    }
}

bool isOperation(const Node& node) {
    return node.kindName() == NodeKind::BinaryOp || node.kindName() == NodeKind::UnaryOp;
}

}  // namespace

const NameTable<KrelIR::Expression> KrelIR::expressionLowering = {
    {NodeKind::IntLiteral, &KrelIR::literal},
    {NodeKind::DecimalLiteral, &KrelIR::literal},
    {NodeKind::StringLiteral, &KrelIR::literal},
    {NodeKind::CharacterLiteral, &KrelIR::literal},
    {NodeKind::BooleanLiteral, &KrelIR::literal},
    {NodeKind::Identifier, &KrelIR::identifier},
    {NodeKind::ParenthesizedExpression, &KrelIR::parenthesized},
    {NodeKind::ArrayAccess, &KrelIR::lvalue},
    {NodeKind::CastExpression, &KrelIR::unresolvedCast},
    {NodeKind::IntToDouble, &KrelIR::conversion},
    {NodeKind::IntToChar, &KrelIR::conversion},
    {NodeKind::CharToInt, &KrelIR::conversion},
    {NodeKind::IntToString, &KrelIR::conversion},
    {NodeKind::DoubleToString, &KrelIR::conversion},
    {NodeKind::BoolToString, &KrelIR::conversion},
    {NodeKind::CharToString, &KrelIR::conversion},
    {NodeKind::CallStatement, &KrelIR::call},
    {NodeKind::Assignment, &KrelIR::assignmentValue},
    {NodeKind::CompoundAssignment, &KrelIR::assignmentValue},
    {NodeKind::PostIncrement, &KrelIR::updateValue},
    {NodeKind::PreIncrement, &KrelIR::updateValue},
    {NodeKind::PostDecrement, &KrelIR::updateValue},
    {NodeKind::PreDecrement, &KrelIR::updateValue},
};

/// Operators associate to the left, so a chain of a million of them is a million levels deep on its
/// left side. That side is walked down and up again here; only right operands recurse.
KrelIR::Operand KrelIR::expression(Node* node) {
    const std::size_t bottom = operations.size();
    while (isOperation(*node)) {
        operations.push_back(node);
        node = childOf(node, 0);
    }
    const Expression lower = expressionLowering.find(node->kindName());
    if (lower == nullptr) {
        internalError("Unsupported expression node: " + node->getKind());
    }
    Operand value = (this->*lower)(node);
    while (operations.size() > bottom) {
        Node* operation = operations.back();
        operations.pop_back();
        value = operation->kindName() == NodeKind::BinaryOp ? binaryOp(operation, value)
                                                            : unaryOp(operation, value);
    }
    return value;
}

/// Lowers an operation whose left operand has the value `left`. Both operands are always evaluated,
/// those of "&&" and "||" too.
KrelIR::Operand KrelIR::binaryOp(Node* node, Operand left) {
    const Operand right = expression(childOf(node, 1));
    const Operand result = newTemporary();
    emitFor(node, result, " = ", left, " ", node->getStringValue(), " ", right);
    return result;
}

KrelIR::Operand KrelIR::unaryOp(Node* node, Operand operand) {
    const Operand result = newTemporary();
    emitFor(node, result, " = ", node->getStringValue(), " ", operand);
    return result;
}

KrelIR::Operand KrelIR::conversion(Node* node) {
    const Operand operand = expression(childOf(node, 0));
    const Operand result = newTemporary();
    emitFor(node, result, " = ", node->getKind(), " ", operand);
    return result;
}

KrelIR::Operand KrelIR::identifier(Node* node) {
    return node->getStringValue();
}

KrelIR::Operand KrelIR::parenthesized(Node* node) {
    return expression(childOf(node, 0));
}

KrelIR::Operand KrelIR::assignmentValue(Node* node) {
    visitStatement(node);
    return lvalue(childOf(node, 0));
}

KrelIR::Operand KrelIR::updateValue(Node* node) {
    const std::string& kind = node->getKind();
    const Operand place = lvalue(childOf(node, 0));
    const Operand before = newTemporary();
    emitFor(node, before, " = ", place);
    const Operand after = newTemporary();
    emitFor(node, after, " = ", place, " ", updateOperator(kind), " 1");
    emitFor(node, place, " = ", after);
    return kind.starts_with("Post") ? before : after;
}

KrelIR::Operand KrelIR::unresolvedCast(Node* /*node*/) {
    internalError("CastExpression should have been resolved during semantic analysis.");
}

/// All arguments are computed before the first is passed. A call that the analyser did not type has
/// a result, even if the function has none.
KrelIR::Operand KrelIR::call(Node* node) {
    const NodeList& children = node->getChildren();
    if (children.empty()) {
        internalError("CallStatement node has no callee.");
    }
    const std::size_t first = operands.size();
    if (children.size() > 1) {
        pushOperands(children[1]);
    }
    const std::string count = std::to_string(operands.size() - first);
    for (std::size_t index = first; index < operands.size(); ++index) {
        emitFor(node, Keyword::Arg, " ", operands[index]);
    }
    operands.resize(first);
    const Operand callee = lvalue(children[0]);
    if (node->semanticTypeName() == TypeName::Void) {
        emitFor(node, Keyword::Call, " ", callee, ", ", count);
        return {};
    }
    const Operand result = newTemporary();
    emitFor(node, result, " = ", Keyword::Call, " ", callee, ", ", count);
    return result;
}

void KrelIR::pushOperands(Node* expressions) {
    for (Node* node : expressions->getChildren()) {
        const Operand value = expression(node);
        operands.push_back(value);
    }
}

/// The index is lowered before the array's name.
KrelIR::Operand KrelIR::lvalue(Node* node) {
    if (node->kindName() == NodeKind::Identifier) {
        return node->getStringValue();
    }
    if (node->kindName() != NodeKind::ArrayAccess) {
        internalError("Unsupported lvalue node: " + node->getKind());
    }
    const Operand index = expression(childOf(node, 1));
    const Operand array = expression(childOf(node, 0));
    return keep(array, "[", index, "]");
}

/// A variable or element is never copied straight into another: the copy passes through a
/// temporary, which is taken before those of the source's index.
void KrelIR::assign(Operand target, Node* value) {
    if (isLiteral(value)) {
        emit(target, " = ", literal(value));
    } else if (value->kindName() == NodeKind::Identifier ||
               value->kindName() == NodeKind::ArrayAccess) {
        const Operand copy = newTemporary();
        const Operand source = lvalue(value);
        emitFor(value, copy, " = ", source);
        emit(target, " = ", copy);
    } else {
        const Operand result = expression(value);
        emit(target, " = ", result);
    }
}

/// Where nothing can be inverted, the temporary of the result is taken before the operand is
/// lowered (kept).
KrelIR::Operand KrelIR::negatedCondition(Node* node) {
    while (node->kindName() == NodeKind::ParenthesizedExpression) {
        node = childOf(node, 0);
    }
    const Name op = node->stringValue();
    if (node->kindName() == NodeKind::UnaryOp && op == Operator::Not) {
        return expression(childOf(node, 0));
    }
    if (node->kindName() == NodeKind::BinaryOp && !inverseComparison(op).empty()) {
        const Operand left = expression(childOf(node, 0));
        const Operand right = expression(childOf(node, 1));
        const Operand result = newTemporary();
        emitFor(node, result, " = ", left, " ", inverseComparison(op).text(), " ", right);
        return result;
    }
    const Operand result = newTemporary();
    const Operand value = expression(node);
    emitFor(node, result, " = ", Spelling::Not, value);
    return result;
}

KrelIR::Operand KrelIR::newTemporary() {
    std::array<char, 16> digits;
    const char* const end = std::to_chars(digits.begin(), digits.end(), temporaryCounter++).ptr;
    return keep("_t", std::string_view{digits.begin(), end});
}

bool KrelIR::isLiteral(Node* node) {
    return expressionLowering.find(node->kindName()) == &KrelIR::literal;
}

KrelIR::Operand KrelIR::literal(Node* node) {
    if (node->kindName() == NodeKind::StringLiteral) {
        return quote(node->getStringValue(), '"');
    }
    if (node->kindName() == NodeKind::CharacterLiteral) {
        const char character = node->getCharValue();
        return quote({&character, 1}, '\'');
    }
    return keep(node->valueAsString());
}

KrelIR::Operand KrelIR::quote(std::string_view text, char quotationMark) {
    const auto runFrom = [text, quotationMark](std::size_t from) {
        return plainRun(text, from, [quotationMark](char character) {
            return isEscaped(character, quotationMark);
        });
    };
    std::size_t size = text.size() + 2;
    for (std::size_t at = runFrom(0).size(); at < text.size(); at += 1 + runFrom(at + 1).size()) {
        ++size;
    }
    char* const quoted = textOf(size);
    char* end = quoted;
    *end++ = quotationMark;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view run = runFrom(at);
        end = writePart(end, run);
        at += run.size();
        if (at < text.size()) {
            *end++ = '\\';
            *end++ = escapeLetter(text[at]);
        }
    }
    *end = quotationMark;
    return {quoted, size};
}

std::string_view KrelIR::updateOperator(std::string_view kind) {
    return kind.find("Increment") != std::string_view::npos ? Spelling::Plus : Spelling::Minus;
}

}  // namespace krel
