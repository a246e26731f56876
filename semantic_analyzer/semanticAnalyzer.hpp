#pragma once

#include <vector>

#include "shared/ast/name.hpp"
#include "shared/error/place.hpp"

namespace krel {

class Node;
class SymbolTable;

/// The pass between parsing and the intermediate representation. Checks declarations and
/// statements against the symbol table, gives expressions their semantic type, and rewrites the
/// tree in two places: casts become conversion nodes, and so do print arguments that are not
/// strings. Faults of the program are reported through Error and the walk goes on; a tree of an
/// impossible shape is an InternalError. One analyser serves one compilation.
///
/// What the walk does not check (conditions, compound assignments, increments, the argument of
/// exit) gets no types; a call met there is checked as if it were a statement (kept).
class SemanticAnalyzer {
public:
    /// Binds the table that the parser has filled. It is only read, and must outlive the analyser.
    explicit SemanticAnalyzer(SymbolTable& table) : symbolTable(table) {}

    /// Analyses the tree below `root` in place; does nothing for null.
    void analyze(Node* root);

    /// Whether a value of type `value` may be stored in a variable of type `target`: exactly when
    /// they are the same. There is no implicit conversion.
    static bool isAssignable(Name target, Name value) { return target == value; }
    /// Whether an explicit cast from `source` to `target` exists.
    static bool isCastable(Name target, Name source);
    static bool isNumericType(Name type);
    static bool isLiteralKind(Name kind);

    /// The type of an expression, recorded on its nodes. Empty when a fault was reported, or when
    /// the node is null or no expression. Resolves a cast into its conversion.
    Name inferExpressionType(Node* node);

private:
    using Visit = void (SemanticAnalyzer::*)(Node*);
    using Infer = Name (SemanticAnalyzer::*)(Node*);

    static const NameTable<Visit> visitors;
    static const NameTable<Infer> inferrers;

    void visit(Node* node);
    void visitProgram(Node* node);
    void visitFunctionDeclaration(Node* node);
    void visitDeclaration(Node* node);
    void visitDeclarator(Node* node, Name declaredType);
    void visitArrayDeclarator(Node* node);
    void visitAssignment(Node* node);
    void visitReturnStatement(Node* node);
    void visitCallStatement(Node* node);
    void visitPrintStatement(Node* node);

    Name inferLiteralType(Node* node);
    Name inferParenthesizedExpressionType(Node* node);
    Name inferIdentifierType(Node* node);
    Name inferArrayAccessType(Node* node);
    Name inferCallStatementType(Node* node);
    Name inferMalformedUnaryOp(Node* node);
    Name inferMalformedBinaryOp(Node* node);
    Name inferCastExpressionType(Node* node);
    Name binaryOpType(Node* operation, Name leftType);

    static Name setExpressionType(Node* node, Name type);
    static void reportTypeMismatch(Name expected, Name actual, const Place& place);

    SymbolTable& symbolTable;
    Name currentScope;              // the function being analysed; the scope of every look-up
    Name currentReturnType;         // its declared return type
    std::vector<Node*> operations;  // whose left operands are being typed, innermost last
    std::vector<Node*> waiting;     // nodes that the walk has still to visit, next one last
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::SemanticAnalyzer;
