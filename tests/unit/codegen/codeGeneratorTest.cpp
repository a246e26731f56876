// Lines that the generator of the intermediate representation never writes. What a source text can
// show is tested with whole programs, in tests/cases/codegen and tests/cases/calls.

#include "codegen/codeGenerator.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <stdexcept>
#include <string>

#include "shared/krelir-cfg/ir-program.hpp"
#include "tests/unit/symbols.hpp"

namespace krel {

namespace {

class CodeGeneratorTest : public testing::Test {
protected:
    CodeGeneratorTest() { declareFunction(table, "void", "f"); }

    /// The assembly text of a function f whose only block, B1, holds the lines.
    std::string assemblyOf(std::initializer_list<const char*> lines) {
        IRProgram program;
        IRBasicBlock& block = program.addFunction("f").addBlock(1);
        for (const char* line : lines) {
            block.addInstruction(line, false);
        }
        std::ostringstream out;
        CodeGenerator{table}.generate(program, out);
        return out.str();
    }

    /// What stands for the lines in it.
    std::string bodyOf(std::initializer_list<const char*> lines) {
        const std::string assembly = assemblyOf(lines);
        const std::string label = ".Lf_B1:\n";
        const std::size_t begin = assembly.find(label) + label.size();
        return assembly.substr(begin, assembly.find(".Lf_return:\n") - begin);
    }

