// The ways through a program. Comes in: where the user wants to go. Goes out: the machine at that
// place, and why it stands there.
//
// Forward, the machine runs until it comes to a watched line, and what is watched depends on the
// way. Back, the same lines are watched while the run is repeated from the last snapshot up to
// here: the last of them that counts is the place to go to. If there is none, the stretch before
// is repeated.

#include "tools/debug/debugger.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "shared/symboltable/symbol.hpp"
#include "tools/debug/values.hpp"

namespace krel::Debug {

namespace {

using Execution::CallFrame;
using Execution::Machine;
using Execution::Stop;
using Execution::Trap;
using Execution::Variable;
using Reason = Standing::Reason;

constexpr std::size_t anyDepth = std::numeric_limits<std::size_t>::max();

std::string_view textOf(Trap trap) {
    switch (trap) {
        case Trap::DivisionByZero:
            return "integer division by zero";
        case Trap::DivisionOverflow:
            return "integer division overflow";
        case Trap::StackOverflow:
            return "stack overflow";
        case Trap::OutOfMemory:
            return "out of memory";
        case Trap::InvalidAccess:
        case Trap::None:
            break;
    }
    return "invalid memory access";
}

/// Whether a line of the intermediate code calls a function.
bool isCall(std::string_view line) {
    return line.starts_with("call ") || line.find(" = call ") != line.npos;
}

bool isName(std::string_view text) {
    return !text.empty() && text.find_first_not_of(
                                "abcdefghijklmnopqrstuvwxyz"
                                "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") == text.npos;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    const std::size_t end = text.find_last_not_of(" \t");
    return begin == text.npos ? std::string_view{} : text.substr(begin, end - begin + 1);
}

}  // namespace

/// Where a way forward ends, besides breakpoints.
struct Debugger::Goal {
    bool atLines = false;          // where a line begins
    bool atReturn = false;         // behind the call of the function at `depth`
    std::size_t depth = anyDepth;  // calls that are deeper do not matter
    std::uint64_t step = Machine::noLimit;
};

Debugger::Debugger(const Program& itsProgram, Rules itsAllowed, Listener& itsListener)
    : source(itsProgram),
      allowed(itsAllowed),
      listener(itsListener),
      timeline(
          itsProgram.code, {true, itsAllowed},
          [this](std::string_view text) { listener.print(text); },
          [this] { return isPaused = listener.wantsPause(); }) {}

// Forward.

Standing Debugger::start() {
    const Stop stop = timeline.start();
    if (!stop.canGoOn()) {
        return end(standingOf(stop));
    }
    isAlive = true;
    if (!source.lines.begins(machine().line())) {
        timeline.run(source.bodyOf(call(0).function) - machine().line());
    }
    firstStep = timeline.now();
    return {Reason::Beginning, {}, {}, {}, {}, 0};
}

Standing Debugger::runFromStart() {
    Standing standing = start();
    if (!isAlive) {
        return standing;
    }
    watchBreakpoints();
    if (timeline.machine().isWatched(machine().line())) {
        if (auto here = breakpointHere(true)) {
            return std::move(*here);
        }
    }
    return forward(goalOf(Motion::Continue));
}

Standing Debugger::move(Motion motion) {
    changes.remember(machine());
    isPaused = false;
    return motion >= Motion::BackContinue ? backward(motion) : forward(goalOf(motion));
}

Debugger::Goal Debugger::goalOf(Motion motion) const {
    Goal goal;
    const std::size_t depth = machine().depth();
    switch (motion) {
        case Motion::In:
            goal.atLines = true;
            break;
        case Motion::Over:
            goal.atLines = true;
            goal.depth = depth;
            break;
        case Motion::Out:
            goal.atReturn = true;
            goal.depth = depth;
            break;
        case Motion::InstructionOver:
            if (isCall(source.irText(machine().line()))) {
                // Behind the call as if it were the one to return from.
                goal.atReturn = true;
                goal.depth = depth + 1;
                break;
            }
            [[fallthrough]];
        case Motion::InstructionIn:
            goal.step = timeline.now() + 1;
            break;
        default:
            break;
    }
    return goal;
}

void Debugger::watchBreakpoints() {
    timeline.machine().watchAll(false);
    for (const auto& point : points) {
        for (const std::size_t place : point->places()) {
            timeline.machine().watch(place, true);
        }
    }
}

void Debugger::watchBeginnings(std::size_t function) {
    const Execution::Function& lines = source.code.functions[function];
    for (std::size_t line = lines.firstLine; line < lines.lineEnd; ++line) {
        if (source.lines.begins(line)) {
            timeline.machine().watch(line, true);
        }
    }
}

/// Watches what a way forward can end at. In calls that are deeper than the goal no line needs to
/// be watched but for those where the innermost call that matters goes on.
void Debugger::arm(const Goal& goal) {
    watchBreakpoints();
    const std::size_t depth = machine().depth();
    if (goal.atLines && goal.depth == anyDepth) {
        for (std::size_t function = 0; function < source.code.functions.size(); ++function) {
            watchBeginnings(function);
        }
        return;
    }
    if (goal.atLines && depth > 0) {
        watchBeginnings(call(0).function);
    }
    const bool isCaller = goal.depth == depth + 1;  // the call is yet to come
    if (goal.depth != anyDepth && (depth > 1 || isCaller)) {
        timeline.machine().watch(call(isCaller ? 0 : 1).line + 1, true);
    }
}

/// Whether the machine is where the way leads to. When it has come out of the function at hand
/// within a line, the way leads on in the caller.
bool Debugger::isReached(Goal& goal) {
    const std::size_t depth = machine().depth();
    const bool begins = source.lines.begins(machine().line());
    if (goal.atReturn) {
        return depth < goal.depth;
    }
    if (!goal.atLines || depth > goal.depth) {
        return false;
    }
    if (begins) {
        return true;
    }
    if (depth < goal.depth && goal.depth != anyDepth) {
        goal.depth = depth;
        arm(goal);
    }
    return false;
}

Standing Debugger::forward(Goal goal) {
    if (!isAlive) {
        return standingOf(timeline.run().stop);
    }
    arm(goal);
    while (true) {
        const Timeline::End stretch = timeline.run(goal.step);
        if (stretch.isPaused) {
            return {Reason::Pause, {}, {}, {}, {}, 0};
        }
        if (!stretch.stop.canGoOn()) {
            return end(standingOf(stretch.stop));
        }
        if (stretch.stop.reason == Stop::Reason::Steps) {
            return {};
        }
        if (auto here = breakpointHere(true)) {
            return std::move(*here);
        }
        if (isReached(goal) || timeline.now() >= goal.step) {
            return {};
        }
    }
}

/// The breakpoints that say to stop here. Those that only log do so, if they shall.
std::optional<Standing> Debugger::breakpointHere(bool logs) {
    Standing standing{Reason::Breakpoint, {}, {}, {}, {}, 0};
    for (const auto& point : points) {
        if (std::ranges::find(point->places(), machine().line()) == point->places().end()) {
            continue;
        }
        try {
            if (!point->applies(machine())) {
                continue;
            }
        } catch (const BadExpression& fault) {
            standing.text = "breakpoint " + std::to_string(point->id()) +
                            ": the condition cannot be evaluated: " + fault.what();
            standing.breakpoints.push_back(point->id());
            continue;
        }
        if (!point->isLogPoint()) {
            standing.breakpoints.push_back(point->id());
        } else if (logs) {
            listener.log(point->log(machine()));
        }
    }
    if (standing.breakpoints.empty()) {
        return std::nullopt;
    }
    return standing;
}

Standing Debugger::standingOf(const Stop& stop) {
    Standing standing;
    switch (stop.reason) {
        case Stop::Reason::Ended:
            standing.reason = Reason::Ended;
            standing.status = stop.status;
            return standing;
        case Stop::Reason::Faulted:
            standing.rule = nameOf(machine().fault().rule);
            standing.text = machine().fault().message;
            standing.help = machine().fault().help;
            break;
        case Stop::Reason::Trapped:
            standing.rule = "trap";
            standing.text = textOf(stop.trap);
            break;
        default:
            standing.rule = "foreign-function";
            standing.text = "the function `" + std::string{stop.name} + "` is not in the program";
            standing.help = "only a compiled program can call it";
            break;
    }
    standing.reason = Reason::Fault;
    return standing;
}

Standing Debugger::end(Standing standing) {
    isAlive = false;
    isOver = true;
    return standing;
}

// Back.

Standing Debugger::backward(Motion motion) {
    const bool isAtFirst = timeline.now() <= firstStep;
    if (!hasStarted() || isAtFirst) {
        return {Reason::Beginning, {}, {}, {}, {}, 0};
    }
    if (motion == Motion::BackInstruction) {
        return arrive(timeline.now() - 1, timeline.now(), {});
    }
    return motion == Motion::BackContinue ? backToBreakpoint() : backToLine(motion);
}

/// Goes to a step, or to the beginning when there is none. A pause on the way leads back to where
/// the way began.
Standing Debugger::arrive(std::optional<std::uint64_t> step, std::uint64_t origin,
                          Standing standing) {
    isAlive = true;
    if (isPaused) {
        standing = {Reason::Pause, {}, {}, {}, {}, 0};
        step = origin;
    } else if (!step || *step <= firstStep) {
        step = firstStep;
        if (standing.reason != Reason::Breakpoint) {
            standing.reason = Reason::Beginning;
        }
    }
    timeline.goTo(*step);
    return standing;
}

Standing Debugger::backToBreakpoint() {
    const std::uint64_t origin = timeline.now();
    std::optional<std::uint64_t> best;
    Standing standing;
    watchBreakpoints();
    for (std::optional<std::uint64_t> from = origin; from && !best;) {
        from = timeline.revisit(*from, [&] {
            if (auto here = timeline.now() < firstStep ? std::nullopt : breakpointHere(false)) {
                best = timeline.now();
                standing = std::move(*here);
            }
        });
    }
    return arrive(best, origin, standing);
}

/// Finds the place that a way back over lines leads to, while the run is repeated.
class Debugger::WayBack {
public:
    WayBack(const Debugger& itsDebugger, Motion motion)
        : debugger(itsDebugger),
          goesIn(motion == Motion::BackIn),
          wantsOwn(motion != Motion::BackOut),
          depth(std::max<std::size_t>(debugger.callCount(), 1)),
          function(debugger.callCount() > 0 ? debugger.call(0).function
                                            : *debugger.source.functionNamed("main")),
          entry(debugger.source.code.functions[function].firstLine) {}

