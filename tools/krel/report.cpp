// Comes in: texts for the user. Goes out: the same on the standard streams, not buffered, so that
// nothing is left behind when the process becomes another program.

#include "tools/krel/report.hpp"

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace {

/// False, with errno set, when not all of it can be written.
bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::runtime_error krel::systemError(const std::string& what) {
    const int number = errno;
    return std::runtime_error(what + ": " + std::strerror(number));
}

void krel::print(std::string_view text) {
    if (!writeAll(STDOUT_FILENO, text)) {
        throw systemError("cannot write to standard output");
    }
}

int krel::endBySignal(int number) {
    constexpr rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    std::signal(number, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, number);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    raise(number);
    return failed;
}

/// In one piece, so that lines of processes that run at the same time stay whole.
void krel::complain(std::string_view line) {
    writeAll(STDERR_FILENO, std::string{"krel: "}.append(line).append("\n"));
}
