#pragma once

#include <vector>

#include "shared/error/lineIndex.hpp"
#include "tools/check/finding.hpp"
#include "tools/syntax/syntaxTree.hpp"

namespace krel::Check {

/// Removes the findings that comments of the program silence. Errors stay: the compiler refuses the
/// program, whatever it says.
void silence(const Syntax::Tree& tree, const LineIndex& lines, std::vector<Finding>& findings);

}  // namespace krel::Check
