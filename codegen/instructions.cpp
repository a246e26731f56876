// Instruction selection: one function for each form of line.

#include <array>
#include <charconv>
#include <stdexcept>
#include <string>

#include "codegen/assemblyWriter.hpp"
#include "codegen/codeGenerator.hpp"
#include "codegen/irText.hpp"
#include "codegen/registers.hpp"
#include "shared/ast/nodeKinds.hpp"

namespace {

/// The instructions of an operator. A comparison has set instructions instead of an operation; the
/// unsigned flags of the double comparison are not checked for parity (kept: with a NaN, "==", "<"
/// and "<=" hold).
struct OperatorCode {
    std::string_view op;
    std::string_view integer;     // on %rax and %rcx, with the result in %rax
    std::string_view real;        // on %xmm0 and %xmm1, with the result in %xmm0
    std::string_view setInteger;  // after the comparison
    std::string_view setReal;
};

/// Makes 0 or 1 of both operands first.
#define KREL_NORMALISED(operation)                          \
    "\ttestq %rax, %rax\n\tsetne %al\n\tmovzbq %al, %rax\n" \
    "\ttestq %rcx, %rcx\n\tsetne %cl\n\tmovzbq %cl, %rcx\n" operation

constexpr std::array<OperatorCode, 12> operatorCodes = {{
    {"+", "\taddq %rcx, %rax\n", "\taddsd %xmm1, %xmm0\n", "", ""},
    {"-", "\tsubq %rcx, %rax\n", "\tsubsd %xmm1, %xmm0\n", "", ""},
    {"*", "\timulq %rcx, %rax\n", "\tmulsd %xmm1, %xmm0\n", "", ""},
    {"/", "\tcqto\n\tidivq %rcx\n", "\tdivsd %xmm1, %xmm0\n", "", ""},
    {"&&", KREL_NORMALISED("\tandq %rcx, %rax\n"), "", "", ""},
    {"||", KREL_NORMALISED("\torq %rcx, %rax\n"), "", "", ""},
    {"==", "", "", "\tsete %al\n", "\tsete %al\n"},
    {"!=", "", "", "\tsetne %al\n", "\tsetne %al\n"},
    {"<", "", "", "\tsetl %al\n", "\tsetb %al\n"},
    {">", "", "", "\tsetg %al\n", "\tseta %al\n"},
    {"<=", "", "", "\tsetle %al\n", "\tsetbe %al\n"},
    {">=", "", "", "\tsetge %al\n", "\tsetae %al\n"},
}};

#undef KREL_NORMALISED

const OperatorCode& codeOf(std::string_view op) {
    for (const OperatorCode& code : operatorCodes) {
        if (code.op == op) {
            return code;
        }
    }
    throw std::runtime_error("unsupported integer operator: " + std::string{op});
}

constexpr std::string_view widenResult = "\tmovzbq %al, %rax\n";

/// The number of a block as it stands in its label: without leading zeros.
ShortText blockNumber(std::string_view digits) {
    int number = 0;
    if (std::from_chars(digits.begin(), digits.end(), number).ec != std::errc{}) {
        throw std::out_of_range("stoi");
    }
    return ShortText::of(number);
}

}  // namespace

CodeGenerator::Emit CodeGenerator::emitterOf(IRForm form) {
    static constexpr std::array<Emit, 16> emitters = {
        &CodeGenerator::emitIntegerParameter,
        &CodeGenerator::emitDoubleParameter,
        &CodeGenerator::emitArgument,
        &CodeGenerator::emitCallWithResult,
        &CodeGenerator::emitCallWithoutResult,
        &CodeGenerator::emitBranch,
        &CodeGenerator::emitJump,
        &CodeGenerator::emitReturn,
        &CodeGenerator::emitReturnValue,
        &CodeGenerator::emitConversion,
        &CodeGenerator::emitIntToDouble,
        &CodeGenerator::emitDoubleToString,
        &CodeGenerator::emitBinaryOperation,
        &CodeGenerator::emitUnaryOperation,
        &CodeGenerator::emitElementStore,
        &CodeGenerator::emitCopy,
    };
    return emitters[static_cast<std::size_t>(form)];
}

void CodeGenerator::emitInstruction(std::string_view text, FunctionContext& context) {
    const std::string_view trimmed = trim(text);
    const IRLine line = recognise(trimmed);
    if (line.form == IRForm::None) {
        throw std::runtime_error("unsupported IR instruction: " + std::string{trimmed});
    }
    (this->*emitterOf(line.form))(line, context);
}

