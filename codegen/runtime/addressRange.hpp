// Address space that is reserved first and backed by memory piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>

namespace krel {

/// A range of reserved addresses. Its beginning is usable and grows; it is never given back.
class AddressRange {
public:
    constexpr AddressRange() = default;

    /// Takes over `length` reserved bytes from `from` on, a page boundary. Memory is asked for in
    /// pieces of `pieceSize`, a multiple of the page size.
    AddressRange(std::uintptr_t from, std::size_t length, std::size_t pieceSize)
        : first(from), reserved(length), piece(pieceSize) {}

    std::uintptr_t begin() const { return first; }
    std::size_t size() const { return reserved; }
    bool contains(std::uintptr_t address) const { return address - first < reserved; }

    /// Makes at least the first `length` bytes usable. Returns false, and changes nothing, when the
    /// range is too short or the system refuses.
    [[nodiscard]] bool makeUsable(std::size_t length) { return length <= usable || extend(length); }

private:
    bool extend(std::size_t length);

    std::uintptr_t first = 0;
    std::size_t reserved = 0;
    std::size_t usable = 0;
    std::size_t piece = 0;
};

/// Reserves `length` bytes of address space; returns 0 when the system refuses.
std::uintptr_t reserveAddresses(std::size_t length);

/// Gives reserved addresses back.
void releaseAddresses(std::uintptr_t from, std::size_t length);

/// Gives the memory behind usable addresses back; they stay usable, with any content.
void releaseMemory(std::uintptr_t from, std::size_t length);

/// How much address space should be left to others, above all to the growing stack. 0 when the
/// address space of the process is not limited.
std::size_t addressesForOthers();

}  // namespace krel
