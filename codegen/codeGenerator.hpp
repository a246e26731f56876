#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "codegen/functionReader.hpp"
#include "codegen/functionValues.hpp"
#include "codegen/irForms.hpp"
#include "codegen/literalTable.hpp"
#include "codegen/shortText.hpp"

namespace krel {

class AssemblyWriter;
class IRFunction;
class IRProgram;
class SymbolTable;

/// Translates a program into x86-64 assembly text (AT&T syntax, System V calling convention), to be
/// linked with the runtime object. It is deliberately direct: every named value of a function has a
/// slot of its own in the stack frame, and every line is translated by itself, into loads into
/// fixed registers, one operation and a store. Programs that it cannot translate make it throw
/// std::runtime_error; what was written until then stays written.
class CodeGenerator {
public:
    /// The table is only read, and must outlive the generator.
    explicit CodeGenerator(const SymbolTable& table) : symbolTable(table) {}
    CodeGenerator(const CodeGenerator&) = delete;
    CodeGenerator& operator=(const CodeGenerator&) = delete;

    /// Writes the assembly text of the whole program. May be called for several programs, one after
    /// the other. Throws std::runtime_error; a failure of the stream stays in its state.
    void generate(const IRProgram& program, std::ostream& stream);

    /// From the first byte on at `position` of the assembly text comes what stands for the
    /// instruction with this number, counted through the whole program; or what stands for none.
    struct Source {
        static constexpr std::size_t none = static_cast<std::size_t>(-1);

        std::size_t position;
        std::size_t instruction;
    };
    /// From now on the beginning of each such stretch is added to `list`, in order. The list stays
    /// the caller's; null ends that.
    void recordSources(std::vector<Source>* list) { sources = list; }

private:
    struct FunctionContext : FunctionValues {
        FunctionContext(const IRFunction& function, ValueTable& words, const SymbolTable& table)
            : FunctionValues(function, words, table),
              blockLabel(".L" + functionName() + "_B"),
              returnLabel(".L" + functionName() + "_return") {}

        std::string blockLabel;  // of its blocks, without their numbers
        std::string returnLabel;
        std::vector<Operand> pendingArguments;  // of the next call
        std::size_t parameterIndex = 0;         // integer-class parameters stored so far
        std::size_t doubleParameterIndex = 0;   // double parameters stored so far
    };

    using Emit = void (*)(CodeGenerator&, const Operand* groups, FunctionContext&);
    struct Emitter {
        IRForm form;
        Emit emit;
    };

    // Frames, functions and constants: frame.cpp, codeGenerator.cpp.
    void collectStringLiterals(const IRProgram& program);
    void addLiteralsOf(std::string_view line);
    void emitReadOnlyData();
    void recordSource(std::size_t instruction) {
        if (sources != nullptr) {
            addSource(instruction);
        }
    }
    void addSource(std::size_t instruction);
    void emitFunction(const IRFunction& function);

    // Lines: instructions.cpp. Each form has an emitter, whose parameters are the form's groups.
    template <IRForm form, auto emitter>
    static constexpr Emitter emitterFor();
    static Emit emitterOf(IRForm form);
    void emitInstruction(const Instruction& instruction, FunctionContext& context);
    void emitIntegerParameter(const Operand& type, const Operand& target, FunctionContext& context);
    void emitDoubleParameter(const Operand& target, FunctionContext& context);
    void emitArgument(const Operand& value, FunctionContext& context);
    void emitCallWithResult(const Operand& target, const Operand& callee, const Operand& count,
                            FunctionContext& context);
    void emitCallWithoutResult(const Operand& callee, const Operand& count,
                               FunctionContext& context);
    void emitBranch(const Operand& condition, const Operand& block, FunctionContext& context);
    void emitJump(const Operand& block, FunctionContext& context);
    void emitReturn(FunctionContext& context);
    void emitReturnValue(const Operand& value, FunctionContext& context);
    void emitConversion(const Operand& target, const Operand& conversion, const Operand& value,
                        FunctionContext& context);
    void emitIntToDouble(const Operand& target, const Operand& value, FunctionContext& context);
    void emitDoubleToString(const Operand& target, const Operand& value, FunctionContext& context);
    void emitBinaryOperation(const Operand& target, const Operand& left, const Operand& op,
                             const Operand& right, FunctionContext& context);
    void emitDoubleOperation(const Operand& target, const Operand& left, const Operand& op,
                             const Operand& right, FunctionContext& context);
    void emitConcatenation(const Operand& target, const Operand& left, const Operand& right,
                           FunctionContext& context);
    void emitIntegerOperation(const Operand& target, const Operand& left, const Operand& op,
                              const Operand& right, FunctionContext& context);
    void emitUnaryOperation(const Operand& target, const Operand& op, const Operand& value,
                            FunctionContext& context);
    void emitElementStore(const Operand& target, const Operand& value, FunctionContext& context);
    void emitCopy(const Operand& target, const Operand& value, FunctionContext& context);

    // Operands and calls: operands.cpp.
    void loadValue(const Operand& operand, const ShortText& reg, FunctionContext& context);
    void loadString(std::string_view literal, const ShortText& reg);
    void loadDouble(const Operand& operand, const ShortText& reg, FunctionContext& context);
    void storeValue(const Operand& target, const ShortText& reg, FunctionContext& context);
    void storeDouble(const Operand& target, const ShortText& reg, FunctionContext& context);
    void loadElementAddress(const Operand& operand, FunctionContext& context);
    void emitCall(std::string_view callee, FunctionContext& context);
    void passArguments(FunctionContext& context);

    const SymbolTable& symbolTable;
    AssemblyWriter* out = nullptr;  // while generate runs
    LiteralTable stringLabels;      // of the whole program, as those of the doubles
    LiteralTable doubleLabels;
    FunctionReader reader;  // of the function being emitted
    std::vector<Source>* sources = nullptr;
    std::size_t instructionCount = 0;  // emitted so far
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::CodeGenerator;