void CodeGenerator::emitIntegerParameter(const IRLine& line, FunctionContext& context) {
    if (context.parameterIndex == integerRegisters.size()) {
        throw std::runtime_error("more than six integer or pointer parameters are not implemented");
    }
    const Operand parameter = operandOf(line.groups[1], context);
    recordType(parameter, Name::known(line.groups[0]));
    storeValue(parameter, integerRegisters[context.parameterIndex++], context);
}

void CodeGenerator::emitDoubleParameter(const IRLine& line, FunctionContext& context) {
    if (context.doubleParameterIndex == doubleRegisters.size()) {
        throw std::runtime_error("more than eight double parameters are not implemented");
    }
    const Operand parameter = operandOf(line.groups[0], context);
    recordType(parameter, TypeName::Double);
    storeDouble(parameter, doubleRegisters[context.doubleParameterIndex++], context);
}

void CodeGenerator::emitArgument(const IRLine& line, FunctionContext& context) {
    context.pendingArguments.push_back(trim(line.groups[0]));
}

// The number of arguments in the line is not read (kept): the lines before the call decide.
void CodeGenerator::emitCallWithResult(const IRLine& line, FunctionContext& context) {
    emitCall(line.groups[0], line.groups[1], context);
}

void CodeGenerator::emitCallWithoutResult(const IRLine& line, FunctionContext& context) {
    emitCall(std::nullopt, line.groups[0], context);
}

// Always an integer load, whatever the type of the condition.
void CodeGenerator::emitBranch(const IRLine& line, FunctionContext& context) {
    loadValue(operandOf(line.groups[0], context), Register::rax, context);
    out->write("\ttestq %rax, %rax\n\tjne ", context.blockLabel, blockNumber(line.groups[1]), "\n");
}

void CodeGenerator::emitJump(const IRLine& line, FunctionContext& context) {
    out->write("\tjmp ", context.blockLabel, blockNumber(line.groups[0]), "\n");
}

// The program's exit status is what main returns.
void CodeGenerator::emitReturn(const IRLine& /*line*/, FunctionContext& context) {
    if (context.name == "main") {
        out->write("\txorl %eax, %eax\n");
    }
    out->write("\tjmp ", context.returnLabel, "\n");
}

void CodeGenerator::emitReturnValue(const IRLine& line, FunctionContext& context) {
    const Operand value = operandOf(line.groups[0], context);
    if (typeOf(value, context) == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
    } else {
        loadValue(value, Register::rax, context);
    }
    out->write("\tjmp ", context.returnLabel, "\n");
}

// Between int and character nothing is converted: a character may hold more than 8 bits (kept).
void CodeGenerator::emitConversion(const IRLine& line, FunctionContext& context) {
    const std::string_view conversion = line.groups[1];
    const Operand target = operandOf(line.groups[0], context);
    loadValue(operandOf(line.groups[2], context), Register::rdi, context);
    if (conversion == "inttochar" || conversion == "chartoint") {
        storeValue(target, Register::rdi, context);
        recordType(target, conversion == "inttochar" ? TypeName::Character : TypeName::Int);
        return;
    }
    out->write("\tcall krel_", conversion, "@PLT\n");
    storeValue(target, Register::rax, context);
    recordType(target, TypeName::String);
}

void CodeGenerator::emitIntToDouble(const IRLine& line, FunctionContext& context) {
    const Operand target = operandOf(line.groups[0], context);
    loadValue(operandOf(line.groups[1], context), Register::rax, context);
    out->write("\tcvtsi2sdq %rax, %xmm0\n");
    storeDouble(target, Register::xmm0, context);
    recordType(target, TypeName::Double);
}

void CodeGenerator::emitDoubleToString(const IRLine& line, FunctionContext& context) {
    const Operand target = operandOf(line.groups[0], context);
    loadDouble(operandOf(line.groups[1], context), Register::xmm0, context);
    out->write("\tcall krel_doubletostring@PLT\n");
    storeValue(target, Register::rax, context);
    recordType(target, TypeName::String);
}

void CodeGenerator::emitBinaryOperation(const IRLine& line, FunctionContext& context) {
    const Operand left = operandOf(line.groups[1], context);
    const Operand right = operandOf(line.groups[3], context);
    const Name leftType = typeOf(left, context);
    const Name rightType = typeOf(right, context);
    if (leftType == TypeName::Double || rightType == TypeName::Double) {
        emitDoubleOperation(line, left, right, context);
    } else if (line.groups[2] == "+" &&
               (leftType == TypeName::String || rightType == TypeName::String)) {
        emitConcatenation(line, left, right, context);
    } else {
        emitIntegerOperation(line, left, right, context);
    }
}

