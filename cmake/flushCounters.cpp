// Linked into every program of a build that counts executed lines. The counters are written when a
// process exits; these two ways to end would lose them.

#include <csignal>

extern "C" {

void __gcov_dump();
[[noreturn]] void __real__exit(int status);
[[noreturn]] void __wrap__exit(int status);

/// Stands for _exit, by an option of the linker.
void __wrap__exit(int status) {
    __gcov_dump();
    __real__exit(status);
}
}

namespace {

void dumpCounters(int /*signal*/) {
    __gcov_dump();
}

// abort() goes on to end the process when the handler returns.
[[maybe_unused]] const auto previousHandler = std::signal(SIGABRT, dumpCounters);

}  // namespace
