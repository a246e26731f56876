#pragma once

#include <memory>

#include "tools/debug/debugger.hpp"

namespace krel::Debug {

/// Debugs a program by commands, one a line, from one descriptor, and writes answers and the
/// program's output to the other. Both belong to the caller. Lines that do not come from a terminal
/// are repeated behind the prompt, so that the output alone can be read. Ends with the command
/// `quit`, or with the input. A signal SIGINT interrupts the program that is debugged. Throws
/// std::runtime_error when nothing can be read or written.
void talk(const Program& program, Debugger::Rules allowed, int input, int output);

}  // namespace krel::Debug
