// Operands: what their texts stand for, how they are loaded and stored, and calls. The roles of the
// registers are fixed:
//   %rax, %rcx      first and second integer operand; %rax is the result
//   %xmm0, %xmm1    first and second double operand; %xmm0 is the result
//   %r10, %r11      address of an array's element 0, and an index
//   the argument registers of the calling convention, for arguments and parameters

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "codegen/assemblyWriter.hpp"
#include "codegen/codeGenerator.hpp"
#include "codegen/irText.hpp"
#include "codegen/registers.hpp"
#include "shared/ast/nodeKinds.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

namespace {

[[noreturn]] void fail(std::string_view message, std::string_view text = {}) {
    throw std::runtime_error(std::string{message} + std::string{text});
}

/// The array of an element, which must have a length.
const NamedValue* knownArray(const NamedValue* array, std::string_view name) {
    if (array == nullptr || array->length == 0) {
        fail("unknown array: ", name);
    }
    return array;
}

}  // namespace

void CodeGenerator::loadValue(const Operand& operand, const ShortText& reg,
                              FunctionContext& context) {
    const std::string_view text = operand.text();
    switch (operand.kind()) {
        case Operand::Kind::Boolean:
            if (text == Keyword::True) {
                out->write("\tmovq $1, ", reg, "\n");
            } else {
                out->write("\txorq ", reg, ", ", reg, "\n");
            }
            return;
        case Operand::Kind::Integer:
            out->write("\tmovq $", text, ", ", reg, "\n");
            return;
        case Operand::Kind::String:
            loadString(text, reg);
            return;
        case Operand::Kind::Character:
            if (text.size() > 2) {
                out->write("\tmovq $", ShortText::of(characterCode(text)), ", ", reg, "\n");
                return;
            }
            break;
        case Operand::Kind::Element:
            loadElementAddress(operand, context);
            out->write("\tmovq (%r10,%r11,8), ", reg, "\n");
            return;
        case Operand::Kind::Named:
            if (const NamedValue* value = context.valueOf(operand); value != nullptr) {
                out->write("\tmovq ", value->address, ", ", reg, "\n");
                return;
            }
            break;
        case Operand::Kind::Double:
        case Operand::Kind::Text:
        case Operand::Kind::Unknown:
            break;
    }
    fail("unknown IR value: ", text);
}

void CodeGenerator::loadString(std::string_view literal, const ShortText& reg) {
    const std::optional<std::size_t> label = stringLabels.find(literal);
    if (!label) {
        fail("uninterned string literal");
    }
    out->write("\tleaq .LC", ShortText::of(*label), "(%rip), ", reg, "\n");
}

void CodeGenerator::loadDouble(const Operand& operand, const ShortText& reg,
                               FunctionContext& context) {
    if (operand.kind() == Operand::Kind::Double) {
        const std::size_t label = doubleLabels.add(operand.text());
        out->write("\tmovsd .LCD", ShortText::of(label), "(%rip), ", reg, "\n");
    } else if (operand.kind() == Operand::Kind::Element) {
        loadElementAddress(operand, context);
        out->write("\tmovsd (%r10,%r11,8), ", reg, "\n");
    } else if (const NamedValue* value = context.valueOf(operand); value != nullptr) {
        out->write("\tmovsd ", value->address, ", ", reg, "\n");
    } else {
        fail("unknown double IR value: ", operand.text());
    }
}

void CodeGenerator::storeValue(const Operand& target, const ShortText& reg,
                               FunctionContext& context) {
    if (target.kind() == Operand::Kind::Element) {
        loadElementAddress(target, context);
        out->write("\tmovq ", reg, ", (%r10,%r11,8)\n");
    } else if (const NamedValue* value = context.valueOf(target); value != nullptr) {
        out->write("\tmovq ", reg, ", ", value->address, "\n");
    } else {
        fail("no stack slot for IR value: ", target.text());
    }
}

void CodeGenerator::storeDouble(const Operand& target, const ShortText& reg,
                                FunctionContext& context) {
    if (target.kind() == Operand::Kind::Element) {
        loadElementAddress(target, context);
        out->write("\tmovsd ", reg, ", (%r10,%r11,8)\n");
    } else if (const NamedValue* value = context.valueOf(target); value != nullptr) {
        out->write("\tmovsd ", reg, ", ", value->address, "\n");
    } else {
        fail("no stack slot for double IR value: ", target.text());
    }
}

/// Loads an index into %r11 and the address of the array's element 0 into %r10. The index is not
/// checked against the length. It may be an element itself, to any depth: not in a source, but in a
/// line that comes from elsewhere. Then the innermost is loaded first.
void CodeGenerator::loadElementAddress(const Operand& operand, FunctionContext& context) {
    Element element = elementOf(operand);
    const NamedValue* array = knownArray(context.valueOf(operand), element.array);
    Operand index = reader.operandOf(element.index, LineBreaks::Impossible);
    std::vector<const NamedValue*> outerArrays;
    while (index.kind() == Operand::Kind::Element) {
        outerArrays.push_back(array);
        parseArrayAccess(index.text(), element.array, element.index, LineBreaks::Impossible);
        array = knownArray(context.valueOf(index), element.array);
        index = reader.operandOf(element.index, LineBreaks::Impossible);
    }
    loadValue(index, Register::r11, context);
    out->write("\tleaq ", array->address, ", %r10\n");
    for (; !outerArrays.empty(); outerArrays.pop_back()) {
        out->write("\tmovq (%r10,%r11,8), %r11\n\tleaq ", outerArrays.back()->address, ", %r10\n");
    }
}

void CodeGenerator::emitCall(std::string_view callee, FunctionContext& context) {
    if (callee == Callee::Exit && context.pendingArguments.empty()) {
        out->write("\txorl %edi, %edi\n");
    }
    passArguments(context);
    out->write("\tcall ", callee == Callee::Print ? "krel_print" : callee, "@PLT\n");
}

// The two classes of registers are counted apart. Nothing is ever passed on the stack.
void CodeGenerator::passArguments(FunctionContext& context) {
    std::size_t integers = 0;
    std::size_t doubles = 0;
    for (const Operand& argument : context.pendingArguments) {
        if (context.typeOf(argument) == TypeName::Double) {
            if (doubles == doubleRegisters.size()) {
                fail("more than eight double call arguments are not implemented");
            }
            loadDouble(argument, doubleRegisters[doubles++], context);
        } else {
            if (integers == integerRegisters.size()) {
                fail("more than six integer or pointer call arguments are not implemented");
            }
            loadValue(argument, integerRegisters[integers++], context);
        }
    }
    context.pendingArguments.clear();
}

}  // namespace krel
