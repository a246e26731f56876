#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frontend/frontEnd.hpp"
#include "tools/check/finding.hpp"
#include "tools/check/model.hpp"

namespace krel::Check {

/// A fault that the compiler has found, with its place in the text that was compiled.
struct CompilerFault {
    std::string message;
    SourceRange range;
    int line = 0;         // that krelcc names; 0 when it names none
    bool isLast = false;  // the compilation ended there
};

/// All faults of a compilation, those behind the analysis included. The compilation must have been
/// asked for sources.
std::vector<CompilerFault> faultsOf(const FrontEnd::Compilation& compilation);

/// The rule whose page explains a message of krelcc; empty when it is none.
std::string_view ruleOfMessage(std::string_view message);

/// The message as people read it, with the tokens as they are written. `token` is the text of the
/// one that was not expected.
std::string readable(std::string_view message, std::string_view token);

/// Whether the message only follows from another fault.
bool followsFromOther(std::string_view message);

/// Of the names that may stand there, the one that resembles `name` most; empty when none does.
std::string similarName(const Model& model, FunctionId function, std::string_view name);

}  // namespace krel::Check
