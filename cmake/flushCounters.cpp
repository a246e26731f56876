// Linked into every program of a build that counts executed lines. The counters are written when a
// process exits; these ways to end, or to become another program, would lose them.

#include <csignal>

extern "C" {

void __gcov_dump();
void __gcov_reset();
[[noreturn]] void __real__exit(int status);
[[noreturn]] void __wrap__exit(int status);
int __real_fexecve(int descriptor, char* const* arguments, char* const* environment);
int __wrap_fexecve(int descriptor, char* const* arguments, char* const* environment);

/// Stands for _exit, by an option of the linker.
void __wrap__exit(int status) {
    __gcov_dump();
    __real__exit(status);
}

/// Stands for fexecve in the same way. When that fails, counting begins anew.
int __wrap_fexecve(int descriptor, char* const* arguments, char* const* environment) {
    __gcov_dump();
    const int result = __real_fexecve(descriptor, arguments, environment);
    __gcov_reset();
    return result;
}
}

namespace {

void dumpCounters(int /*signal*/) {
    __gcov_dump();
}

// abort() goes on to end the process when the handler returns.
[[maybe_unused]] const auto previousHandler = std::signal(SIGABRT, dumpCounters);

}  // namespace
