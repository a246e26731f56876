#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/debug/program.hpp"
#include "tools/debug/timeline.hpp"
#include "tools/machine/machine.hpp"

namespace krel::Debug {

/// An expression that cannot be compiled or evaluated; what() says why.
class BadExpression : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What an expression is wanted for.
enum class Purpose {
    Value,
    Condition,
    Change  // an assignment, an increment or a decrement
};

/// An expression in the frame of a function. The compiler itself translates it, as a statement of a
/// small function that declares the variables of the frame which the expression names, and a
/// machine of its own runs it, checked: nothing that it does touches the program. It may call the
/// program's functions, except where conditions cannot.
class Expression {
public:
    struct Result {
        std::string text;  // as `print` writes it; of a condition `true` or `false`
        std::string type;
    };

    /// Throws BadExpression. The program must outlive the expression.
    Expression(const Program& itsProgram, std::size_t function, std::string_view text,
               Purpose itsPurpose, Execution::RuleSet allowed);
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;
    ~Expression();

    /// The value in a frame of the function. Throws BadExpression.
    Result evaluate(const Execution::Machine& machine, const Execution::CallFrame& frame);
    /// Whether a condition holds. Throws BadExpression.
    bool holds(const Execution::Machine& machine, const Execution::CallFrame& frame);
    /// Which slots a change gives other values, as edits that lack the number of the frame. Throws
    /// BadExpression.
    std::vector<Timeline::Edit> changes(const Execution::Machine& machine,
                                        const Execution::CallFrame& frame);

    /// Whether a text is a change rather than an expression, and whether it calls a function.
    static bool isChange(std::string_view text);
    static bool callsFunctions(std::string_view text);

private:
    class Source;
    class Run;

    std::unique_ptr<Run> run;
};

}  // namespace krel::Debug
