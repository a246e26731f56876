#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "codegen/shortText.hpp"
#include "shared/ast/name.hpp"
#include "shared/ast/textIndex.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

// The words of one function. Comes in: the words of its lines, one by one; goes out: a number for
// each, and a place for what is known of the value that it names. From the lines
//
//     x = 5
//     if x goto B2
//
// it has, behind the reserved words, which have the first numbers in every function,
//
//     number   word   class       value
//     22       x      value       address "-8(%rbp)", type int
//     23       B2     blockName   only a name

/// A named value of a function: a variable, a parameter or a temporary, but also whatever else is
/// spelled like a name, as callees are (kept).
struct NamedValue {
    std::string_view name;
    ShortText address;  // of its slot, in assembly: "-24(%rbp)"
    int length = 0;     // elements of an array, by its symbol
    bool isArray = false;
    Name declaredType;  // of its symbol; empty without one
    Name type;          // what it is believed to hold now; empty when nothing is known
};

/// Finds the words of one function by their texts, which stay the caller's. Every word stands for a
/// value, but for reserved words and block names.
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
        const std::uint32_t number = numberOfWord(word);
        return number != 0 ? Entry{number, index.tagOf(number)} : insert(word);
    }
    Entry add(std::string_view word) { return add(KeyedText{word}); }

    /// The number of the value that a word names; 0 when it is not known or names none.
    std::uint32_t numberOf(std::string_view word) const {
        const std::uint32_t number = numberOfWord(KeyedText{word});
        return number != 0 && index.tagOf(number) == TokenClass::value ? number : 0;
    }

    /// The value of the word of a number. Valid until the next word is added.
    NamedValue& operator[](std::uint32_t number) { return values[number - 1]; }

    /// The value of a number, or null for 0. Valid until the next word is added.
    NamedValue* find(std::uint32_t number) { return number != 0 ? &(*this)[number] : nullptr; }
    /// The value that a word names, or null.
    NamedValue* find(std::string_view word) { return find(numberOf(word)); }

    /// Forgets the words that were added, for the next function.
    void clear();

    /// All values, ordered by name byte by byte. Valid until the next word is added.
    const std::vector<NamedValue*>& inOrder();

private:
    /// A value's place among the others, as far as the beginning of its name decides on it. Most
    /// comparisons of a sort then touch no value.
    struct Place {
        std::uint64_t prefix;  // of the name
        NamedValue* value;

        bool operator<(const Place& other) const {
            return prefix != other.prefix ? prefix < other.prefix : value->name < other.value->name;
        }
    };

    std::uint32_t numberOfWord(const KeyedText& word) const {
        return index.find(word, [&](std::uint32_t number) {
            return word.isUniqueWord() || values[number - 1].name == word.text();
        });
    }

    Entry insert(const KeyedText& word, std::uint32_t wordClass);
    Entry insert(const KeyedText& word);

    TextIndex index;  // the tag of a word is its class
    // By number, reserved words first. They and block names have only the name of their value.
    std::vector<NamedValue> values;
    std::vector<Place> places;
    std::vector<NamedValue*> ordered;
};

}  // namespace krel
