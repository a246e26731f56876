// The snapshots that are kept. Comes in: more and more of them. Goes out: the one to go back by.

#include "tools/debug/history.hpp"

#include <algorithm>
#include <utility>

namespace krel::Debug {

void History::add(Entry entry) {
    const std::uint64_t now = entry.step;
    bytes += entry.bytes;
    const auto at = std::ranges::lower_bound(entries, now, {}, &Entry::step);
    if (at != entries.end() && at->step == now) {
        bytes -= at->bytes;
        *at = std::move(entry);
    } else {
        entries.insert(at, std::move(entry));
    }
    thinOut(now);
}

/// The first and the last entry have no gap around them, and stay.
void History::thinOut(std::uint64_t now) {
    constexpr std::size_t fewest = 3;
    while (entries.size() > mostEntries || (bytes > mostBytes && entries.size() > fewest)) {
        std::size_t best = 1;
        double least = 0;
        for (std::size_t index = 1; index + 1 < entries.size(); ++index) {
            const std::uint64_t step = entries[index].step;
            const auto distance = static_cast<double>(step > now ? step - now : now - step);
            const auto gap = static_cast<double>(entries[index + 1].step - entries[index - 1].step);
            const double cost = gap / (distance + 1);
            if (index == 1 || cost < least) {
                best = index;
                least = cost;
            }
        }
        bytes -= entries[best].bytes;
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(best));
    }
}

const History::Entry* History::upTo(std::uint64_t step) const {
    const auto behind = std::ranges::upper_bound(entries, step, {}, &Entry::step);
    return behind == entries.begin() ? nullptr : &*std::prev(behind);
}

void History::forgetAfter(std::uint64_t step) {
    while (!entries.empty() && entries.back().step > step) {
        bytes -= entries.back().bytes;
        entries.pop_back();
    }
}

}  // namespace krel::Debug
