#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "codegen/shortText.hpp"
#include "shared/ast/name.hpp"
#include "shared/ast/textIndex.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

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
/// a value, but for keywords and block names.
class ValueTable {
public:
    /// What is known of a word.
    struct Entry {
        std::uint32_t number = 0;     // from 1 on
        std::uint32_t wordClass = 0;  // one bit of TokenClass
    };

    ValueTable();

    /// The entry of a word, which is added unless it is known.
    Entry add(const KeyedText& word) {
        const std::uint32_t number = numberOf(word);
        return number != 0 ? Entry{number, index.tagOf(number)} : insert(word);
    }
    Entry add(std::string_view word) { return add(KeyedText{word}); }

    /// The value of the word of a number. Valid until the next word is added.
    Value& operator[](std::uint32_t number) { return values[number - 1]; }

    /// The value of a word, or null when the word is not known or has none. Valid until the next
    /// word is added.
    Value* find(std::string_view word) {
        const std::uint32_t number = numberOf(KeyedText{word});
        const bool isValue = number != 0 && index.tagOf(number) == TokenClass::value;
        return isValue ? &(*this)[number] : nullptr;
    }

    /// Forgets the words that were added, for the next function.
    void clear();

    /// All values, ordered by name byte by byte. Valid until the next word is added.
    const std::vector<Value*>& inOrder();

private:
    /// A value's place among the others, as far as the beginning of its name decides on it. Most
    /// comparisons of a sort then touch no value.
    struct Place {
        std::uint64_t prefix;  // of the name
        Value* value;

        bool operator<(const Place& other) const {
            return prefix != other.prefix ? prefix < other.prefix : value->name < other.value->name;
        }
    };

    std::uint32_t numberOf(const KeyedText& word) const {
        return index.find(word, [&](std::uint32_t number) {
            return word.isUniqueWord() || values[number - 1].name == word.text();
        });
    }

    Entry insert(const KeyedText& word, std::uint32_t wordClass);
    Entry insert(const KeyedText& word);

    TextIndex index;  // the tag of a word is its class
    // By number, keywords first. A keyword or block name has only the name of its value.
    std::vector<Value> values;
    std::vector<Place> places;
    std::vector<Value*> ordered;
};
