#pragma once

#include <span>

#include "tools/check/ruleBook.hpp"

namespace krel::Execution {

/// The pages of the rules of checked runs, in the order of their names.
std::span<const Check::RulePage> rulePages();

}  // namespace krel::Execution
