// What the assembler takes and what it refuses. That it encodes as other assemblers do is tested
// against one of them in tests/native.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "native/assembler.hpp"
#include "native/notKnown.hpp"
#include "tests/native/support/mutations.hpp"

namespace krel::Native {

namespace {

constexpr std::string_view head = "\t.text\n\n\t.globl main\n\t.type main, @function\nmain:\n";
constexpr std::string_view tail =
    ".Lmain_return:\n\tleave\n\tret\n\t.size main, .-main\n\n\t.section .rodata\n.LC0:\n"
    "\t.string \"text\"\n.LCD0:\n\t.double 0.5\n\t.section .note.GNU-stack,\"\",@progbits\n";

std::string programWith(std::string_view lines) {
    return std::string{head} + std::string{lines} + std::string{tail};
}

const std::string realProgram = programWith(
    "\tpushq %rbp\n\tmovq %rsp, %rbp\n\tsubq $144, %rsp\n.Lmain_B1:\n\tleaq .LC0(%rip), %rdi\n"
    "\tcall krel_print@PLT\n\tmovq $-12, %rax\n\tmovq %rax, -136(%rbp)\n\tmovq -136(%rbp), %rax\n"
    "\tcqto\n\tidivq %rcx\n\ttestq %rax, %rax\n\tjne .Lmain_B1\n\tmovsd .LCD0(%rip), %xmm0\n"
    "\tleaq -40(%rbp), %r10\n\tmovsd %xmm0, (%r10,%r11,8)\n\txorl %eax, %eax\n"
    "\tjmp .Lmain_return\n");

bool isKnown(const std::string& text) {
    try {
        assemble(text);
        return true;
    } catch (const NotKnown&) {
        return false;
    }
}

void expectRefused(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines) {
        EXPECT_FALSE(isKnown(programWith(std::string{line} + "\n"))) << line;
    }
}

TEST(NativeAssemblerTest, TakesARealProgram) {
    EXPECT_TRUE(isKnown(realProgram));
    EXPECT_TRUE(isKnown(programWith("")));
}

TEST(NativeAssemblerTest, RefusesUnknownMnemonics) {
    expectRefused({"\tmovl %eax, %edi", "\tnop", "\tmov %rax, %rcx", "\tMOVQ %rax, %rcx",
                   "\tjg .L1", "\tjmpq .Lmain_return", "\tmovqq %rax, %rcx", "\tmovabsq $5, %rax",
                   "\tsyscall", "\trep", "\t\xC3\xA4", "\taveryveryverylongmnemonic"});
}

TEST(NativeAssemblerTest, RefusesNulsBeforeWords) {
    using namespace std::string_view_literals;
    expectRefused({"\t\0leave"sv, "\t\0\0jmp .Lmain_return"sv, "\taddq \0%rax, %rcx"sv,
                   "\taddq %rax, \0%rcx"sv, "\t\0.globl main"sv});
}

TEST(NativeAssemblerTest, RefusesUnknownDirectives) {
    expectRefused({"\t.align 8", "\t.data", "\t.bss", "\t.quad 1", "\t.asciz \"a\"", "\t.byte 1",
                   "\t.globl", "\t.global f", "\t.section .data", "\t.section .rodata.str1.1",
                   "\t.section .note.GNU-stack", "\t.section .note.GNU-stack,\"x\",@progbits",
                   "\t.type main, @object", "\t.size main, 5", "\t.size main, .-mainx",
                   "\t.include \"f\"", "\t.", "\t.incbin \"f\""});
}

TEST(NativeAssemblerTest, RefusesOtherOperands) {
    expectRefused({"\tmovq %rbx, %rax",
                   "\tmovq %r12, %rax",
                   "\tmovq %eax, %rax",
                   "\tmovq %rax",
                   "\tmovq",
                   "\tmovq %rax, %rcx, %rdx",
                   "\tmovq %rax, $5",
                   "\tmovq 5, %rax",
                   "\tmovq $a, %rax",
                   "\tmovq -8(%rsp), %rax",
                   "\tmovq (%rbp), %rax",
                   "\tmovq -8(%rbp,%rax,8), %rax",
                   "\tmovq (%r10,%r11,4), %rax",
                   "\tmovq (%r10), %rax",
                   "\tmovq .LC0, %rax",
                   "\tmovq .LC0+1(%rip), %rax",
                   "\tmovq -8(%rbp), -16(%rbp)",
                   "\tmovq %rax, %rc",
                   "\tmovq %RAX, %rcx",
                   "\tmovsd %xmm0, %xmm1",
                   "\tmovsd %xmm8, -8(%rbp)",
                   "\taddq $5, %rax",
                   "\tsubq $16, %rax",
                   "\tpushq %rax",
                   "\tret $8",
                   "\tleave %rax",
                   "\tcall main",
                   "\tcall *%rax",
                   "\tcall main@GOTPCREL",
                   "\tcall main@plt",
                   "\tjmp *%rax",
                   "\tjmp 5",
                   "\tjmp",
                   "\tjne .Lmain_return@PLT",
                   "\tsete %dl",
                   "\tsete",
                   "\tcall @PLT",
                   "\tmovq (%rip), %rax",
                   "\tmovq %, %rax",
                   "\tmovq $, %rax"});
}

TEST(NativeAssemblerTest, RefusesOtherBlanksAndComments) {
    expectRefused({" \tret",
                   "\t\tret",
                   "\tret ",
                   "\tret\t",
                   "ret",
                   "        ret",
                   "\tmovq  %rax, %rcx",
                   "\tmovq %rax,%rcx",
                   "\tmovq %rax , %rcx",
                   "\tmovq %rax,  %rcx",
                   "\tmovq\t%rax, %rcx",
                   "\tret # comment",
                   "\tret; ret",
                   "# comment",
                   "/* comment */",
                   "\tret\r",
                   "\r",
                   "\tmovq -8 (%rbp), %rax",
                   "\tmovq $ 5, %rax",
                   "\tmovq %rax, ",
                   "\tmovq , %rax",
                   ".Lmain_B1 :",
                   ".Lmain_B1: ",
                   ".Lmain_B1:\tret",
                   "\t.globl  f",
                   "\t.globl f ",
                   "\t",
                   " ",
                   "\tret\v",
                   "\tret\f"});
}

TEST(NativeAssemblerTest, RefusesTextWithoutTheLastLineFeed) {
    EXPECT_FALSE(isKnown(""));
    EXPECT_FALSE(isKnown("\tret"));
    EXPECT_FALSE(isKnown("main:"));
    EXPECT_FALSE(isKnown("\t"));
    EXPECT_FALSE(isKnown(realProgram.substr(0, realProgram.size() - 1)));
}

TEST(NativeAssemblerTest, RefusesLabelsThatAreDefinedTwice) {
    expectRefused({".Lmain_return:", "main:", ".Lmain_B1:\n.Lmain_B1:"});
}

TEST(NativeAssemblerTest, RefusesTargetsThatAreNoLabelsOfTheCode) {
    expectRefused({"\tjmp .Lmissing", "\tjne .Lmissing", "\tjmp .LC0", "\tjmp main", "\tjmp other",
                   "\tleaq .Lmissing(%rip), %rdi", "\tleaq .Lmain_return(%rip), %rdi",
                   "\tcall .Lmain_return@PLT", "\tcall .LC0@PLT"});
}

TEST(NativeAssemblerTest, RefusesNamesThatAreNotGlobal) {
    expectRefused({"f:\n\tcall f@PLT", "f:"});
}

TEST(NativeAssemblerTest, RefusesNamesThatBeginWithOtherThanLettersOrUnderscores) {
    expectRefused({"\t.globl .f\n.f:", "\tjmp ..Lmain_return", "\tcall .f@PLT",
                   "1:", "1f:", "\tjmp 1f", "\tcall 5@PLT", "..Lx:", ".:", "$a:", "\t.globl @f"});
}

TEST(NativeAssemblerTest, RefusesContentBehindTheNoteAboutTheStack) {
    const std::string note = "\t.section .note.GNU-stack,\"\",@progbits\n";
    EXPECT_TRUE(isKnown(programWith(note + "\t.text\n")));
    for (const char* const line : {"\tret\n", ".Lx:\n", "\tjmp .Lmain_return\n"}) {
        EXPECT_FALSE(isKnown(programWith(note + line + "\t.text\n"))) << line;
    }
    for (const char* const line : {"\t.string \"a\"\n", "\t.double 0.5\n"}) {
        EXPECT_FALSE(isKnown(programWith("") + line)) << line;
    }
}

TEST(NativeAssemblerTest, RefusesDataInTheCodeAndCodeInTheData) {
    expectRefused({"\t.string \"a\"", "\t.double 0.5"});
    for (const char* const line : {"\tret\n", "\tjmp .Lmain_return\n", "\t.size main, .-main\n"}) {
        EXPECT_FALSE(isKnown(programWith(std::string{"\t.section .rodata\n"} + line + "\t.text\n")))
            << line;
    }
}

TEST(NativeAssemblerTest, IntegersHaveSixtyFourBits) {
    for (const char* const value :
         {"9223372036854775807", "-9223372036854775808", "18446744073709551615", "+5", "-0"}) {
        EXPECT_TRUE(isKnown(programWith("\tmovq $" + std::string{value} + ", %rax\n"))) << value;
    }
    expectRefused({"\tmovq $-9223372036854775809, %rax", "\tmovq $18446744073709551616, %rax",
                   "\tmovq $99999999999999999999999, %rax", "\tmovq $-99999999999999999999, %rax",
                   "\tmovq $--5, %rax", "\tmovq $+-5, %rax", "\tmovq $5-, %rax",
                   "\tmovq $1+1, %rax"});
}

TEST(NativeAssemblerTest, RefusesNumbersOfOtherBases) {
    expectRefused({"\tmovq $010, %rax", "\tmovq $007, %rax", "\tmovq $00, %rax",
                   "\tmovq $-010, %rax", "\tmovq $0x10, %rax", "\tmovq $0b1, %rax",
                   "\tmovq -010(%rbp), %rax", "\tmovq 0x8(%rbp), %rax", "\tmovq $'a', %rax"});
}

TEST(NativeAssemblerTest, OffsetsHaveThirtyTwoBits) {
    for (const char* const offset : {"-2147483648", "2147483647"}) {
        EXPECT_TRUE(isKnown(programWith("\tmovq " + std::string{offset} + "(%rbp), %rax\n")));
    }
    for (const char* const offset :
         {"-2147483649", "2147483648", "4294967296", "-4294967304", "18446744071562067967"}) {
        EXPECT_FALSE(isKnown(programWith("\tmovq " + std::string{offset} + "(%rbp), %rax\n")))
            << offset;
    }
    expectRefused({"\tsubq $2147483648, %rsp", "\tsubq $-2147483649, %rsp"});
}

// The text ends in the middle of each line in turn.
TEST(NativeAssemblerTest, RefusesAProgramThatIsCutWithinALine) {
    for (std::size_t size = 1; size < realProgram.size(); ++size) {
        if (realProgram[size - 1] != '\n') {
            EXPECT_FALSE(isKnown(realProgram.substr(0, size))) << size;
        }
    }
}

// Nothing but NotKnown comes out of damaged text, and an object is whole.
TEST(NativeAssemblerTest, DamagedTextIsRefusedOrASaneObject) {
    std::mt19937 random{1};
    int taken = 0;
    for (int round = 0; round < 20000; ++round) {
        const std::string text = mutated(realProgram, random);
        if (!isKnown(text)) {
            continue;
        }
        ++taken;
        const ObjectFile object = assemble(text);
        for (const Section& section : object.sections) {
            EXPECT_EQ(section.size, section.bytes.size());
            for (const Relocation& relocation : section.relocations) {
                EXPECT_LE(relocation.offset + 4, section.size);
                EXPECT_LT(relocation.symbol, object.symbols.size());
            }
        }
    }
    EXPECT_GT(taken, 500);
}

}  // namespace

}  // namespace krel::Native
