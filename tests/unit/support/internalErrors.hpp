#pragma once

#include <string>

#include "shared/error/internalError.hpp"

namespace krel {

/// The message of the internal error that `action` ends with.
template <typename Action>
std::string internalErrorOf(Action action) {
    try {
        action();
    } catch (const InternalError& error) {
        return error.what();
    }
    return "nothing was thrown";
}

}  // namespace krel
