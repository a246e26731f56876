// Programs that krel executes itself. Comes in: a source. Goes out: what the program prints, a
// report when it has a fault, and its exit status.

#include "tools/krel/checkedRun.hpp"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "codegen/runtime/output.hpp"
#include "codegen/runtime/report.hpp"
#include "tools/krel/report.hpp"
#include "tools/machine/profile.hpp"
#include "tools/machine/report.hpp"
#include "tools/machine/trace.hpp"
#include "tools/machine/translator.hpp"

namespace krel {

namespace {

using Execution::Stop;
using Execution::Trap;

/// Standard output, as compiled programs have it.
class StandardOutput final : public Execution::Sink {
public:
    StandardOutput() { standardOutput.open(STDOUT_FILENO); }
    void print(std::uint64_t /*position*/, std::string_view text) override {
        standardOutput.print(text.data(), text.size());
    }
};

struct TrapRow {
    Trap trap;
    const char* message;
    int signal;
};

constexpr TrapRow trapRows[] = {
    {Trap::DivisionByZero, "integer division by zero", SIGFPE},
    {Trap::DivisionOverflow, "integer division overflow", SIGFPE},
    {Trap::StackOverflow, "stack overflow", SIGSEGV},
    {Trap::InvalidAccess, "invalid memory access", SIGSEGV},
    {Trap::OutOfMemory, "out of memory", SIGABRT},
};

/// Ends the way a compiled program does.
int endBy(Trap trap) {
    const auto* const row =
        std::ranges::find_if(trapRows, [trap](const TrapRow& each) { return each.trap == trap; });
    reportRuntimeError(row->message);
    return endBySignal(row->signal);
}

/// The stack that a compiled program has.
std::size_t stackSize() {
    constexpr std::size_t usual = std::size_t{8} << 20;
    constexpr std::size_t most = std::size_t{1} << 30;
    rlimit limit = {};
    if (getrlimit(RLIMIT_STACK, &limit) != 0) {
        return usual;
    }
    return std::min<std::size_t>(limit.rlim_cur, most);
}

bool wantsColours() {
    const char* const refused = std::getenv("NO_COLOR");
    return (refused == nullptr || *refused == '\0') && isatty(STDERR_FILENO) == 1;
}

void writeError(const std::string& text) {
    // A report that cannot be written changes nothing.
    [[maybe_unused]] const ssize_t ignored = write(STDERR_FILENO, text.data(), text.size());
}

/// Says what the compiler says about a program that it refuses.
int refuse(const FrontEnd::Compilation& compilation) {
    std::string text;
    for (const FrontEnd::Fault& fault : compilation.faults()) {
        text += fault.line + "\n";
    }
    if (compilation.outcome() == FrontEnd::Outcome::NotTranslated) {
        text += "Compilation error: " + compilation.failure() + "\n";
    } else if (compilation.outcome() == FrontEnd::Outcome::InternalError) {
        text += "Internal error: " + compilation.failure() + "\n";
    }
    writeError(text);
    return compilation.outcome() == FrontEnd::Outcome::InternalError ? faulted : failed;
}

/// Ends as the program has.
int finish(const Stop& stop, const FrontEnd::Compilation& compilation, const std::string& path,
           const Execution::Machine& machine) {
    switch (stop.reason) {
        case Stop::Reason::Trapped:
            return endBy(stop.trap);
        case Stop::Reason::Faulted:
            writeError(reportOf(compilation, path, machine, wantsColours()));
            return faulted;
        case Stop::Reason::Foreign:
            throw std::runtime_error("run: the function '" + std::string{stop.name} +
                                     "' is not in the program; only a compiled one can call it");
        case Stop::Reason::Steps:
            writeError(reportOfLimit(compilation, path, machine, wantsColours()));
            return faulted;
        case Stop::Reason::Watched:
        case Stop::Reason::Ended:
            break;
    }
    return standardOutput.hasFailed() ? failed : stop.status;
}

Stop execute(const FrontEnd::Compilation& compilation, const std::string& path,
             Execution::Machine& machine, const CheckedRun& run) {
    if (!run.traces) {
        return machine.run(run.limit);
    }
    Execution::Trace trace{compilation, path, machine, [](const std::string& line) {
                               standardOutput.flush();
                               writeError(line);
                           }};
    return trace.run(run.limit);
}

/// Writes what was counted to where it is wanted.
void tellCounts(const FrontEnd::Compilation& compilation, const std::string& path,
                const Execution::Machine& machine, const CheckedRun& run) {
    if (!run.profiles && run.coverage.empty()) {
        return;
    }
    const Execution::Profile profile{compilation, machine};
    if (run.profiles) {
        writeError(profile.asText());
    }
    if (!run.coverage.empty()) {
        std::ofstream file{run.coverage, std::ios::binary};
        file << profile.asLcov(std::filesystem::absolute(path).native());
        if (!file.flush()) {
            throw systemError("run: cannot write " + run.coverage);
        }
    }
}

}  // namespace

int runChecked(std::string text, const std::string& path, const CheckedRun& run) {
    FrontEnd::Request request;
    request.tokens = true;
    request.sources = true;
    const auto compilation = FrontEnd::compile(std::move(text), path, request);
    if (compilation->outcome() != FrontEnd::Outcome::Complete) {
        return refuse(*compilation);
    }
    Execution::Wanted wanted;
    wanted.stops = run.traces || run.limit != Execution::Machine::noLimit;
    wanted.counts = run.profiles || !run.coverage.empty();
    const Execution::Code code = translate(*compilation, wanted);
    StandardOutput output;
    Execution::Machine machine{code, {run.checks, run.allowed, stackSize()}, output};
    const Stop stop = execute(*compilation, path, machine, run);
    standardOutput.flush();
    tellCounts(*compilation, path, machine, run);
    return finish(stop, *compilation, path, machine);
}

}  // namespace krel
