#pragma once

#include <cstddef>
#include <cstdint>

class Node;

/// The ordered children of a node: a sequence of pointers that keeps the first two in place, since
/// most nodes have no more. It does not own the nodes; Node, which holds it, does.
class NodeList {
public:
    NodeList() = default;
    NodeList(const NodeList&) = delete;
    NodeList& operator=(const NodeList&) = delete;
    ~NodeList();

    std::size_t size() const { return count; }
    bool empty() const { return count == 0; }
    Node* const* begin() const { return data(); }
    Node* const* end() const { return data() + count; }
    /// `index` must be below size(); so for front() and back() of an empty list.
    Node* operator[](std::size_t index) const { return data()[index]; }
    Node* front() const { return data()[0]; }
    Node* back() const { return data()[count - 1]; }

    void push(Node* node) {
        if (count == capacity) {
            grow();
        }
        data()[count++] = node;
    }
    /// Takes out entry `index`, which must exist; later ones move up.
    void erase(std::size_t index);
    /// Puts `node` at `index`, which must exist, and returns what stood there.
    Node* exchange(std::size_t index, Node* node);
    void clear() { count = 0; }

private:
    void grow();

    static constexpr std::uint32_t inPlace = 2;

    Node* const* data() const { return capacity == inPlace ? places : block; }
    Node** data() { return capacity == inPlace ? places : block; }

    union {
        Node* places[inPlace] = {};
        Node** block;  // from malloc, `capacity` entries, once there are more than two
    };
    std::uint32_t count = 0;
    std::uint32_t capacity = inPlace;
};
