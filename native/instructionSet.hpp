// The instructions that the code generator uses, and how each of them is encoded. The table at the
// end is all that the assembler knows about instructions.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "native/wordTable.hpp"

namespace krel::Native {

/// What an operand can be, as bits: `$5` is an imm8, an imm32 and an imm64.
enum OperandKind : std::uint16_t {
    noOperand = 0,
    imm8 = 1 << 0,   // sign-extended
    imm32 = 1 << 1,  // sign-extended
    imm64 = 1 << 2,
    r8 = 1 << 3,
    r32 = 1 << 4,
    r64 = 1 << 5,
    rsp = 1 << 6,  // also an r64, as rbp is
    rbp = 1 << 7,
    xmm = 1 << 8,
    m64 = 1 << 9,       // -8(%rbp), (%r10,%r11,8), .LC0(%rip)
    label = 1 << 10,    // a branch's target
    function = 1 << 11  // a call's target: name@PLT
};

/// How operands go into an instruction, by the names that the processor's manual uses (column
/// "Op/En"): M is the r/m field of the ModRM byte, R its reg field, O the opcode's low bits, I an
/// immediate, D a displacement. The manual names the target first, and the text has it last.
enum class OperandEncoding : std::uint8_t { ZO, O, OI, M, MI, MR, RM, D };

/// One row of the table.
struct InstructionForm {
    std::string_view word;                    // the mnemonic
    std::array<std::uint16_t, 2> operands{};  // kinds, in the order of the text
    OperandEncoding encoding = OperandEncoding::ZO;
    // The rest is read from the row's code.
    std::uint8_t prefix = 0;  // 66, F2 or F3
    bool isWide = false;      // REX.W
    bool isEscaped = false;   // 0F in front of the opcode
    std::uint8_t opcode = 0;
    std::uint8_t extension = 0;      // the digit of "/digit"
    std::uint8_t immediateSize = 0;  // in bytes; of a displacement, too
};

/// Reads the code of a row, which is written as in the manual: "F2 REX.W 0F 2A /r". Does not
/// compile for anything else. What it says:
///
///     66, F2, F3   prefix                       /r      ModRM byte with two operands
///     REX.W        operands of 64 bits          /digit  ModRM byte with one operand
///     0F           the opcode has two bytes     +rd     the opcode's low bits are a register
///     8B           opcode                       ib, id, io, cb, cd  immediate or displacement
class CodeReader {
public:
    explicit consteval CodeReader(std::string_view itsCode) : code(itsCode) {}

    consteval InstructionForm read(InstructionForm form) {
        while (!code.empty()) {
            readPart(form, nextPart());
        }
        return form;
    }

private:
    consteval std::string_view nextPart() {
        const std::size_t end = code.find(' ');
        const std::string_view part = code.substr(0, end);
        code.remove_prefix(end == std::string_view::npos ? code.size() : end + 1);
        return part;
    }

    static consteval void readPart(InstructionForm& form, std::string_view part) {
        if (part == "66" || part == "F2" || part == "F3") {
            form.prefix = byteOf(part);
        } else if (part == "REX.W") {
            form.isWide = true;
        } else if (part == "0F") {
            form.isEscaped = true;
        } else if (part.front() == '/') {
            form.extension = part == "/r" ? 0 : digitOf(part[1]);
        } else if (part.front() == 'i' || part.front() == 'c') {
            form.immediateSize = sizeOf(part[1]);
        } else {
            form.opcode = byteOf(part.substr(0, 2));
        }
    }

    static consteval std::uint8_t byteOf(std::string_view digits) {
        return static_cast<std::uint8_t>(digitOf(digits[0]) * 16 + digitOf(digits[1]));
    }

    static consteval std::uint8_t digitOf(char digit) {
        constexpr std::string_view digits = "0123456789ABCDEF";
        const std::size_t value = digits.find(digit);
        if (value == std::string_view::npos) {
            throw "not a hexadecimal digit";
        }
        return static_cast<std::uint8_t>(value);
    }

    static consteval std::uint8_t sizeOf(char letter) {
        switch (letter) {
            case 'b':
                return 1;
            case 'd':
                return 4;
            case 'o':
                return 8;
            default:
                throw "not the letter of a size";
        }
    }

    std::string_view code;
};

consteval InstructionForm form(std::string_view mnemonic, std::uint16_t first, std::uint16_t second,
                               OperandEncoding encoding, std::string_view code) {
    return CodeReader{code}.read({mnemonic, {first, second}, encoding});
}

/// The form of a conditional or unconditional jump, which has two sizes.
struct BranchForm {
    std::string_view word;
    std::uint8_t shortOpcode;  // with a displacement of one byte
    std::uint8_t nearOpcode;   // with one of four bytes
    bool isNearEscaped;        // 0F in front of it

