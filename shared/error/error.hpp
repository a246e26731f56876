#pragma once

#include <string>
#include <string_view>

/// The one channel for faults in the user's program: formats a line per fault on standard error,
/// counts it, and returns; the driver decides at its checkpoints whether to go on. Process-wide,
/// since one process compiles one file. Faults of the compiler itself do not come here.
class Error {
public:
    Error() = delete;

    /// Remembers the part of `path` after its last '/' or '\' as the name shown in diagnostics.
    static void setSourceFile(const std::string& path);
    /// The name set last; empty when none was set.
    static const std::string& getSourceFile();
    /// Whether anything was reported since the process began.
    static bool hasErrors();

    /// Reports a fault of the scanner. A `line` of 0 or less is left out, here and below.
    static void lexer(const std::string& message, int line);
    /// Reports a fault of the parser. The parser generator's stock text "syntax error" says
    /// nothing beyond the prefix and counts as no message.
    static void parser(const std::string& message, int line);
    /// Reports a fault of meaning; treats the stock text as `parser` does.
    static void semantic(const std::string& message, int line);

private:
    static void report(std::string_view prefix, std::string_view message, int line);

    static std::string sourceFile;
    static int errorCount;
};
