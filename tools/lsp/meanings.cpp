// Choices where a repair would be a guess. Comes in: a finding. Goes out: edits for each meaning.

#include "tools/lsp/meanings.hpp"

#include <string_view>

namespace krel::Lsp {

namespace {

using Check::Edit;

/// The assignment whose sign the finding marks, if it is all of a condition; else noNode.
NodeId conditionOf(const Syntax::Tree& tree, const Check::Finding& finding) {
    if (finding.rule != "assignment-value") {
        return noNode;
    }
    const NodeId id = nodeOfToken(tree, tokenAt(tree, finding.range.begin));
    const bool isCondition = id != noNode && tree[id].kind == Kind::Assign &&
                             tree[id].op == Word::Assign &&
                             tree[tree[id].parent].kind == Kind::Condition;
    return isCondition ? id : noNode;
}

/// The `if` that looks at a condition first of all, if a statement can stand before it; else
/// noNode.
NodeId ifAround(const Syntax::Tree& tree, NodeId assignment) {
    const NodeId arm = tree[tree[assignment].parent].parent;
    const NodeId statement = tree[arm].parent;
    const bool isFirst = tree[arm].kind == Kind::Arm && tree[statement].first == arm;
    return isFirst && tree[tree[statement].parent].kind == Kind::Block ? statement : noNode;
}

/// What separates a new statement from one that begins at a byte: its line end and indentation, or
/// a blank if it does not begin its line.
std::string separatorBefore(std::string_view text, std::uint32_t at) {
    const std::size_t lineEnd = text.substr(0, at).rfind('\n');
    const std::size_t begin = lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
    const std::string_view before = text.substr(begin, at - begin);
    return before.find_first_not_of(" \t") == std::string_view::npos ? "\n" + std::string{before}
                                                                     : " ";
}

Meaning comparison(const Syntax::Tree& tree, NodeId assignment) {
    return {"Compare: write `==`", {{tree.wordRange(assignment), "=="}}};
}

Meaning assignmentBefore(const Syntax::Tree& tree, NodeId assignment, NodeId statement) {
    const std::string text{tree.textOf(assignment)};
    const std::uint32_t at = tree[statement].range.begin;
    return {"Assign before the `if`: write `" + text + ";`",
            {{{at, at}, text + ";" + separatorBefore(tree.text, at)},
             {tree[assignment].range, std::string{tree.textOf(tree[assignment].first)}}}};
}

}  // namespace

std::vector<Meaning> meaningsOf(Analysis& analysis, const Check::Finding& finding) {
    const Syntax::Tree& tree = analysis.tree();
    const NodeId assignment = conditionOf(tree, finding);
    if (assignment == noNode) {
        return {};
    }
    std::vector<Meaning> meanings{comparison(tree, assignment)};
    const NodeId statement = ifAround(tree, assignment);
    if (statement != noNode) {
        meanings.push_back(assignmentBefore(tree, assignment, statement));
    }
    return meanings;
}

}  // namespace krel::Lsp
