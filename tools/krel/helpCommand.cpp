// The command `krel help`, and the texts on krel as a whole. Comes in: the name of a command. Goes
// out: its help, on standard output.

#include <algorithm>
#include <string>

#include "tools/krel/commands.hpp"
#include "tools/krel/help.hpp"
#include "tools/krel/options.hpp"
#include "tools/krel/report.hpp"

namespace krel {

namespace {

constexpr std::string_view examples =
    "Compiles and runs programs in Krel.\n"
    "\n"
    "Examples:\n"
    "  krel run hello.krl       compiles the program and runs it\n"
    "  krel build hello.krl     compiles it to the executable hello\n"
    "  krel fmt hello.krl       lays it out in the one style\n"
    "  krel help run            tells more about a command\n"
    "\n"
    "Commands:\n";

constexpr std::string_view options =
    "\n"
    "Options:\n"
    "  -h,--help           Show this help; behind a command, the help on that\n"
    "  --version           Show the version\n";

int showHelp(Words words) {
    CLI::App app;
    std::string name;
    app.add_option("COMMAND", name);
    if (!readWithoutRest(app, helpCommand, words)) {
        return succeeded;
    }
    if (name.empty()) {
        print(overview());
        return succeeded;
    }
    std::string asked = "--help";
    char* const word = asked.data();
    return findCommand(name).run({&word, 1});
}

}  // namespace

constexpr Command helpCommand = {
    "help",
    "Shows this help, or that of a command",
    "Shows what krel or one of its commands does.\n"
    "\n"
    "Examples:\n"
    "  krel help          lists the commands\n"
    "  krel help run      tells more about one\n"
    "\n"
    "Usage: krel help [COMMAND]\n",
    showHelp,
};

std::string overview() {
    constexpr std::size_t width = 10;
    std::string text{examples};
    for (const Command* const command : allCommands()) {
        const std::size_t padding = width - std::min(width - 1, command->name.size());
        text.append("  ").append(command->name).append(padding, ' ');
        text.append(command->summary).append("\n");
    }
    return text.append(options);
}

std::string version() {
    return "krel " KREL_VERSION "\n";
}

}  // namespace krel
