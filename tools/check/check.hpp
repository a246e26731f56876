#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/check/finding.hpp"

/// Finds what is wrong with a program, all at once, and repairs what can be repaired. What is Krel
/// is decided by the compiler's own passes.
namespace krel::Check {

/// What a check has found.
struct Report {
    bool accepted = false;          // krelcc makes an executable of the text
    std::vector<Finding> findings;  // in the order of their places
    std::string fixed;              // the text with all repairs, laid out if anything was repaired
    std::vector<Edit> edits;        // the repairs, in order, before they were laid out
    bool fixedIsAccepted = false;
};

/// Whether the repairs contain guesses at what is meant: `==` for the `=` of a condition.
enum class Guesses : std::uint8_t { Left, Taken };

/// Checks a text of less than two gigabytes, whose name stands in no result. Takes time in
/// proportion to it. Throws what FrontEnd::compile throws.
///
/// - A program that is accepted has no errors, one that is refused has at least one at the line
///   that krelcc names.
/// - Comments silence warnings and hints: `# krel: allow(RULE, ...)` in a line, or alone in the
///   line before it, `# krel: allow-file(RULE, ...)` in the whole file.
/// - Statements that cannot be read, and those that only their author can write anew, stay as they
///   are in the repaired text.
Report check(const std::string& text, const std::string& name, Guesses guesses = Guesses::Left);

}  // namespace krel::Check
