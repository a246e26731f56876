// Changes of variables within expressions. Comes in: a model. Goes out: whether a value that is
// read in an expression changes before the expression ends.

#include "tools/check/effects.hpp"

#include <algorithm>

namespace krel::Check {

Effects::Effects(const Model& itsModel) : model(itsModel), tree(itsModel.tree()) {
    roots.resize(tree.nodes.size());
    for (NodeId id = static_cast<NodeId>(tree.nodes.size()); id-- > 0;) {
        const NodeId parent = tree[id].parent;
        const bool isPart = parent != noNode && Syntax::isExpression(tree[parent].kind);
        roots[id] = isPart ? roots[parent] : id;
    }
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const bool changes = tree[id].kind == Kind::Assign || tree[id].kind == Kind::Update;
        if (changes && roots[id] != id && variableOf(tree[id].first) != noVariable) {
            nested[variableOf(tree[id].first)].push_back(id);
        }
    }
}

VariableId Effects::variableOf(NodeId place) const {
    while (tree[place].kind == Kind::Index || tree[place].kind == Kind::Parentheses) {
        place = tree[place].first;
    }
    return tree[place].kind == Kind::Name ? model.meaning(place) : noVariable;
}

bool Effects::changeLater(NodeId read) const {
    const NodeId parent = tree[read].parent;
    if (parent == noNode) {
        return false;
    }
    const Kind kind = tree[parent].kind;
    const bool isPlace = tree[parent].first == read &&
                         (kind == Kind::Assign || kind == Kind::Update || kind == Kind::Index);
    return !isPlace && changeBehind(read, variableOf(read));
}

bool Effects::changeBehind(NodeId node, VariableId variable) const {
    const auto found = nested.find(variable);
    if (variable == noVariable || found == nested.end()) {
        return false;
    }
    const std::vector<NodeId>& all = found->second;
    auto effect = std::upper_bound(all.begin(), all.end(), node);
    constexpr int mostEffects = 50;  // that are looked at; a value may always be kept
    for (int count = 0; effect != all.end() && *effect <= roots[node]; ++effect, ++count) {
        const bool isAround = model.firstWithin(*effect) <= node;
        if (!isAround && (count >= mostEffects || !isSeparate(node, *effect))) {
            return true;
        }
    }
    return false;
}

/// Whether the repaired program decides by what is read whether the change happens at all.
bool Effects::isSeparate(NodeId read, NodeId effect) const {
    constexpr int mostSteps = 200;
    NodeId common = read;
    for (int step = 0; common < effect; ++step) {
        if (step == mostSteps) {
            return false;
        }
        common = tree[common].parent;
    }
    return tree[common].kind == Kind::Conditional || decides(common);
}

/// Whether it is an `&&` or `||` of a condition: both sides become statements.
bool Effects::decides(NodeId operation) const {
    const auto isLogical = [&](NodeId id) {
        return tree[id].kind == Kind::Binary &&
               (tree[id].op == Word::And || tree[id].op == Word::Or);
    };
    if (!isLogical(operation)) {
        return false;
    }
    constexpr int mostSteps = 200;
    NodeId around = tree[operation].parent;
    for (int step = 0; step < mostSteps; ++step) {
        const bool isInside = isLogical(around) || tree[around].kind == Kind::Parentheses ||
                              (tree[around].kind == Kind::Unary && tree[around].op == Word::Not);
        if (!isInside) {
            break;
        }
        around = tree[around].parent;
    }
    return tree[around].kind == Kind::Condition || tree[around].kind == Kind::ForPart;
}

}  // namespace krel::Check
