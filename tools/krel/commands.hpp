#pragma once

#include <span>
#include <string_view>

/// The commands of krel. Each is a file of its own, with its texts, its options and its function,
/// and a row in the table.
namespace krel {

/// Words of the command line; they live as long as the process.
using Words = std::span<char* const>;

/// One command, as its file defines it.
struct Command {
    std::string_view name;
    std::string_view summary;  // half a line, for the list of all commands
    std::string_view help;     // examples first, then the usage; the options are added to it

    /// Does what the words behind the command's name say; returns the exit status. Throws WrongUse,
    /// and other exceptions derived from std::exception for what cannot be done.
    int (*run)(Words words);
};

extern const Command runCommand;
extern const Command buildCommand;
extern const Command checkCommand;
extern const Command explainCommand;
extern const Command formatCommand;
extern const Command lspCommand;
extern const Command debugCommand;
extern const Command helpCommand;

/// All commands, in the order in which people are told of them.
std::span<const Command* const> allCommands();

/// The command of that name. Throws WrongUse when there is none.
const Command& findCommand(std::string_view name);

/// What krel does for the words behind its own name; returns and throws what Command::run does.
int runCommandLine(Words words);

}  // namespace krel
