#pragma once

#include <string>
#include <vector>

#include "native/instructionSet.hpp"

namespace krel::Native {

/// Operands of one kind as they are written: all registers, and numbers around every size at which
/// something changes. `kind` is one bit. What is an imm8 is no example of an imm32.
std::vector<std::string> operandsOf(OperandKind kind);

/// All that instructions are given as operands. The first is the empty text: no operand.
std::vector<std::string> allOperands();

/// An instruction as a line of text, with its tab and its line feed.
std::string lineOf(std::string_view mnemonic, const std::string& first, const std::string& second);

/// The instances of a row of the table: every operand that it admits with every other one.
std::vector<std::string> instancesOf(const InstructionForm& form);

/// The instances of all rows.
std::vector<std::string> allInstances();

/// Puts lines into a program that `as` takes: there is data for them to refer to.
std::string programOf(const std::vector<std::string>& lines);

}  // namespace krel::Native
