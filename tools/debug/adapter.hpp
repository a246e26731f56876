#pragma once

#include <string>

#include "tools/debug/debugger.hpp"

namespace krel::Debug {

/// How a session with a client ended.
enum class End {
    Orderly,  // the client has disconnected
    Early,    // it has gone
};

/// Serves a client by the Debug Adapter Protocol until it is done: messages come from one
/// descriptor, answers go to the other. Both belong to the caller. `path` is the program for a
/// client that names none, and `allowed` are rules that are let pass, besides those that the client
/// names. Throws std::runtime_error when the stream makes no sense any more, or when nothing can be
/// read or written.
End serve(const std::string& path, Debugger::Rules allowed, int input, int output);

}  // namespace krel::Debug
