// Instruction selection: one function for each form of line.

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string>

#include "codegen/assemblyWriter.hpp"
#include "codegen/codeGenerator.hpp"
#include "codegen/registers.hpp"
#include "shared/ast/nodeKinds.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"
#include "shared/symboltable/symbolTable.hpp"

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
    {Spelling::Plus, "\taddq %rcx, %rax\n", "\taddsd %xmm1, %xmm0\n", "", ""},
    {Spelling::Minus, "\tsubq %rcx, %rax\n", "\tsubsd %xmm1, %xmm0\n", "", ""},
    {Spelling::Times, "\timulq %rcx, %rax\n", "\tmulsd %xmm1, %xmm0\n", "", ""},
    {Spelling::Divide, "\tcqto\n\tidivq %rcx\n", "\tdivsd %xmm1, %xmm0\n", "", ""},
    {Spelling::And, KREL_NORMALISED("\tandq %rcx, %rax\n"), "", "", ""},
    {Spelling::Or, KREL_NORMALISED("\torq %rcx, %rax\n"), "", "", ""},
    {Spelling::Equal, "", "", "\tsete %al\n", "\tsete %al\n"},
    {Spelling::NotEqual, "", "", "\tsetne %al\n", "\tsetne %al\n"},
    {Spelling::Less, "", "", "\tsetl %al\n", "\tsetb %al\n"},
    {Spelling::Greater, "", "", "\tsetg %al\n", "\tseta %al\n"},
    {Spelling::LessEqual, "", "", "\tsetle %al\n", "\tsetbe %al\n"},
    {Spelling::GreaterEqual, "", "", "\tsetge %al\n", "\tsetae %al\n"},
}};

#undef KREL_NORMALISED

constexpr bool haveCode(std::string_view op) {
    return std::any_of(operatorCodes.begin(), operatorCodes.end(),
                       [op](const OperatorCode& code) { return code.op == op; });
}
static_assert(std::all_of(lineOperators.begin(), lineOperators.end(),
                          [](const VocabularyEntry& op) {
                              return haveCode(op.text) ==
                                     ((op.tokenClass & TokenClass::anyBinary) != 0);
                          }));

