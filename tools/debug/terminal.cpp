// The debugger for people without an editor. Comes in: commands, one a line. Goes out: what they
// ask for, and what the program prints.

#include "tools/debug/terminal.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tools/debug/listing.hpp"
#include "tools/machine/report.hpp"
#include "tools/machine/values.hpp"

namespace krel::Debug {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int /*number*/) {
    interrupted = 1;
}

/// While it lives, SIGINT sets the mark above.
class Interruptible {
public:
    Interruptible() {
        interrupted = 0;
        struct sigaction action = {};
        action.sa_handler = interrupt;
        sigaction(SIGINT, &action, &before);
    }
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
    ~Interruptible() { sigaction(SIGINT, &before, nullptr); }

private:
    struct sigaction before = {};
};

std::runtime_error systemError(const std::string& what) {
    return std::runtime_error(what + ": " + std::strerror(errno));
}

/// Cuts the first word off.
std::string_view firstWord(std::string_view& rest) {
    static constexpr std::string_view blanks = " \t\r";
    const auto skip = [&rest] {
        rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
    };
    skip();
    const std::size_t end = std::min(rest.find_first_of(blanks), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest.remove_prefix(end);
    skip();
    rest = rest.substr(0, rest.find_last_not_of(blanks) + 1);
    return word;
}

std::optional<std::size_t> numberIn(std::string_view text) {
    std::size_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

class Terminal final : public Listener {
public:
    Terminal(const Program& itsProgram, Debugger::Rules itsAllowed, int itsInput, int itsOutput)
        : program(itsProgram),
          allowed(itsAllowed),
          input(itsInput),
          output(itsOutput),
          echoes(isatty(itsInput) == 0),
          listing(itsProgram),
          debugger(std::make_unique<Debugger>(program, allowed, *this)) {}

    void talk() {
        while (!isDone) {
            say("(krel) ");
            const std::optional<std::string> line = nextLine();
            if (!line) {
                say("\n");
                return;
            }
            if (echoes) {
                say(*line + "\n");
            }
            interrupted = 0;
            obey(*line);
        }
    }

    void print(std::string_view text) override { write(text); }
    void log(std::string_view line) override { say(std::string{line} + "\n"); }
    bool wantsPause() override { return interrupted != 0; }

private:
    using Action = void (Terminal::*)(std::string_view rest);
    struct Command {
        std::string_view name;
        std::string_view shortName;
        std::string_view usage;
        std::string_view summary;
        Action action;
        bool needsProgram;  // that has started
    };
    static const std::array<Command, 28> commands;

    // Lines.

    void write(std::string_view text) {
        if (!text.empty()) {
            atLineStart = text.back() == '\n';
        }
        while (!text.empty()) {
            const ssize_t written = ::write(output, text.data(), text.size());
            if (written >= 0) {
                text.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno != EINTR) {
                throw systemError("cannot write");
            }
        }
    }

    /// What the debugger itself says begins in a line of its own.
    void say(const std::string& text) {
        if (!atLineStart) {
            write("\n");
        }
        write(text);
        atLineStart = true;
    }

    std::optional<std::string> nextLine() {
        while (true) {
            if (const std::size_t end = buffer.find('\n'); end != buffer.npos) {
                std::string line = buffer.substr(0, end);
                buffer.erase(0, end + 1);
                return line;
            }
            std::array<char, 4096> block{};
            const ssize_t count = read(input, block.data(), block.size());
            if (count > 0) {
                buffer.append(block.data(), static_cast<std::size_t>(count));
            } else if (count == 0) {
                return buffer.empty() ? std::nullopt : std::optional{std::exchange(buffer, {})};
            } else if (errno != EINTR) {
                throw systemError("cannot read");
            } else {
                say("\n(krel) ");
            }
        }
    }

    /// An empty line stands for the one before.
    void obey(const std::string& line) {
        std::string_view rest = line;
        std::string_view word = firstWord(rest);
        if (word.empty()) {
            rest = lastLine;
            word = firstWord(rest);
            if (word.empty()) {
                return;
            }
        } else {
            lastLine = line;
        }
        const auto* const found = std::ranges::find_if(commands, [word](const Command& command) {
            return command.name == word || command.shortName == word;
        });
        if (found == commands.end()) {
            say("there is no command '" + std::string{word} + "'; try help\n");
        } else if (found->needsProgram && !debugger->hasStarted()) {
            say("the program has not started: run it first\n");
        } else {
            try {
                (this->*found->action)(rest);
            } catch (const BadExpression& fault) {
                say(std::string{fault.what()} + "\n");
            }
        }
    }

    // Going on.

    void run(std::string_view /*rest*/) {
        restart();
        show(debugger->runFromStart());
    }
    void start(std::string_view /*rest*/) {
        restart();
        show(debugger->start());
    }
    void restart() {
        auto fresh = std::make_unique<Debugger>(program, allowed, *this);
        fresh->takeBreakpointsOf(*debugger);
        debugger = std::move(fresh);
    }

    /// Going on without having started is to start.
    void move(Motion motion) {
        if (!debugger->hasStarted()) {
            show(motion == Motion::Continue ? debugger->runFromStart() : debugger->start());
            return;
        }
        if (motion < Motion::BackContinue && !debugger->canGoOn()) {
            say("the program cannot go on: go back, or run it again\n");
            return;
        }
        show(debugger->move(motion));
    }
    template <Motion motion>
    void move(std::string_view /*rest*/) {
        move(motion);
    }

    /// Where the program stands, and what has changed on the way.
    void show(const Standing& standing) {
        frame = 0;
        switch (standing.reason) {
            case Standing::Reason::Ended:
                say("the program has ended with status " + std::to_string(standing.status) + "\n");
                return;
            case Standing::Reason::Fault:
                showFault(standing);
                return;
            case Standing::Reason::Breakpoint:
                for (const int id : standing.breakpoints) {
                    say("breakpoint " + std::to_string(id) + "\n");
                }
                break;
            case Standing::Reason::Beginning:
                say("the beginning of the program\n");
                break;
            case Standing::Reason::Pause:
                say("interrupted\n");
                break;
            case Standing::Reason::Step:
                break;
        }
        if (!standing.text.empty()) {
            say(standing.text + "\n");
        }
        if (debugger->callCount() == 0) {
            return;
        }
        showPlace();
        for (const Changes::Change& change : debugger->changesOf(0)) {
            showChange(change);
        }
        for (const std::string& expression : watched) {
            showWatched(expression);
        }
    }

    void showFault(const Standing& standing) {
        if (standing.rule == "trap" || standing.rule == "foreign-function") {
            say("the program has failed: " + standing.text + "\n");
        } else {
            say(reportOf(*program.compilation, program.path, debugger->machine(), false));
        }
    }

    void showChange(const Changes::Change& change) {
        const Execution::Variable& variable = *change.variable;
        const std::string name =
            variable.name + (variable.isArray ? "[" + std::to_string(change.index) + "]" : "");
        say("    " + name + ": " +
            shownValue(debugger->machine(), change.bits, change.tag, variable.type) + " -> " +
            debugger->elementOf(0, variable, change.index).text + "\n");
    }

    void showWatched(const std::string& expression) {
        std::string text;
        try {
            text = debugger->evaluate(0, expression).text;
        } catch (const BadExpression& fault) {
            text = fault.what();
        }
        say("    " + expression + " = " + text + "\n");
    }

    std::string placeOf(std::size_t call) const {
        return debugger->functionOf(call).name + " at " + program.path + ":" +
               std::to_string(debugger->lineOf(call));
    }

    void showPlace() { say(placeOf(frame) + "\n" + sourceLine(debugger->lineOf(frame), ' ')); }

    std::string sourceLine(int line, char mark) const {
        const LineIndex& lines = program.compilation->lines();
        const std::uint32_t begin = lines.offsetOf({line, 1});
        std::string_view text = program.compilation->text();
        text = text.substr(begin, text.find('\n', begin) - begin);
        constexpr std::size_t width = 5;
        std::string number = std::to_string(line);
        number.insert(0, width - std::min(width, number.size()), ' ');
        return std::string{mark} + number + " | " + std::string{text} + "\n";
    }

    // Breakpoints.

    /// "12", "fib", each perhaps followed by "if CONDITION".
    static Wish wishOf(std::string_view place) {
        if (place.empty()) {
            throw BadExpression("say where: a line or a function");
        }
        Wish wish;
        if (const auto line = numberIn(place)) {
            wish.place = static_cast<int>(std::min<std::size_t>(*line, 1U << 30U));
        } else {
            wish.place = std::string{place};
        }
        return wish;
    }

    void add(Wish wish) {
        const int* const line = std::get_if<int>(&wish.place);
        const int wanted = line == nullptr ? 0 : *line;
        const Breakpoint& point = debugger->addBreakpoint(std::move(wish));
        if (!point.hasPlace()) {
            const std::string problem = point.problem();
            debugger->removeBreakpoint(point.id());
            throw BadExpression(problem);
        }
        say("breakpoint " + std::to_string(point.id()) + " at " + program.path + ":" +
            std::to_string(point.line()) +
            (wanted != 0 && wanted != point.line()
                 ? ", as there is no code in line " + std::to_string(wanted)
                 : "") +
            "\n");
    }

    void breakAt(std::string_view rest) {
        Wish wish = wishOf(firstWord(rest));
        if (firstWord(rest) == "if") {
            wish.condition = rest;
        }
        add(std::move(wish));
    }

    void logAt(std::string_view rest) {
        Wish wish = wishOf(firstWord(rest));
        if (rest.empty()) {
            throw BadExpression("say what to log: log LINE MESSAGE");
        }
        wish.message = rest;
        add(std::move(wish));
    }

    const Breakpoint& pointOf(std::string_view word) const {
        const auto number = numberIn(word);
        for (const auto& point : debugger->breakpoints()) {
            if (number && point->id() == static_cast<int>(*number)) {
                return *point;
            }
        }
        throw BadExpression("there is no breakpoint '" + std::string{word} + "'");
    }

    /// In the place of a breakpoint comes the one that is wished for.
    void replace(const Breakpoint& point, Wish wish) {
        const int id = point.id();
        add(std::move(wish));
        debugger->removeBreakpoint(id);
    }

    void condition(std::string_view rest) {
        const Breakpoint& point = pointOf(firstWord(rest));
        Wish wish = point.wish();
        wish.condition = rest;
        replace(point, std::move(wish));
    }
    void hits(std::string_view rest) {
        const Breakpoint& point = pointOf(firstWord(rest));
        Wish wish = point.wish();
        wish.hits = rest;
        replace(point, std::move(wish));
    }
    void remove(std::string_view rest) {
        debugger->removeBreakpoint(pointOf(firstWord(rest)).id());
    }
    void listBreakpoints(std::string_view /*rest*/) {
        for (const auto& point : debugger->breakpoints()) {
            const Wish& wish = point->wish();
            say(std::to_string(point->id()) + " at " + program.path + ":" +
                std::to_string(point->line()) +
                (wish.condition.empty() ? "" : " if " + wish.condition) +
                (wish.hits.empty() ? "" : ", hits " + wish.hits) +
                (wish.message.empty() ? "" : ", logs " + wish.message) + "\n");
        }
    }

    // Looking.

    bool hasFrame() {
        if (debugger->callCount() == 0) {
            say("the program has ended: go back, or run it again\n");
        }
        return debugger->callCount() > 0;
    }

    void printValue(std::string_view rest) {
        if (hasFrame()) {
            const Value value = debugger->evaluate(frame, rest);
            say(value.type + " " + std::string{rest} + " = " + value.text + "\n");
        }
    }

    void set(std::string_view rest) {
        if (!hasFrame()) {
            return;
        }
        if (!Expression::isChange(rest)) {
            throw BadExpression("say what to set to what: set x = 5");
        }
        debugger->change(frame, rest);
    }

    void variables(std::string_view /*rest*/) {
        if (!hasFrame()) {
            return;
        }
        for (const Execution::Variable* variable : debugger->variablesOf(frame)) {
            const Value value = debugger->valueOf(frame, *variable);
            say((variable->isDeclared ? value.type : "undeclared") + " " + variable->name + " = " +
                value.text + "\n");
        }
    }

    void stack(std::string_view /*rest*/) {
        constexpr std::size_t most = 100;
        const std::size_t count = debugger->callCount();
        for (std::size_t call = 0; call < std::min(count, most); ++call) {
            say((call == frame ? "> " : "  ") + std::to_string(call) + " " + placeOf(call) + "\n");
        }
        if (count > most) {
            say("  ... and " + std::to_string(count - most) + " more\n");
        }
    }

    void chooseFrame(std::string_view rest) {
        const auto number = numberIn(rest);
        if (!number || *number >= debugger->callCount()) {
            throw BadExpression("there is no call '" + std::string{rest} + "' on the stack");
        }
        frame = *number;
        showPlace();
    }

    void list(std::string_view rest) {
        constexpr int around = 5;
        const bool stands = debugger->callCount() > 0;
        const int here = stands ? debugger->lineOf(frame) : 0;
        const auto wanted = numberIn(rest);
        const int middle = wanted ? static_cast<int>(std::min<std::size_t>(*wanted, 1U << 30U))
                                  : std::max(here, around);
        const int end = std::min(middle + around, program.compilation->lines().lineCount());
        for (int line = std::max(middle - around, 1); line <= end; ++line) {
            const bool stops =
                std::ranges::any_of(debugger->breakpoints(),
                                    [line](const auto& point) { return point->line() == line; });
            say(sourceLine(line, line == here ? '>' : stops ? '*' : ' '));
        }
    }

    void showCode(bool withAssembly) {
        if (!hasFrame()) {
            return;
        }
        const std::size_t next = debugger->call(frame).line;
        const Execution::Function& function = debugger->functionOf(frame);
        for (const Listing::Row& row : listing.rows()) {
            const bool isHere = row.irLine >= function.firstLine && row.irLine < function.lineEnd &&
                                program.lines.lineOf(row.irLine) == debugger->lineOf(frame);
            if (isHere && (withAssembly || !row.isAssembly)) {
                const bool isNext = row.irLine == next && !row.isAssembly;
                say((isNext ? "> " : "  ") + std::string{row.isAssembly ? "    " : ""} +
                    std::string{row.text} + "\n");
            }
        }
    }
    void showIr(std::string_view /*rest*/) { showCode(false); }
    void showAssembly(std::string_view /*rest*/) { showCode(true); }

    void watch(std::string_view rest) {
        if (rest.empty()) {
            watched.clear();
        } else {
            watched.emplace_back(rest);
        }
    }

    void help(std::string_view /*rest*/) {
        for (const Command& command : commands) {
            constexpr std::size_t width = 30;
            std::string usage{command.usage};
            usage.resize(std::max(usage.size() + 1, width), ' ');
            say(usage + std::string{command.summary} +
                (command.shortName.empty() ? "" : " (" + std::string{command.shortName} + ")") +
                "\n");
        }
    }
    void quit(std::string_view /*rest*/) { isDone = true; }

    const Program& program;
    const Debugger::Rules allowed;
    const int input;
    const int output;
    const bool echoes;
    const Listing listing;
    std::unique_ptr<Debugger> debugger;
    std::size_t frame = 0;
    std::vector<std::string> watched;
    std::string buffer;  // what was read and not yet obeyed
    std::string lastLine;
    bool atLineStart = true;
    bool isDone = false;
};

const std::array<Terminal::Command, 28> Terminal::commands = {{
    {"break", "b", "break LINE|FUNCTION [if COND]", "stops there", &Terminal::breakAt, false},
    {"condition", "", "condition NUMBER COND", "lets a breakpoint stop only if COND holds",
     &Terminal::condition, false},
    {"hits", "", "hits NUMBER RULE", "... only at its hits 3, >= 3 or % 3", &Terminal::hits, false},
    {"log", "", "log LINE|FUNCTION MESSAGE", "says MESSAGE there; {x} is the value of x",
     &Terminal::logAt, false},
    {"breakpoints", "", "breakpoints", "lists all breakpoints", &Terminal::listBreakpoints, false},
    {"delete", "", "delete NUMBER", "takes a breakpoint away", &Terminal::remove, false},
    {"run", "r", "run", "runs the program from its beginning", &Terminal::run, false},
    {"start", "", "start", "goes to the first line", &Terminal::start, false},
    {"continue", "c", "continue", "goes on", &Terminal::move<Motion::Continue>, false},
    {"step", "s", "step", "goes to the next line, also of a called function",
     &Terminal::move<Motion::In>, false},
    {"next", "n", "next", "goes to the next line of this function", &Terminal::move<Motion::Over>,
     false},
    {"out", "", "out", "goes on until this function has returned", &Terminal::move<Motion::Out>,
     true},
    {"stepi", "si", "stepi", "goes on by one line of the intermediate code",
     &Terminal::move<Motion::InstructionIn>, false},
    {"back", "", "back", "goes back to the line before in this function",
     &Terminal::move<Motion::BackOver>, true},
    {"rstep", "rs", "rstep", "goes back to the line before, also of a called function",
     &Terminal::move<Motion::BackIn>, true},
    {"rout", "", "rout", "goes back to where this function was called",
     &Terminal::move<Motion::BackOut>, true},
    {"rcontinue", "rc", "rcontinue", "goes back to the last breakpoint that was hit",
     &Terminal::move<Motion::BackContinue>, true},
    {"print", "p", "print EXPRESSION", "shows a value", &Terminal::printValue, true},
    {"set", "", "set VARIABLE = EXPRESSION", "changes a variable or an element", &Terminal::set,
     true},
    {"vars", "v", "vars", "shows the variables of this function", &Terminal::variables, true},
    {"watch", "", "watch [EXPRESSION]", "shows a value at each stop; or none any more",
     &Terminal::watch, false},
    {"stack", "bt", "stack", "shows the calls that have led here", &Terminal::stack, true},
    {"frame", "f", "frame NUMBER", "chooses one of them, to look at it", &Terminal::chooseFrame,
     true},
    {"list", "l", "list [LINE]", "shows the source", &Terminal::list, false},
    {"ir", "", "ir", "shows the intermediate code of this line", &Terminal::showIr, true},
    {"asm", "", "asm", "shows the assembly, too", &Terminal::showAssembly, true},
    {"help", "h", "help", "shows this list", &Terminal::help, false},
    {"quit", "q", "quit", "ends", &Terminal::quit, false},
}};

}  // namespace

void talk(const Program& program, Debugger::Rules allowed, int input, int output) {
    const Interruptible interruptible;
    Terminal{program, allowed, input, output}.talk();
}

}  // namespace krel::Debug
