// The memory of nodes. Comes in: a request for one node, or a deleted node. Goes out: its space.
// The memory in use changes: its blocks, its free spaces and the values of its nodes.

#include "shared/ast/treeMemory.hpp"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

#include "shared/ast/node.hpp"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

namespace krel {

namespace {

constinit TreeMemory* inUse = nullptr;

// The sanitizer is told which nodes are alive, and reports every use of a deleted one. So the space
// of a deleted node is not used again.
#ifdef __SANITIZE_ADDRESS__
constexpr bool isReused = false;
void open(void* space) {
    ASAN_UNPOISON_MEMORY_REGION(space, sizeof(Node));
}
void close(void* space) {
    ASAN_POISON_MEMORY_REGION(space, sizeof(Node));
}
#else
constexpr bool isReused = true;
void open(void* /*space*/) {}
void close(void* /*space*/) {}
#endif

/// The doubles of all nodes; a node has room for an index only.
struct Values {
    std::vector<double> all;
    std::vector<std::uint32_t> free;
};

Values& allValues() {
    static Values& values = *new Values;
    return values;
}

}  // namespace

struct TreeMemory::Block {
    static constexpr std::size_t size = std::size_t{1} << 15;  // bytes
    static constexpr std::size_t length = (size - sizeof(void*)) / sizeof(Node);

    TreeMemory* owner;
    alignas(Node) unsigned char nodes[length][sizeof(Node)];

    static Block* of(void* node) {
        return reinterpret_cast<Block*>(reinterpret_cast<std::uintptr_t>(node) / size * size);
    }
};

TreeMemory::TreeMemory() : names(std::make_unique<NameScope>()) {}

TreeMemory::~TreeMemory() {
    freeChildLists();
    for (Block* block : blocks) {
        for (auto& node : block->nodes) {
            open(node);
        }
        std::free(block);
    }
    std::vector<std::uint32_t>& free = allValues().free;
    free.insert(free.end(), values.begin(), values.end());
}

/// Frees the long lists of children, which have memory of their own.
void TreeMemory::freeChildLists() {
    std::sort(freeSpaces.begin(), freeSpaces.end());
    for (Block* block : blocks) {
        const std::size_t used = Block::length - (block == blocks.back() ? unusedInLastBlock() : 0);
        for (std::size_t index = 0; index < used; ++index) {
            void* const space = block->nodes[index];
            if (!std::binary_search(freeSpaces.begin(), freeSpaces.end(), space)) {
                static_cast<Node*>(space)->children.clear();
            }
        }
    }
}

std::size_t TreeMemory::unusedInLastBlock() const {
    const Room& rest = freeSpaces.empty() || !isReused ? room : setAside;
    return static_cast<std::size_t>(rest.end - rest.begin) / sizeof(Node);
}

std::size_t TreeMemory::nodeCount() const {
    return blocks.size() * Block::length - unusedInLastBlock() - freeSpaces.size();
}

TreeMemory::Use::Use(TreeMemory& memory)
    : before(std::exchange(inUse, &memory)), names(*memory.names) {
    roomInUse = &memory.room;
}

TreeMemory::Use::~Use() {
    inUse = before;
    roomInUse = &current().room;
}

TreeMemory& TreeMemory::current() {
    static TreeMemory& ofTheProcess = *new TreeMemory{nullptr};
    return inUse != nullptr ? *inUse : ofTheProcess;
}

constinit TreeMemory::Room TreeMemory::noRoom;
constinit TreeMemory::Room* TreeMemory::roomInUse = &noRoom;

void* TreeMemory::allocate() {
    Room& room = *roomInUse;
    void* space = room.begin;
    if (room.begin == room.end) {
        space = current().takeElsewhere();
    } else {
        room.begin += sizeof(Node);
    }
    open(space);
    return space;
}

/// The space of a deleted node, or the first one of a new block.
void* TreeMemory::takeElsewhere() {
    if (isReused && !freeSpaces.empty()) {
        void* const space = freeSpaces.back();
        freeSpaces.pop_back();
        if (freeSpaces.empty()) {
            room = std::exchange(setAside, {});
        }
        return space;
    }
    static_assert(sizeof(Block) <= Block::size);
    auto* const block = static_cast<Block*>(std::aligned_alloc(Block::size, Block::size));
    if (block == nullptr) {
        throw std::bad_alloc{};
    }
    block->owner = this;
    blocks.push_back(block);
    room = {block->nodes[1], block->nodes[0] + sizeof block->nodes};
    roomInUse = &room;
    return block->nodes[0];
}

void TreeMemory::release(void* node) {
    close(node);
    TreeMemory& owner = *Block::of(node)->owner;
    if (isReused && owner.freeSpaces.empty()) {
        owner.setAside = std::exchange(owner.room, {});
    }
    owner.freeSpaces.push_back(node);
}

std::uint32_t TreeMemory::keep(double value) {
    auto& [all, free] = allValues();
    std::uint32_t place = 0;
    if (free.empty()) {
        place = static_cast<std::uint32_t>(all.size());
        all.push_back(value);
    } else {
        place = free.back();
        free.pop_back();
        all[place] = value;
    }
    if (TreeMemory& memory = current(); memory.names != nullptr) {
        memory.values.push_back(place);
    }
    return place;
}

double TreeMemory::valueAt(std::uint32_t place) {
    return allValues().all[place];
}

}  // namespace krel
