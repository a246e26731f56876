#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "native/encoder.hpp"
#include "native/objectFile.hpp"

namespace krel::Native {

/// A place in code whose branches have no size yet: the number of bytes before it, and the number
/// of branches before it. There is one for each label and each call, so that it is kept small.
struct Position {
    std::uint32_t bytes = 0;
    std::uint32_t branches = 0;
};

/// Code that grows an instruction at a time. The size of a branch depends on the distance to its
/// target, and that on the sizes of other branches. So they take no room at first:
///
///     text                 bytes so far   branches so far
///         testq %rax, %rax       3              0
///         jne .Lmain_B2          3              1
///         jmp .Lmain_B3          3              2
///     .Lmain_B2:                 3              2        a label at {3, 2}
///
/// In the end each branch gets the shortest form that reaches, and the code is put together.
class BranchingCode {
public:
    /// `expectedSize` and `expectedBranches` are guesses; memory that is not used costs nothing.
    BranchingCode(std::size_t expectedSize, std::size_t expectedBranches);

    /// Where the next instruction goes. There is the room that encode() needs.
    std::uint8_t* next() {
        if (capacity - used < roomForInstruction) {
            enlarge(2 * capacity);
        }
        return bytes.get() + used;
    }

    /// Ends the instruction that was written from next() to `end`.
    void advance(const std::uint8_t* end) { used = static_cast<std::size_t>(end - bytes.get()); }

    /// Adds a branch. The caller says later where its target is, which it has to know by a number.
    void addBranch(const BranchForm& form, std::uint32_t target) {
        branches.push_back({&form, here().bytes, target});
    }

    /// The place behind all of it. Throws NotKnown when the code is too large for four bytes.
    Position here() const { return {inFourBytes(used), inFourBytes(branches.size())}; }

    /// Chooses the size of each branch. `targets` has the positions of targets by their numbers.
    /// From here on addresses are known.
    void chooseSizes(const std::vector<Position>& targets);

    /// The offset of a place in the code, with its branches.
    std::size_t addressOf(const Position& position) const {
        return position.bytes + sizesBefore[position.branches];
    }

    /// The code, with its branches. Throws NotKnown when a distance does not fit into four bytes.
    Bytes putTogether(const std::vector<Position>& targets) const;

    /// Throws NotKnown for a number that does not fit: no program is larger.
    static std::uint32_t inFourBytes(std::size_t number);

private:
    struct Branch {
        const BranchForm* form;
        std::uint32_t position;  // bytes before it
        std::uint32_t target;
        bool isNear = false;

        std::uint32_t size() const { return isNear ? form->nearSize() : BranchForm::shortSize; }
    };

    void enlarge(std::size_t newCapacity);
    void sumSizes();
    bool lengthenBranches(const std::vector<Position>& targets);
    std::int64_t distanceOf(std::size_t number, const std::vector<Position>& targets) const;
    void appendBranch(Bytes& code, std::size_t number, const std::vector<Position>& targets) const;

    std::unique_ptr<std::uint8_t[]> bytes;  // without branches
    std::size_t capacity = 0;
    std::size_t used = 0;
    std::vector<Branch> branches;
    std::vector<std::size_t> sizesBefore;  // of the branches before the branch of a number
};

}  // namespace krel::Native
