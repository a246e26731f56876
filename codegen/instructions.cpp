// Instruction selection: one function for each form of line.

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string>
#include <utility>

#include "codegen/assemblyWriter.hpp"
#include "codegen/codeGenerator.hpp"
#include "codegen/registers.hpp"
#include "shared/ast/nodeKinds.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"
#include "shared/symboltable/symbolTable.hpp"

namespace krel {

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

/// The row of a form. Its function hands as many groups to the emitter as the form has: with any
/// other number of parameters it does not compile.
template <IRForm form, auto emitter>
constexpr CodeGenerator::Emitter CodeGenerator::emitterFor() {
    const auto emit = [](CodeGenerator& generator, const Operand* groups,
                         FunctionContext& context) {
        const auto pass = [&]<std::size_t... group>(std::index_sequence<group...>) {
            (generator.*emitter)(groups[group]..., context);
        };
        pass(std::make_index_sequence<groupCountOf(form)>{});
    };
    return {form, emit};
}

CodeGenerator::Emit CodeGenerator::emitterOf(IRForm form) {
    static constexpr std::array<Emitter, irFormCount> emitters = {
        emitterFor<IRForm::IntegerParameter, &CodeGenerator::emitIntegerParameter>(),
        emitterFor<IRForm::DoubleParameter, &CodeGenerator::emitDoubleParameter>(),
        emitterFor<IRForm::Argument, &CodeGenerator::emitArgument>(),
        emitterFor<IRForm::CallWithResult, &CodeGenerator::emitCallWithResult>(),
        emitterFor<IRForm::Call, &CodeGenerator::emitCallWithoutResult>(),
        emitterFor<IRForm::Branch, &CodeGenerator::emitBranch>(),
        emitterFor<IRForm::Jump, &CodeGenerator::emitJump>(),
        emitterFor<IRForm::Return, &CodeGenerator::emitReturn>(),
        emitterFor<IRForm::ReturnValue, &CodeGenerator::emitReturnValue>(),
        emitterFor<IRForm::Conversion, &CodeGenerator::emitConversion>(),
        emitterFor<IRForm::IntToDouble, &CodeGenerator::emitIntToDouble>(),
        emitterFor<IRForm::DoubleToString, &CodeGenerator::emitDoubleToString>(),
        emitterFor<IRForm::BinaryOperation, &CodeGenerator::emitBinaryOperation>(),
        emitterFor<IRForm::UnaryOperation, &CodeGenerator::emitUnaryOperation>(),
        emitterFor<IRForm::ElementStore, &CodeGenerator::emitElementStore>(),
        emitterFor<IRForm::Copy, &CodeGenerator::emitCopy>(),
    };
    static_assert(hasRowForEachForm(emitters));
    return emitters[static_cast<std::size_t>(form)].emit;
}

void CodeGenerator::emitInstruction(const Instruction& instruction, FunctionContext& context) {
    if (instruction.form == IRForm::None) {
        throw std::runtime_error("unsupported IR instruction: " +
                                 std::string{instruction.groups->text()});
    }
    emitterOf(instruction.form)(*this, instruction.groups, context);
}

void CodeGenerator::emitIntegerParameter(const Operand& type, const Operand& target,
                                         FunctionContext& context) {
    if (context.parameterIndex == integerRegisters.size()) {
        throw std::runtime_error("more than six integer or pointer parameters are not implemented");
    }
    context.recordType(target, Name::known(type.text()));
    storeValue(target, integerRegisters[context.parameterIndex++], context);
}

void CodeGenerator::emitDoubleParameter(const Operand& target, FunctionContext& context) {
    if (context.doubleParameterIndex == doubleRegisters.size()) {
        throw std::runtime_error("more than eight double parameters are not implemented");
    }
    context.recordType(target, TypeName::Double);
    storeDouble(target, doubleRegisters[context.doubleParameterIndex++], context);
}

void CodeGenerator::emitArgument(const Operand& value, FunctionContext& context) {
    context.pendingArguments.push_back(value);
}

// The number of arguments in the line is not read (kept): the lines before the call decide.
void CodeGenerator::emitCallWithResult(const Operand& target, const Operand& callee,
                                       const Operand& /*count*/, FunctionContext& context) {
    emitCall(callee.text(), context);
    const Name name = Name::known(callee.text());
    const Symbol* function = symbolTable.lookup(name, name, 0);
    if (function != nullptr && function->typeName() == TypeName::Double) {
        storeDouble(target, Register::xmm0, context);
    } else {
        storeValue(target, Register::rax, context);
    }
    if (function != nullptr) {
        context.recordType(target, function->typeName());
    }
}

void CodeGenerator::emitCallWithoutResult(const Operand& callee, const Operand& /*count*/,
                                          FunctionContext& context) {
    emitCall(callee.text(), context);
}

// Always an integer load, whatever the type of the condition.
void CodeGenerator::emitBranch(const Operand& condition, const Operand& block,
                               FunctionContext& context) {
    loadValue(condition, Register::rax, context);
    out->write("\ttestq %rax, %rax\n\tjne ", context.blockLabel, blockNumber(block.text()), "\n");
}

void CodeGenerator::emitJump(const Operand& block, FunctionContext& context) {
    out->write("\tjmp ", context.blockLabel, blockNumber(block.text()), "\n");
}

// The program's exit status is what main returns.
void CodeGenerator::emitReturn(FunctionContext& context) {
    if (context.functionName() == "main") {
        out->write("\txorl %eax, %eax\n");
    }
    out->write("\tjmp ", context.returnLabel, "\n");
}

void CodeGenerator::emitReturnValue(const Operand& value, FunctionContext& context) {
    if (context.typeOf(value) == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
    } else {
        loadValue(value, Register::rax, context);
    }
    out->write("\tjmp ", context.returnLabel, "\n");
}

// Between int and character nothing is converted: a character may hold more than 8 bits (kept).
void CodeGenerator::emitConversion(const Operand& target, const Operand& conversion,
                                   const Operand& value, FunctionContext& context) {
    const std::string_view word = conversion.text();
    loadValue(value, Register::rdi, context);
    if (word == Spelling::IntToChar || word == Spelling::CharToInt) {
        storeValue(target, Register::rdi, context);
        context.recordType(target,
                           word == Spelling::IntToChar ? TypeName::Character : TypeName::Int);
        return;
    }
    out->write("\tcall krel_", word, "@PLT\n");
    storeValue(target, Register::rax, context);
    context.recordType(target, TypeName::String);
}

void CodeGenerator::emitIntToDouble(const Operand& target, const Operand& value,
                                    FunctionContext& context) {
    loadValue(value, Register::rax, context);
    out->write("\tcvtsi2sdq %rax, %xmm0\n");
    storeDouble(target, Register::xmm0, context);
    context.recordType(target, TypeName::Double);
}

void CodeGenerator::emitDoubleToString(const Operand& target, const Operand& value,
                                       FunctionContext& context) {
    loadDouble(value, Register::xmm0, context);
    out->write("\tcall krel_doubletostring@PLT\n");
    storeValue(target, Register::rax, context);
    context.recordType(target, TypeName::String);
}

void CodeGenerator::emitBinaryOperation(const Operand& target, const Operand& left,
                                        const Operand& op, const Operand& right,
                                        FunctionContext& context) {
    const Name leftType = context.typeOf(left);
    const Name rightType = context.typeOf(right);
    if (leftType == TypeName::Double || rightType == TypeName::Double) {
        emitDoubleOperation(target, left, op, right, context);
    } else if (op.text() == Spelling::Plus &&
               (leftType == TypeName::String || rightType == TypeName::String)) {
        emitConcatenation(target, left, right, context);
    } else {
        emitIntegerOperation(target, left, op, right, context);
    }
}

void CodeGenerator::emitDoubleOperation(const Operand& target, const Operand& left,
                                        const Operand& op, const Operand& right,
                                        FunctionContext& context) {
    const OperatorCode& code = codeOf(op.text());
    loadDouble(left, Register::xmm0, context);
    loadDouble(right, Register::xmm1, context);
    if (!code.real.empty()) {
        out->write(code.real);
        storeDouble(target, Register::xmm0, context);
        context.recordType(target, TypeName::Double);
        return;
    }
    out->write("\tucomisd %xmm1, %xmm0\n");
    if (code.setReal.empty()) {
        throw std::runtime_error("unsupported double operator: " + std::string{code.op});
    }
    out->write(code.setReal, widenResult);
    storeValue(target, Register::rax, context);
    context.recordType(target, TypeName::Boolean);
}

// One string is enough; the other operand is passed as it is.
void CodeGenerator::emitConcatenation(const Operand& target, const Operand& left,
                                      const Operand& right, FunctionContext& context) {
    loadValue(left, Register::rdi, context);
    loadValue(right, Register::rsi, context);
    out->write("\tcall krel_concat@PLT\n");
    storeValue(target, Register::rax, context);
    context.recordType(target, TypeName::String);
}

void CodeGenerator::emitIntegerOperation(const Operand& target, const Operand& left,
                                         const Operand& op, const Operand& right,
                                         FunctionContext& context) {
    const OperatorCode& code = codeOf(op.text());
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
        context.recordType(target, TypeName::Boolean);
    } else if (!context.hasType(target)) {
        context.recordType(target, context.typeOf(left));
    }
}

