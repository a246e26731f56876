#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "shared/ast/hashing.hpp"
#include "shared/ast/name.hpp"

/// A map from names to small values, by open addressing over the names' indexes: a look-up is a
/// multiplication and, nearly always, one comparison. Nothing is ever removed. The empty name
/// cannot be a key.
template <typename T>
class NameMap {
public:
    /// The value of `name`, or null. Good until the next insertion.
    T* find(Name name) { return const_cast<T*>(static_cast<const NameMap*>(this)->find(name)); }
    const T* find(Name name) const {
        if (entries.empty()) {
            return nullptr;
        }
        const Entry& entry = entries[slotOf(name)];
        return entry.first == name && !name.empty() ? &entry.second : nullptr;
    }

    /// Inserts `value` unless the name has one already; returns whether it was inserted.
    bool insert(Name name, T value) {
        if ((count + 1) * 4 > entries.size() * 3) {
            grow();
        }
        Entry& entry = entries[slotOf(name)];
        if (entry.first == name) {
            return false;
        }
        entry = Entry{name, std::move(value)};
        ++count;
        return true;
    }

    /// Calls `use` with every name and value, in no particular order.
    template <typename Use>
    void forEach(Use use) const {
        for (const Entry& entry : entries) {
            if (!entry.first.empty()) {
                use(entry.first, entry.second);
            }
        }
    }

private:
    using Entry = std::pair<Name, T>;

    /// The entry of `name`, or the free one where it would go.
    std::size_t slotOf(Name name) const {
        const std::size_t mask = entries.size() - 1;
        std::size_t slot = hashOf(name.index()) & mask;
        while (!entries[slot].first.empty() && entries[slot].first != name) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    void grow() {
        std::vector<Entry> old(entries.empty() ? 8 : entries.size() * 2);
        old.swap(entries);
        for (Entry& entry : old) {
            if (!entry.first.empty()) {
                entries[slotOf(entry.first)] = std::move(entry);
            }
        }
    }

    std::vector<Entry> entries;  // a power of two of them; free ones have the empty name
    std::size_t count = 0;
};
