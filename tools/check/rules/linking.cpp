// What only the assembler or the linker refuses, and faults that the compiler names no place of.

/// # missing-main
///
/// ## What it finds
///
/// A program without a function `main`.
///
/// ## Why
///
/// The program starts there. The linker says "undefined reference to `main'".
///
/// ## Example
///
/// ```krel example
/// void start() {
///     print("never\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
///     print("hello\n");
/// }
/// ```

/// # nul-in-string
///
/// ## What it finds
///
/// A NUL character in a string literal.
///
/// ## Why
///
/// Strings end at the first NUL, and the assembler refuses one in a literal.
///
/// ## Example
///
/// ```krel example fragment
/// s = "a\0b";
/// ```
///
/// ## Use instead
///
/// Another character.

/// # undeclared-call
///
/// ## What it finds
///
/// A call of an undeclared function in an array's initialiser list.
///
/// ## Why
///
/// The elements of the list are not checked, so only the linker notices.
///
/// ## Example
///
/// ```krel example fragment
/// int t[1] = {missing()};
/// ```
///
/// ## Use instead
///
/// A function that the program defines.

/// # linked-name
///
/// ## What it finds
///
/// A function that is named like one of the run-time library or the system's start-up files.
///
/// ## Why
///
/// The linker finds two of that name.
///
/// ## Example
///
/// ```krel example
/// void krel_print() {
/// }
/// ```
///
/// ## Use instead
///
/// Another name.

/// # outside-loop
///
/// ## What it finds
///
/// `break` and `continue` outside of a loop.
///
/// ## Why
///
/// They leave the innermost loop, or its round. There is none.
///
/// ## Example
///
/// ```krel example fragment
/// break;
/// ```
///
/// ## Use instead
///
/// `return;` leaves a function.

#include <algorithm>
#include <array>

#include "tools/check/linkRules.hpp"

namespace krel::Check {

namespace {

constexpr std::array<std::string_view, 4> linkRules = {"missing-main", "nul-in-string",
                                                       "undeclared-call", "linked-name"};

bool holdsNul(std::string_view literal) {
    for (std::size_t at = 1; at + 1 < literal.size(); ++at) {
        if (literal[at] == '\0' || (literal[at] == '\\' && literal[at + 1] == '0')) {
            return true;
        }
        at += literal[at] == '\\' ? 1U : 0U;
    }
    return false;
}

bool isInLoop(const Tree& tree, NodeId id) {
    for (NodeId around = tree[id].parent; around != noNode; around = tree[around].parent) {
        const Kind kind = tree[around].kind;
        if (kind == Kind::While || kind == Kind::DoWhile || kind == Kind::For) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool isLinkFault(const Finding& finding) {
    return std::find(linkRules.begin(), linkRules.end(), finding.rule) != linkRules.end();
}

void findLinkFaults(const Model& model, std::vector<Finding>& findings) {
    const Tree& tree = model.tree();
    if (model.functionNamed("main") == noFunction) {
        const auto end = static_cast<std::uint32_t>(tree.text.size());
        findings.push_back({"missing-main",
                            Severity::Error,
                            {end, end},
                            "there is no function `main`, where the program would start",
                            "write `void main() { }`"});
    }
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const Syntax::Node& node = tree[id];
        if (node.kind == Kind::Literal && node.op == Word::StringLiteral &&
            holdsNul(tree.textOf(id))) {
            findings.push_back(
                {"nul-in-string", Severity::Error, node.range, "a string cannot hold a NUL", ""});
        }
        if (node.kind == Kind::Call && node.op == Word::Name &&
            model.functionNamed(tree.wordOf(id)) == noFunction &&
            tree.around(id, Kind::List) != noNode) {
            findings.push_back({"undeclared-call", Severity::Error, tree.wordRange(id),
                                "there is no function `" + std::string{tree.wordOf(id)} + "`", ""});
        }
    }
}

std::vector<NodeId> nodesBehind(const Model& model, std::string_view message) {
    const Tree& tree = model.tree();
    const bool isBreak = message.substr(0, 5) == "break";
    const bool isContinue = message.substr(0, 8) == "continue";
    const bool isStatement = message.substr(0, 21) == "Unsupported statement";
    const bool isTarget = message.substr(0, 18) == "Unsupported lvalue";
    constexpr std::string_view sizeless = "array has no positive compile-time size: ";
    const bool isSize = message.substr(0, sizeless.size()) == sizeless;
    const bool isCast = message.substr(0, 4) == "Cast";
    std::vector<NodeId> found;
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const Kind kind = tree[id].kind;
        const NodeId first = tree[id].first;
        const Kind inside = first == noNode ? Kind::Missing : tree[first].kind;
        const bool isMeant =
            ((isBreak && kind == Kind::Break) || (isContinue && kind == Kind::Continue))
                ? !isInLoop(tree, id)
            : isStatement
                ? (kind == Kind::ExpressionStatement &&
                   (inside == Kind::Parentheses || inside == Kind::Name)) ||
                      (kind == Kind::ForPart && Syntax::isExpression(inside) &&
                       inside != Kind::Assign && inside != Kind::Update && inside != Kind::Call)
            : isTarget ? kind == Kind::Update && inside == Kind::Parentheses
            : isCast   ? kind == Kind::Cast
                       : false;
        const bool isArray = isSize && kind == Kind::Declarator && inside == Kind::ArrayBound &&
                             tree.wordOf(id) == message.substr(sizeless.size());
        if (isArray) {
            found.push_back(id);
        }
        if (isMeant && (kind != Kind::ForPart || tree[tree[id].parent].kind == Kind::For)) {
            found.push_back(id);
        }
    }
    return found;
}

}  // namespace krel::Check
