#pragma once

#include <string>

/// Faults of the compiler itself: a tree or a symbol of a shape that no source can give, or one
/// that an earlier pass should have refused. They are not counted and nothing goes on after them.

/// Writes "Internal error: " and `message` as a line on standard error.
void writeInternalError(const std::string& message);

/// Writes the message as `writeInternalError` does and aborts the process.
[[noreturn]] void internalError(const std::string& message);
