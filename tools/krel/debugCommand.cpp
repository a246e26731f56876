// The command `krel debug`. Comes in: its words, a program, and what a person or an editor wants.
// Goes out: a session, in which the program runs.

#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

#include "tools/debug/adapter.hpp"
#include "tools/debug/terminal.hpp"
#include "tools/files/sourceFiles.hpp"
#include "tools/krel/commands.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"

namespace krel {

namespace {

/// The rules of a checked run that are let pass. Throws WrongUse for what is none.
Execution::RuleSet rulesNamed(const std::vector<std::string>& names) {
    Execution::RuleSet rules;
    for (const std::string& name : names) {
        const auto rule = Execution::ruleNamed(name);
        if (name == "all") {
            rules.addAll();
        } else if (rule) {
            rules.add(*rule);
        } else {
            throw WrongUse("debug: there is no rule '" + name + "'", "krel help debug");
        }
    }
    return rules;
}

int talk(const std::string& path, Execution::RuleSet allowed) {
    try {
        const auto program = Debug::load(readSource(path), path);
        Debug::talk(*program, allowed, STDIN_FILENO, STDOUT_FILENO);
    } catch (const Debug::NotAProgram& fault) {
        complain("debug: " + path + " cannot be run:\n" + fault.what());
        return failed;
    }
    return succeeded;
}

int debug(Words words) {
    CLI::App app;
    bool isTerminal = false;
    std::string path;
    std::vector<std::string> allowed;
    app.add_flag("--tty", isTerminal,
                 "Take commands from standard input, for use without an editor");
    app.add_option("--allow", allowed, "Let the faults of a rule pass, or of all")
        ->type_name("RULE,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("PROGRAM.krl", path);
    if (!readWithoutRest(app, debugCommand, words)) {
        return succeeded;
    }
    const Execution::RuleSet rules = rulesNamed(allowed);
    if (isTerminal) {
        if (path.empty()) {
            throw WrongUse("debug: PROGRAM.krl is missing", "krel help debug");
        }
        return talk(path, rules);
    }
    // An editor that has gone is a failure like others, which is told.
    std::signal(SIGPIPE, SIG_IGN);
    return Debug::serve(path, rules, STDIN_FILENO, STDOUT_FILENO) == Debug::End::Orderly ? succeeded
                                                                                         : failed;
}

}  // namespace

constexpr Command debugCommand = {
    "debug",
    "Runs a program step by step, forward and back, for an editor or on a terminal",
    "Runs a program step by step, forward and back: breakpoints, variables, calls. It is checked\n"
    "on the way, and stops where it has a fault.\n"
    "\n"
    "Examples:\n"
    "  krel debug --tty hello.krl     takes commands; `help` lists them\n"
    "  krel debug                     the command that an editor is told to start\n"
    "\n"
    "Usage: krel debug [OPTIONS] [PROGRAM.krl]\n"
    "\n"
    "Without --tty it serves an editor by the Debug Adapter Protocol: messages come on standard\n"
    "input, answers go to standard output. PROGRAM.krl is then what is launched when the editor\n"
    "names no other program.\n"
    "\n"
    "The exit status is 0, or 1 when the program cannot be run or the editor has gone.\n",
    debug,
};

}  // namespace krel