    std::uint32_t nearSize() const { return isNearEscaped ? 6 : 5; }
    static constexpr std::uint32_t shortSize = 2;
};

/// All branches.
inline constexpr WordTable branchForms{std::array<BranchForm, 2>{{
    {"jmp", 0xEB, 0xE9, false},
    {"jne", 0x75, 0x85, true},
}}};

/// All other instructions. Of several rows of a mnemonic the first that fits is taken, so that the
/// shortest one stands first.
inline constexpr WordTable instructionForms = [] {
    using enum OperandEncoding;
    return WordTable{std::array{
        form("movq", m64, r64, RM, "REX.W 8B /r"),
        form("movq", r64, m64, MR, "REX.W 89 /r"),
        form("movq", imm32, r64, MI, "REX.W C7 /0 id"),
        form("movq", imm64, r64, OI, "REX.W B8+rd io"),
        form("movq", r64, r64, MR, "REX.W 89 /r"),
        form("leaq", m64, r64, RM, "REX.W 8D /r"),
        form("movzbq", r8, r64, RM, "REX.W 0F B6 /r"),
        form("xorq", r64, r64, MR, "REX.W 31 /r"),
        form("xorl", r32, r32, MR, "31 /r"),

        form("addq", r64, r64, MR, "REX.W 01 /r"),
        form("subq", r64, r64, MR, "REX.W 29 /r"),
        form("subq", imm8, rsp, MI, "REX.W 83 /5 ib"),
        form("subq", imm32, rsp, MI, "REX.W 81 /5 id"),
        form("imulq", r64, r64, RM, "REX.W 0F AF /r"),
        form("cqto", noOperand, noOperand, ZO, "REX.W 99"),
        form("idivq", r64, noOperand, M, "REX.W F7 /7"),
        form("negq", r64, noOperand, M, "REX.W F7 /3"),
        form("andq", r64, r64, MR, "REX.W 21 /r"),
        form("orq", r64, r64, MR, "REX.W 09 /r"),

        form("cmpq", r64, r64, MR, "REX.W 39 /r"),
        form("testq", r64, r64, MR, "REX.W 85 /r"),
        form("sete", r8, noOperand, M, "0F 94 /0"),
        form("setne", r8, noOperand, M, "0F 95 /0"),
        form("setl", r8, noOperand, M, "0F 9C /0"),
        form("setge", r8, noOperand, M, "0F 9D /0"),
        form("setle", r8, noOperand, M, "0F 9E /0"),
        form("setg", r8, noOperand, M, "0F 9F /0"),
        form("setb", r8, noOperand, M, "0F 92 /0"),
        form("setae", r8, noOperand, M, "0F 93 /0"),
        form("setbe", r8, noOperand, M, "0F 96 /0"),
        form("seta", r8, noOperand, M, "0F 97 /0"),

        form("movsd", m64, xmm, RM, "F2 0F 10 /r"),
        form("movsd", xmm, m64, MR, "F2 0F 11 /r"),
        form("addsd", xmm, xmm, RM, "F2 0F 58 /r"),
        form("subsd", xmm, xmm, RM, "F2 0F 5C /r"),
        form("mulsd", xmm, xmm, RM, "F2 0F 59 /r"),
        form("divsd", xmm, xmm, RM, "F2 0F 5E /r"),
        form("ucomisd", xmm, xmm, RM, "66 0F 2E /r"),
        form("xorpd", xmm, xmm, RM, "66 0F 57 /r"),
        form("movapd", xmm, xmm, RM, "66 0F 28 /r"),
        form("cvtsi2sdq", r64, xmm, RM, "F2 REX.W 0F 2A /r"),

        form("call", function, noOperand, D, "E8 cd"),
        form("pushq", rbp, noOperand, O, "50+rd"),
        form("leave", noOperand, noOperand, ZO, "C9"),
        form("ret", noOperand, noOperand, ZO, "C3"),
    }};
}();

/// A register by its name in the text.
struct RegisterName {
    std::string_view word;
    std::uint8_t number;
    std::uint16_t kinds;
};

inline constexpr WordTable registerNames{std::array<RegisterName, 23>{{
    {"%rax", 0, r64},       {"%rcx", 1, r64},  {"%rdx", 2, r64},  {"%rsp", 4, r64 | rsp},
    {"%rbp", 5, r64 | rbp}, {"%rsi", 6, r64},  {"%rdi", 7, r64},  {"%r8", 8, r64},
    {"%r9", 9, r64},        {"%r10", 10, r64}, {"%r11", 11, r64}, {"%eax", 0, r32},
    {"%edi", 7, r32},       {"%al", 0, r8},    {"%cl", 1, r8},    {"%xmm0", 0, xmm},
    {"%xmm1", 1, xmm},      {"%xmm2", 2, xmm}, {"%xmm3", 3, xmm}, {"%xmm4", 4, xmm},
    {"%xmm5", 5, xmm},      {"%xmm6", 6, xmm}, {"%xmm7", 7, xmm},
}}};

}  // namespace krel::Native