void CodeGenerator::emitDoubleOperation(const IRLine& line, const Operand& left,
                                        const Operand& right, FunctionContext& context) {
    const Operand target = operandOf(line.groups[0], context);
    const OperatorCode& code = codeOf(line.groups[2]);
    loadDouble(left, Register::xmm0, context);
    loadDouble(right, Register::xmm1, context);
    if (!code.real.empty()) {
        out->write(code.real);
        storeDouble(target, Register::xmm0, context);
        recordType(target, TypeName::Double);
        return;
    }
    out->write("\tucomisd %xmm1, %xmm0\n");
    if (code.setReal.empty()) {
        throw std::runtime_error("unsupported double operator: " + std::string{code.op});
    }
    out->write(code.setReal, widenResult);
    storeValue(target, Register::rax, context);
    recordType(target, TypeName::Boolean);
}

// One string is enough; the other operand is passed as it is.
void CodeGenerator::emitConcatenation(const IRLine& line, const Operand& left, const Operand& right,
                                      FunctionContext& context) {
    const Operand target = operandOf(line.groups[0], context);
    loadValue(left, Register::rdi, context);
    loadValue(right, Register::rsi, context);
    out->write("\tcall krel_concat@PLT\n");
    storeValue(target, Register::rax, context);
    recordType(target, TypeName::String);
}

void CodeGenerator::emitIntegerOperation(const IRLine& line, const Operand& left,
                                         const Operand& right, FunctionContext& context) {
    const Operand target = operandOf(line.groups[0], context);
    const OperatorCode& code = codeOf(line.groups[2]);
    loadValue(left, Register::rax, context);
    loadValue(right, Register::rcx, context);
    const bool isComparison = code.integer.empty();
    if (isComparison) {
        out->write("\tcmpq %rcx, %rax\n", code.setInteger, widenResult);
    } else {
        out->write(code.integer);
    }
    storeValue(target, Register::rax, context);
    if (isComparison) {
        recordType(target, TypeName::Boolean);
    } else if (target.value->type.empty()) {
        recordType(target, typeOf(left, context));
    }
}

// "!" and "+" copy a double as it is (kept); negation and "+" record no type for integers.
void CodeGenerator::emitUnaryOperation(const IRLine& line, FunctionContext& context) {
    const Operand target = operandOf(line.groups[0], context);
    const std::string_view op = line.groups[1];
    const Operand operand = operandOf(line.groups[2], context);
    if (typeOf(operand, context) == TypeName::Double) {
        loadDouble(operand, Register::xmm0, context);
        if (op == "-") {
            out->write("\txorpd %xmm1, %xmm1\n\tsubsd %xmm0, %xmm1\n\tmovapd %xmm1, %xmm0\n");
        }
        storeDouble(target, Register::xmm0, context);
        recordType(target, TypeName::Double);
        return;
    }
    loadValue(operand, Register::rax, context);
    if (op == "!") {
        out->write("\ttestq %rax, %rax\n\tsete %al\n", widenResult);
    } else if (op == "-") {
        out->write("\tnegq %rax\n");
    }
    storeValue(target, Register::rax, context);
    if (op == "!") {
        recordType(target, TypeName::Boolean);
    }
}

void CodeGenerator::emitElementStore(const IRLine& line, FunctionContext& context) {
    const Operand element = operandOf(line.groups[0], context);
    const Operand value = operandOf(line.groups[1], context);
    if (typeOf(element, context) == TypeName::Double ||
        typeOf(value, context) == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
        storeDouble(element, Register::xmm0, context);
    } else {
        loadValue(value, Register::rax, context);
        storeValue(element, Register::rax, context);
    }
}

void CodeGenerator::emitCopy(const IRLine& line, FunctionContext& context) {
    const Operand target = operandOf(line.groups[0], context);
    const Operand value = operandOf(line.groups[1], context);
    const Name type = typeOf(value, context);
    if (typeOf(target, context) == TypeName::Double || type == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
        storeDouble(target, Register::xmm0, context);
        recordType(target, TypeName::Double);
    } else {
        loadValue(value, Register::rax, context);
        storeValue(target, Register::rax, context);
        recordType(target, type);
    }
}
