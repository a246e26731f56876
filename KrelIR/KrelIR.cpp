// Functions, statements and the block layout of loops and conditionals. Comes in: the analysed
// tree, which is only read. Goes out: the program. Expressions are lowered in expressions.cpp.

#include "KrelIR/KrelIR.hpp"

#include "shared/ast/node.hpp"
#include "shared/error/internalError.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

IRProgram& KrelIR::analyze(Node* root) {
    program.clear();
    currentFunction = nullptr;
    currentBlock = nullptr;
    visit(root);
    return program;
}

void KrelIR::visit(Node* node) {
    if (node == nullptr) {
        return;
    }
    if (node->kindName() == NodeKind::FunctionDeclaration) {
        visitFunctionDeclaration(node);
        return;
    }
    for (Node* child : node->getChildren()) {
        visit(child);
    }
}

void KrelIR::visitFunctionDeclaration(Node* node) {
    const NodeList& children = node->getChildren();
    if (children.size() < 3) {
        internalError("FunctionDeclaration node has fewer than 3 children.");
    }
    origin = node;
    temporaryCounter = 0;
    blockCounter = 0;
    loops.clear();
    currentFunction = &program.addFunction(node->getStringValue());
    currentBlock = nullptr;
    emitLabel(newBlock());
    visitParameters(children[1]);
    visitBlock(children[2]);
    if (children[0]->stringValue() == TypeName::Void && !endsInReturn(children[2])) {
        emit(Keyword::Return);
    }
    currentFunction->rebuildCFG();
}

void KrelIR::visitParameters(Node* list) {
    for (Node* parameter : list->getChildren()) {
        if (!parameter->hasChildren()) {
            internalError("FunctionDeclaration node has malformed parameter.");
        }
        const std::string& type = childOf(parameter, 0)->getStringValue();
        emitFor(parameter, Keyword::Param, " ", type, " ", parameter->getStringValue());
    }
    if (list->hasChildren()) {
        separateInstructions();
    }
}

void KrelIR::visitBlock(Node* node) {
    for (Node* list : node->getChildren()) {
        if (list->kindName() == NodeKind::StatementList) {
            for (Node* statement : list->getChildren()) {
                visitStatement(statement);
                texts.release();
            }
        }
    }
}

const NameTable<KrelIR::Statement> KrelIR::statementLowering = {
    {NodeKind::Declaration, &KrelIR::visitDeclaration},
    {NodeKind::Block, &KrelIR::visitBlock},
    {NodeKind::ExpressionStatement, &KrelIR::visitExpressionStatement},
    {NodeKind::Assignment, &KrelIR::visitAssignment},
    {NodeKind::CompoundAssignment, &KrelIR::visitCompoundAssignment},
    {NodeKind::PostIncrement, &KrelIR::visitUpdate},
    {NodeKind::PreIncrement, &KrelIR::visitUpdate},
    {NodeKind::PostDecrement, &KrelIR::visitUpdate},
    {NodeKind::PreDecrement, &KrelIR::visitUpdate},
    {NodeKind::CallStatement, &KrelIR::visitCall},
    {NodeKind::PrintStatement, &KrelIR::visitPrintStatement},
    {NodeKind::ExitStatement, &KrelIR::visitExitStatement},
    {NodeKind::ReturnStatement, &KrelIR::visitReturnStatement},
    {NodeKind::WhileStatement, &KrelIR::visitWhileStatement},
    {NodeKind::ForStatement, &KrelIR::visitForStatement},
    {NodeKind::IfStatement, &KrelIR::visitIfStatement},
    {NodeKind::BreakStatement, &KrelIR::visitBreakStatement},
    {NodeKind::ContinueStatement, &KrelIR::visitContinueStatement},
};

void KrelIR::visitStatement(Node* node) {
    const Statement statement = statementLowering.find(node->kindName());
    if (statement == nullptr) {
        internalError("Unsupported statement node: " + node->getKind());
    }
    const Node* const outer = std::exchange(origin, node);
    (this->*statement)(node);
    origin = outer;
}

