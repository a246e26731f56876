#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "codegen/irForms.hpp"
#include "codegen/irText.hpp"
#include "codegen/valueTable.hpp"

class IRFunction;

/// A group of a line: an operand, or a word that only its form gives a meaning.
struct Operand {
    enum class Kind : std::uint8_t {
        Boolean,
        Integer,
        Double,
        String,
        Character,
        Element,
        Named,
        Word,  // or operator: means something only to the form
        Unknown
    };

    std::string_view text;   // trimmed
    Value* value = nullptr;  // of the name or of the element's array; null when it has none
    Kind kind = Kind::Word;
};

/// A line that has been read. Its operands are the form's groups, in order; a line of no form has
/// its whole text as the only one.
struct Instruction {
    IRForm form;
    std::span<const Operand> operands;
};

/// An operand in little space: functions of millions of lines keep all of theirs.
class PackedOperand {
public:
    PackedOperand() = default;
    /// `word` is the number of the value's name or of the element's array; 0 when it has no value.
    PackedOperand(std::string_view text, Operand::Kind kind, std::uint32_t word = 0)
        : begin(text.data()),
          size(static_cast<std::uint32_t>(text.size())),
          wordAndKind(word << kindBits | static_cast<std::uint32_t>(kind)) {}

    std::string_view text() const { return {begin, size}; }
    Operand::Kind kind() const {
        return static_cast<Operand::Kind>(wordAndKind & ((1U << kindBits) - 1));
    }
    std::uint32_t word() const { return wordAndKind >> kindBits; }

private:
    static constexpr unsigned kindBits = 4;

    const char* begin = nullptr;
    std::uint32_t size = 0;         // no line has 32 bits of characters,
    std::uint32_t wordAndKind = 0;  // and no memory has room for 28 bits of words
};

/// Reads the lines of a function, each of them once: finds the values that they name, the form of
/// every line and what its operands are. What it gives out points into the lines.
class FunctionReader {
public:
    /// Reads all lines of a function in place of those of the last one.
    void read(const IRFunction& function);

    std::size_t size() const { return lines.size(); }
    /// The instruction of a line, good until the next one is asked for; lines count from 0 through
    /// all blocks.
    Instruction operator[](std::size_t line);

    /// The words of the function and what is known of their values.
    ValueTable& words() { return table; }

    /// Finds out what the text of an operand stands for.
    Operand operandOf(std::string_view text, LineBreaks lineBreaks = LineBreaks::Possible);

private:
    struct Line {
        IRForm form;
        std::uint8_t groupCount;
        std::uint32_t firstGroup;
    };

    void readLine(std::string_view text);
    void readAnyLine(std::string_view text);
    void addWords(std::string_view text);

    ValueTable table;
    std::vector<Line> lines;
    std::vector<PackedOperand> groups;
    std::array<Operand, 4> current;  // the operands of the line asked for last
};
