#pragma once

#include <string>
#include <utility>
#include <vector>

#include "shared/krelir-cfg/ir-instruction.hpp"

/// A numbered run of instructions. The number is unique within the block's function.
class IRBasicBlock {
public:
    explicit IRBasicBlock(int blockNumber) : number(blockNumber) {}

    int getNumber() const { return number; }
    const std::vector<IRInstruction>& getInstructions() const { return instructions; }
    /// The numbers of the blocks that control can go to from this one's end, each once. Known from
    /// the last IRFunction::rebuildCFG on.
    const std::vector<int>& getSuccessors() const { return successors; }

    void addInstruction(std::string text, bool separated) {
        instructions.emplace_back(std::move(text), separated);
    }

private:
    friend class IRFunction;

    int number;
    std::vector<IRInstruction> instructions;
    std::vector<int> successors;
};
