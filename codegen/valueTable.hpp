#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "codegen/shortText.hpp"
#include "shared/ast/hashing.hpp"
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

/// What a word can be, as far as the forms of lines tell words apart: one bit each, so that sets of
/// them can be tested at once.
namespace WordClass {
inline constexpr std::uint32_t value = 1U << 0;
inline constexpr std::uint32_t blockName = 1U << 1;
inline constexpr std::uint32_t boolean = 1U << 2;
inline constexpr std::uint32_t arg = 1U << 3;
inline constexpr std::uint32_t call = 1U << 4;
inline constexpr std::uint32_t jump = 1U << 5;
inline constexpr std::uint32_t branch = 1U << 6;
inline constexpr std::uint32_t param = 1U << 7;
inline constexpr std::uint32_t leave = 1U << 8;
inline constexpr std::uint32_t integerType = 1U << 9;  // of whatever is passed as an integer
inline constexpr std::uint32_t doubleType = 1U << 10;
inline constexpr std::uint32_t voidType = 1U << 11;    // stands in no line
inline constexpr std::uint32_t conversion = 1U << 12;  // between values in integer registers
inline constexpr std::uint32_t intToDouble = 1U << 13;
inline constexpr std::uint32_t doubleToString = 1U << 14;
/// The first bit that is free for what is no word.
inline constexpr unsigned firstFree = 15;
}  // namespace WordClass

/// A word as it is looked up: its text, of letters, digits and '_', and a key made of it.
class WordText {
public:
    explicit WordText(std::string_view word) : WordText(word, numberOf(word)) {}
    /// For who has put `packed` together while finding the end of the word.
    WordText(std::string_view word, std::uint64_t packed)
        : text_(word), key_(word.size() <= maxPackedSize ? packed : numberOf(word) | longMark) {}

    std::string_view text() const { return text_; }
    std::uint64_t key() const { return key_; }
    /// Whether no other word has the same key.
    bool isUnique() const { return (key_ & longMark) == 0; }
    /// A number by which words are ordered as far as their first characters decide on it.
    std::uint64_t prefix() const {
        constexpr std::size_t bitsPerCharacter = 7;
        return isUnique() ? key_ << bitsPerCharacter * (maxPackedSize - text_.size())
                          : numberOf(text_.substr(0, maxPackedSize));
    }

private:
    static constexpr std::uint64_t longMark = std::uint64_t{1} << 63;

    std::string_view text_;
    std::uint64_t key_;
};

/// The words of one function, found by their texts, which stay the caller's. Every word stands for
/// a value, but for keywords and block names. Looked up for every word of every line, so by open
/// addressing.
class ValueTable {
public:
    /// A word of the table.
    struct Entry {
        std::uint64_t key = 0;
        std::uint32_t number = 0;     // from 1 on; 0: none
        std::uint32_t wordClass = 0;  // one bit of WordClass
    };

    ValueTable();

    /// The entry of a word, which is added unless it is known.
    Entry add(const WordText& word) {
        const std::size_t slot = slotOf(word);
        return slots[slot].number != 0 ? slots[slot] : insert(word, slot);
    }
    Entry add(std::string_view word) { return add(WordText{word}); }

    /// The value of the word of a number. Good until the next word is added.
    Value& operator[](std::uint32_t number) { return values[number - 1]; }

    /// The value of a word, or null when the word is not known or has none. Good until the next
    /// word is added.
    Value* find(std::string_view word) {
        const Entry& entry = slots[slotOf(WordText{word})];
        return entry.wordClass == WordClass::value ? &(*this)[entry.number] : nullptr;
    }

    /// Forgets the words that were added, for the next function.
    void clear();

    /// All values, ordered by name byte by byte. Good until the next word is added.
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

    /// The slot of a word, or the free one where it would go.
    std::size_t slotOf(const WordText& word) const {
        const std::size_t mask = slots.size() - 1;
        std::size_t at = hashOf(word.key()) & mask;
        while (slots[at].number != 0 && !isWord(slots[at], word)) {
            at = (at + 1) & mask;
        }
        return at;
    }

    bool isWord(const Entry& entry, const WordText& word) const {
        return entry.key == word.key() &&
               (word.isUnique() || values[entry.number - 1].name == word.text());
    }

    Entry insert(const WordText& word, std::size_t slot);
    void grow();

    // By number, keywords first. A keyword or block name has only the name of its value.
    std::vector<Value> values;
    std::vector<std::size_t> slotsOfWords;
    std::size_t keywordCount;
    std::vector<Entry> slots = std::vector<Entry>(128);
    std::vector<Place> places;
    std::vector<Value*> ordered;
};
