// Nodes and their lists of children. Comes in: kinds, values and children. Goes out: a tree in the
// memory in use. A node changes its own fields and children, and deletes its descendants.

#include "shared/ast/node.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <vector>

#include "shared/ast/treeMemory.hpp"

namespace krel {

void* Node::operator new(std::size_t /*size*/) {
    return TreeMemory::allocate();
}

void Node::operator delete(void* node) {
    TreeMemory::release(node);
}

void NodeList::grow() {
    Node** const old = isInPlace() ? nullptr : block;
    auto* grown = static_cast<Node**>(std::realloc(old, std::size_t{count} * 2 * sizeof(Node*)));
    if (grown == nullptr) {
        throw std::bad_alloc{};
    }
    if (old == nullptr) {
        std::memcpy(grown, places, sizeof places);
    }
    block = grown;
}

void NodeList::freeBlock() {
    std::free(block);
}

void NodeList::erase(std::size_t index) {
    Node** const entry = data() + index;
    std::memmove(entry, entry + 1, (count - index - 1) * sizeof(Node*));
    --count;
    if (count == inPlace) {  // the two that are left move back
        Node** const old = block;
        std::memcpy(places, old, sizeof places);
        std::free(old);
    }
}

Node* NodeList::exchange(std::size_t index, Node* node) {
    Node* old = data()[index];
    data()[index] = node;
    return old;
}

double Node::getDoubleValue() const {
    return valueType == ValueType::Double ? TreeMemory::valueAt(value.real) : 0.0;
}

namespace {

/// The names whose words are no indexes, in the order of their words. They are few, and only tests
/// use them.
std::vector<Name>& otherNames() {
    static std::vector<Name> names;
    return names;
}

}  // namespace

std::uint16_t Node::otherWordOf(Name name) {
    std::vector<Name>& names = otherNames();
    const auto known = std::find(names.begin(), names.end(), name);
    const auto place = static_cast<std::size_t>(known - names.begin());
    if (known == names.end()) {
        if (place > lastWord - firstOtherWord) {
            throw std::length_error("too many kinds and types of nodes");
        }
        names.push_back(name);
    }
    return static_cast<std::uint16_t>(firstOtherWord + place);
}

Name Node::otherName(std::uint16_t word) {
    return otherNames()[word - std::size_t{firstOtherWord}];
}

Node::Node(Name itsKind, ValueType itsValueType, Value itsValue, Place place)
    : value(itsValue),
      line(place.line),
      range(place.range),
      kind(wordOf(itsKind)),
      semanticType(0),
      valueType(itsValueType) {}

Node::Node(Name itsKind, Place place) : Node(itsKind, ValueType::None, {}, place) {}

Node::Node(Name itsKind, Name itsValue, Place place)
    : Node(itsKind, ValueType::String, {.string = itsValue}, place) {}

Node::Node(Name itsKind, const char* itsValue, Place place)
    : Node(itsKind, Name{itsValue}, place) {}

Node::Node(Name itsKind, int itsValue, Place place)
    : Node(itsKind, ValueType::Int, {.integer = itsValue}, place) {}

Node::Node(Name itsKind, double itsValue, Place place)
    : Node(itsKind, ValueType::Double, {.real = TreeMemory::keep(itsValue)}, place) {}

Node::Node(Name itsKind, char itsValue, Place place)
    : Node(itsKind, ValueType::Char, {.character = itsValue}, place) {}

Node::Node(Name itsKind, bool itsValue, Place place)
    : Node(itsKind, ValueType::Bool, {.boolean = itsValue}, place) {}

Node::Node(Name itsKind, Node* child, Place place) : Node(itsKind, place) {
    addChild(child);
}

Node::Node(Name itsKind, Name itsValue, Node* child, Place place) : Node(itsKind, itsValue, place) {
    addChild(child);
}

Node::Node(Name itsKind, Node* first, Node* second, Place place) : Node(itsKind, place) {
    addChild(first);
    addChild(second);
}

Node::Node(Name itsKind, Node* first, Node* second, Node* third, Place place)
    : Node(itsKind, place) {
    addChild(first);
    addChild(second);
    addChild(third);
}

Node* Node::copyWithoutChildren() const {
    Node* const copy = valueType == ValueType::Double
                           ? new Node(kindName(), getDoubleValue(), getPlace())
                           : new Node(kindName(), valueType, value, getPlace());
    copy->semanticType = semanticType;
    return copy;
}

/// The children of a node are moved to a list before the node is deleted, so that destructors do
/// not nest: a chain of a million operators is a million levels deep, too deep for the stack.
Node::~Node() {
    std::vector<Node*> pending{children.begin(), children.end()};
    while (!pending.empty()) {
        Node* node = pending.back();
        pending.pop_back();
        pending.insert(pending.end(), node->children.begin(), node->children.end());
        node->children.clear();
        delete node;
    }
}

Node* Node::addChild(Node* child) {
    if (child != nullptr) {
        children.push(child);
    }
    return this;
}

void Node::removeChild(std::size_t index) {
    if (index < children.size()) {
        children.erase(index);
    }
}

Node* Node::replaceChild(std::size_t index, Node* newChild) {
    if (index >= children.size() || newChild == nullptr) {
        return nullptr;
    }
    return children.exchange(index, newChild);
}

}  // namespace krel
