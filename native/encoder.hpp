#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "native/instructionSet.hpp"

namespace krel::Native {

/// An operand as it was read.
struct Operand {
    std::uint16_t kinds = noOperand;
    std::uint8_t number = 0;  // of a register
    std::int64_t value = 0;   // of an immediate; the displacement of -8(%rbp)
    enum class Memory : std::uint8_t { Slot, Element, Data } memory = Memory::Slot;
    std::string_view name{};  // of a label, a function, data
};

/// Whether a value is one of the range that a sign-extended byte has, or four of them.
inline bool fitsByte(std::int64_t value) {
    return value == static_cast<std::int8_t>(value);
}

inline bool fitsFourBytes(std::int64_t value) {
    return value == static_cast<std::int32_t>(value);
}

/// Writes the lowest `size` bytes of a value, the lowest first, and returns their end. All eight
/// are stored, which is cheaper than as many as are wanted: there has to be room for them.
inline std::uint8_t* writeInteger(std::uint8_t* to, std::uint64_t value, std::size_t size) {
    std::memcpy(to, &value, sizeof value);
    return to + size;
}

/// The form of an instruction with these operands, or null when there is none. An operand that is
/// not there has no kinds.
const InstructionForm* findForm(const PackedWord& mnemonic, const Operand& first,
                                const Operand& second);

/// The room that has to be for an instruction: it has 15 bytes at most, and some more are written.
inline constexpr std::size_t roomForInstruction = 32;

/// Writes an instruction, and returns its end. Where the address of a name belongs, which is always
/// in the last four bytes, there are zeroes.
std::uint8_t* encode(std::uint8_t* to, const InstructionForm& form, const Operand& first,
                     const Operand& second);

}  // namespace krel::Native
