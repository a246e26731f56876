#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shared/ast/hashing.hpp"

/// Finds texts that are kept elsewhere: gives each a number, from 1 on in the order of their
/// addition, and finds the number of a text again. An index of a book: it does not hold the texts.
///
/// Texts that meet are chained, the latest first. There are at least as many chains as texts, so
/// one is expected to have less than three, whatever the texts are (see chainOf).
class TextIndex {
public:
    TextIndex() : multiplier(hashSecret().multiplier) {}

    /// How many texts have a number.
    std::uint32_t size() const { return static_cast<std::uint32_t>(entries.size()); }

    /// The number of a text, or 0 when it has none. `isText` tells whether the text of a number,
    /// which has the same key, is the one that is looked for.
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

    /// Forgets all texts but the first `count`. Takes time for those only that it forgets, however
    /// many there once were.
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
