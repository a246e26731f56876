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
    std::uint32_t hash = 0;
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
        const std::uint32_t index = slots[slotOf(name, hashOf(name))];
        return index == 0 ? nullptr : &values[index - 1];
    }

    /// Adds a word, unless it is known; then null.
    Value* add(std::string_view name);

    /// Forgets all words, for the next function.
    void clear();

    /// All words, in the order in which they were added.
    std::vector<Value>& all() { return values; }

private:
    static std::uint32_t hashOf(std::string_view name) {
        std::uint32_t hash = 0;
        for (const char character : name) {
            hash = hash * 31 + static_cast<unsigned char>(character);
        }
        return hash;
    }

    /// The slot of a word, or the free one where it would go.
    std::uint32_t slotOf(std::string_view name, std::uint32_t hash) const {
        const auto mask = static_cast<std::uint32_t>(slots.size() - 1);
        std::uint32_t at = hash & mask;
        while (slots[at] != 0) {
            const Value& value = values[slots[at] - 1];
            if (value.hash == hash && value.name == name) {
                break;
            }
            at = (at + 1) & mask;
        }
        return at;
    }

    void grow();

    std::vector<Value> values;
    std::vector<std::uint32_t> slots = std::vector<std::uint32_t>(64);  // index + 1; 0: free
};
