#pragma once

#include <string>
#include <string_view>

#include "shared/error/place.hpp"

namespace krel {

/// The one channel for faults in the user's program: the passes report here and go on, and the
/// driver decides at its checkpoints whether to stop. The reports go to the diagnostics in use.
/// Faults of the compiler itself do not come here.
class Error {
public:
    Error() = delete;

    /// Remembers the part of `path` after its last '/' or '\' as the name shown in diagnostics.
    static void setSourceFile(const std::string& path);
    /// The name set last; empty when none was set.
    static const std::string& getSourceFile();
    /// Whether anything was reported.
    static bool hasErrors();

    /// Reports a fault of the scanner. A line of 0 or less is left out, here and below.
    static void lexer(std::string_view message, const Place& place);
    /// Reports a fault of the parser. The parser generator's stock text "syntax error" says
    /// nothing beyond the prefix and counts as no message.
    static void parser(std::string_view message, const Place& place);
    /// Reports a fault of meaning; treats the stock text as `parser` does.
    static void semantic(std::string_view message, const Place& place);
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::Error;