    /// The message of the error that the lines cause.
    std::string errorOf(std::initializer_list<const char*> lines) {
        try {
            assemblyOf(lines);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    SymbolTable table;
};

/// A load into %rax and a store into the first slot.
std::string copyOf(const std::string& load) {
    return "\t" + load +
           ", %rax\n"
           "\tmovq %rax, -8(%rbp)\n";
}

}  // namespace

TEST_F(CodeGeneratorTest, EmptyProgramHasItsFirstAndLastLine) {
    std::ostringstream out;
    CodeGenerator{table}.generate(IRProgram{}, out);
    EXPECT_EQ(out.str(),
              "\t.text\n"
              "\t.section .note.GNU-stack,\"\",@progbits\n");
}

TEST_F(CodeGeneratorTest, FunctionsAndBlocksKeepTheirOrderAndNumbers) {
    IRProgram program;
    IRFunction& g = program.addFunction("g");
    g.addBlock(12).addInstruction("goto B0", false);
    g.addBlock(3);
    g.addBlock(0).addInstruction("return", false);
    program.addFunction("f");
    std::ostringstream out;
    CodeGenerator{table}.generate(program, out);
    EXPECT_EQ(out.str(),
              "\t.text\n"
              "\n"
              "\t.globl g\n"
              "\t.type g, @function\n"
              "g:\n"
              "\tpushq %rbp\n"
              "\tmovq %rsp, %rbp\n"
              ".Lg_B12:\n"
              "\tjmp .Lg_B0\n"
              ".Lg_B3:\n"
              ".Lg_B0:\n"
              "\tjmp .Lg_return\n"
              ".Lg_return:\n"
              "\tleave\n"
              "\tret\n"
              "\t.size g, .-g\n"
              "\n"
              "\t.globl f\n"
              "\t.type f, @function\n"
              "f:\n"
              "\tpushq %rbp\n"
              "\tmovq %rsp, %rbp\n"
              ".Lf_return:\n"
              "\tleave\n"
              "\tret\n"
              "\t.size f, .-f\n"
              "\t.section .note.GNU-stack,\"\",@progbits\n");
}

TEST_F(CodeGeneratorTest, EachProgramStartsItsLabelsAnew) {
    const auto programOf = [](const char* text, const char* number) {
        IRProgram program;
        IRBasicBlock& block = program.addFunction("f").addBlock(1);
        block.addInstruction(text, false);
        block.addInstruction(number, false);
        return program;
    };
    CodeGenerator generator{table};
    std::ostringstream first;
    std::ostringstream second;
    generator.generate(programOf("s = \"a\"", "d = 0.5"), first);
    generator.generate(programOf("s = \"b\"", "d = 1.5"), second);
    const auto constantsOf = [](const std::string& assembly) {
        return assembly.substr(assembly.find("\n\t.section .rodata\n"));
    };
    EXPECT_EQ(constantsOf(first.str()),
              "\n"
              "\t.section .rodata\n"
              ".LC0:\n"
              "\t.string \"a\"\n"
              ".LCD0:\n"
              "\t.double 0.5\n"
              "\t.section .note.GNU-stack,\"\",@progbits\n");
    EXPECT_EQ(constantsOf(second.str()),
              "\n"
              "\t.section .rodata\n"
              ".LC0:\n"
              "\t.string \"b\"\n"
              ".LCD0:\n"
              "\t.double 1.5\n"
              "\t.section .note.GNU-stack,\"\",@progbits\n");
}

TEST_F(CodeGeneratorTest, LinesAreTrimmed) {
    const std::string expected = copyOf("movq $1");
    for (const char* line : {"x = 1", "  x = 1", "\tx = 1\r", " x = 1 \n", "x=1", "x  =\t1"}) {
        EXPECT_EQ(bodyOf({line}), expected) << line;
    }
    EXPECT_EQ(bodyOf({"return  \t"}), "\tjmp .Lf_return\n");
}

TEST_F(CodeGeneratorTest, LinesOfNoFormAreRefused) {
    for (const char* line : {"print x", "", "x", "1 = x", "x =", "= 5", "param float x", "call f",
                             "goto x", "if x goto y", "return1", "x[0]"}) {
        EXPECT_EQ(errorOf({line}), std::string{"unsupported IR instruction: "} + line);
    }
    EXPECT_EQ(errorOf({"  print x \r"}), "unsupported IR instruction: print x");
}

TEST_F(CodeGeneratorTest, OperatorsNeedBlanksOnBothSides) {
    EXPECT_EQ(errorOf({"x = a-b"}), "unknown IR value: a-b");
    EXPECT_EQ(errorOf({"x = a -b"}), "unknown IR value: a -b");
    EXPECT_EQ(errorOf({"x = a- b"}), "unknown IR value: a- b");
}

TEST_F(CodeGeneratorTest, BinaryOperationsAreSplitAtTheirLastOperator) {
    EXPECT_EQ(errorOf({"x = a - -b"}), "unknown IR value: -b");
    EXPECT_EQ(errorOf({"x = a - b + c"}), "unknown IR value: a - b");
    EXPECT_EQ(errorOf({"x = a + b - "}), "unknown IR value: b -");
}

TEST_F(CodeGeneratorTest, SignedOperandsOfABinaryOperation) {
    EXPECT_EQ(bodyOf({"x = -1 - -2"}),
              "\tmovq $-1, %rax\n"
              "\tmovq $-2, %rcx\n"
              "\tsubq %rcx, %rax\n"
              "\tmovq %rax, -8(%rbp)\n");
}

TEST_F(CodeGeneratorTest, UnaryOperatorMayTouchItsOperand) {
    const std::string negation =
        "\tmovq -16(%rbp), %rax\n"
        "\tnegq %rax\n"
        "\tmovq %rax, -8(%rbp)\n";
    EXPECT_EQ(bodyOf({"a = -x"}), negation);
    EXPECT_EQ(bodyOf({"a = - x"}), negation);
    EXPECT_EQ(bodyOf({"a =-  x"}), negation);
    EXPECT_EQ(bodyOf({"a = -5"}),
              "\tmovq $5, %rax\n"
              "\tnegq %rax\n"
              "\tmovq %rax, -8(%rbp)\n");
}

TEST_F(CodeGeneratorTest, ArgumentCountIsNotRead) {
    EXPECT_EQ(bodyOf({"arg 1", "arg 2", "call g, 3"}),
              "\tmovq $1, %rdi\n"
              "\tmovq $2, %rsi\n"
              "\tcall g@PLT\n");
    EXPECT_EQ(bodyOf({"call g, 99999999999999999999"}), "\tcall g@PLT\n");
}

TEST_F(CodeGeneratorTest, ArgumentsWaitForTheNextCall) {
    EXPECT_EQ(bodyOf({"arg 1", "x = 2", "call g, 0", "call g, 0"}),
              "\tmovq $2, %rax\n"
              "\tmovq %rax, -16(%rbp)\n"
              "\tmovq $1, %rdi\n"
              "\tcall g@PLT\n"
              "\tcall g@PLT\n");
}

TEST_F(CodeGeneratorTest, ExitWithoutArgumentsClearsTheStatus) {
    EXPECT_EQ(bodyOf({"call exit, 0"}),
              "\txorl %edi, %edi\n"
              "\tcall exit@PLT\n");
    EXPECT_EQ(bodyOf({"arg 3", "call exit, 1"}),
              "\tmovq $3, %rdi\n"
              "\tcall exit@PLT\n");
    EXPECT_EQ(bodyOf({"exit = call exit, 0"}),
              "\txorl %edi, %edi\n"
              "\tcall exit@PLT\n"
              "\tmovq %rax, -8(%rbp)\n");
}

TEST_F(CodeGeneratorTest, PrintIsTheRuntimes) {
    EXPECT_EQ(bodyOf({"print = call print, 0"}),
              "\tcall krel_print@PLT\n"
              "\tmovq %rax, -8(%rbp)\n");
}

TEST_F(CodeGeneratorTest, ReturnsClearTheStatusInMainOnly) {
    IRProgram program;
    program.addFunction("main").addBlock(1).addInstruction("return 5", false);
    std::ostringstream out;
    CodeGenerator{table}.generate(program, out);
    EXPECT_NE(out.str().find(".Lmain_B1:\n"
                             "\tmovq $5, %rax\n"
                             "\tjmp .Lmain_return\n"),
              std::string::npos);
    EXPECT_EQ(bodyOf({"return"}), "\tjmp .Lf_return\n");
}

TEST_F(CodeGeneratorTest, IntegersAreLoadedAsWritten) {
    EXPECT_EQ(bodyOf({"arg +7", "call g, 1"}),
              "\tmovq $+7, %rdi\n"
              "\tcall g@PLT\n");
    EXPECT_EQ(bodyOf({"arg 007", "call g, 1"}),
              "\tmovq $007, %rdi\n"
              "\tcall g@PLT\n");
}

TEST_F(CodeGeneratorTest, CharactersAreLoadedByTheirCode) {
    const auto codeOf = [this](const char* literal) {
        return bodyOf({(std::string{"arg "} + literal).c_str(), "call Z, 1"});
    };
    const auto load = [](int code) {
        return "\tmovq $" + std::to_string(code) +
               ", %rdi\n"
               "\tcall Z@PLT\n";
    };
    EXPECT_EQ(codeOf("'A'"), load(65));
    EXPECT_EQ(codeOf(R"('\n')"), load(10));
    EXPECT_EQ(codeOf(R"('\t')"), load(116));
    EXPECT_EQ(codeOf(R"('\r')"), load(114));
    EXPECT_EQ(codeOf(R"('\\')"), load(92));
    EXPECT_EQ(codeOf(R"('\'')"), load(39));
    EXPECT_EQ(codeOf("'ab'"), load(97));
    EXPECT_EQ(codeOf(R"('\')"), load(92));
    EXPECT_EQ(codeOf("'''"), load(39));
    EXPECT_EQ(codeOf("'\xff'"), load(255));
    EXPECT_EQ(errorOf({"arg ''", "call g, 1"}), "unknown IR value: ''");
}

TEST_F(CodeGeneratorTest, DoublesAreEmittedAsWritten) {
    EXPECT_EQ(assemblyOf({"arg 1.", "arg .5", "arg -0.25", "arg +1.50", "call g, 4"}),
              "\t.text\n"
              "\n"
              "\t.globl f\n"
              "\t.type f, @function\n"
              "f:\n"
              "\tpushq %rbp\n"
              "\tmovq %rsp, %rbp\n"
              "\tsubq $16, %rsp\n"
              ".Lf_B1:\n"
              "\tmovsd .LCD0(%rip), %xmm0\n"
              "\tmovsd .LCD1(%rip), %xmm1\n"
              "\tmovsd .LCD2(%rip), %xmm2\n"
              "\tmovsd .LCD3(%rip), %xmm3\n"
              "\tcall g@PLT\n"
              ".Lf_return:\n"
              "\tleave\n"
              "\tret\n"
              "\t.size f, .-f\n"
              "\n"
              "\t.section .rodata\n"
              ".LCD0:\n"
              "\t.double 1.\n"
              ".LCD1:\n"
              "\t.double .5\n"
              ".LCD2:\n"
              "\t.double -0.25\n"
              ".LCD3:\n"
              "\t.double +1.50\n"
              "\t.section .note.GNU-stack,\"\",@progbits\n");
}

TEST_F(CodeGeneratorTest, DoublesOfAnotherSpellingAreNoDoubles) {
    EXPECT_EQ(errorOf({"x = ."}), "unknown IR value: .");
    EXPECT_EQ(errorOf({"x = 1.2.3"}), "unknown IR value: 1.2.3");
    EXPECT_EQ(errorOf({"x = 0.5 + 1.5e3"}), "unknown double IR value: 1.5e3");
}

TEST_F(CodeGeneratorTest, DoubleIsNoIntegerOperand) {
    EXPECT_EQ(errorOf({"x = inttostring 0.5"}), "unknown IR value: 0.5");
    EXPECT_EQ(errorOf({"if 0.5 goto B1"}), "unknown IR value: 0.5");
    EXPECT_EQ(errorOf({"x = inttodouble 0.5"}), "unknown IR value: 0.5");
}

TEST_F(CodeGeneratorTest, NothingElseIsADoubleOperand) {
    for (const char* value : {"5", "true", "\"s\"", "'c'", "B1", "arg"}) {
        EXPECT_EQ(errorOf({(std::string{"x = doubletostring "} + value).c_str()}),
                  std::string{"unknown double IR value: "} + value);
    }
}

TEST_F(CodeGeneratorTest, ElementsMayHoldBlanks) {
    declareArray(table, "f", "int", "a", 3);
    declareVariable(table, "f", "int", "i");
    const std::string load =
        "\tmovq -32(%rbp), %r11\n"
        "\tleaq -24(%rbp), %r10\n"
        "\tmovq (%r10,%r11,8), %rax\n"
        "\tmovq %rax, -40(%rbp)\n";
    EXPECT_EQ(bodyOf({"x = a[i]"}), load);
    EXPECT_EQ(bodyOf({"x = a [ i ]"}), load);
    EXPECT_EQ(bodyOf({"a [ i ] = 1"}),
              "\tmovq $1, %rax\n"
              "\tmovq -32(%rbp), %r11\n"
              "\tleaq -24(%rbp), %r10\n"
              "\tmovq %rax, (%r10,%r11,8)\n");
}

TEST_F(CodeGeneratorTest, IndexesMayBeAnyIntegerValue) {
    declareArray(table, "f", "int", "a", 1);
    EXPECT_EQ(bodyOf({"x = a[true]"}),
              "\tmovq $1, %r11\n"
              "\tleaq -8(%rbp), %r10\n"
              "\tmovq (%r10,%r11,8), %rax\n"
              "\tmovq %rax, -16(%rbp)\n");
    EXPECT_EQ(bodyOf({"x = a[a[-2]]"}),
              "\tmovq $-2, %r11\n"
              "\tleaq -8(%rbp), %r10\n"
              "\tmovq (%r10,%r11,8), %r11\n"
              "\tleaq -8(%rbp), %r10\n"
              "\tmovq (%r10,%r11,8), %rax\n"
              "\tmovq %rax, -16(%rbp)\n");
    EXPECT_EQ(errorOf({"x = a[0.5]"}), "unknown IR value: 0.5");
    EXPECT_EQ(errorOf({"x = a[ ]"}), "unknown IR value: ");
}

/// `core` as the index of an index of ... an element of a.
std::string nested(const std::string& core, std::size_t depth) {
    std::string text;
    for (std::size_t level = 0; level < depth; ++level) {
        text += level % 2 == 0 ? "a[" : "a [ ";
    }
    text += core;
    for (std::size_t level = 0; level < depth; ++level) {
        text += level % 2 == 0 ? "]" : " ]";
    }
    return text;
}

TEST_F(CodeGeneratorTest, IndexesMayBeNestedToAnyDepth) {
    declareArray(table, "f", "int", "a", 1);
    constexpr std::size_t depth = 50'000;
    const std::string index =
        "\tmovq $7, %r11\n"
        "\tleaq -8(%rbp), %r10\n";
    std::string inner = index;
    for (std::size_t level = 1; level < depth; ++level) {
        inner +=
            "\tmovq (%r10,%r11,8), %r11\n"
            "\tleaq -8(%rbp), %r10\n";
    }
    EXPECT_EQ(bodyOf({("x = " + nested("7", depth)).c_str()}), inner +
                                                                   "\tmovq (%r10,%r11,8), %rax\n"
                                                                   "\tmovq %rax, -16(%rbp)\n");
    EXPECT_EQ(bodyOf({(nested("7", depth) + " = 1").c_str()}),
              "\tmovq $1, %rax\n" + inner + "\tmovq %rax, (%r10,%r11,8)\n");
    EXPECT_EQ(errorOf({("x = " + nested("b[7]", depth)).c_str()}), "unknown array: b");
    EXPECT_EQ(errorOf({("x = " + nested("0.5", depth)).c_str()}), "unknown IR value: 0.5");
}

TEST_F(CodeGeneratorTest, InnermostOfNestedElementsIsLoadedFirst) {
    declareArray(table, "f", "int", "a", 1);
    declareArray(table, "f", "int", "b", 1);
    declareArray(table, "f", "int", "c", 1);
    EXPECT_EQ(bodyOf({"x = a[b[c[7]]]"}),
              "\tmovq $7, %r11\n"
              "\tleaq -24(%rbp), %r10\n"
              "\tmovq (%r10,%r11,8), %r11\n"
              "\tleaq -16(%rbp), %r10\n"
              "\tmovq (%r10,%r11,8), %r11\n"
              "\tleaq -8(%rbp), %r10\n"
              "\tmovq (%r10,%r11,8), %rax\n"
              "\tmovq %rax, -32(%rbp)\n");
}

TEST_F(CodeGeneratorTest, ArraysOfNoSymbolAreUnknown) {
    EXPECT_EQ(errorOf({"x = a[0]"}), "unknown array: a");
    EXPECT_EQ(errorOf({"a[0] = 1"}), "unknown array: a");
    EXPECT_EQ(errorOf({"a[0] = 0.5"}), "unknown array: a");
    EXPECT_EQ(errorOf({"x = doubletostring a[0]"}), "unknown array: a");
}

TEST_F(CodeGeneratorTest, ArraysNeedAPositiveSize) {
    declareArray(table, "f", "int", "zero", 0);
    declareArray(table, "f", "int", "minus", -4);
    EXPECT_EQ(errorOf({"x = zero[0]"}), "array has no positive compile-time size: zero");
    EXPECT_EQ(errorOf({"zero = minus"}), "array has no positive compile-time size: minus");
    EXPECT_EQ(bodyOf({"x = 1"}), copyOf("movq $1"));
}

TEST_F(CodeGeneratorTest, SymbolsOfOtherFunctionsDoNotCount) {
    declareFunction(table, "void", "g");
    declareVariable(table, "g", "double", "d");
    EXPECT_EQ(bodyOf({"d = 1"}), copyOf("movq $1"));
}

TEST_F(CodeGeneratorTest, BlockNamesAndReservedWordsHaveNoSlot) {
    for (const char* word : {"B1", "B007", "boolean", "character", "double", "false", "if", "int",
                             "param", "string", "true", "void", "call", "goto"}) {
        EXPECT_EQ(errorOf({(std::string{word} + " = 1").c_str()}),
                  std::string{"no stack slot for IR value: "} + word);
    }
    EXPECT_EQ(errorOf({"void = 0.5"}), "no stack slot for double IR value: void");
    EXPECT_EQ(errorOf({"x = void"}), "unknown IR value: void");
}

TEST_F(CodeGeneratorTest, WordsAfterDigitsCountAsNames) {
    // e10x is a name to the frame, so y is the second one.
    EXPECT_EQ(bodyOf({"arg 1e10x", "y = 2"}),
              "\tmovq $2, %rax\n"
              "\tmovq %rax, -16(%rbp)\n");
}

TEST_F(CodeGeneratorTest, UnterminatedLiteralsAreRefusedBeforeAnythingIsWritten) {
    IRProgram program;
    program.addFunction("f").addBlock(1).addInstruction("return", false);
    program.addFunction("g").addBlock(1).addInstruction(R"(x = "a\")", false);
    std::ostringstream out;
    try {
        CodeGenerator{table}.generate(program, out);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), R"(unterminated string literal in IR instruction: x = "a\")");
    }
    EXPECT_EQ(out.str(), "");
}

TEST_F(CodeGeneratorTest, LiteralsSplitByAnOperatorAreNotInterned) {
    EXPECT_EQ(errorOf({R"(x = "a" + " + ")"}), "uninterned string literal");
}

TEST_F(CodeGeneratorTest, EveryStringLiteralOfALineIsInterned) {
    const std::string assembly = assemblyOf({R"(x = "b" + "a")", R"(x = "a" + "")"});
    EXPECT_NE(assembly.find(".LC0:\n"
                            "\t.string \"b\"\n"
                            ".LC1:\n"
                            "\t.string \"a\"\n"
                            ".LC2:\n"
                            "\t.string \"\"\n"),
              std::string::npos);
}

TEST_F(CodeGeneratorTest, LiteralsWithEscapesAreFoundByTheirLabels) {
    EXPECT_EQ(bodyOf({R"(x = "a\"b" + "c\\")", R"(arg "c\\")", "call f, 1"}),
              "\tleaq .LC0(%rip), %rdi\n"
              "\tleaq .LC1(%rip), %rsi\n"
              "\tcall krel_concat@PLT\n"
              "\tmovq %rax, -16(%rbp)\n"
              "\tleaq .LC1(%rip), %rdi\n"
              "\tcall f@PLT\n");
}

TEST_F(CodeGeneratorTest, EscapesOfLiteralsReachTheDataAsTheyAreWritten) {
    const std::string run(40, 'a');
    const std::string line = "s = \"" + run + R"(\n\"\\")";
    EXPECT_NE(assemblyOf({line.c_str()}).find("\t.string \"" + run + R"(\\n\\\"\\\\")" + "\n"),
              std::string::npos);
}

TEST_F(CodeGeneratorTest, CharacterConversionsCopy) {
    EXPECT_EQ(bodyOf({"x = inttochar 300"}),
              "\tmovq $300, %rdi\n"
              "\tmovq %rdi, -8(%rbp)\n");
    EXPECT_EQ(bodyOf({"x = chartoint 'a'"}),
              "\tmovq $97, %rdi\n"
              "\tmovq %rdi, -16(%rbp)\n");
}

TEST_F(CodeGeneratorTest, TemporaryHasTheTypeOfItsLastWrite) {
    EXPECT_EQ(bodyOf({"x = 0.5", "x = 1.5 < 2.5", "y = x"}),
              "\tmovsd .LCD0(%rip), %xmm0\n"
              "\tmovsd %xmm0, -8(%rbp)\n"
              "\tmovsd .LCD1(%rip), %xmm0\n"
              "\tmovsd .LCD2(%rip), %xmm1\n"
              "\tucomisd %xmm1, %xmm0\n"
              "\tsetb %al\n"
              "\tmovzbq %al, %rax\n"
              "\tmovq %rax, -8(%rbp)\n"
              "\tmovq -8(%rbp), %rax\n"
              "\tmovq %rax, -16(%rbp)\n");
}

TEST_F(CodeGeneratorTest, IntegerArithmeticRecordsTheLeftTypeWhereThereIsNone) {
    // x becomes a string by the subtraction, so the sum with it concatenates.
    EXPECT_EQ(bodyOf({R"(x = "a" - 1)", "y = x + 1"}),
              "\tleaq .LC0(%rip), %rax\n"
              "\tmovq $1, %rcx\n"
              "\tsubq %rcx, %rax\n"
              "\tmovq %rax, -8(%rbp)\n"
              "\tmovq -8(%rbp), %rdi\n"
              "\tmovq $1, %rsi\n"
              "\tcall krel_concat@PLT\n"
              "\tmovq %rax, -16(%rbp)\n");
}

TEST_F(CodeGeneratorTest, CallOfAFunctionWithASymbolRecordsItsType) {
    declareFunction(table, "double", "g");
    EXPECT_EQ(bodyOf({"x = call g, 0", "y = x"}),
              "\tcall g@PLT\n"
              "\tmovsd %xmm0, -16(%rbp)\n"
              "\tmovsd -16(%rbp), %xmm0\n"
              "\tmovsd %xmm0, -24(%rbp)\n");
}

TEST_F(CodeGeneratorTest, ParametersMayStandAnywhere) {
    EXPECT_EQ(bodyOf({"x = 1", "param  string\ty", "param double z"}),
              "\tmovq $1, %rax\n"
              "\tmovq %rax, -8(%rbp)\n"
              "\tmovq %rdi, -16(%rbp)\n"
              "\tmovsd %xmm0, -24(%rbp)\n");
}

TEST_F(CodeGeneratorTest, BranchesMayNameAnyBlock) {
    EXPECT_EQ(bodyOf({"if true goto B99", "goto B7"}),
              "\tmovq $1, %rax\n"
              "\ttestq %rax, %rax\n"
              "\tjne .Lf_B99\n"
              "\tjmp .Lf_B7\n");
}

TEST_F(CodeGeneratorTest, BlockNumbersAreInts) {
    EXPECT_EQ(bodyOf({"goto B2147483647"}), "\tjmp .Lf_B2147483647\n");
    EXPECT_THROW(assemblyOf({"goto B2147483648"}), std::out_of_range);
    EXPECT_THROW(assemblyOf({"if true goto B2147483648"}), std::out_of_range);
}

TEST_F(CodeGeneratorTest, ResultsMustHaveASlot) {
    EXPECT_EQ(errorOf({"B1 = call g, 0"}), "no stack slot for IR value: B1");
    EXPECT_EQ(errorOf({"B1 = 1 + 2"}), "no stack slot for IR value: B1");
    EXPECT_EQ(errorOf({"B1 = 1.5 + 2.5"}), "no stack slot for double IR value: B1");
    EXPECT_EQ(errorOf({"B1 = - 2"}), "no stack slot for IR value: B1");
    EXPECT_EQ(errorOf({"B1 = inttodouble 2"}), "no stack slot for double IR value: B1");
    EXPECT_EQ(errorOf({"B1 = inttostring 2"}), "no stack slot for IR value: B1");
    EXPECT_EQ(errorOf({"param int B1"}), "no stack slot for IR value: B1");
}

}  // namespace krel
