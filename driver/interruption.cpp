// Signals that end the compiler. The handler uses nothing but system calls and what is declared
// here. Signals are held back while that changes, and while a file or a child is made. So the
// handler always finds it complete.

#include "driver/interruption.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <ctime>

#include "shared/process/endingSignals.hpp"

namespace CompilerDriver {

namespace {

std::atomic<pid_t> compiler = 0;  // the process that has something to undo
std::atomic<DoomedFile*> doomedFiles = nullptr;
std::atomic<pid_t> childProcess = 0;

/// The signal that ends a native compiler as `signal` ends this one. Native compilers delete their
/// own temporary files at these four only; any other one would leave them behind.
int signalForChild(int signal) {
    const bool isCleanedUpAfter =
        signal == SIGHUP || signal == SIGINT || signal == SIGPIPE || signal == SIGTERM;
    return isCleanedUpAfter ? signal : SIGTERM;
}

/// Passes the signal on and waits until the child is gone. A child that has been waited for already
/// is left alone: its number may be another process's by now.
void endChild(int signal) {
    const pid_t child = childProcess;
    if (child == 0 || waitpid(child, nullptr, WNOHANG) != 0) {
        return;
    }
    kill(child, signalForChild(signal));
    constexpr timespec pause = {0, 10'000'000};
    for (int pauses = 0; pauses < 100; ++pauses) {
        if (waitpid(child, nullptr, WNOHANG) != 0) {
            return;
        }
        nanosleep(&pause, nullptr);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : krel::endingSignals) {
        sigaddset(&signals, signal);
    }
    return signals;
}

}  // namespace

/// The handler. The signal that it raises arrives when it returns, and ends the process. The
/// process may also be a child that has not become the native compiler yet: until then it has the
/// handlers of its parent, but nothing to undo.
void undoAndEnd(int signal) {
    if (getpid() == compiler) {
        endChild(signal);
        for (const DoomedFile* file = doomedFiles; file != nullptr; file = file->next) {
            unlink(file->path);
        }
    }
    std::signal(signal, SIG_DFL);
    raise(signal);
}

namespace {

/// Sets the handler for the watched signals that still have their default action.
void watchSignals() {
    if (compiler == getpid()) {
        return;
    }
    compiler = getpid();
    struct sigaction action = {};
    action.sa_handler = undoAndEnd;
    action.sa_mask = watchedSignals();
    for (const int signal : krel::endingSignals) {
        struct sigaction before = {};
        sigaction(signal, &action, &before);
        if (before.sa_handler != SIG_DFL) {
            sigaction(signal, &before, nullptr);
        }
    }
}

}  // namespace

SignalsHeld::SignalsHeld() {
    const sigset_t signals = watchedSignals();
    sigprocmask(SIG_BLOCK, &signals, &before);
}

SignalsHeld::~SignalsHeld() {
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

void SignalsHeld::releaseInChild() const {
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

DoomedFile::DoomedFile(const char* itsPath) : path(itsPath), next(doomedFiles) {
    watchSignals();
    doomedFiles = this;
}

DoomedFile::~DoomedFile() {
    if (doomedFiles == this) {
        doomedFiles = next;
        return;
    }
    DoomedFile* newer = doomedFiles;
    while (newer->next != this) {
        newer = newer->next;
    }
    newer->next = next;
}

void setChild(pid_t child) {
    watchSignals();
    childProcess = child;
}

}  // namespace CompilerDriver
