#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <ranges>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "shared/krelir-cfg/ir-instruction.hpp"
#include "shared/krelir-cfg/textParts.hpp"

namespace krel {

/// The instructions of a block, in one piece of memory. The texts stand one behind the other at its
/// beginning. The records, one for each text, stand in reverse order at its end; a record says
/// where its text ends. With "x = 1" and "arg x":
///
///     | x = 1arg x |        free         | 10 | 5 |
///
/// As a sequence it gives instructions that own their texts. To read many of them, ask for the
/// texts alone: that copies nothing.
class IRInstructionList {
public:
    /// Holds the number of an instruction, and makes the instruction when it is asked for.
    class Iterator {
    public:
        using difference_type = std::ptrdiff_t;
        using value_type = IRInstruction;

        Iterator() = default;
        Iterator(const IRInstructionList& itsList, std::size_t number)
            : list(&itsList), at(number) {}
        IRInstruction operator*() const { return (*list)[at]; }
        Iterator& operator++() {
            ++at;
            return *this;
        }
        Iterator operator++(int) { return {*list, at++}; }
        bool operator==(const Iterator& other) const { return at == other.at; }

    private:
        const IRInstructionList* list = nullptr;
        std::size_t at = 0;
    };

    IRInstructionList() = default;
    IRInstructionList(IRInstructionList&& other) noexcept { *this = std::move(other); }
    IRInstructionList& operator=(IRInstructionList&& other) noexcept {
        bytes = std::move(other.bytes);
        capacity = std::exchange(other.capacity, 0);
        used = std::exchange(other.used, 0);
        count = std::exchange(other.count, 0);
        return *this;
    }
    ~IRInstructionList() = default;

    bool empty() const { return count == 0; }
    std::size_t size() const { return count; }
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, count}; }
    /// `index` must be below size(). front() and back() need a list that is not empty.
    IRInstruction operator[](std::size_t index) const {
        return {std::string{text(index)}, recordAt(index).isSeparated()};
    }
    /// Throws std::out_of_range when there is no such instruction.
    IRInstruction at(std::size_t index) const {
        if (index >= count) {
            throw std::out_of_range("no such IR instruction");
        }
        return (*this)[index];
    }
    IRInstruction front() const { return (*this)[0]; }
    IRInstruction back() const { return (*this)[count - 1]; }
    /// Equal to any sequence of the same instructions.
    template <std::ranges::input_range Other>
    friend bool operator==(const IRInstructionList& list, const Other& other) {
        return std::ranges::equal(list, other);
    }

    /// The text of instruction `index`, which must exist. Valid until the next one is added.
    std::string_view text(std::size_t index) const {
        const std::size_t begin = index == 0 ? 0 : recordAt(index - 1).end();
        return {bytes.get() + begin, recordAt(index).end() - begin};
    }
    /// All texts, one behind the other. Valid until the next instruction is added.
    std::string_view texts() const { return {bytes.get(), used}; }
    /// Calls `use` with the text of each instruction, in order.
    template <typename Use>
    void forEachText(Use use) const {
        for (std::size_t index = 0, begin = 0; index < count; ++index) {
            const std::size_t end = recordAt(index).end();
            use(std::string_view{bytes.get() + begin, end - begin});
            begin = end;
        }
    }
    /// Whether instruction `index`, which must exist, is set apart in the dump.
    bool isSeparated(std::size_t index) const { return recordAt(index).isSeparated(); }

    /// Appends an instruction whose text is that of all the parts, which may be texts of this list.
    /// Throws std::length_error for one of more than two gigabytes.
    template <typename... Parts>
    void add(bool separated, const Parts&... parts) {
        const std::size_t size = (partSize(parts) + ...);
        if (size > maxSize) {
            throw std::length_error("IR instruction too long");
        }
        std::unique_ptr<char[]> old;  // keeps the parts until they are copied
        if (size + sizeof(Record) > capacity - used - count * sizeof(Record)) {
            old = grow(size + sizeof(Record));
        }
        char* at = bytes.get() + used;
        ((at = writePart(at, parts)), ...);
        used += size;
        ++count;
        const Record record{used, separated};
        std::memcpy(placeOf(count - 1), &record, sizeof record);
    }

private:
    /// Where a text ends, and whether its instruction is separated.
    class Record {
    public:
        Record() = default;
        Record(std::size_t end, bool separated)
            : endAndSeparated(std::uint64_t{end} * 2 + (separated ? 1 : 0)) {}
        std::size_t end() const { return static_cast<std::size_t>(endAndSeparated >> 1); }
        bool isSeparated() const { return (endAndSeparated & 1) != 0; }

    private:
        std::uint64_t endAndSeparated = 0;
    };

    static constexpr std::size_t maxSize = 0x7FFFFFFF;
    static constexpr std::size_t firstCapacity = 160;  // bytes: half of all blocks are this short

    char* placeOf(std::size_t index) const {
        return bytes.get() + capacity - (index + 1) * sizeof(Record);
    }
    Record recordAt(std::size_t index) const {
        Record record;
        std::memcpy(&record, placeOf(index), sizeof record);
        return record;
    }

    /// Moves to memory with room for `needed` more bytes; returns the old memory.
    std::unique_ptr<char[]> grow(std::size_t needed) {
        const std::size_t records = count * sizeof(Record);
        const std::size_t room = std::max({capacity * 2, used + records + needed, firstCapacity});
        auto grown = std::make_unique_for_overwrite<char[]>(room);
        std::copy_n(bytes.get(), used, grown.get());
        std::copy_n(bytes.get() + capacity - records, records, grown.get() + room - records);
        bytes.swap(grown);
        capacity = room;
        return grown;
    }

    std::unique_ptr<char[]> bytes;
    std::size_t capacity = 0;
    std::size_t used = 0;   // bytes of texts
    std::size_t count = 0;  // of instructions
};

}  // namespace krel
