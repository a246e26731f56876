// Expressions. Comes in: nodes of expressions, and what is needed where they stand. Goes out:
// pieces.
//
// Nesting is limited by the parser, but a chain of binary operators may have any length. So a chain
// is written in a loop, from its leftmost operand on.

#include <utility>

#include "tools/check/repairer.hpp"
#include "tools/syntax/foreignWords.hpp"

namespace krel::Check {

/// The expression without parentheses around it.
NodeId Repairer::inner(NodeId id) const {
    while (tree[id].kind == Kind::Parentheses) {
        id = tree[id].first;
    }
    return id;
}

/// Whether it is one name or one literal.
bool Repairer::isAtom(NodeId id) const {
    return tree[id].kind == Kind::Name || tree[id].kind == Kind::Literal;
}

/// Whether it is an operand of an operator that binds as strongly as a difference.
bool Repairer::isOperand(NodeId id) const {
    const NodeId parent = tree[id].parent;
    const Word op = tree[parent].op;
    const bool isWeak = isComparison(op) || op == Word::And || op == Word::Or;
    return (tree[parent].kind == Kind::Binary && !isWeak) || tree[parent].kind == Kind::Unary ||
           tree[parent].kind == Kind::Cast;
}

/// Whether the compiler takes it as an index.
bool Repairer::isIndexAtom(NodeId id) const {
    return tree[id].kind == Kind::Name ||
           (tree[id].kind == Kind::Literal && tree[id].op == Word::IntLiteral);
}

/// Whether it compares or combines truths.
bool Repairer::isTruth(NodeId id) const {
    id = inner(id);
    const Word op = tree[id].op;
    return (tree[id].kind == Kind::Binary &&
            (isComparison(op) || op == Word::And || op == Word::Or)) ||
           (tree[id].kind == Kind::Unary && op == Word::Not);
}

bool Repairer::isAsItShouldBe(NodeId id, const Context& context) const {
    const Type meant = model.meant(id);
    if (isTruth(id)) {
        if (!context.typed) {
            return true;
        }
        const Type krel = model.krel(id);
        if (context.printed || krel == Word::End) {
            return krel == Word::Boolean;
        }
        return context.want == Word::End ||
               (krel == context.want && (krel == Word::Boolean || krel == Word::Int));
    }
    return context.want == Word::End || meant == Word::End || meant == context.want ||
           model.krel(id) == context.want;
}

void Repairer::expression(NodeId id, const Context& context, Pieces& out) {
    if (tree[id].kind == Kind::Name && namedConstant(id, context, out)) {
        return;
    }
    if (!isAsItShouldBe(id, context)) {
        if (isTruth(id) && context.want != Word::Double && context.want != Word::Character) {
            truthValue(id, context, out);
            return;
        }
        if (coerce(id, context, out)) {
            return;
        }
    }
    if (context.condition && model.meant(id) == Word::Double && !isTruth(id) &&
        tree[id].kind != Kind::Parentheses && tree[id].kind != Kind::Assign) {
        return doubleCondition(id, context, out);
    }
    switch (tree[id].kind) {
        case Kind::Name:
            return name(id, out);
        case Kind::Literal:
            return literal(id, context, out);
        case Kind::Unary:
            return unary(id, context, out);
        case Kind::Binary:
            return joinLiterals(id, out) ? void() : binary(id, context, out);
        case Kind::Assign:
            return nestedAssignment(id, context, out);
        case Kind::Conditional:
            return choose(id, context, out);
        case Kind::Update:
            return nestedUpdate(id, out);
        case Kind::Index:
            return place(id, out);
        case Kind::Call:
            return call(id, context, out);
        case Kind::Cast:
            return cast(id, context, out);
        case Kind::Parentheses:
            return childrenOf(id, context, out);
        case Kind::Field:
        case Kind::Method:
            sayMember(id);
            return childrenOf(id, {}, out);
        case Kind::List:
            return childrenOf(id, {}, out);
        default:
            return copy(id, out);
    }
}

/// Reports the point and the name behind it.
void Repairer::sayMember(NodeId id) {
    const SourceRange word = tree.wordRange(id);
    const std::uint32_t point = tree.tokens.words[tree[id].token - 1].range.begin;
    const Syntax::ForeignWords* const known = Syntax::findForeignWord(tree.wordOf(id));
    say("foreign-construct", Severity::Error, {point, word.end},
        known == nullptr ? "there are no objects, and nothing has members"
                         : "`" + std::string{tree.wordOf(id)} + "`: " + std::string{known->message},
        known == nullptr ? "declare one variable for each part, or write a function"
                         : std::string{known->help});
}

void Repairer::childrenOf(NodeId id, const Context& context, Pieces& out) {
    std::uint32_t at = tree[id].range.begin;
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
        copy(at, tree[child].range.begin, out);
        expression(child, context, out);
        at = tree[child].range.end;
    }
    copy(at, tree[id].range.end, out);
}

