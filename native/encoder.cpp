// Encoding. Comes in: a row of the table of instructions, and operands. Goes out: bytes.

#include "native/encoder.hpp"

namespace krel::Native {

namespace {

// A REX byte adds to an instruction what its older parts have no room for.
constexpr unsigned rexMark = 0x40;
constexpr unsigned rexW = 8;  // operands of 64 bits
constexpr unsigned rexR = 4;  // the highest bit of the reg field
constexpr unsigned rexX = 2;  // of the index
constexpr unsigned rexB = 1;  // of the r/m field, the base or the opcode's register

bool fits(const Operand& operand, std::uint16_t kind) {
    return kind == noOperand ? operand.kinds == noOperand : (operand.kinds & kind) != 0;
}

/// Prefix, REX byte and opcode. The REX byte is left out when it says nothing.
std::uint8_t* writeOpcode(std::uint8_t* to, const InstructionForm& form, unsigned rexBits,
                          unsigned opcodeBits) {
    if (form.prefix != 0) {
        *to++ = form.prefix;
    }
    const unsigned rex = rexBits | (form.isWide ? rexW : 0U);
    if (rex != 0) {
        *to++ = static_cast<std::uint8_t>(rexMark | rex);
    }
    if (form.isEscaped) {
        *to++ = 0x0F;
    }
    *to++ = static_cast<std::uint8_t>(form.opcode | opcodeBits);
    return to;
}

/// The ModRM byte of a memory operand, and what belongs to it. `reg` stands in its place already.
std::uint8_t* writeMemory(std::uint8_t* to, unsigned reg, const Operand& memory) {
    constexpr unsigned rbpBase = 5;
    constexpr unsigned ripBase = 5;  // without a displacement; the linker fills that in
    constexpr unsigned sibFollows = 4;
    const auto displacement = static_cast<std::uint64_t>(memory.value);
    const auto write = [&to](unsigned byte) { *to++ = static_cast<std::uint8_t>(byte); };
    switch (memory.memory) {
        case Operand::Memory::Element:
            write(reg | sibFollows);
            write(3U << 6 | (11U & 7U) << 3 | (10U & 7U));  // times 8, index %r11, base %r10
            return to;
        case Operand::Memory::Data:
            write(reg | ripBase);
            return writeInteger(to, 0, 4);
        case Operand::Memory::Slot:
            break;
    }
    const bool isShort = fitsByte(memory.value);
    write((isShort ? 0x40U : 0x80U) | reg | rbpBase);
    return writeInteger(to, displacement, isShort ? 1 : 4);
}

/// An instruction with a ModRM byte. When nothing is in its reg field, that holds an extension of
/// the opcode.
std::uint8_t* writeWithModRm(std::uint8_t* to, const InstructionForm& form, const Operand& inReg,
                             const Operand& inRm) {
    const unsigned reg = inReg.kinds != noOperand ? inReg.number : form.extension;
    const unsigned regField = (reg & 7U) << 3;
    const unsigned rexBits = reg >= 8 ? rexR : 0U;
    if (inRm.kinds == m64) {
        const bool isElement = inRm.memory == Operand::Memory::Element;
        to = writeOpcode(to, form, rexBits | (isElement ? rexX | rexB : 0U), 0);
        return writeMemory(to, regField, inRm);
    }
    to = writeOpcode(to, form, rexBits | (inRm.number >= 8 ? rexB : 0U), 0);
    *to++ = static_cast<std::uint8_t>(0xC0U | regField | (inRm.number & 7U));
    return to;
}

std::uint8_t* writeWithRegisterInOpcode(std::uint8_t* to, const InstructionForm& form,
                                        const Operand& inOpcode) {
    return writeOpcode(to, form, inOpcode.number >= 8 ? rexB : 0U, inOpcode.number & 7U);
}

}  // namespace

const InstructionForm* findForm(const PackedWord& mnemonic, const Operand& first,
                                const Operand& second) {
    for (const InstructionForm& form : instructionForms.find(mnemonic)) {
        if (fits(first, form.operands[0]) && fits(second, form.operands[1])) {
            return &form;
        }
    }
    return nullptr;
}

std::uint8_t* encode(std::uint8_t* to, const InstructionForm& form, const Operand& first,
                     const Operand& second) {
    using enum OperandEncoding;
    static constexpr Operand none;
    const auto immediate = static_cast<std::uint64_t>(first.value);
    switch (form.encoding) {
        case ZO:
            return writeOpcode(to, form, 0, 0);
        case O:
            return writeWithRegisterInOpcode(to, form, first);
        case OI:
            to = writeWithRegisterInOpcode(to, form, second);
            return writeInteger(to, immediate, form.immediateSize);
        case M:
            return writeWithModRm(to, form, none, first);
        case MI:
            to = writeWithModRm(to, form, none, second);
            return writeInteger(to, immediate, form.immediateSize);
        case MR:
            return writeWithModRm(to, form, first, second);
        case RM:
            return writeWithModRm(to, form, second, first);
        case D:
            return writeInteger(writeOpcode(to, form, 0, 0), 0, form.immediateSize);
    }
    return to;
}

}  // namespace krel::Native
