#pragma once

#include <sys/types.h>

#include <csignal>

namespace krel {

/// As long as it lives, signals that would end the process wait, and take effect when it is
/// destroyed: for work that has to be undone in any case. Signals that are ignored or blocked
/// already stay so. Objects that undo the work have to be destroyed before this one.
class HeldSignals {
public:
    HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals();

    /// The signals that were blocked before, as a child has to have them.
    const sigset_t& blockedBefore() const { return before; }

    /// Waits until a child has ended, and returns its status as waitpid gives it. When a signal
    /// arrives that would end this process, the child gets it, too; it is killed when that does not
    /// end it within three seconds. Throws std::runtime_error when there is no such child.
    int waitFor(pid_t child) const;

private:
    sigset_t held;
    sigset_t before;
    struct sigaction childBefore;
};

}  // namespace krel
