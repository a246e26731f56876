#pragma once

#include <stdexcept>
#include <string>

namespace krel {

/// A fault of the compiler itself: a tree or a symbol of a shape that no source can give, or one
/// that an earlier pass should have refused. It does not count among the faults of the program.
/// Only a caller that can do without the compilation should handle it; `main` aborts.
class InternalError : public std::logic_error {
public:
    /// `itsDetails` is shown besides the message, if there is something to show.
    explicit InternalError(const std::string& message, std::string itsDetails = {});

    const std::string& details() const { return shown; }

private:
    std::string shown;
};

/// Throws an InternalError.
[[noreturn]] void internalError(const std::string& message);

/// Writes "Internal error: " and the message as a line on standard error, the details on standard
/// output, and aborts the process.
[[noreturn]] void abortBecauseOf(const InternalError& error);

}  // namespace krel
