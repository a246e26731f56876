#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// What krel says of its own, and how it ends.
namespace krel {

/// The exit statuses of krel's own. Those of krelcc and of programs are handed on as they are.
enum ExitStatus : int {
    succeeded = 0,
    failed = 1,      // what was asked for could not be done; standard error says why
    wronglyUsed = 2  // the command line is wrong, nothing was done
};

/// A command line that krel cannot follow; what() is the line for the user.
class WrongUse : public std::runtime_error {
public:
    /// What is wrong, and the words that print the help on it, such as "krel help run".
    WrongUse(const std::string& fault, const std::string& help)
        : std::runtime_error(fault + "; see '" + help + "'") {}
};

/// An exception that says what could not be done, and the system's reason (errno) for it.
std::runtime_error systemError(const std::string& what);

/// Writes a text to standard output. Throws std::runtime_error when it cannot be written.
void print(std::string_view text);

/// Ends the process by a signal, of which no core is dumped. Returns a status only if the system
/// does not let the signal through.
int endBySignal(int number);

/// Writes a line to standard error, after krel's name.
void complain(std::string_view line);

}  // namespace krel
