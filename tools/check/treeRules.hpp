#pragma once

#include <vector>

#include "tools/check/finding.hpp"
#include "tools/check/model.hpp"

namespace krel::Check {

/// Finds what the compiler accepts and people should know of: the classic faults that the language
/// leaves to its users, and words that do something else than they seem to say.
void findInTree(const Model& model, std::vector<Finding>& findings);

}  // namespace krel::Check
