#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shared/ast/hashing.hpp"

namespace krel {

/// Gives texts numbers, from 1 on in the order of their addition, and finds the number of a text
/// again. Like the index of a book it does not hold the texts themselves.
///
/// The key of a text tells its chain. A chain is a list of entries, the latest first. Here the
/// texts a, b, c and d were added, and a, c and d are in chain 1:
///
///     chain           0     1     2     3   ...
///     latest entry  |  0  |  4  |  0  |  2  |             0: none
///
///     entry           1     2     3     4
///     key           | a   | b   | c   | d   |
///     next          | 0   | 0   | 1   | 3   |             an earlier entry of the chain; 0: none
///
/// To find c, one reads entry 4, which has another key, and then entry 3. There are at least as
/// many chains as texts. So a chain is expected to have fewer than three entries, whatever the
/// texts are (see chainOf).
class TextIndex {
public:
    TextIndex() : multiplier(hashSecret().multiplier) {}

    /// How many texts have a number.
    std::uint32_t size() const { return static_cast<std::uint32_t>(entries.size()); }

    /// The number of a text, or 0 when it has none. `isText` gets the number of a text with the
    /// same key, and tells whether it is the text looked for.
    template <typename IsText>
    std::uint32_t find(const KeyedText& text, IsText isText) const {
        std::uint32_t number = chains[chainOf(text.key(), multiplier, bits)];
        while (number != 0 && !(entries[number - 1].key == text.key() && isText(number))) {
            number = entries[number - 1].next;
        }
        return number;
    }

    /// Gives a text that has no number the next one, and keeps `tag` with it.
    std::uint32_t add(const KeyedText& text, std::uint32_t tag = 0) {
        entries.push_back({text.key(), 0, tag});
        if (entries.size() > chains.size()) {
            lengthen();
        } else {
            chain(size());
        }
        return size();
    }

    std::uint32_t tagOf(std::uint32_t number) const { return entries[number - 1].tag; }
    std::uint64_t keyOf(std::uint32_t number) const { return entries[number - 1].key; }

    /// Forgets all texts but the first `count`. Takes time only for the texts that it forgets.
    void shrink(std::uint32_t count) {
        for (; size() > count; entries.pop_back()) {
            headFor(entries.back().key) = entries.back().next;
        }
    }

private:
    struct Entry {
        std::uint64_t key;
        std::uint32_t next;  // in the chain: an earlier number, or 0
        std::uint32_t tag;
    };

    static constexpr unsigned firstBits = 7;

    std::uint32_t& headFor(std::uint64_t key) { return chains[chainOf(key, multiplier, bits)]; }

    void chain(std::uint32_t number) {
        Entry& entry = entries[number - 1];
        std::uint32_t& head = headFor(entry.key);
        entry.next = head;
        head = number;
    }

    /// Doubles the number of chains. They keep their order, which `shrink` relies on.
    void lengthen() {
        ++bits;
        chains.assign(std::size_t{1} << bits, 0);
        for (std::uint32_t number = 1; number <= size(); ++number) {
            chain(number);
        }
    }

    std::uint64_t multiplier;
    unsigned bits = firstBits;
    std::vector<std::uint32_t> chains = std::vector<std::uint32_t>(std::size_t{1} << firstBits);
    std::vector<Entry> entries;  // by number
};

}  // namespace krel
