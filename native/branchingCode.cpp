// Code with branches. Comes in: instructions one by one, then the places of all targets. Goes out:
// the code, in which each branch is as short as it can be.

#include "native/branchingCode.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "native/notKnown.hpp"

namespace krel::Native {

BranchingCode::BranchingCode(std::size_t expectedSize, std::size_t expectedBranches) {
    enlarge(expectedSize + roomForInstruction);
    branches.reserve(expectedBranches);
}

void BranchingCode::enlarge(std::size_t newCapacity) {
    auto larger = std::make_unique_for_overwrite<std::uint8_t[]>(newCapacity);
    std::copy_n(bytes.get(), used, larger.get());
    bytes = std::move(larger);
    capacity = newCapacity;
}

std::uint32_t BranchingCode::inFourBytes(std::size_t number) {
    if (number > std::numeric_limits<std::uint32_t>::max()) {
        throw NotKnown("the program is too large");
    }
    return static_cast<std::uint32_t>(number);
}

// All branches begin short. Whatever does not reach becomes longer, which can only move others out
// of reach: in the end none is longer than it has to be. Branches around statements need a few
// passes; a hand-made chain, in which each branch only grows with the next one, needs one for each.
void BranchingCode::chooseSizes(const std::vector<Position>& targets) {
    sizesBefore.resize(branches.size() + 1);
    do {
        sumSizes();
    } while (lengthenBranches(targets));
}

void BranchingCode::sumSizes() {
    for (std::size_t number = 0; number < branches.size(); ++number) {
        sizesBefore[number + 1] = sizesBefore[number] + branches[number].size();
    }
}

bool BranchingCode::lengthenBranches(const std::vector<Position>& targets) {
    bool hasChanged = false;
    for (std::size_t number = 0; number < branches.size(); ++number) {
        Branch& branch = branches[number];
        if (!branch.isNear && !fitsByte(distanceOf(number, targets))) {
            branch.isNear = true;
            hasChanged = true;
        }
    }
    return hasChanged;
}

/// From the end of a branch to its target.
std::int64_t BranchingCode::distanceOf(std::size_t number,
                                       const std::vector<Position>& targets) const {
    const Branch& branch = branches[number];
    return static_cast<std::int64_t>(addressOf(targets[branch.target])) -
           static_cast<std::int64_t>(branch.position + sizesBefore[number + 1]);
}

Bytes BranchingCode::putTogether(const std::vector<Position>& targets) const {
    Bytes code;
    code.reserve(used + sizesBefore.back());
    std::size_t copied = 0;
    const auto copyUntil = [&](std::size_t end) {
        code.insert(code.end(), bytes.get() + copied, bytes.get() + end);
        copied = end;
    };
    for (std::size_t number = 0; number < branches.size(); ++number) {
        copyUntil(branches[number].position);
        appendBranch(code, number, targets);
    }
    copyUntil(used);
    return code;
}

void BranchingCode::appendBranch(Bytes& code, std::size_t number,
                                 const std::vector<Position>& targets) const {
    const Branch& branch = branches[number];
    const std::int64_t distance = distanceOf(number, targets);
    if (!fitsFourBytes(distance)) {
        throw NotKnown("a branch is too long");
    }
    std::array<std::uint8_t, roomForInstruction> encoded;
    std::uint8_t* to = encoded.data();
    if (branch.isNear && branch.form->isNearEscaped) {
        *to++ = 0x0F;
    }
    *to++ = branch.isNear ? branch.form->nearOpcode : branch.form->shortOpcode;
    to = writeInteger(to, static_cast<std::uint64_t>(distance), branch.isNear ? 4 : 1);
    code.insert(code.end(), encoded.data(), to);
}

}  // namespace krel::Native
