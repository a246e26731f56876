// The table of commands. Comes in: the words of the command line. Goes out: the call of the command
// that the first one names.

#include "tools/krel/commands.hpp"

#include <algorithm>
#include <string>

#include "tools/krel/help.hpp"
#include "tools/krel/report.hpp"

namespace {

constexpr const krel::Command* commands[] = {
    &krel::runCommand,    &krel::buildCommand, &krel::checkCommand, &krel::explainCommand,
    &krel::formatCommand, &krel::debugCommand, &krel::lspCommand,   &krel::helpCommand,
};

}  // namespace

std::span<const krel::Command* const> krel::allCommands() {
    return commands;
}

const krel::Command& krel::findCommand(std::string_view name) {
    const auto* const found = std::ranges::find_if(
        commands, [name](const Command* command) { return command->name == name; });
    if (found == std::end(commands)) {
        throw WrongUse("there is no command '" + std::string{name} + "'", "krel --help");
    }
    return **found;
}

int krel::runCommandLine(Words words) {
    if (words.empty()) {
        std::string text = overview();
        text.pop_back();  // a complaint ends its last line itself
        complain("a command is missing\n\n" + text);
        return wronglyUsed;
    }
    const std::string_view first = words.front();
    if (first == "-h" || first == "--help") {
        print(overview());
        return succeeded;
    }
    if (first == "--version") {
        print(version());
        return succeeded;
    }
    return findCommand(first).run(words.subspan(1));
}
