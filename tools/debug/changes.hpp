#pragma once

#include <cstdint>
#include <vector>

#include "tools/machine/machine.hpp"

namespace krel::Debug {

/// Remembers what the variables of the innermost calls hold, to tell later what has changed.
class Changes {
public:
    /// A value that is another one than before.
    struct Change {
        const Execution::Variable* variable;
        std::int32_t index;  // of an array's element; else 0
        std::uint64_t bits;  // before
        Execution::Tag tag;
    };

    /// Keeps what the variables hold now. Of large arrays only the beginning is kept.
    void remember(const Execution::Machine& machine);
    /// What has changed in a call since then; 0 is the innermost one. A call that has begun since
    /// has no changes.
    std::vector<Change> since(const Execution::Machine& machine, std::size_t call) const;

private:
    struct Slot {
        std::uint64_t bits;
        Execution::Tag tag;
    };
    struct Frame {
        std::size_t number;  // counted from main on
        std::size_t function;
        const std::uint64_t* place;
        std::vector<Slot> slots;  // of all variables, one behind the other
    };

    std::vector<Frame> frames;
};

}  // namespace krel::Debug
