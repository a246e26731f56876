#pragma once

namespace CompilerDriver {

/// Takes the numbers of those of the standard streams that were closed when the process began, so
/// that no file that it opens gets one of them, and messages end up in it. Reading and writing them
/// goes on failing as it does with a closed descriptor, and child processes find them closed. To be
/// called before anything is opened.
void occupyClosedStandardStreams();

}  // namespace CompilerDriver
