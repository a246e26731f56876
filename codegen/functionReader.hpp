#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "codegen/irForms.hpp"
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
    std::uint32_t word = 0;  // the number of the value's name, while words are being added
    Kind kind = Kind::Word;
};

/// A line that has been read. The operands are those of the form's groups, in order; a line of no
/// form has its whole text as the only one.
struct Instruction {
    IRForm form;
    std::span<const Operand> operands;
};

/// Reads the lines of a function, each of them once: finds the values that they name, the form of
/// every line and what its operands are. What it gives out points into the lines, and is good until
/// the next function is read.
class FunctionReader {
public:
    /// Reads all lines of a function in place of those of the last one.
    void read(const IRFunction& function);

    std::size_t size() const { return forms.size(); }
    /// The instruction of a line; lines count from 0 through all blocks.
    Instruction operator[](std::size_t line) const {
        const Form& form = forms[line];
        return {form.form, {operands.data() + form.firstOperand, form.operandCount}};
    }

    /// The words of the function and what is known of their values.
    ValueTable& words() { return table; }
    const ValueTable& words() const { return table; }

    /// Finds out what the text of an operand stands for.
    Operand operandOf(std::string_view text);

private:
    struct Form {
        IRForm form;
        std::uint8_t operandCount;
        std::uint32_t firstOperand;
    };

    void readLine(std::string_view text);
    void readAnyLine(std::string_view text);
    void addWords(std::string_view text);

    ValueTable table;
    std::vector<Form> forms;
    std::vector<Operand> operands;
};
