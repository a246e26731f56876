#include "shared/ast/node.hpp"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

namespace {

#ifdef __SANITIZE_ADDRESS__

// One by one, so that the sanitizer sees the life of each node.
void* allocateNode() {
    return ::operator new(sizeof(Node));
}

void freeNode(void* node) {
    ::operator delete(node);
}

#else

union NodeSpace {
    NodeSpace* next;  // while it is free
    alignas(Node) unsigned char node[sizeof(Node)];
};

constexpr std::size_t blockLength = 1024;  // nodes

NodeSpace* freeSpaces = nullptr;
NodeSpace* unusedSpaces = nullptr;  // the rest of the newest block
std::size_t unusedCount = 0;

void* allocateNode() {
    if (freeSpaces != nullptr) {
        return std::exchange(freeSpaces, freeSpaces->next);
    }
    if (unusedCount == 0) {
        unusedSpaces = static_cast<NodeSpace*>(::operator new(sizeof(NodeSpace) * blockLength));
        unusedCount = blockLength;
    }
    --unusedCount;
    return unusedSpaces++;
}

void freeNode(void* node) {
    auto* space = static_cast<NodeSpace*>(node);
    space->next = std::exchange(freeSpaces, space);
}

#endif

}  // namespace

void* Node::operator new(std::size_t /*size*/) {
    return allocateNode();
}

void Node::operator delete(void* node) {
    freeNode(node);
}

NodeList::~NodeList() {
    if (capacity != inPlace) {
        std::free(block);
    }
}

void NodeList::grow() {
    const std::uint32_t doubled = capacity * 2;
    void* old = capacity == inPlace ? nullptr : block;
    auto* grown = static_cast<Node**>(std::realloc(old, doubled * sizeof(Node*)));
    if (grown == nullptr) {
        throw std::bad_alloc{};
    }
    if (old == nullptr) {
        std::memcpy(grown, places, sizeof places);
    }
    block = grown;
    capacity = doubled;
}

void NodeList::erase(std::size_t index) {
    Node** entry = data() + index;
    std::memmove(entry, entry + 1, (count - index - 1) * sizeof(Node*));
    --count;
}

Node* NodeList::exchange(std::size_t index, Node* node) {
    Node* old = data()[index];
    data()[index] = node;
    return old;
}

Node::Node(Name itsKind, int itsLine) : kind(itsKind), line(itsLine), valueType(ValueType::None) {}

Node::Node(Name itsKind, Name itsValue, int itsLine)
    : value{.string = itsValue}, kind(itsKind), line(itsLine), valueType(ValueType::String) {}

Node::Node(Name itsKind, const char* itsValue, int itsLine)
    : Node(itsKind, Name{itsValue}, itsLine) {}

Node::Node(Name itsKind, int itsValue, int itsLine)
    : value{.integer = itsValue}, kind(itsKind), line(itsLine), valueType(ValueType::Int) {}

Node::Node(Name itsKind, double itsValue, int itsLine)
    : value{.real = itsValue}, kind(itsKind), line(itsLine), valueType(ValueType::Double) {}

Node::Node(Name itsKind, char itsValue, int itsLine)
    : value{.character = itsValue}, kind(itsKind), line(itsLine), valueType(ValueType::Char) {}

Node::Node(Name itsKind, bool itsValue, int itsLine)
    : value{.boolean = itsValue}, kind(itsKind), line(itsLine), valueType(ValueType::Bool) {}

Node::Node(Name itsKind, Node* child, int itsLine) : Node(itsKind, itsLine) {
    addChild(child);
}

Node::Node(Name itsKind, Name itsValue, Node* child, int itsLine)
    : Node(itsKind, itsValue, itsLine) {
    addChild(child);
}

Node::Node(Name itsKind, Node* first, Node* second, int itsLine) : Node(itsKind, itsLine) {
    addChild(first);
    addChild(second);
}

Node::Node(Name itsKind, Node* first, Node* second, Node* third, int itsLine)
    : Node(itsKind, itsLine) {
    addChild(first);
    addChild(second);
    addChild(third);
}

// Descendants are taken over before they are deleted: a chain of a million operators is as many
// levels deep, and no stack holds a destructor for each.
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
