#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shared/error/place.hpp"
#include "tools/syntax/tokens.hpp"

namespace krel::Syntax {

/// What a node is. Behind each kind its children, in order.
enum class Kind : std::uint8_t {
    Program,    // functions; also statements outside of them
    Function,   // Type, Parameter..., Block; the token is the name
    Prototype,  // Type, Parameter...; the token is the name
    Wrapper,    // functions and statements, in the braces of a class; the token is its word
    Parameter,  // Type, ArrayBound...; the token is the name, noToken without one
    Type,       // the op is the type in Krel; Name when the initial value tells, End when it is not
                // known
    Block,      // statements
    Declaration,          // Type, Declarator...
    Declarator,           // ArrayBound..., at most one expression or List; the token is the name
    ArrayBound,           // at most one expression
    If,                   // Arm..., at most one ElseArm
    Arm,                  // Condition, statement; the op tells `if`, `elseif`, else (two words)
    ElseArm,              // statement
    Condition,            // expression; the parentheses belong to it, unless it is foreign
    While,                // Condition, statement
    DoWhile,              // statement, Condition
    For,                  // ForPart, ForPart, ForPart, statement
    ForEach,              // Declaration, expression, statement
    Switch,               // Condition, Case...
    Case,                 // labels, which are expressions, then statements; the op is Else for the
                          // one that takes all others
    ForPart,              // a Declaration, or expressions
    Return,               // at most one expression
    Break,                //
    Continue,             //
    Empty,                // a lone semicolon
    ExpressionStatement,  // expression
    Foreign,              // something of another language; the token is its word; the op is Colon
                          // for a label, Name for a variable named like a word of Krel
    Skipped,              // what could not be read
    // Expressions. The token is the operator, the name or the literal.
    Name,
    Literal,      // the op is the token's word
    Unary,        // operand
    Binary,       // left, right
    Assign,       // target, value
    Conditional,  // condition, then, else
    Update,       // operand; foreign when it stands behind it
    Index,        // array, index
    Call,         // arguments; the token is the name, `print` or `exit`
    Cast,         // Type, operand; foreign when written like a call
    Parentheses,  // expression
    List,         // expressions, in braces
    Field,        // expression; the token is the name behind the point
    Method,       // expression, arguments; the same
    Missing       // an expression that is not there
};

using NodeId = std::uint32_t;
constexpr NodeId noNode = static_cast<NodeId>(-1);
constexpr std::uint32_t noToken = static_cast<std::uint32_t>(-1);

/// A node. Children have smaller numbers than their parents, and earlier ones smaller numbers than
/// later ones; so one pass over all numbers goes through a tree from the leaves to the root.
struct Node {
    Kind kind = Kind::Missing;
    Word op = Word::End;
    bool foreign = false;
    SourceRange range;
    std::uint32_t token = noToken;  // index in the tokens
    NodeId parent = noNode;
    NodeId first = noNode;
    NodeId next = noNode;  // of the parent's children
};

/// Something that the tolerant reading had to make up or to leave out.
struct Gap {
    enum class Kind : std::uint8_t {
        Semicolon,    // missing
        Parameters,   // parentheses behind the name of a function, missing
        Parenthesis,  // closing, missing
        Bracket,      // the same
        Brace,        // the same
        Unexpected,   // left out
        TooDeep       // left out, because it is nested too deeply
    };

    Kind kind;
    SourceRange
        range;         // what was left out; from the token before to the one behind what is missing
    std::uint32_t at;  // where it is missing
};

/// A text as the tolerant reading sees it. It owns its nodes, but not the text.
struct Tree {
    std::string_view text;
    Tokens tokens;
    std::vector<Node> nodes;  // the last is the root
    std::vector<Gap> gaps;    // in order

    const Node& operator[](NodeId id) const { return nodes[id]; }
    NodeId root() const { return static_cast<NodeId>(nodes.size() - 1); }
    std::string_view textOf(SourceRange range) const {
        return text.substr(range.begin, range.end - range.begin);
    }
    std::string_view textOf(NodeId id) const { return textOf(nodes[id].range); }
    /// The text of a node's token; empty when it has none.
    std::string_view wordOf(NodeId id) const;
    /// The range of a node's token; empty when it has none.
    SourceRange wordRange(NodeId id) const;
    /// The child of that number, counted from 0; noNode behind the last.
    NodeId child(NodeId id, std::size_t number) const;
    NodeId lastChild(NodeId id) const;
    std::vector<NodeId> children(NodeId id) const;
    /// The nearest node of a kind around a node, itself included; noNode when there is none.
    NodeId around(NodeId id, Kind kind) const;
};

/// Whether the kind is that of an expression.
constexpr bool isExpression(Kind kind) {
    return kind >= Kind::Name;
}

/// Reads any text. Nothing that is refused by the compiler stops it, and it decides nothing about
/// right or wrong. Takes time in proportion to the text. The text must outlive the tree.
Tree read(std::string_view text, const std::vector<FrontEnd::Token>& pieces);

/// The same without the front end's pieces at hand.
Tree read(std::string_view text);

}  // namespace krel::Syntax