void KrelIR::visitDeclaration(Node* node) {
    const NodeList& children = node->getChildren();
    if (children.size() < 2) {
        internalError("Declaration node has fewer than 2 children.");
    }
    Node* declared = children[1];
    if (declared->kindName() != NodeKind::ArrayDeclarator) {
        for (Node* declarator : declared->getChildren()) {
            Node* last = declarator->hasChildren() ? declarator->getChildren().back() : nullptr;
            if (last != nullptr && last->kindName() == NodeKind::Initializer &&
                last->hasChildren()) {
                assign(declarator->getStringValue(), childOf(last, 0));
            }
        }
        return;
    }
    if (declared->getChildren().size() < 2 ||
        childOf(declared, 1)->kindName() != NodeKind::InitializationList) {
        return;
    }
    Node* list = childOf(declared, 1);
    const std::string& name = declared->getStringValue();
    for (std::size_t index = 0; index < list->getChildren().size(); ++index) {
        assign(keep(name, "[", std::to_string(index), "]"), childOf(list, index));
        texts.release();
    }
}

void KrelIR::visitExpressionStatement(Node* node) {
    if (node->hasChildren()) {
        visitStatement(childOf(node, 0));
    }
}

void KrelIR::visitAssignment(Node* node) {
    const Operand target = lvalue(childOf(node, 0));
    assign(target, childOf(node, 1));
}

void KrelIR::visitCompoundAssignment(Node* node) {
    const Operand target = lvalue(childOf(node, 0));
    const Operand value = expression(childOf(node, 1));
    const Operand result = newTemporary();
    const std::string_view op = std::string_view{node->getStringValue()}.substr(0, 1);
    emit(result, " = ", target, " ", op, " ", value);
    emit(target, " = ", result);
}

/// As statements the four kinds are lowered alike, with one temporary.
void KrelIR::visitUpdate(Node* node) {
    const Operand target = lvalue(childOf(node, 0));
    const Operand result = newTemporary();
    emit(result, " = ", target, " ", updateOperator(node->getKind()), " 1");
    emit(target, " = ", result);
}

void KrelIR::visitCall(Node* node) {
    call(node);
}

/// One print makes one call. Its arguments are joined from left to right.
void KrelIR::visitPrintStatement(Node* node) {
    const std::size_t first = operands.size();
    if (node->hasChildren()) {
        pushOperands(childOf(node, 0));
    }
    Operand joined = operands.size() == first ? "\"\"" : operands[first];
    for (std::size_t index = first + 1; index < operands.size(); ++index) {
        const Operand longer = newTemporary();
        emit(longer, " = ", joined, " ", Spelling::Plus, " ", operands[index]);
        joined = longer;
    }
    operands.resize(first);
    emit(Keyword::Arg, " ", joined);
    emit(Keyword::Call, " ", Callee::Print, ", 1");
}

/// The argument is not evaluated (kept): every exit ends the program with status 0.
void KrelIR::visitExitStatement(Node* /*node*/) {
    emit(Keyword::Call, " ", Callee::Exit, ", 0");
}

/// A variable or element is copied first: what is returned is never a place.
void KrelIR::visitReturnStatement(Node* node) {
    if (!node->hasChildren()) {
        emit(Keyword::Return);
        return;
    }
    Node* value = childOf(node, 0);
    Operand result = expression(value);
    if (value->kindName() == NodeKind::Identifier || value->kindName() == NodeKind::ArrayAccess) {
        const Operand copy = newTemporary();
        emit(copy, " = ", result);
        result = copy;
    }
    emit(Keyword::Return, " ", result);
}

void KrelIR::visitWhileStatement(Node* node) {
    const int condition = newBlock();
    const int body = newBlock();
    const int exit = newBlock();
    emitLabel(condition);
    emitBranchUnless(childOf(node, 0), exit);
    emitLabel(body);
    loops.emplace_back(condition, exit);
    visitBlock(childOf(node, 1));
    loops.pop_back();
    emitJump(condition);
    emitLabel(exit);
}

