// The whole assembly text: functions, then constants. Comes in: the program, which is only read.
// Frames are planned in frame.cpp, lines translated in instructions.cpp, operands in operands.cpp.

#include "codegen/codeGenerator.hpp"

#include <stdexcept>

#include "codegen/assemblyWriter.hpp"
#include "codegen/irText.hpp"
#include "shared/ast/textRuns.hpp"
#include "shared/krelir-cfg/ir-program.hpp"

namespace krel {

namespace {

/// Puts a backslash before quotes and backslashes. The escapes inside a literal thereby reach the
/// data as the characters that they are written with; the runtime decodes them.
std::string escapeAssemblyString(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view run = plainRun(text, at, isQuoteOrBackslash);
        escaped += run;
        at += run.size();
        if (at < text.size()) {
            escaped += {'\\', text[at]};
        }
    }
    return escaped;
}

}  // namespace

void CodeGenerator::generate(const IRProgram& program, std::ostream& stream) {
    AssemblyWriter writer{stream};
    out = &writer;
    instructionCount = 0;
    recordSource(Source::none);
    stringLabels.clear();
    doubleLabels.clear();
    collectStringLiterals(program);
    out->write("\t.text\n");
    for (const IRFunction& function : program.getFunctions()) {
        emitFunction(function);
    }
    emitReadOnlyData();
    out->write("\t.section .note.GNU-stack,\"\",@progbits\n");
    out = nullptr;
}

// Most blocks have no string, which one search tells.
void CodeGenerator::collectStringLiterals(const IRProgram& program) {
    for (const IRFunction& function : program.getFunctions()) {
        for (const IRBasicBlock& block : function.getBlocks()) {
            const IRInstructionList& instructions = block.getInstructions();
            if (instructions.texts().find('"') != std::string_view::npos) {
                instructions.forEachText([this](std::string_view text) { addLiteralsOf(text); });
            }
        }
    }
}

// Character literals are not looked for (kept): one that holds a double quote begins a string.
void CodeGenerator::addLiteralsOf(std::string_view line) {
    for (std::size_t begin = line.find('"'); begin != std::string_view::npos;) {
        const std::size_t end = stringLiteralEnd(line, begin);
        if (end == std::string_view::npos) {
            throw std::runtime_error("unterminated string literal in IR instruction: " +
                                     std::string{line});
        }
        stringLabels.add(line.substr(begin, end - begin));
        begin = line.find('"', end);
    }
}

void CodeGenerator::emitReadOnlyData() {
    if (stringLabels.empty() && doubleLabels.empty()) {
        return;
    }
    out->write("\n\t.section .rodata\n");
    stringLabels.forEachByLabel([this](std::size_t number, std::string_view literal) {
        const std::string_view text = literal.substr(1, literal.size() - 2);
        out->write(".LC", ShortText::of(number), ":\n\t.string \"", escapeAssemblyString(text),
                   "\"\n");
    });
    doubleLabels.forEachByLabel([this](std::size_t number, std::string_view literal) {
        out->write(".LCD", ShortText::of(number), ":\n\t.double ", literal, "\n");
    });
}

void CodeGenerator::addSource(std::size_t instruction) {
    sources->push_back({out->position(), instruction});
}

void CodeGenerator::emitFunction(const IRFunction& function) {
    reader.read(function);
    FunctionContext context{function, reader.words(), symbolTable};
    context.planFrame();
    const std::string& name = context.functionName();
    out->write("\n\t.globl ", name, "\n\t.type ", name, ", @function\n", name, ":\n");
    out->write("\tpushq %rbp\n\tmovq %rsp, %rbp\n");
    if (context.size() != 0) {
        out->write("\tsubq $", ShortText::of(context.size()), ", %rsp\n");
    }
    std::size_t line = 0;  // counts through all blocks
    for (const IRBasicBlock& block : function.getBlocks()) {
        out->write(context.blockLabel, ShortText::of(block.getNumber()), ":\n");
        for (std::size_t rest = block.getInstructions().size(); rest > 0; --rest) {
            recordSource(instructionCount++);
            emitInstruction(reader[line++], context);
        }
        recordSource(Source::none);
    }
    out->write(context.returnLabel, ":\n\tleave\n\tret\n\t.size ", name, ", .-", name, "\n");
}

}  // namespace krel
