#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/ast/name.hpp"
#include "shared/error/place.hpp"
#include "shared/krelir-cfg/ir-program.hpp"
#include "shared/krelir-cfg/textParts.hpp"

namespace krel {

class Node;

/// Lowers the analysed tree into textual three-address code, one instruction a line, in numbered
/// basic blocks. Types do not matter here, and nothing is checked: the analyser has done that. A
/// shape of the tree that it lets through, but that has no lowering, is an InternalError. One
/// generator serves one compilation and owns its program.
class KrelIR {
public:
    KrelIR() = default;
    KrelIR(const KrelIR&) = delete;
    KrelIR& operator=(const KrelIR&) = delete;

    /// Lowers all functions below `root` (null: none) into a program that replaces the last one.
    IRProgram& analyze(Node* root);
    /// The program made last; empty at first.
    IRProgram& getProgram() { return program; }

    /// From now on adds to `list`, for each instruction in the order of the program, the bytes of
    /// the source that it comes from: those of the innermost statement or expression that makes it.
    /// The list stays the caller's; null ends the recording.
    void recordSources(std::vector<SourceRange>* list) { sources = list; }

private:
    using Statement = void (KrelIR::*)(Node*);
    /// The text that stands for a value: a name of the tree, or one of `texts`. Valid until the
    /// statement has been lowered.
    using Operand = std::string_view;
    using Expression = Operand (KrelIR::*)(Node*);

    /// The blocks that `continue` and `break` jump to.
    using Loop = std::pair<int, int>;

    struct Arm {
        Node* condition;
        Node* block;
        int test;  // the block of the condition; none for the first arm
        int body;
    };

    static const NameTable<Statement> statementLowering;
    static const NameTable<Expression> expressionLowering;

    void visit(Node* node);
    void visitFunctionDeclaration(Node* node);
    void visitParameters(Node* list);
    void visitBlock(Node* node);
    void visitStatement(Node* node);
    void visitDeclaration(Node* node);
    void visitExpressionStatement(Node* node);
    void visitAssignment(Node* node);
    void visitCompoundAssignment(Node* node);
    void visitUpdate(Node* node);
    void visitCall(Node* node);
    void visitPrintStatement(Node* node);
    void visitExitStatement(Node* node);
    void visitReturnStatement(Node* node);
    void visitWhileStatement(Node* node);
    void visitForStatement(Node* node);
    void visitIfStatement(Node* node);
    void visitBreakStatement(Node* node);
    void visitContinueStatement(Node* node);

    Operand expression(Node* node);
    Operand binaryOp(Node* node, Operand left);
    Operand unaryOp(Node* node, Operand operand);
    Operand conversion(Node* node);
    Operand identifier(Node* node);
    Operand parenthesized(Node* node);
    Operand assignmentValue(Node* node);
    Operand updateValue(Node* node);
    Operand unresolvedCast(Node* node);
    Operand call(Node* node);
    /// Lowers the children of a node and appends what stands for their values to `operands`.
    void pushOperands(Node* expressions);
    Operand lvalue(Node* node);
    Operand literal(Node* node);
    void assign(Operand target, Node* value);
    Operand negatedCondition(Node* node);

    int newBlock() { return ++blockCounter; }
    Operand newTemporary();
    void emitLabel(int number);
    /// Appends an instruction to the current block; its text is that of all the parts.
    template <typename... Parts>
    void emit(const Parts&... parts) {
        blockForEmission().addInstructionOf(separateNextInstruction, parts...);
        separateNextInstruction = false;
        if (sources != nullptr) {
            sources->push_back(rangeOfOrigin());
        }
    }
    /// The same for an instruction that comes from a part of the statement.
    template <typename... Parts>
    void emitFor(const Node* node, const Parts&... parts) {
        const Node* const outer = std::exchange(origin, node);
        emit(parts...);
        origin = outer;
    }
    SourceRange rangeOfOrigin() const;
    IRBasicBlock& blockForEmission();
    void emitJump(int block);
    void emitBranchUnless(Node* condition, int block);
    void separateInstructions();

    /// Child `index` of a node; an internal error when it has none.
    static Node* childOf(const Node* node, std::size_t index);
    static bool endsInReturn(Node* block);
    static bool isLiteral(Node* node);
    Operand quote(std::string_view text, char quotationMark);
    /// Joins the parts to one text in `texts`.
    template <typename... Parts>
    Operand keep(const Parts&... parts) {
        const std::size_t size = (partSize(parts) + ...);
        char* const text = textOf(size);
        char* at = text;
        ((at = writePart(at, parts)), ...);
        return {text, size};
    }
    char* textOf(std::size_t size) { return static_cast<char*>(texts.allocate(size, 1)); }
    static std::string_view updateOperator(std::string_view kind);

    IRProgram program;
    /// The texts that a statement needs besides those of the tree. They are released after the
    /// statement.
    std::array<char, 1024> firstTexts;
    std::pmr::monotonic_buffer_resource texts{firstTexts.data(), firstTexts.size()};
    /// Both point into `program` and are set anew at every function and block that is added, which
    /// may move the ones before it. Null outside a function, and before its first block.
    IRFunction* currentFunction = nullptr;
    IRBasicBlock* currentBlock = nullptr;
    bool separateNextInstruction = false;
    const Node* origin = nullptr;  // what the next instruction comes from
    std::vector<SourceRange>* sources = nullptr;
    int temporaryCounter = 0;       // the next temporary of the function
    int blockCounter = 0;           // the last block number handed out in the function
    std::vector<Node*> operations;  // whose left operands are being lowered, innermost last
    std::vector<Operand> operands;  // of the arguments of calls being lowered, innermost last
    std::vector<Loop> loops;        // the loops around the statement, innermost last
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::KrelIR;
