#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "shared/ast/name.hpp"

/// A word of a function's lines: a named value, if it has a slot.
struct Value {
    std::string_view name;
    std::uint64_t key = 0;
    std::uint32_t slot = 0;  // in the table
    bool hasSlot = false;
    std::uint8_t addressSize = 0;
    std::array<char, 18> addressText;  // of its slot, as an operand: "-24(%rbp)"
    int length = 0;                    // elements of an array; 0 for anything else
    Name declaredType;                 // of its symbol; empty without one
    Name type;  // what it is believed to hold now; empty when nothing is known

    std::string_view address() const { return {addressText.data(), addressSize}; }
};

/// The words of one function, found by their texts, which stay the caller's. Looked up for every
/// operand of every line, so by open addressing.
class ValueTable {
public:
    /// The value of a word, or null. Good until the next `add`, as is what `add` returns.
    Value* find(std::string_view name) {
        const std::uint32_t index = slots[slotOf(name, keyOf(name))];
        return index == 0 ? nullptr : &values[index - 1];
    }

    /// Adds a word, unless it is known; then null.
    Value* add(std::string_view name);

    /// Forgets all words, for the next function.
    void clear();

    /// All words, in the order in which they were added.
    std::vector<Value>& all() { return values; }

private:
    /// The last eight characters of a word, which for most words are all of it.
    static std::uint64_t keyOf(std::string_view name) {
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
        while (slots[at] != 0 && !isWord(values[slots[at] - 1], name, key)) {
            at = (at + 1) & mask;
        }
        return at;
    }

    static bool isWord(const Value& value, std::string_view name, std::uint64_t key) {
        return value.key == key && value.name.size() == name.size() &&
               (name.size() <= sizeof key || value.name == name);
    }

    void grow();

    std::vector<Value> values;
    std::vector<std::uint32_t> slots = std::vector<std::uint32_t>(64);  // index + 1; 0: free
};
