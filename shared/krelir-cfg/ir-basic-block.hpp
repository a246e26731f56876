#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <ranges>
#include <stdexcept>
#include <string_view>

#include "shared/krelir-cfg/ir-instruction-list.hpp"

namespace krel {

/// The numbers of the blocks that one block can be followed by: never more than two, each once.
class IRSuccessors {
public:
    bool empty() const { return count == 0; }
    std::size_t size() const { return count; }
    const int* begin() const { return numbers.data(); }
    const int* end() const { return numbers.data() + count; }
    /// `index` must be below size(). front() and back() need a list that is not empty.
    int operator[](std::size_t index) const { return numbers[index]; }
    /// Throws std::out_of_range when there is no such successor.
    int at(std::size_t index) const {
        if (index >= count) {
            throw std::out_of_range("no such successor");
        }
        return numbers[index];
    }
    int front() const { return numbers[0]; }
    int back() const { return numbers[count - 1]; }
    /// Equal to any sequence of the same numbers.
    template <std::ranges::input_range Other>
    friend bool operator==(const IRSuccessors& successors, const Other& other) {
        return std::ranges::equal(successors, other);
    }

    void clear() { count = 0; }
    /// Appends a number, unless it is already there. There must never be a third one.
    void add(int number) {
        if (std::find(begin(), end(), number) == end()) {
            numbers[count++] = number;
        }
    }

private:
    std::array<int, 2> numbers{};
    std::size_t count = 0;
};

/// A numbered run of instructions. The number is unique within the block's function.
class IRBasicBlock {
public:
    explicit IRBasicBlock(int blockNumber) : number(blockNumber) {}

    int getNumber() const { return number; }
    const IRInstructionList& getInstructions() const { return instructions; }
    /// The numbers of the blocks that control can go to from this one's end, each once. As of the
    /// last IRFunction::rebuildCFG.
    const IRSuccessors& getSuccessors() const { return successors; }

    /// Appends an instruction with a copy of the text.
    void addInstruction(std::string_view text, bool separated) {
        instructions.add(separated, text);
    }
    /// The same for a text in several parts.
    template <typename... Parts>
    void addInstructionOf(bool separated, const Parts&... parts) {
        instructions.add(separated, parts...);
    }

private:
    friend class IRFunction;

    int number;
    IRInstructionList instructions;
    IRSuccessors successors;
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::IRBasicBlock;
