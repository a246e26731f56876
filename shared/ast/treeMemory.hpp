#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "shared/ast/name.hpp"

class Node;

/// Where nodes are made, and the names that come with them. A compilation among others has one of
/// its own: all its nodes are gone with it, linked or not, and its names are. What is made while
/// none is in use belongs to the process and stays until it ends, which is soon for a compiler that
/// compiles one program.
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
    /// Frees all nodes that were made in it. There must be no names left from then on that first
    /// appeared while it was in use.
    ~TreeMemory();

    /// Nodes and names are made in `memory` as long as this object lives; then again where they
    /// were before.
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

    /// That of the process.
    explicit TreeMemory(std::nullptr_t) {}

    /// Where nodes are made one behind the other.
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

    std::unique_ptr<NameScope> names;  // null for that of the process
    std::vector<Block*> blocks;
    /// What is left of the newest block. It is set aside while there are spaces of deleted nodes,
    /// which are used first: so the usual way to make a node has one thing to ask for.
    Room room;
    Room setAside;
    std::vector<void*> freeSpaces;
    std::vector<std::uint32_t> values;  // the places of those it keeps
};
