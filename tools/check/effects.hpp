#pragma once

#include <unordered_map>
#include <vector>

#include "tools/check/model.hpp"

namespace krel::Check {

/// Where variables change in the middle of an expression. A repair makes a statement of such a
/// change, which then runs before all that is left in the expression; so what was read before the
/// change has to be kept in a variable of its own.
class Effects {
public:
    /// The model must outlive this.
    explicit Effects(const Model& itsModel);

    /// Whether something behind a node, in the same expression, changes what the node reads: a
    /// variable or an element. No node that is only assigned to reads anything.
    bool changeLater(NodeId read) const;
    /// Whether something behind a node, in the same expression, changes a variable.
    bool changeBehind(NodeId node, VariableId variable) const;
    /// The variable or array that a place belongs to; noVariable when there is none.
    VariableId variableOf(NodeId place) const;

private:
    bool isSeparate(NodeId read, NodeId effect) const;
    bool decides(NodeId operation) const;

    const Model& model;
    const Tree& tree;
    std::vector<NodeId> roots;                                   // the whole expression of a node
    std::unordered_map<VariableId, std::vector<NodeId>> nested;  // assignments and steps, in order
};

}  // namespace krel::Check
