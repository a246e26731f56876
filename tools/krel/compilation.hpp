#pragma once

#include <filesystem>
#include <string>

#include "tools/krel/installation.hpp"

/// Programs that are compiled to be executed at once.
namespace krel {

/// What is to be compiled.
struct Program {
    std::filesystem::path source;
    std::string text;        // of a program on standard input
    bool isOnInput = false;  // the source is then a file of that text, still to be written
    std::string name;        // what the program is called while it runs
};

/// The program that a word of the command line names; for "-" it is read from standard input.
/// Throws std::runtime_error when that cannot be read.
Program programNamed(const std::string& word);

/// How a compilation has ended.
struct Compiled {
    int status;      // of krelcc, as waitpid gives it
    int executable;  // its descriptor, the caller's to close, if the status is 0
};

/// Compiles by the krelcc beside krel, whose messages go to standard error. No file is left when it
/// returns, not even the executable, which is only open. A signal that would end the process ends
/// krelcc, and then the process. Throws std::runtime_error when krelcc cannot be started, or finds
/// no place for its files, or makes no executable.
Compiled compile(const Program& program, NativeCompiler native);

}  // namespace krel