const OperatorCode& codeOf(std::string_view op) {
    for (const OperatorCode& code : operatorCodes) {
        if (code.op.front() == op.front() && code.op == op) {
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

void CodeGenerator::emitInstruction(const Instruction& instruction, FunctionContext& context) {
    if (instruction.form == IRForm::None) {
        throw std::runtime_error("unsupported IR instruction: " +
                                 std::string{instruction.operands[0].text});
    }
    (this->*emitterOf(instruction.form))(instruction.operands, context);
}

void CodeGenerator::emitIntegerParameter(Operands line, FunctionContext& context) {
    if (context.parameterIndex == integerRegisters.size()) {
        throw std::runtime_error("more than six integer or pointer parameters are not implemented");
    }
    const Operand& parameter = line[1];
    recordType(parameter, Name::known(line[0].text));
    storeValue(parameter, integerRegisters[context.parameterIndex++], context);
}

void CodeGenerator::emitDoubleParameter(Operands line, FunctionContext& context) {
    if (context.doubleParameterIndex == doubleRegisters.size()) {
        throw std::runtime_error("more than eight double parameters are not implemented");
    }
    const Operand& parameter = line[0];
    recordType(parameter, TypeName::Double);
    storeDouble(parameter, doubleRegisters[context.doubleParameterIndex++], context);
}

void CodeGenerator::emitArgument(Operands line, FunctionContext& context) {
    context.pendingArguments.push_back(line[0]);
}

// The number of arguments in the line is not read (kept): the lines before the call decide.
void CodeGenerator::emitCallWithResult(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    emitCall(line[1].text, context);
    const Name name = Name::known(line[1].text);
    const Symbol* function = symbolTable.lookup(name, name, 0);
    if (function != nullptr && function->typeName() == TypeName::Double) {
        storeDouble(target, Register::xmm0, context);
    } else {
        storeValue(target, Register::rax, context);
    }
    if (function != nullptr) {
        recordType(target, function->typeName());
    }
}

void CodeGenerator::emitCallWithoutResult(Operands line, FunctionContext& context) {
    emitCall(line[0].text, context);
}

// Always an integer load, whatever the type of the condition.
void CodeGenerator::emitBranch(Operands line, FunctionContext& context) {
    loadValue(line[0], Register::rax, context);
    out->write("\ttestq %rax, %rax\n\tjne ", context.blockLabel, blockNumber(line[1].text), "\n");
}

void CodeGenerator::emitJump(Operands line, FunctionContext& context) {
    out->write("\tjmp ", context.blockLabel, blockNumber(line[0].text), "\n");
}

// The program's exit status is what main returns.
void CodeGenerator::emitReturn(Operands /*line*/, FunctionContext& context) {
    if (context.name == "main") {
        out->write("\txorl %eax, %eax\n");
    }
    out->write("\tjmp ", context.returnLabel, "\n");
}

void CodeGenerator::emitReturnValue(Operands line, FunctionContext& context) {
    const Operand& value = line[0];
    if (typeOf(value, context) == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
    } else {
        loadValue(value, Register::rax, context);
    }
    out->write("\tjmp ", context.returnLabel, "\n");
}

// Between int and character nothing is converted: a character may hold more than 8 bits (kept).
void CodeGenerator::emitConversion(Operands line, FunctionContext& context) {
    const std::string_view conversion = line[1].text;
    const Operand& target = line[0];
    loadValue(line[2], Register::rdi, context);
    if (conversion == Spelling::IntToChar || conversion == Spelling::CharToInt) {
        storeValue(target, Register::rdi, context);
        recordType(target, conversion == Spelling::IntToChar ? TypeName::Character : TypeName::Int);
        return;
    }
    out->write("\tcall krel_", conversion, "@PLT\n");
    storeValue(target, Register::rax, context);
    recordType(target, TypeName::String);
}

void CodeGenerator::emitIntToDouble(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    loadValue(line[1], Register::rax, context);
    out->write("\tcvtsi2sdq %rax, %xmm0\n");
    storeDouble(target, Register::xmm0, context);
    recordType(target, TypeName::Double);
}

void CodeGenerator::emitDoubleToString(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    loadDouble(line[1], Register::xmm0, context);
    out->write("\tcall krel_doubletostring@PLT\n");
    storeValue(target, Register::rax, context);
    recordType(target, TypeName::String);
}

void CodeGenerator::emitBinaryOperation(Operands line, FunctionContext& context) {
    const Name leftType = typeOf(line[1], context);
    const Name rightType = typeOf(line[3], context);
    if (leftType == TypeName::Double || rightType == TypeName::Double) {
        emitDoubleOperation(line, context);
    } else if (line[2].text == Spelling::Plus &&
               (leftType == TypeName::String || rightType == TypeName::String)) {
        emitConcatenation(line, context);
    } else {
        emitIntegerOperation(line, context);
    }
}

void CodeGenerator::emitDoubleOperation(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    const OperatorCode& code = codeOf(line[2].text);
    loadDouble(line[1], Register::xmm0, context);
    loadDouble(line[3], Register::xmm1, context);
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
void CodeGenerator::emitConcatenation(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    loadValue(line[1], Register::rdi, context);
    loadValue(line[3], Register::rsi, context);
    out->write("\tcall krel_concat@PLT\n");
    storeValue(target, Register::rax, context);
    recordType(target, TypeName::String);
}

void CodeGenerator::emitIntegerOperation(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    const OperatorCode& code = codeOf(line[2].text);
    loadValue(line[1], Register::rax, context);
    loadValue(line[3], Register::rcx, context);
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
        recordType(target, typeOf(line[1], context));
    }
}

// "!" and "+" copy a double as it is (kept); negation and "+" record no type for integers.
void CodeGenerator::emitUnaryOperation(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    const std::string_view op = line[1].text;
    const Operand& operand = line[2];
    if (typeOf(operand, context) == TypeName::Double) {
        loadDouble(operand, Register::xmm0, context);
        if (op == Spelling::Minus) {
            out->write("\txorpd %xmm1, %xmm1\n\tsubsd %xmm0, %xmm1\n\tmovapd %xmm1, %xmm0\n");
        }
        storeDouble(target, Register::xmm0, context);
        recordType(target, TypeName::Double);
        return;
    }
    loadValue(operand, Register::rax, context);
    if (op == Spelling::Not) {
        out->write("\ttestq %rax, %rax\n\tsete %al\n", widenResult);
    } else if (op == Spelling::Minus) {
        out->write("\tnegq %rax\n");
    }
    storeValue(target, Register::rax, context);
    if (op == Spelling::Not) {
        recordType(target, TypeName::Boolean);
    }
}

void CodeGenerator::emitElementStore(Operands line, FunctionContext& context) {
    const Operand& element = line[0];
    const Operand& value = line[1];
    if (typeOf(element, context) == TypeName::Double ||
        typeOf(value, context) == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
        storeDouble(element, Register::xmm0, context);
    } else {
        loadValue(value, Register::rax, context);
        storeValue(element, Register::rax, context);
    }
}

void CodeGenerator::emitCopy(Operands line, FunctionContext& context) {
    const Operand& target = line[0];
    const Operand& value = line[1];
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
