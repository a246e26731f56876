// Faults of the compiler itself. Comes in: a message. Goes out: an exception, and in the end a line
// on standard error and an abort.

#include "shared/error/internalError.hpp"

#include <cstdlib>
#include <iostream>
#include <utility>

namespace krel {

InternalError::InternalError(const std::string& message, std::string itsDetails)
    : std::logic_error(message), shown(std::move(itsDetails)) {}

void internalError(const std::string& message) {
    throw InternalError{message};
}

void abortBecauseOf(const InternalError& error) {
    std::cerr << "Internal error: " + std::string{error.what()} + "\n";
    std::cout << error.details() << std::flush;
    std::abort();
}

}  // namespace krel
