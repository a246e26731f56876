#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <vector>

#include "codegen/shortText.hpp"
#include "shared/ast/name.hpp"

/// A named value of a function.
struct Value {
    std::string_view name;
    ShortText address;  // of its slot, as an operand: "-24(%rbp)"
    int length = 0;     // elements of an array, by its symbol
    bool isArray = false;
    Name declaredType;  // of its symbol; empty without one
    Name type;          // what it is believed to hold now; empty when nothing is known
};

/// The words of one function, found by their texts, which stay the caller's. Every word stands for
/// a value, but for keywords and block names. Looked up for every operand of every line, so by open
/// addressing.
class ValueTable {
public:
    ValueTable();

    /// The value of a word, or null when the word is not known or has none.
    Value* find(std::string_view name) {
        const std::uint32_t index = slots[slotOf(name, keyOf(name))];
        return index == 0 || !words[index - 1].hasValue ? nullptr : &words[index - 1].value;
    }

    /// Adds a word, unless it is known.
    void add(std::string_view name) {
        const std::uint64_t key = keyOf(name);
        const std::uint32_t slot = slotOf(name, key);
        if (slots[slot] == 0) {
            insert(name, key, slot);
        }
    }

    /// Forgets the words that were added, for the next function.
    void clear();

    /// All values, ordered by name byte by byte. Like what `find` returns, good until the next word
    /// is added.
    const std::vector<Value*>& inOrder();

private:
    struct Word {
        std::uint64_t key = 0;
        std::uint32_t slot = 0;
        bool hasValue = false;
        Value value;
    };

    /// A value's place among the others, as far as the beginning of its name decides on it. Most
    /// comparisons of a sort then touch no value.
    struct Place {
        std::uint64_t prefix;  // the first eight characters of the name, the first one highest
        Value* value;
    };
    static bool comesBefore(const Place& left, const Place& right) {
        return left.prefix != right.prefix ? left.prefix < right.prefix
                                           : left.value->name < right.value->name;
    }

    /// The characters of a word of up to eight, packed; of a longer one a hash. Words of four and
    /// more are read in two halves, which may overlap.
    static std::uint64_t keyOf(std::string_view name) {
        const auto half = [](const char* at) {
            std::uint32_t characters = 0;
            std::memcpy(&characters, at, sizeof characters);
            return std::uint64_t{characters};
        };
        const char* begin = name.data();
        const std::size_t size = name.size();
        if (size > 8) {
            return std::hash<std::string_view>{}(name);
        }
        if (size >= 4) {
            return half(begin) << 32 | half(begin + size - 4);
        }
        std::uint64_t key = 0;
        for (const char character : name) {
            key = key << 8 | static_cast<unsigned char>(character);
        }
        return key;
    }

    /// The slot of a word, or the free one where it would go.
    std::uint32_t slotOf(std::string_view name, std::uint64_t key) const {
        const auto mask = static_cast<std::uint32_t>(slots.size() - 1);
        const std::uint64_t hash = (key + name.size()) * 0x9E3779B97F4A7C15;
        auto at = static_cast<std::uint32_t>(hash >> 32) & mask;
        while (slots[at] != 0 && !isWord(words[slots[at] - 1], name, key)) {
            at = (at + 1) & mask;
        }
        return at;
    }

    static bool isWord(const Word& word, std::string_view name, std::uint64_t key) {
        return word.key == key && word.value.name.size() == name.size() &&
               (name.size() <= sizeof key || word.value.name == name);
    }

    void insert(std::string_view name, std::uint64_t key, std::uint32_t slot);
    void grow();

    std::vector<Word> words;  // keywords first
    std::size_t keywordCount;
    std::vector<std::uint32_t> slots = std::vector<std::uint32_t>(128);  // index + 1; 0: free
    std::vector<Place> places;
    std::vector<Value*> ordered;
};
