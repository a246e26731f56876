#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "frontend/frontEnd.hpp"
#include "tools/debug/lineMap.hpp"
#include "tools/machine/code.hpp"

/// The debugger: runs a program on the machine that executes intermediate code, stops it where one
/// wants, goes back, and shows and changes its variables.
///
///     source -> Program -> Debugger -> adapter (editors), terminal (people)
namespace krel::Debug {

/// A program that cannot be run; what() has all that the compiler says, without a line feed at the
/// end.
class NotAProgram : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A program that can be run.
struct Program {
    std::string path;  // as it is shown
    std::unique_ptr<FrontEnd::Compilation> compilation;
    Execution::Code code;
    LineMap lines;

    /// The number of a function; nothing when there is none of that name.
    std::optional<std::size_t> functionNamed(std::string_view name) const;
    /// Its first line of the intermediate code behind the parameters.
    std::size_t bodyOf(std::size_t function) const {
        return lines.bodyFrom(code.functions[function].firstLine);
    }
    /// Whether a name of a function is one of its variables, declared or not: neither a temporary
    /// of the compiler nor the function itself.
    bool isVisible(std::size_t function, const Execution::Variable& variable) const;
    /// The variable of that name; null when there is none.
    const Execution::Variable* variable(std::size_t function, std::string_view name) const;
    /// The text of a line of the intermediate code.
    std::string_view irText(std::size_t irLine) const;
};

/// Compiles a text. Throws NotAProgram, and std::length_error for a text that is too long.
std::unique_ptr<const Program> load(std::string text, const std::string& path);

}  // namespace krel::Debug
