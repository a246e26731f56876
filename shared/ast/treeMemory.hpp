#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "shared/ast/name.hpp"

namespace krel {

class Node;

/// The memory in which nodes are made, and the names that come with them. A process that compiles
/// several programs has one for each: with it end all its nodes, linked or not, and all its names.
/// What is made while none is in use belongs to the process and stays until that ends, which is
/// soon for a compiler that compiles one program.
///
/// Nodes lie in blocks, side by side; a node that is deleted makes room for the next one. Each
/// block begins with its owner:
///
///     | owner | node | node | node | ...        one block, on a boundary of its size
class TreeMemory {
public:
    TreeMemory();
    TreeMemory(const TreeMemory&) = delete;
    TreeMemory& operator=(const TreeMemory&) = delete;
    /// Frees all nodes that were made in it. Names that first appeared while it was in use must not
    /// be used any more.
    ~TreeMemory();

    /// As long as this object lives, nodes and names are made in `memory`; afterwards, where they
    /// were made before.
    class Use {
    public:
        explicit Use(TreeMemory& memory);
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
        ~Use();

    private:
        TreeMemory* before;
        NameScope::Use names;
    };

    /// How many nodes there are in it.
    std::size_t nodeCount() const;

private:
    friend class Node;
    struct Block;

    /// The memory of the process.
    explicit TreeMemory(std::nullptr_t) {}

    /// Free space in which nodes are made one behind the other.
    struct Room {
        unsigned char* begin = nullptr;
        unsigned char* end = nullptr;
    };

    static TreeMemory& current();
    /// Room for a node in the memory in use. Throws std::bad_alloc.
    static void* allocate();
    /// Takes back what `allocate` gave.
    static void release(void* node);
    /// Keeps the value of a node in the memory in use; returns where.
    static std::uint32_t keep(double value);
    static double valueAt(std::uint32_t place);

    void* takeElsewhere();
    void freeChildLists();
    std::size_t unusedInLastBlock() const;

    static Room noRoom;  // in use until the process has made its first node
    static Room* roomInUse;

    std::unique_ptr<NameScope> names;  // null for the memory of the process
    std::vector<Block*> blocks;
    /// What is left of the newest block. While there are spaces of deleted nodes, which are used
    /// first, it is set aside and `room` is empty. So making a node usually tests one condition
    /// only.
    Room room;
    Room setAside;
    std::vector<void*> freeSpaces;
    std::vector<std::uint32_t> values;  // the places of those it keeps
};

}  // namespace krel
