#pragma once

#include <array>
#include <csignal>

namespace krel {

/// The signals that end a process by default and that are sent on purpose, or by the system for a
/// timer, a limit or a closed pipe. Those of faults of the program itself are not among them.
inline constexpr std::array endingSignals = {SIGHUP,    SIGINT,  SIGQUIT, SIGPIPE,
                                             SIGALRM,   SIGTERM, SIGXCPU, SIGXFSZ,
                                             SIGVTALRM, SIGPROF, SIGUSR1, SIGUSR2};

}  // namespace krel
