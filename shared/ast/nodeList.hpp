#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ranges>
#include <stdexcept>

namespace krel {

class Node;

/// The ordered children of a node. Most nodes have no more than two, which the list keeps in place.
/// Three or more are in a block on the heap. It has room for the next power of two, so the count
/// alone tells when it is full:
///
///     2 children    | a | b | 2 |
///     3 children    | block | 3 |   block:  | a | b | c |   |
///     4 children    | block | 4 |   block:  | a | b | c | d |                    full
///     5 children    | block | 5 |   block:  | a | b | c | d | e |   |   |   |
///
/// The list does not own the nodes; Node, which holds it, does.
class NodeList {
public:
    NodeList() = default;
    NodeList(const NodeList&) = delete;
    NodeList& operator=(const NodeList&) = delete;
    ~NodeList() { clear(); }

    std::size_t size() const { return count; }
    bool empty() const { return count == 0; }
    Node* const* begin() const { return data(); }
    Node* const* end() const { return data() + count; }
    /// `index` must be below size(). front() and back() need a list that is not empty.
    Node* operator[](std::size_t index) const { return data()[index]; }
    /// Throws std::out_of_range when there is no such entry.
    Node* at(std::size_t index) const {
        if (index >= count) {
            throw std::out_of_range("no such node");
        }
        return data()[index];
    }
    Node* front() const { return data()[0]; }
    Node* back() const { return data()[count - 1]; }
    /// Equal to any sequence of the same nodes.
    template <std::ranges::input_range Other>
    friend bool operator==(const NodeList& list, const Other& other) {
        return std::ranges::equal(list, other);
    }

    void push(Node* node) {
        if (isFull()) {
            grow();
        }
        ++count;
        data()[count - 1] = node;
    }
    /// Takes out entry `index`, which must exist; later ones move up.
    void erase(std::size_t index);
    /// Puts `node` at `index`, which must exist, and returns what stood there.
    Node* exchange(std::size_t index, Node* node);
    void clear() {
        if (!isInPlace()) {
            freeBlock();
        }
        count = 0;
    }

private:
    static constexpr std::uint32_t inPlace = 2;

    bool isInPlace() const { return count <= inPlace; }
    /// A block has room for the next power of two.
    bool isFull() const { return count >= inPlace && (count & (count - 1)) == 0; }
    void grow();
    void freeBlock();

    Node* const* data() const { return isInPlace() ? places : block; }
    Node** data() { return isInPlace() ? places : block; }

    union {
        Node* places[inPlace] = {};
        Node** block;  // from malloc
    };
    std::uint32_t count = 0;
};

}  // namespace krel
