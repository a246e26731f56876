#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "shared/krelir-cfg/ir-instruction.hpp"
#include "shared/krelir-cfg/textParts.hpp"

/// A sequence of instructions in one piece of memory, each a header and its text. Owns the texts;
/// what it gives out are views of them.
class IRInstructionList {
    struct Header {
        std::uint32_t sizeAndSeparated;  // the size of the text behind it, doubled, plus the flag

        std::size_t size() const { return sizeAndSeparated >> 1; }
        bool isSeparated() const { return (sizeAndSeparated & 1) != 0; }
    };

public:
    class Iterator {
    public:
        explicit Iterator(const char* position) : at(position) {}
        IRInstruction operator*() const {
            const Header header = read();
            return {{at + sizeof header, header.size()}, header.isSeparated()};
        }
        Iterator& operator++() {
            at += sizeof(Header) + read().size();
            return *this;
        }
        bool operator==(const Iterator& other) const { return at == other.at; }

    private:
        Header read() const {
            Header header;
            std::memcpy(&header, at, sizeof header);
            return header;
        }

        const char* at;
    };

    IRInstructionList() = default;
    IRInstructionList(IRInstructionList&& other) noexcept { *this = std::move(other); }
    IRInstructionList& operator=(IRInstructionList&& other) noexcept {
        bytes = std::move(other.bytes);
        used = std::exchange(other.used, 0);
        capacity = std::exchange(other.capacity, 0);
        last = other.last;
        count = std::exchange(other.count, 0);
        return *this;
    }
    ~IRInstructionList() = default;

    bool empty() const { return used == 0; }
    std::size_t size() const { return count; }
    Iterator begin() const { return Iterator{bytes.get()}; }
    Iterator end() const { return Iterator{bytes.get() + used}; }
    /// The last instruction; there must be one.
    IRInstruction back() const { return *Iterator{bytes.get() + last}; }

    /// Appends an instruction whose text is that of all the parts. Throws std::length_error for one
    /// of more than two gigabytes.
    template <typename... Parts>
    void add(bool separated, const Parts&... parts) {
        const std::size_t size = (partSize(parts) + ...);
        if (size > maxSize) {
            throw std::length_error("IR instruction too long");
        }
        if (sizeof(Header) + size > capacity - used) {
            grow(sizeof(Header) + size);
        }
        last = used;
        ++count;
        const Header header{static_cast<std::uint32_t>(size * 2 + (separated ? 1 : 0))};
        char* at = bytes.get() + used;
        std::memcpy(at, &header, sizeof header);
        at += sizeof header;
        ((at = writePart(at, parts)), ...);
        used = static_cast<std::size_t>(at - bytes.get());
    }

private:
    static constexpr std::size_t firstCapacity = 128;  // bytes: half of all blocks are this short
    static constexpr std::size_t maxSize = 0x7FFFFFFF;

    void grow(std::size_t needed) {
        capacity = std::max({capacity * 2, used + needed, firstCapacity});
        auto grown = std::make_unique_for_overwrite<char[]>(capacity);
        std::copy_n(bytes.get(), used, grown.get());
        bytes = std::move(grown);
    }

    std::unique_ptr<char[]> bytes;
    std::size_t used = 0;
    std::size_t capacity = 0;
    std::size_t last = 0;   // where the last instruction begins
    std::size_t count = 0;  // of instructions
};
