#include "shared/error/internalError.hpp"

#include <cstdlib>
#include <iostream>

void writeInternalError(const std::string& message) {
    std::cerr << "Internal error: " + message + "\n";
}

void internalError(const std::string& message) {
    writeInternalError(message);
    std::abort();
}
