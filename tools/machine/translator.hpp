#pragma once

#include "frontend/frontEnd.hpp"
#include "tools/machine/code.hpp"

namespace krel::Execution {

/// Translates the intermediate code of a compilation, as the code generator reads it: the same
/// forms, the same believed types, the same frames. The compilation must be complete and have its
/// sources recorded. Throws std::runtime_error for what it cannot translate.
Code translate(const FrontEnd::Compilation& compilation, const Wanted& wanted);

}  // namespace krel::Execution
