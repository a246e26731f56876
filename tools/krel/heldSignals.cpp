// Signals while something has to be undone. Comes in: signals. Goes out: the same ones later, to
// this process, and at once to a child. No handler is needed: the signals are blocked, and whoever
// waits for the child waits for them as well.

#include "tools/krel/heldSignals.hpp"

#include <sys/wait.h>

#include <cerrno>
#include <ctime>
#include <optional>

#include "shared/process/endingSignals.hpp"
#include "tools/krel/report.hpp"

namespace krel {

namespace {

bool isDefault(int signal) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_DFL;
}

/// Blocked signals are kept even if they are ignored, and blocked ones would arrive at waitFor: so
/// only those that would end the process are taken.
sigset_t signalsToHold(const sigset_t& blocked) {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : endingSignals) {
        if (isDefault(signal) && sigismember(&blocked, signal) == 0) {
            sigaddset(&signals, signal);
        }
    }
    return signals;
}

/// The child's status once it has ended.
std::optional<int> statusOf(pid_t child, int flags) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(child, &status, flags);
    } while (ended < 0 && errno == EINTR);
    if (ended < 0) {
        throw systemError("cannot wait for krelcc");
    }
    return ended == child ? std::optional{status} : std::nullopt;
}

/// krelcc waits a second for the native compiler before it kills that; it is given time for this.
int end(pid_t child, int signal) {
    kill(child, signal);
    constexpr timespec pause = {0, 10'000'000};
    sigset_t children;
    sigemptyset(&children);
    sigaddset(&children, SIGCHLD);
    for (int pauses = 0; pauses < 300; ++pauses) {
        if (const auto status = statusOf(child, WNOHANG)) {
            return *status;
        }
        sigtimedwait(&children, nullptr, &pause);
    }
    kill(child, SIGKILL);
    return *statusOf(child, 0);
}

}  // namespace

/// Where SIGCHLD is ignored, the system would keep no status of a child.
HeldSignals::HeldSignals() {
    struct sigaction byDefault = {};
    byDefault.sa_handler = SIG_DFL;
    sigaction(SIGCHLD, &byDefault, &childBefore);
    sigprocmask(SIG_BLOCK, nullptr, &before);
    held = signalsToHold(before);
    sigset_t blocked = held;
    sigaddset(&blocked, SIGCHLD);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
}

HeldSignals::~HeldSignals() {
    sigaction(SIGCHLD, &childBefore, nullptr);
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

int HeldSignals::waitFor(pid_t child) const {
    sigset_t awaited = held;
    sigaddset(&awaited, SIGCHLD);
    while (true) {
        if (const auto status = statusOf(child, WNOHANG)) {
            return *status;
        }
        const int signal = sigwaitinfo(&awaited, nullptr);
        if (signal > 0 && signal != SIGCHLD) {
            const int status = end(child, signal);
            raise(signal);  // and waits again
            return status;
        }
    }
}

}  // namespace krel
