#pragma once

#include <string_view>
#include <vector>

#include "shared/krelir-cfg/ir-instruction-list.hpp"

/// A numbered run of instructions. The number is unique within the block's function.
class IRBasicBlock {
public:
    explicit IRBasicBlock(int blockNumber) : number(blockNumber) {}

    int getNumber() const { return number; }
    const IRInstructionList& getInstructions() const { return instructions; }
    /// The numbers of the blocks that control can go to from this one's end, each once. Known from
    /// the last IRFunction::rebuildCFG on.
    const std::vector<int>& getSuccessors() const { return successors; }

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
    std::vector<int> successors;
};
