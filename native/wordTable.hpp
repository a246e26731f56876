#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace krel::Native {

/// A word of up to nine ASCII characters as one number: a bit that marks its beginning, then the
/// characters side by side, seven bits each. It can be put together while the word's end is looked
/// for.
class PackedWord {
public:
    constexpr PackedWord() = default;
    explicit constexpr PackedWord(std::string_view word) {
        for (const char character : word) {
            add(character);
        }
    }

    constexpr void add(char character) {
        number = number << 7 | static_cast<unsigned char>(character);
        seen |= static_cast<unsigned char>(character);
        ++size;
    }

    /// The number of the word; 0 when it is no such word.
    constexpr std::uint64_t key() const { return size <= maxSize && seen < 0x80 ? number : 0; }

private:
    static constexpr std::size_t maxSize = 9;

    std::uint64_t number = 1;
    std::size_t size = 0;
    unsigned char seen = 0;  // the bits of all characters
};

/// A table of words that is known when the compiler is built. Rows have a member `word`; rows of
/// the same word stand together.
template <typename Row, std::size_t rowCount>
class WordTable {
public:
    /// Does not compile with a word that does not fit into a number.
    explicit consteval WordTable(const std::array<Row, rowCount>& itsRows) : rows(itsRows) {
        for (std::size_t index = 0; index < rowCount; ++index) {
            const std::uint64_t number = PackedWord{rows[index].word}.key();
            if (number == 0) {
                throw "a word does not fit";
            }
            Slot& slot = slots[slotOf(number)];
            if (slot.count == 0) {
                slot = {number, index, 0};
            }
            ++slot.count;
        }
    }

    /// The rows of a word; none for a word that is not in the table.
    constexpr std::span<const Row> find(const PackedWord& word) const {
        const Slot& slot = slots[slotOf(word.key())];
        return std::span{rows}.subspan(slot.first, slot.count);
    }

    constexpr const std::array<Row, rowCount>& all() const { return rows; }

private:
    struct Slot {
        std::uint64_t word = 0;
        std::size_t first = 0;
        std::size_t count = 0;  // 0: free
    };

    static constexpr std::size_t slotCount = std::bit_ceil(rowCount * 4);

    /// The slot of the word, or the free one where it would belong.
    constexpr std::size_t slotOf(std::uint64_t number) const {
        constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
        auto slot = static_cast<std::size_t>(number * spread >> (64 - std::countr_zero(slotCount)));
        while (slots[slot].count != 0 && slots[slot].word != number) {
            slot = (slot + 1) % slotCount;
        }
        return slot;
    }

    std::array<Row, rowCount> rows;
    std::array<Slot, slotCount> slots{};
};

}  // namespace krel::Native
