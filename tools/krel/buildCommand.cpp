// The command `krel build`. Comes in: its words. Goes out: nothing but another program: the process
// becomes krelcc, so that messages, signals and the exit status are that one's own.

#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

#include "tools/krel/commands.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"

namespace krel {

namespace {

/// The first argument is the program's path. Returns only by an exception.
[[noreturn]] void become(std::vector<std::string> arguments, Environment environment) {
    execve(arguments.front().c_str(), pointersTo(arguments).data(), environment.pointers().data());
    throw systemError("cannot start " + arguments.front());
}

int build(Words words) {
    CLI::App app;
    std::string program;
    std::string output;
    NativeCompiler native = NativeCompiler::own;
    app.add_option("PROGRAM.krl", program)->required();
    const CLI::Option* const outputOption =
        app.add_option("-o", output, "Name the executable; else it is named like the program")
            ->type_name("OUTPUT");
    addNativeOption(app, native);
    if (!readWithoutRest(app, buildCommand, words)) {
        return succeeded;
    }
    if (program == "-") {
        throw WrongUse("build: only 'krel run' reads a program from standard input",
                       "krel help run");
    }
    const std::string krelcc = krelccPath();
    std::vector<std::string> arguments = {krelcc, asSource(program)};
    if (!outputOption->empty()) {
        arguments.insert(arguments.end(), {"-o", output});
    }
    become(std::move(arguments), krelccEnvironment(krelcc, native));
}

}  // namespace

constexpr Command buildCommand = {
    "build",
    "Compiles a program to an executable",
    "Compiles a program to an executable.\n"
    "\n"
    "Examples:\n"
    "  krel build hello.krl             makes the executable hello, beside hello.krl\n"
    "  krel build hello.krl -o bin/hi   makes bin/hi\n"
    "\n"
    "Usage: krel build [OPTIONS] PROGRAM.krl\n"
    "\n"
    "Messages and exit status are those of the compiler, krelcc: 0, or 1 for a program with\n"
    "faults.\n",
    build,
};

}  // namespace krel
