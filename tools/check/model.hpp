#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tools/syntax/syntaxTree.hpp"

namespace krel::Check {

using Syntax::Kind;
using Syntax::NodeId;
using Syntax::noNode;
using Syntax::Tree;
using Syntax::Word;

/// A type of Krel as its word; Word::End when it is not known.
using Type = Word;

/// The word that names a type in Krel; empty for an unknown one.
std::string_view nameOf(Type type);

/// Whether a cast leads from one type to the other.
bool isConvertible(Type from, Type to);

/// What the name of a variable ends with that holds something else as that type.
std::string_view suffixFor(Type type);

using VariableId = std::uint32_t;
constexpr VariableId noVariable = static_cast<VariableId>(-1);
using FunctionId = std::uint32_t;
constexpr FunctionId noFunction = static_cast<FunctionId>(-1);

/// A variable, array or parameter, as people mean it: with the scope of its block.
struct Variable {
    std::string_view name;
    Type type = Word::End;
    NodeId node = noNode;              // the declarator or parameter
    NodeId scope = noNode;             // the block, loop or function that it belongs to
    FunctionId function = noFunction;  // none: declared outside of all functions
    bool isParameter = false;
    bool isArray = false;
    NodeId initial = noNode;  // expression or list
    std::vector<NodeId> bounds;
    std::vector<NodeId> uses;        // the nodes of kind Name that mean it
    VariableId before = noVariable;  // declared earlier in the function with the same name
};

/// A name that other languages put a literal in place of.
struct Constant {
    Type type = Word::End;
    std::string value;  // a literal, or a number with a sign before it
};

/// A function and its own variables.
struct Function {
    std::string_view name;
    Type type = Word::End;
    NodeId node = noNode;
    std::vector<VariableId> parameters;
    std::vector<VariableId> variables;  // parameters included, in order
    std::vector<NodeId> calls;          // of this function
};

/// Who is who in a tree, and which types expressions have: as they are meant, and as Krel's rules
/// give them. It reads the tree only, and takes time in proportion to it.
class Model {
public:
    explicit Model(const Tree& itsTree);

    const Tree& tree() const { return source; }
    const std::vector<Function>& functions() const { return allFunctions; }
    const std::vector<Variable>& variables() const { return allVariables; }

    /// The function of that name that is defined first; noFunction when there is none.
    FunctionId functionNamed(std::string_view name) const;
    /// The constant of that name: of a `#define`, of an enumeration, or a well-known one; null when
    /// there is none. Variables of the name hide it.
    const Constant* constantNamed(std::string_view name) const;
    /// The function that a node lies in; noFunction outside of all.
    FunctionId functionAround(NodeId id) const { return owner[id]; }
    /// What a node of kind Name means; noVariable when nothing of that name is declared.
    VariableId meaning(NodeId name) const { return meanings[name]; }
    /// The variable that a declarator or parameter declares.
    VariableId declared(NodeId declarator) const { return meanings[declarator]; }

    /// The type that people mean: a comparison is boolean, an int and a double give a double.
    Type meant(NodeId id) const { return meantTypes[id]; }
    /// The type that the compiler gives an expression; Word::End when it gives none.
    Type krel(NodeId id) const { return krelTypes[id]; }
    /// Whether a function is called somewhere in a node.
    bool hasCall(NodeId id) const { return calls[id]; }
    /// Whether something is assigned somewhere in an expression.
    bool hasEffect(NodeId id) const { return effects[id]; }
    /// The first node of a node's descendants; all of them follow each other, the node itself last.
    NodeId firstWithin(NodeId id) const { return lows[id]; }

private:
    void collectConstants();
    void addConstant(std::string_view name, std::string_view value);
    void collectEnumeration(std::string_view text);
    void collectFunctions();
    void walk();
    void takeElementType(NodeId id);
    void declare(NodeId id);
    void resolve(NodeId id);
    void noteCall(NodeId id);
    void resolveLate(const std::vector<NodeId>& late);
    void resolveEarly(FunctionId function, const std::vector<NodeId>& open);
    void typeExpression(NodeId id);
    Type meantBinary(NodeId id) const;
    Type typeOfLiteral(NodeId id) const;
    Type typeOfName(NodeId id) const;

    struct Declared {
        std::vector<VariableId> open;
        VariableId last = noVariable;
        VariableId first = noVariable;
    };

    const Tree& source;
    std::vector<Function> allFunctions;
    std::vector<Variable> allVariables;
    std::unordered_map<std::string_view, Constant> constants;
    std::unordered_map<std::string_view, FunctionId> functionsByName;
    std::unordered_map<std::string_view, VariableId> globals;
    std::unordered_map<std::string_view, Declared> known;  // of the function at hand
    std::vector<FunctionId> owner;
    std::vector<VariableId> meanings;
    std::vector<Type> meantTypes;
    std::vector<Type> krelTypes;
    std::vector<bool> calls;
    std::vector<bool> effects;
    std::vector<NodeId> lows;
};

/// Whether the word is an operator that compares.
constexpr bool isComparison(Word word) {
    return Word::Less <= word && word <= Word::NotEqual;
}

/// A number as its literal gives it; how it is written tells whether it is whole.
struct Number {
    bool isDouble = false;
    bool isKnown = false;  // it can be read at all
    double real = 0.0;
    std::uint64_t whole = 0;  // of integers, as far as 64 bits hold it
};

/// Reads a number as any language writes it.
Number numberOf(std::string_view text);

}  // namespace krel::Check
