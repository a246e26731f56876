// The command `krel run`. Comes in: its words, and perhaps a program on standard input. Goes out:
// the process becomes the program, so that terminal, signals, process number and exit status are
// the program's own. By then the executable has no name any more: what is open is executed.

#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "tools/files/sourceFiles.hpp"
#include "tools/krel/checkedRun.hpp"
#include "tools/krel/commands.hpp"
#include "tools/krel/compilation.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/privateDirectory.hpp"
#include "tools/krel/report.hpp"
#include "tools/krel/standardInput.hpp"

namespace krel {

namespace {

/// Ends as krelcc has: with its exit status, or by the signal that ended it.
int endLike(int status) {
    return WIFSIGNALED(status) ? endBySignal(WTERMSIG(status)) : WEXITSTATUS(status);
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

/// The options that make krel execute the program itself.
struct CheckedOptions {
    bool checked = false;
    std::vector<std::string> allowed;
    CheckedRun run;

    /// Whether krel executes the program: any of the options is for that.
    bool wantsMachine() const {
        return checked || !allowed.empty() || run.traces || run.profiles || !run.coverage.empty() ||
               run.limit != Execution::Machine::noLimit;
    }
};

void addOptions(CLI::App& app, CheckedOptions& options) {
    app.add_flag("--checked", options.checked, "Stop at the first fault, and say what it is");
    app.add_option("--allow", options.allowed, "Let the faults of a rule pass, or of all")
        ->type_name("RULE,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("--limit", options.run.limit, "Stop after so many steps")->type_name("STEPS");
    app.add_flag("--trace", options.run.traces, "Show each line that runs, and what it changes");
    app.add_flag("--profile", options.run.profiles, "Show at the end how often each line has run");
    app.add_option("--coverage", options.run.coverage, "Write the same for lcov")
        ->type_name("FILE");
}

CheckedRun settingsOf(const CheckedOptions& options) {
    CheckedRun settings = options.run;
    for (const std::string& name : options.allowed) {
        const auto rule = Execution::ruleNamed(name);
        if (name == "all") {
            settings.checks = false;
        } else if (rule) {
            settings.allowed.add(*rule);
        } else {
            throw WrongUse("run: there is no rule '" + name + "'", "krel help run");
        }
    }
    return settings;
}

int runByMachine(const std::string& word, const CheckedRun& settings) {
    if (word == "-") {
        return runChecked(readStandardInput(), "stdin.krl", settings);
    }
    return runChecked(readSource(word), word, settings);
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
    CheckedOptions options;
    addOptions(app, options);
    app.prefix_command();  // the options end where the program is named
    auto rest = readOptions(app, runCommand, words);
    if (!rest) {
        return succeeded;
    }
    if (rest->empty()) {
        throw WrongUse("run: PROGRAM.krl is missing", "krel help run");
    }
    if (options.wantsMachine()) {
        return runByMachine(rest->front(), settingsOf(options));
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
    "  krel run --checked hello.krl           executes it, and stops at the first fault\n"
    "  krel run --allow=overflow hello.krl    the same, but lets numbers wrap around\n"
    "\n"
    "Usage: krel run [OPTIONS] PROGRAM.krl [ARGUMENT...]\n"
    "\n"
    "All that follows PROGRAM.krl are arguments of the program. The exit status is the program's,\n"
    "or that of the compiler, krelcc, for a program with faults: 1. With --checked, or one of the\n"
    "options that are listed behind it, the program is executed without being compiled; at a "
    "fault\n"
    "the exit status is 134. `krel explain RULE` tells more about a fault.\n",
    run,
};

}  // namespace krel
