#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "codegen/irForms.hpp"
#include "codegen/irText.hpp"
#include "codegen/valueTable.hpp"

namespace krel {

class IRFunction;

/// A group of a line that has been read: an operand, or a text that only the form gives a meaning.
/// Small, since functions of millions of lines keep all of theirs.
class Operand {
public:
    enum class Kind : std::uint8_t {
        Boolean,
        Integer,
        Double,
        String,
        Character,
        Element,
        Named,
        Text,    // an operator, a callee, a type, a number: no operand
        Unknown  // nothing that an operand can be
    };

    /// Undefined.
    Operand() = default;
    /// `valueNumber` is the number of the value that is named, or of the element's array; 0 when
    /// there is none.
    Operand(std::string_view text, Kind kind, std::uint32_t valueNumber = 0)
        : begin(text.data()),
          size(static_cast<std::uint32_t>(text.size())),
          numberAndKind(valueNumber << kindBits | static_cast<std::uint32_t>(kind)) {}

    /// Trimmed.
    std::string_view text() const { return {begin, size}; }
    Kind kind() const { return static_cast<Kind>(numberAndKind & ((1U << kindBits) - 1)); }
    std::uint32_t valueNumber() const { return numberAndKind >> kindBits; }

private:
    static constexpr unsigned kindBits = 4;

    const char* begin;
    std::uint32_t size;           // no line has 32 bits of characters,
    std::uint32_t numberAndKind;  // and no memory has room for 28 bits of words
};

/// A line that has been read, with as many groups as its form has, in order; one of no form has its
/// whole text as the only group.
struct Instruction {
    IRForm form;
    const Operand* groups;
};

/// Reads the lines of a function, each of them once: finds the words in them, the form of every
/// line, and what its groups are. What it gives out points into the lines.
class FunctionReader {
public:
    /// Reads all lines of a function in place of those of the last one.
    void read(const IRFunction& function);

    std::size_t size() const { return lines.size(); }
    /// The instruction of a line; lines count from 0 through all blocks. Valid until the next
    /// function is read.
    Instruction operator[](std::size_t line) const {
        return {lines[line].form, groups.get() + lines[line].firstGroup};
    }

    /// The words of the function and what is known of their values.
    ValueTable& words() { return table; }

    /// Finds out what the text of an operand stands for.
    Operand operandOf(std::string_view text, LineBreaks lineBreaks = LineBreaks::Possible) const;

private:
    struct Line {
        IRForm form;
        std::uint32_t firstGroup;
    };

    IRForm readAnyLine(std::string_view line, Operand* next);
    void addWords(std::string_view line);

    ValueTable table;
    std::vector<Line> lines;
    std::unique_ptr<Operand[]> groups;  // of all lines, in order
    std::size_t groupRoom = 0;
};

}  // namespace krel
