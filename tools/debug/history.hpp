#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/machine/machine.hpp"

namespace krel::Debug {

/// Snapshots of a run, to go back by. Their number is bounded, and so is what they take together.
/// When there are too many, the one goes without which the way to any place gets the least longer,
/// in relation to how far that place is: close behind the run they stay dense, far back they get
/// sparse.
class History {
public:
    struct Entry {
        std::uint64_t step = 0;
        std::size_t edits = 0;  // how many changes by the user are in it
        std::size_t bytes = 0;
        std::shared_ptr<const Execution::Snapshot> snapshot;
    };

    History(std::size_t itsMostEntries, std::size_t itsMostBytes)
        : mostEntries(itsMostEntries), mostBytes(itsMostBytes) {}

    /// Takes an entry in the place of one with the same step, and lets others go. The first one
    /// stays.
    void add(Entry entry);
    /// The last entry of this step or an earlier one; null when there is none.
    const Entry* upTo(std::uint64_t step) const;
    /// Forgets what comes behind a step.
    void forgetAfter(std::uint64_t step);

    const std::vector<Entry>& all() const { return entries; }

private:
    void thinOut(std::uint64_t now);

    std::size_t mostEntries;
    std::size_t mostBytes;
    std::size_t bytes = 0;
    std::vector<Entry> entries;  // in the order of their steps
};

}  // namespace krel::Debug
