// The command `krel run`. Comes in: its words, and perhaps a program on standard input. Goes out:
// the process becomes the program, so that terminal, signals, process number and exit status are
// the program's own. By then the executable has no name any more: what is open is executed.

#include <sys/resource.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include "tools/krel/commands.hpp"
#include "tools/krel/compilation.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/privateDirectory.hpp"
#include "tools/krel/report.hpp"

namespace krel {

namespace {

/// Ends as krelcc has: with its exit status, or by the signal that ended it, of which no second
/// core is dumped.
int endLike(int status) {
    if (!WIFSIGNALED(status)) {
        return WEXITSTATUS(status);
    }
    const int number = WTERMSIG(status);
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

/// Why an executable could not be executed.
std::runtime_error explainFailedStart(const std::string& name, int executable) {
    const int number = errno;
    struct statvfs place = {};
    if (number == EACCES && fstatvfs(executable, &place) == 0 && (place.f_flag & ST_NOEXEC) != 0) {
        return std::runtime_error("cannot run " + name + ": no program may be executed in " +
                                  temporaryPlace().native() + "; let TMPDIR name another place");
    }
    errno = number;
    return systemError("cannot run " + name);
}

/// The first argument is the program's name. Returns only by an exception.
[[noreturn]] void become(int executable, std::vector<std::string> arguments) {
    fexecve(executable, pointersTo(arguments).data(), environ);
    throw explainFailedStart(arguments.front(), executable);
}

int run(Words words) {
    CLI::App app;
    NativeCompiler native = NativeCompiler::own;
    addNativeOption(app, native);
    app.prefix_command();  // the options end where the program is named
    auto rest = readOptions(app, runCommand, words);
    if (!rest) {
        return succeeded;
    }
    if (rest->empty()) {
        throw WrongUse("run: PROGRAM.krl is missing", "krel help run");
    }
    const Program program = programNamed(rest->front());
    const Compiled compiled = compile(program, native);
    if (compiled.status != 0) {
        return endLike(compiled.status);
    }
    rest->front() = program.name;
    become(compiled.executable, std::move(*rest));
}

}  // namespace

constexpr Command runCommand = {
    "run",
    "Compiles a program and runs it",
    "Compiles a program and runs it. Nothing is left behind, and nothing but the program's own\n"
    "output is printed.\n"
    "\n"
    "Examples:\n"
    "  krel run hello.krl                     runs the program in hello.krl\n"
    "  krel run - < hello.krl                 runs the program on standard input\n"
    "  krel run --native=system hello.krl     lets gcc or clang assemble and link\n"
    "\n"
    "Usage: krel run [OPTIONS] PROGRAM.krl [ARGUMENT...]\n"
    "\n"
    "All that follows PROGRAM.krl are arguments of the program. The exit status is the program's,\n"
    "or that of the compiler, krelcc, for a program with faults: 1.\n",
    run,
};

}  // namespace krel
