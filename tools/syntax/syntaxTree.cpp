// Ways through the tree. Comes in: a tree. Goes out: nodes and texts of it.

#include "tools/syntax/syntaxTree.hpp"

namespace krel::Syntax {

std::string_view Tree::wordOf(NodeId id) const {
    return textOf(wordRange(id));
}

SourceRange Tree::wordRange(NodeId id) const {
    const std::uint32_t token = nodes[id].token;
    return token == noToken ? SourceRange{} : tokens.words[token].range;
}

NodeId Tree::child(NodeId id, std::size_t number) const {
    NodeId found = nodes[id].first;
    for (; number > 0 && found != noNode; --number) {
        found = nodes[found].next;
    }
    return found;
}

NodeId Tree::lastChild(NodeId id) const {
    NodeId last = noNode;
    for (NodeId found = nodes[id].first; found != noNode; found = nodes[found].next) {
        last = found;
    }
    return last;
}

std::vector<NodeId> Tree::children(NodeId id) const {
    std::vector<NodeId> found;
    for (NodeId each = nodes[id].first; each != noNode; each = nodes[each].next) {
        found.push_back(each);
    }
    return found;
}

NodeId Tree::around(NodeId id, Kind kind) const {
    while (id != noNode && nodes[id].kind != kind) {
        id = nodes[id].parent;
    }
    return id;
}

}  // namespace krel::Syntax