void Repairer::unary(NodeId id, const Context& context, Pieces& out) {
    const NodeId operand = tree[id].first;
    Context inside = context;
    inside.printed = false;
    if (tree[id].op == Word::Not) {
        inside.want = Word::End;
    } else {
        inside.condition = false;
    }
    if (tree[id].op == Word::Complement) {
        return complement(id, out);
    }
    copy(tree[id].range.begin, tree[operand].range.begin, out);
    if (isInlined(operand)) {
        say("unary-call", Severity::Error, tree[id].range,
            "`" + std::string{tree.wordOf(id)} + "` cannot stand before a call",
            "store the result first");
        return expression(operand, inside, out);
    }
    if (tree[operand].kind == Kind::Call) {
        const Type type = model.meant(operand);
        Pieces value;
        if (context.calls && id >= hoistCallsBefore && nameOf(type).empty()) {
            expression(operand, inside, out);
            return;
        }
        const std::string name{tree.wordOf(operand)};
        const std::string declared =
            hoisted(operand, name + "Result", nameOf(type).empty() ? Word::Int : type, out);
        say("unary-call", Severity::Error, tree[id].range,
            "`" + std::string{tree.wordOf(id)} + "` cannot stand before a call",
            "store the result first: " + quoted(declared));
        return;
    }
    expression(operand, inside, out);
}

/// What the operands of a binary operator have to be.
Repairer::Context Repairer::operandContext(NodeId id, const Context& context) const {
    Context inside = context;
    inside.printed = false;
    inside.want = Word::End;
    const Word op = tree[id].op;
    if (op == Word::And || op == Word::Or) {
        return inside;
    }
    inside.condition = false;
    const Type left = model.meant(tree[id].first);
    const Type right = model.meant(tree.child(id, 1));
    if (left == Word::End || right == Word::End || left == right) {
        return inside;
    }
    if (isComparison(op)) {
        const bool numbers = left != Word::String && right != Word::String;
        if (numbers && (left == Word::Double || right == Word::Double)) {
            inside.want = Word::Double;
        } else if (numbers && context.typed) {
            inside.want = left == Word::Boolean || right == Word::Boolean ? Word::End : Word::Int;
        }
        return inside;
    }
    // Without types, all but doubles and texts are numbers of 64 bits.
    const Type type = model.meant(id);
    inside.want = context.typed || type == Word::Double || type == Word::String ? type : Word::End;
    return inside;
}

void Repairer::binary(NodeId id, const Context& context, Pieces& out) {
    std::vector<std::pair<NodeId, Context>> chain = {{id, context}};
    NodeId left = tree[id].first;
    Context inside = operandContext(id, context);
    while (tree[left].kind == Kind::Binary && isAsItShouldBe(left, inside)) {
        chain.emplace_back(left, inside);
        inside = operandContext(left, inside);
        left = tree[left].first;
    }
    Pieces text;
    expression(left, inside, text);
    while (!chain.empty()) {
        text = binaryStep(chain.back().first, chain.back().second, std::move(text));
        chain.pop_back();
    }
    out.append(std::move(text));
}

/// The left operand, the operator and the right operand.
Pieces Repairer::binaryStep(NodeId id, const Context& context, Pieces&& left) {
    const NodeId second = tree.child(id, 1);
    const std::uint32_t end = tree[tree[id].first].range.end;
    const Word op = tree[id].op;
    if (op == Word::Percent) {
        return remainder(id, std::move(left));
    }
    if (isBitOperator(op)) {
        return bitOperation(id, op, context, std::move(left));
    }
    Pieces right;
    Prelude before =
        capture([&](Pieces&) { expression(second, operandContext(id, context), right); });
    const bool isLogical = op == Word::And || op == Word::Or;
    if (isLogical && context.condition &&
        ((!before.empty() && (model.hasCall(second) || model.hasEffect(second))) ||
         needsLeft(second))) {
        return shortCircuit(id, std::move(left), std::move(before), std::move(right));
    }
    std::move(before.begin(), before.end(), std::back_inserter(prelude));
    copy(end, tree[second].range.begin, left);
    left.append(std::move(right));
    return std::move(left);
}

}  // namespace krel::Check