    std::size_t ownFunction() const { return function; }
    std::size_t ownEntry() const { return entry; }
    bool wantsAllFunctions() const { return goesIn; }

    /// At a watched line of the stretch. Before the call of the function at hand has begun, lines
    /// of the same depth belong to other calls.
    void visit() {
        const std::uint64_t step = debugger.timeline.now();
        const std::size_t line = debugger.machine().line();
        const std::size_t at = debugger.callCount();
        if (line == entry && at == depth) {
            own.reset();
            isEntered = true;
        }
        if (step < debugger.firstStep || !debugger.source.lines.begins(line)) {
            return;
        }
        if (goesIn) {
            any = step;
        } else if (at < depth) {
            outer = step;
        } else if (at == depth && debugger.call(0).function == function) {
            own = step;
        }
    }

    /// After a stretch: the place, if it is found.
    std::optional<std::uint64_t> found() {
        if (goesIn) {
            return any;
        }
        if (wantsOwn && own) {
            return own;
        }
        if (isEntered) {
            wantsOwn = false;
        } else {
            outer.reset();
        }
        own.reset();
        return outer;
    }

private:
    const Debugger& debugger;
    const bool goesIn;
    bool wantsOwn;           // a line of the function at hand, else of its caller
    bool isEntered = false;  // the stretches reach back to before its call
    const std::size_t depth;
    const std::size_t function;
    const std::size_t entry;
    std::optional<std::uint64_t> any;
    std::optional<std::uint64_t> own;
    std::optional<std::uint64_t> outer;
};

Standing Debugger::backToLine(Motion motion) {
    const std::uint64_t origin = timeline.now();
    WayBack way{*this, motion};
    timeline.machine().watchAll(false);
    if (way.wantsAllFunctions()) {
        for (std::size_t function = 0; function < source.code.functions.size(); ++function) {
            watchBeginnings(function);
        }
    } else {
        watchBeginnings(way.ownFunction());
        timeline.machine().watch(way.ownEntry(), true);
        if (callCount() > 1) {
            watchBeginnings(call(1).function);
        }
    }
    std::optional<std::uint64_t> best;
    for (std::optional<std::uint64_t> from = origin; from && !best;) {
        from = timeline.revisit(*from, [&] { way.visit(); });
        best = way.found();
    }
    return arrive(best, origin, {});
}

// Breakpoints.

void Debugger::takeBreakpointsOf(const Debugger& other) {
    for (const auto& point : other.points) {
        points.push_back(std::make_unique<Breakpoint>(point->id(), point->wish(), source, allowed));
    }
    lastId = other.lastId;
}

const Breakpoint& Debugger::addBreakpoint(Wish wish) {
    points.push_back(std::make_unique<Breakpoint>(++lastId, std::move(wish), source, allowed));
    for (const std::size_t place : points.back()->places()) {
        timeline.machine().watch(place, true);
    }
    return *points.back();
}

bool Debugger::removeBreakpoint(int id) {
    return std::erase_if(points, [id](const auto& point) { return point->id() == id; }) > 0;
}

// Calls.

const Execution::Function& Debugger::functionOf(std::size_t number) const {
    return source.code.functions[call(number).function];
}

SourceRange Debugger::partOf(std::size_t number) const {
    return source.lines.partOf(call(number).line);
}

int Debugger::lineOf(std::size_t number) const {
    return source.lines.lineOf(call(number).line);
}

std::vector<const Variable*> Debugger::variablesOf(std::size_t number) const {
    std::vector<const Variable*> found;
    const Execution::Function& function = functionOf(number);
    for (const Symbol* symbol : source.compilation->symbolsOf(function.name)) {
        const Variable* const variable = source.variable(call(number).function, symbol->getName());
        if (variable != nullptr && variable->isDeclared) {
            found.push_back(variable);
        }
    }
    for (const Variable& variable : function.variables) {
        if (!variable.isDeclared && source.isVisible(call(number).function, variable)) {
            found.push_back(&variable);
        }
    }
    return found;
}

std::vector<Changes::Change> Debugger::changesOf(std::size_t number) const {
    return changes.since(machine(), number);
}

// Expressions.

Value Debugger::elementOf(std::size_t number, const Variable& array, std::int32_t index) const {
    return {slotText(machine(), call(number), array.slot + index, array.type), array.type, nullptr};
}

Value Debugger::valueOf(std::size_t number, const Variable& variable) const {
    if (!variable.isArray) {
        return elementOf(number, variable, 0);
    }
    return {arrayText(machine(), call(number), variable), typeText(variable), &variable};
}

Value Debugger::evaluate(std::size_t number, std::string_view expression) {
    const std::string_view text = trimmed(expression);
    if (isName(text)) {
        if (const Variable* variable = source.variable(call(number).function, text)) {
            return valueOf(number, *variable);
        }
    }
    Expression compiled{source, call(number).function, text, Purpose::Value, allowed};
    Expression::Result result = compiled.evaluate(machine(), call(number));
    if (result.type == "string") {
        result.text = quoted(result.text, '"');
    } else if (result.type == "character") {
        result.text = quoted(result.text, '\'');
    }
    return {result.text, result.type, nullptr};
}

void Debugger::change(std::size_t number, std::string_view assignment) {
    if (!isAlive) {
        throw BadExpression("the program cannot go on here: go back first");
    }
    Expression compiled{source, call(number).function, trimmed(assignment), Purpose::Change,
                        allowed};
    const std::uint64_t step = timeline.now();
    for (Timeline::Edit& edit : compiled.changes(machine(), call(number))) {
        edit.frame = machine().depth() - 1 - number;
        timeline.change(std::move(edit));
    }
    for (const auto& point : points) {
        point->forgetAfter(step);
    }
}

}  // namespace krel::Debug
