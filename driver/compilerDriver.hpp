#pragma once

#include <filesystem>
#include <iosfwd>

/// The program around the passes: command line, order of the passes and their checkpoints, files,
/// exit codes.
namespace CompilerDriver {

struct Options {
    std::filesystem::path source;  // as written on the command line
    std::filesystem::path output;  // the executable
    bool dumpParserAst = false;
    bool dumpSemanticAst = false;
    bool dumpIr = false;
    bool dumpAssembly = false;
};

/// Reads the command line into `options`. False for a usage error; `options` is then of no use.
bool parseOptions(int argc, char** argv, Options& options);

/// Writes the usage text for a program of that name.
void printUsage(const char* program, std::ostream& out);

/// Compiles one source file; once per process. Returns the process's exit code: 0, or 1 after a
/// message on standard error, or the status of the native compiler when that fails. `argv0` is the
/// program's name as it was started.
int compile(const Options& options, const char* argv0);

}  // namespace CompilerDriver