// "!" and "+" copy a double as it is (kept); negation and "+" record no type for integers.
void CodeGenerator::emitUnaryOperation(const Operand& target, const Operand& op,
                                       const Operand& value, FunctionContext& context) {
    const std::string_view word = op.text();
    if (context.typeOf(value) == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
        if (word == Spelling::Minus) {
            out->write("\txorpd %xmm1, %xmm1\n\tsubsd %xmm0, %xmm1\n\tmovapd %xmm1, %xmm0\n");
        }
        storeDouble(target, Register::xmm0, context);
        context.recordType(target, TypeName::Double);
        return;
    }
    loadValue(value, Register::rax, context);
    if (word == Spelling::Not) {
        out->write("\ttestq %rax, %rax\n\tsete %al\n", widenResult);
    } else if (word == Spelling::Minus) {
        out->write("\tnegq %rax\n");
    }
    storeValue(target, Register::rax, context);
    if (word == Spelling::Not) {
        context.recordType(target, TypeName::Boolean);
    }
}

void CodeGenerator::emitElementStore(const Operand& target, const Operand& value,
                                     FunctionContext& context) {
    if (context.typeOf(target) == TypeName::Double || context.typeOf(value) == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
        storeDouble(target, Register::xmm0, context);
    } else {
        loadValue(value, Register::rax, context);
        storeValue(target, Register::rax, context);
    }
}

void CodeGenerator::emitCopy(const Operand& target, const Operand& value,
                             FunctionContext& context) {
    const Name type = context.typeOf(value);
    if (context.typeOf(target) == TypeName::Double || type == TypeName::Double) {
        loadDouble(value, Register::xmm0, context);
        storeDouble(target, Register::xmm0, context);
        context.recordType(target, TypeName::Double);
    } else {
        loadValue(value, Register::rax, context);
        storeValue(target, Register::rax, context);
        context.recordType(target, type);
    }
}

}  // namespace krel
