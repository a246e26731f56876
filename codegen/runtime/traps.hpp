// How a program ends against its will: by a fault of the machine, or because memory is exhausted.
#pragma once

#include <cstdint>

namespace krel {

/// Makes the signals of faults flush the output and say what happened before they end the program
/// the way they always do. `stackEnd` is the address above the main stack's frames.
void catchTraps(std::uintptr_t stackEnd);

/// Flushes the output, reports that memory is exhausted and ends the program by SIGABRT.
[[noreturn]] void endOutOfMemory();

}  // namespace krel
