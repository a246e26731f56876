#pragma once

#include <cstddef>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "codegen/functionReader.hpp"
#include "codegen/irForms.hpp"
#include "codegen/literalTable.hpp"
#include "codegen/shortText.hpp"
#include "codegen/valueTable.hpp"
#include "shared/ast/name.hpp"

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

private:
    struct FunctionContext {
        FunctionContext(const IRFunction& function, ValueTable& words);

        std::string name;
        Name scope;              // the same as a name, for look-ups
        std::string blockLabel;  // of its blocks, without their numbers
        std::string returnLabel;
        ValueTable& values;
        std::vector<Operand> pendingArguments;  // of the next call
        std::size_t parameterIndex = 0;         // integer-class parameters stored so far
        std::size_t doubleParameterIndex = 0;   // double parameters stored so far
        long long frameSize = 0;                // bytes below the saved %rbp
    };

    using Operands = std::span<const Operand>;
    using Emit = void (CodeGenerator::*)(Operands, FunctionContext&);

    // Frames, functions and constants: frame.cpp, codeGenerator.cpp.
    void collectStringLiterals(const IRProgram& program);
    void emitReadOnlyData();
    void planFrame(FunctionContext& context) const;
    void readDeclarations(FunctionContext& context) const;
    void emitFunction(const IRFunction& function);

    // Lines: instructions.cpp.
    static Emit emitterOf(IRForm form);
    void emitInstruction(const Instruction& instruction, FunctionContext& context);
    void emitIntegerParameter(Operands line, FunctionContext& context);
    void emitDoubleParameter(Operands line, FunctionContext& context);
    void emitArgument(Operands line, FunctionContext& context);
    void emitCallWithResult(Operands line, FunctionContext& context);
    void emitCallWithoutResult(Operands line, FunctionContext& context);
    void emitBranch(Operands line, FunctionContext& context);
    void emitJump(Operands line, FunctionContext& context);
    void emitReturn(Operands line, FunctionContext& context);
    void emitReturnValue(Operands line, FunctionContext& context);
    void emitConversion(Operands line, FunctionContext& context);
    void emitIntToDouble(Operands line, FunctionContext& context);
    void emitDoubleToString(Operands line, FunctionContext& context);
    void emitBinaryOperation(Operands line, FunctionContext& context);
    void emitDoubleOperation(Operands line, FunctionContext& context);
    void emitConcatenation(Operands line, FunctionContext& context);
    void emitIntegerOperation(Operands line, FunctionContext& context);
    void emitUnaryOperation(Operands line, FunctionContext& context);
    void emitElementStore(Operands line, FunctionContext& context);
    void emitCopy(Operands line, FunctionContext& context);

    // Operands and calls: operands.cpp.
    Name typeOf(const Operand& operand, const FunctionContext& context) const;
    Name declaredTypeOf(std::string_view name, const FunctionContext& context) const;
    static void recordType(const Operand& target, Name type);
    void loadValue(const Operand& operand, const ShortText& reg, FunctionContext& context);
    void loadString(std::string_view literal, const ShortText& reg);
    void loadDouble(const Operand& operand, const ShortText& reg, FunctionContext& context);
    void storeValue(const Operand& target, const ShortText& reg, FunctionContext& context);
    void storeDouble(const Operand& target, const ShortText& reg, FunctionContext& context);
    void loadElementAddress(const Operand& element, FunctionContext& context);
    void emitCall(std::string_view callee, FunctionContext& context);
    void passArguments(FunctionContext& context);

    const SymbolTable& symbolTable;
    AssemblyWriter* out = nullptr;  // while generate runs
    LiteralTable stringLabels;      // of the whole program, as those of the doubles
    LiteralTable doubleLabels;
    FunctionReader lines;  // of the function being emitted
};
