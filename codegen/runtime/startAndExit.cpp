// What runs before the program's main and after it. The C start-up code calls both by way of the
// initialisation and termination arrays, so that no function of the C library is needed: not even
// atexit, which a Krel program may define.

#include <cstdint>

#include "codegen/runtime/output.hpp"
#include "codegen/runtime/stringHeap.hpp"
#include "codegen/runtime/systemCalls.hpp"
#include "codegen/runtime/traps.hpp"

namespace krel {

namespace {

/// The arguments lie above every frame of the main stack, just where the kernel put them.
void start(int, char** arguments, char**) {
    constexpr int standardOutputDescriptor = 1;
    standardOutput.open(standardOutputDescriptor);
    const auto endOfStack = reinterpret_cast<std::uintptr_t>(arguments);
    stringHeap.open(endOfStack);
    catchTraps(endOfStack);
}

void finish() {
    standardOutput.flush();
    if (standardOutput.hasFailed()) {
        system::exitProcess(1);
    }
}

[[gnu::section(".init_array"), gnu::used]] void (*const startEntry)(int, char**, char**) = start;
[[gnu::section(".fini_array"), gnu::used]] void (*const finishEntry)() = finish;

}  // namespace

}  // namespace krel
