#pragma once

#include <cstdint>
#include <string>

#include "tools/machine/machine.hpp"

namespace krel {

/// How a program is executed by krel itself.
struct CheckedRun {
    Execution::RuleSet allowed;
    bool checks = true;
    std::uint64_t limit = Execution::Machine::noLimit;  // steps
    bool traces = false;                                // each line, on standard error
    bool profiles = false;                              // at the end, on standard error
    std::string coverage;                               // the file for lcov; empty for none
};

/// The exit status after a fault: that of a program that was aborted.
inline constexpr int faulted = 134;

/// Runs a program without compiling it. What it prints goes to standard output; `path` is how
/// messages call its source. Returns its exit status, `failed` for a program that the compiler
/// refuses, or `faulted`; a program that is ended by a signal when it is compiled ends krel by it.
/// Throws std::runtime_error for what cannot be done here.
int runChecked(std::string text, const std::string& path, const CheckedRun& run);

}  // namespace krel
