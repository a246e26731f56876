// Instances of instructions. Comes in: the assembler's table. Goes out: text.

#include "tests/native/support/instances.hpp"

namespace krel::Native {

namespace {

constexpr std::array<OperandKind, 11> allKinds = {imm8, imm32, imm64, r8,  r32,     r64,
                                                  rsp,  rbp,   xmm,   m64, function};

std::vector<std::string> registersOf(OperandKind kind) {
    std::vector<std::string> registers;
    for (const RegisterName& name : registerNames.all()) {
        if ((name.kinds & kind) != 0) {
            registers.emplace_back(name.word);
        }
    }
    return registers;
}

}  // namespace

std::vector<std::string> operandsOf(OperandKind kind) {
    switch (kind) {
        case imm8:
            return {"$0", "$1", "$-1", "$127", "$-128", "$+7", "$-0"};
        case imm32:
            return {"$128", "$-129", "$255", "$256", "$65536", "$2147483647", "$-2147483648"};
        case imm64:
            return {"$2147483648",           "$-2147483649",          "$4294967295",
                    "$4294967296",           "$9223372036854775807",  "$-9223372036854775808",
                    "$9223372036854775808",  "$18446744073709551615", "$18446744071562067968",
                    "$18446744071562067967", "$+9223372036854775807", "$1311768467463790320"};
        case m64:
            return {"0(%rbp)",          "8(%rbp)",      "-8(%rbp)",   "127(%rbp)",
                    "-128(%rbp)",       "128(%rbp)",    "-129(%rbp)", "-2147483648(%rbp)",
                    "2147483647(%rbp)", "-65536(%rbp)", "-0(%rbp)",   "18446744073709551608(%rbp)",
                    "(%r10,%r11,8)",    ".LC0(%rip)",   ".LCD1(%rip)"};
        case function:
            return {"f@PLT", "krel_print@PLT", "_a1.b@PLT"};
        default:
            return registersOf(kind);
    }
}

std::vector<std::string> allOperands() {
    std::vector<std::string> operands = {""};
    for (const OperandKind kind : allKinds) {
        if (kind != rsp && kind != rbp) {  // registers of 64 bits, too
            const std::vector<std::string> some = operandsOf(kind);
            operands.insert(operands.end(), some.begin(), some.end());
        }
    }
    return operands;
}

std::string lineOf(std::string_view mnemonic, const std::string& first, const std::string& second) {
    std::string line = "\t" + std::string{mnemonic};
    if (!first.empty()) {
        line += " " + first + (second.empty() ? "" : ", " + second);
    }
    return line + "\n";
}

std::vector<std::string> instancesOf(const InstructionForm& form) {
    const auto operandsFor = [](std::uint16_t kinds) {
        std::vector<std::string> operands;
        for (const OperandKind kind : allKinds) {
            if ((kinds & kind) != 0) {
                const std::vector<std::string> some = operandsOf(kind);
                operands.insert(operands.end(), some.begin(), some.end());
            }
        }
        return operands.empty() ? std::vector<std::string>{""} : operands;
    };
    std::vector<std::string> lines;
    for (const std::string& first : operandsFor(form.operands[0])) {
        for (const std::string& second : operandsFor(form.operands[1])) {
            lines.push_back(lineOf(form.word, first, second));
        }
    }
    return lines;
}

std::vector<std::string> allInstances() {
    std::vector<std::string> lines;
    for (const InstructionForm& form : instructionForms.all()) {
        const std::vector<std::string> some = instancesOf(form);
        lines.insert(lines.end(), some.begin(), some.end());
    }
    return lines;
}

std::string programOf(const std::vector<std::string>& lines) {
    std::string text = "\t.text\n\n\t.globl f\n\t.type f, @function\nf:\n";
    for (const std::string& line : lines) {
        text += line;
    }
    return text +
           "\t.size f, .-f\n\n\t.section .rodata\n.LC0:\n\t.string \"text\"\n"
           ".LCD1:\n\t.double 0.5\n\t.section .note.GNU-stack,\"\",@progbits\n";
}

}  // namespace krel::Native
