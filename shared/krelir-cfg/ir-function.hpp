#pragma once

#include <string>
#include <utility>
#include <vector>

#include "shared/krelir-cfg/ir-basic-block.hpp"

namespace krel {

/// A function: blocks in layout order, which is the order of emission and of falling through, and
/// need not be that of their numbers.
class IRFunction {
public:
    explicit IRFunction(std::string functionName) : name(std::move(functionName)) {}

    const std::string& getName() const { return name; }
    const std::vector<IRBasicBlock>& getBlocks() const { return blocks; }

    /// Appends an empty block and returns it; the reference is valid until the next block is added.
    /// Throws std::runtime_error when the function has a block of that number.
    IRBasicBlock& addBlock(int number);

    /// Finds the successors of every block anew, from the last instruction of each. Throws
    /// std::invalid_argument or std::out_of_range for a branch to what is no number.
    void rebuildCFG();

private:
    std::string name;
    std::vector<IRBasicBlock> blocks;
    std::vector<int> numbers;  // of the blocks, ascending
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::IRFunction;
