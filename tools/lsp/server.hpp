#pragma once

namespace krel::Lsp {

/// How a session with a client ended.
enum class End {
    Orderly,  // the client sent `shutdown`, then `exit`
    Early,    // `exit` alone, or the client has gone
};

/// Serves a client until it is done: messages come from one descriptor, answers go to the other.
/// Both belong to the caller. Throws std::runtime_error when the stream makes no sense any more, or
/// when nothing can be read or written.
End serve(int input, int output);

}  // namespace krel::Lsp
