#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/debug/breakpoints.hpp"
#include "tools/debug/changes.hpp"
#include "tools/debug/program.hpp"
#include "tools/debug/timeline.hpp"

namespace krel::Debug {

/// Who hears what happens while a program runs. Owned by the caller.
class Listener {
public:
    Listener() = default;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    virtual ~Listener() = default;

    /// What the program prints, once.
    virtual void print(std::string_view text) = 0;
    /// What a log point says, or what is wrong with a condition.
    virtual void log(std::string_view line) = 0;
    /// Asked again and again while the program runs. May set breakpoints.
    virtual bool wantsPause() = 0;
};

/// Ways to go on, and back.
enum class Motion : std::uint8_t {
    Continue,
    In,    // to the next line, also of a called function
    Over,  // to the next line of this function or of a caller
    Out,   // behind the call of this function
    InstructionIn,
    InstructionOver,
    BackContinue,
    BackIn,  // the ways back that lead where these lead from
    BackOver,
    BackOut,
    BackInstruction
};

/// Why the program stands where it stands.
struct Standing {
    enum class Reason : std::uint8_t {
        Step,
        Beginning,  // of the program, when it has started or cannot go further back
        Breakpoint,
        Pause,
        Fault,  // the program has one, and cannot go on; text says which
        Ended
    };

    Reason reason = Reason::Step;
    std::vector<int> breakpoints;  // their numbers
    std::string rule;              // of a fault
    std::string text;
    std::string help;
    int status = 0;  // of a program that has ended
};

/// A value as it is shown.
struct Value {
    std::string text;
    std::string type;
    const Execution::Variable* array = nullptr;  // when it is one as a whole
};

/// A program that is debugged.
class Debugger {
public:
    using Rules = Execution::RuleSet;

    /// `allowed` are the rules whose faults are let pass. Nothing runs yet. The program and the
    /// listener must outlive the debugger. Throws std::bad_alloc.
    Debugger(const Program& itsProgram, Rules itsAllowed, Listener& itsListener);

    const Program& program() const { return source; }
    const Execution::Machine& machine() const { return timeline.machine(); }

    /// Goes to the first line of main.
    Standing start();
    /// Goes on, or back, until there is a reason to stop.
    Standing move(Motion motion);
    /// Stands at the first line, and stops there if a breakpoint says so; otherwise goes on.
    Standing runFromStart();
    /// Whether the program can go on: it has started, and not ended or failed here.
    bool canGoOn() const { return isAlive; }
    bool hasStarted() const { return machine().depth() > 0 || isOver; }

    // Breakpoints. Their numbers are never used again.

    const Breakpoint& addBreakpoint(Wish wish);
    bool removeBreakpoint(int id);
    /// The breakpoints of another debugger, with their numbers, in this program.
    void takeBreakpointsOf(const Debugger& other);
    const std::vector<std::unique_ptr<Breakpoint>>& breakpoints() const { return points; }

    // Calls, 0 being the innermost.

    std::size_t callCount() const { return machine().depth(); }
    Execution::CallFrame call(std::size_t number) const { return machine().call(number); }
    /// The line of the source where a call is; its place if it is within a line.
    SourceRange partOf(std::size_t call) const;
    int lineOf(std::size_t call) const;
    const Execution::Function& functionOf(std::size_t call) const;
    /// The names of its function in the order of their declaration; undeclared ones behind them.
    std::vector<const Execution::Variable*> variablesOf(std::size_t call) const;
    /// What has changed in a call since the last stop.
    std::vector<Changes::Change> changesOf(std::size_t call) const;

    // Expressions. They throw BadExpression.

    Value evaluate(std::size_t call, std::string_view expression);
    /// Carries an assignment, an increment or a decrement out. What was known of the time behind
    /// is forgotten.
    void change(std::size_t call, std::string_view assignment);
    /// A variable, or an element of an array.
    Value valueOf(std::size_t call, const Execution::Variable& variable) const;
    Value elementOf(std::size_t call, const Execution::Variable& array, std::int32_t index) const;

private:
    struct Goal;
    class WayBack;

    Standing forward(Goal goal);
    Goal goalOf(Motion motion) const;
    void arm(const Goal& goal);
    bool isReached(Goal& goal);
    std::optional<Standing> breakpointHere(bool logs);
    Standing standingOf(const Execution::Stop& stop);
    Standing end(Standing standing);

    Standing backward(Motion motion);
    Standing backInstruction();
    Standing backToBreakpoint();
    Standing backToLine(Motion motion);
    Standing arrive(std::optional<std::uint64_t> step, std::uint64_t origin, Standing standing);

    void watchBreakpoints();
    void watchBeginnings(std::size_t function);

    const Program& source;
    const Rules allowed;
    Listener& listener;
    Timeline timeline;
    Changes changes;
    std::vector<std::unique_ptr<Breakpoint>> points;
    int lastId = 0;
    std::uint64_t firstStep = 0;  // of the first line that people see
    bool isAlive = false;
    bool isOver = false;
    bool isPaused = false;
};

}  // namespace krel::Debug
