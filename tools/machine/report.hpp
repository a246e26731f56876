#pragma once

#include <string>

#include "frontend/frontEnd.hpp"
#include "tools/machine/machine.hpp"

namespace krel::Execution {

/// The fault that a machine has stopped at, as people read it: the place, the line with the range
/// underlined, the help, and the calls that have led there. `path` is the source's, as it is shown.
std::string reportOf(const FrontEnd::Compilation& compilation, const std::string& path,
                     const Machine& machine, bool colours);

/// The same about a program that was stopped after so many steps.
std::string reportOfLimit(const FrontEnd::Compilation& compilation, const std::string& path,
                          const Machine& machine, bool colours);

}  // namespace krel::Execution
