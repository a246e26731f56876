#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/lsp/analysis.hpp"

/// Questions about the names of a program, which need no protocol. Each function is one scope in
/// Krel, so a variable is its name in its function, whether it is declared once, twice or not at
/// all.
namespace krel::Lsp {

/// What a name stands for.
struct Entity {
    bool isFunction = false;           // else a variable, array or parameter
    FunctionId function = noFunction;  // that a variable belongs to; none: to the program
    std::string_view name;             // in the text
    SourceRange range;                 // of the word that was asked for

    /// Whether two words stand for the same.
    bool isSameAs(const Entity& other) const {
        return isFunction == other.isFunction && function == other.function && name == other.name;
    }
};

/// How an entity is used somewhere.
enum class Use : std::uint8_t { Declaration, Write, Read };

/// A place where an entity is named.
struct Occurrence {
    SourceRange range;
    Use use;
    NodeId node;
};

/// What a node of the tree names; without value when it names nothing.
std::optional<Entity> entityOf(Analysis& analysis, NodeId id);

/// What the word at a byte, or right before it, stands for.
std::optional<Entity> entityAt(Analysis& analysis, std::uint32_t offset);

/// All places where an entity is named, in the order of the text.
std::vector<Occurrence> occurrencesOf(Analysis& analysis, const Entity& entity);

/// The node that declares an entity, the first if there are several; noNode when there is none.
NodeId declarationOf(Analysis& analysis, const Entity& entity);

/// A declaration as one would write it: "int a[3]", "double area(double width, double height)".
/// The node is a function, declarator or parameter.
std::string declarationText(Analysis& analysis, NodeId id);

/// The parameters of a function as one would write them.
std::vector<std::string> parameterTexts(Analysis& analysis, NodeId function);

/// The edits that give an entity another name, in order. Throws std::invalid_argument, with the
/// reason, when the name is none, is taken, or would not be accepted.
std::vector<Check::Edit> renamed(Analysis& analysis, const Entity& entity, const std::string& name);

}  // namespace krel::Lsp
