// The one line on standard error that says why a program is ended.
#pragma once

namespace krel {

/// Writes "krel: runtime error: ", the two texts and a line feed to standard error, in one piece.
/// A failure to write it is not noticed.
void reportRuntimeError(const char* what, const char* detail = "");

}  // namespace krel