void KrelIR::visitForStatement(Node* node) {
    const NodeList& children = node->getChildren();
    if (children.size() < 4) {
        internalError("ForStatement node has fewer than 4 children.");
    }
    if (children[0]->hasChildren()) {
        visitStatement(childOf(children[0], 0));
    }
    const int condition = newBlock();
    const int body = newBlock();
    const int update = newBlock();
    const int exit = newBlock();
    emitLabel(condition);
    if (children[1]->hasChildren()) {
        emitBranchUnless(childOf(children[1], 0), exit);
    }
    emitLabel(body);
    loops.emplace_back(update, exit);
    visitBlock(children[3]);
    loops.pop_back();
    emitJump(update);  // into the very next block (kept)
    emitLabel(update);
    if (children[2]->hasChildren()) {
        visitStatement(childOf(children[2], 0));
    }
    emitJump(condition);
    emitLabel(exit);
}

/// Blocks are numbered join first, then test and body of each arm, then the else block; they are
/// laid out arms first, then the else block, and last the join.
void KrelIR::visitIfStatement(Node* node) {
    const NodeList& children = node->getChildren();
    std::vector<Arm> arms = {{childOf(node, 0), childOf(node, 1), 0, 0}};
    Node* elseBlock = nullptr;
    for (std::size_t index = 2; index < children.size(); ++index) {
        if (children[index]->kindName() == NodeKind::ElseIfList) {
            for (Node* clause : children[index]->getChildren()) {
                arms.push_back({childOf(clause, 0), childOf(clause, 1), 0, 0});
            }
        } else if (children[index]->kindName() == NodeKind::ElseClause) {
            elseBlock = children[index]->hasChildren() ? childOf(children[index], 0) : nullptr;
        }
    }
    const int join = newBlock();
    for (std::size_t index = 0; index < arms.size(); ++index) {
        arms[index].test = index > 0 ? newBlock() : 0;
        arms[index].body = newBlock();
    }
    const int otherwise = elseBlock != nullptr ? newBlock() : join;
    for (std::size_t index = 0; index < arms.size(); ++index) {
        if (index > 0) {
            emitLabel(arms[index].test);
        }
        emitBranchUnless(arms[index].condition,
                         index + 1 < arms.size() ? arms[index + 1].test : otherwise);
        emitLabel(arms[index].body);
        visitBlock(arms[index].block);
        emitJump(join);
    }
    if (elseBlock != nullptr) {
        emitLabel(otherwise);
        visitBlock(elseBlock);
    }
    emitLabel(join);
}

void KrelIR::visitBreakStatement(Node* /*node*/) {
    if (loops.empty()) {
        internalError("break outside loop");
    }
    emitJump(loops.back().second);
}

void KrelIR::visitContinueStatement(Node* /*node*/) {
    if (loops.empty()) {
        internalError("continue outside loop");
    }
    emitJump(loops.back().first);
}

void KrelIR::emitLabel(int number) {
    if (currentFunction == nullptr) {
        internalError("IR block emitted outside a function");
    }
    currentBlock = &currentFunction->addBlock(number);
    separateNextInstruction = false;
}

IRBasicBlock& KrelIR::blockForEmission() {
    if (currentBlock == nullptr) {
        internalError("IR instruction emitted outside a basic block");
    }
    return *currentBlock;
}

SourceRange KrelIR::rangeOfOrigin() const {
    return origin->getRange();
}

void KrelIR::emitJump(int block) {
    emit(Keyword::Goto, " ", Keyword::Block, std::to_string(block));
}

void KrelIR::emitBranchUnless(Node* condition, int block) {
    const Operand negated = negatedCondition(condition);
    emitFor(condition, Keyword::If, " ", negated, " ", Keyword::Goto, " ", Keyword::Block,
            std::to_string(block));
}

void KrelIR::separateInstructions() {
    separateNextInstruction = currentBlock != nullptr && !currentBlock->getInstructions().empty();
}

Node* KrelIR::childOf(const Node* node, std::size_t index) {
    const NodeList& children = node->getChildren();
    if (index >= children.size()) {
        internalError(node->getKind() + " node has fewer than " + std::to_string(index + 1) +
                      " children.");
    }
    return children[index];
}

bool KrelIR::endsInReturn(Node* block) {
    if (block == nullptr || !block->hasChildren()) {
        return false;
    }
    const Node* list = childOf(block, 0);
    return list->kindName() == NodeKind::StatementList && list->hasChildren() &&
           list->getChildren().back()->kindName() == NodeKind::ReturnStatement;
}

}  // namespace krel
