#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/machine/code.hpp"
#include "tools/machine/faults.hpp"
#include "tools/machine/stack.hpp"
#include "tools/machine/texts.hpp"

/// Runs a program by executing its intermediate code. What a compiled program does where the
/// language says what it does, it does: output, exit status, traps.
///
///     Compilation -> translate -> Code -> Machine -> output, Stop
namespace krel::Execution {

/// Where printed texts go. Owned by the caller.
class Sink {
public:
    Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    virtual ~Sink() = default;

    /// `position` is how many bytes were printed before. After going back the same bytes come once
    /// more, at the same positions.
    virtual void print(std::uint64_t position, std::string_view text) = 0;
};

/// How a machine runs a program.
struct Settings {
    bool checked = false;
    RuleSet allowed;  // the rules whose faults are let pass
    std::size_t stackSize = std::size_t{8} << 20;
};

/// What ends a program against its will, in a compiled program by a signal.
enum class Trap : std::uint8_t {
    None,
    DivisionByZero,
    DivisionOverflow,
    StackOverflow,
    InvalidAccess,
    OutOfMemory
};

/// Why the machine does not go on.
struct Stop {
    enum class Reason : std::uint8_t {
        Ended,    // the program did, with `status`
        Trapped,  // by `trap`
        Faulted,  // a fault that is not allowed: see Machine::fault
        Watched,  // a watched line is the next one
        Steps,    // so many steps are done
        Foreign   // a function is called that is not in the program: `name`
    };

    Reason reason = Reason::Ended;
    Trap trap = Trap::None;
    int status = 0;
    std::string_view name = {};

    /// Whether the program can go on.
    bool canGoOn() const { return reason == Reason::Watched || reason == Reason::Steps; }
};

/// A call that has not returned.
struct CallFrame {
    std::size_t function;        // its number in the code
    std::uint32_t line;          // of the intermediate code: the next one, or that of the call
    const std::uint64_t* frame;  // its frame pointer
};

/// A state of a machine. While it lives, its texts do, too.
class Snapshot;

/// A program that runs. Steps are lines of the intermediate code; they are counted, and a run can
/// be stopped before each of them, if the code was translated with Wanted::stops. Everything is
/// determined: the same number of steps from the same state gives the same state again (but for
/// the numbers that addresses of strings are).
class Machine {
public:
    /// The program is about to call main. Code and sink must outlive the machine. Throws
    /// std::bad_alloc when there is no memory for the stack.
    Machine(const Code& itsCode, const Settings& settings, Sink& itsSink);
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine();

    /// How many steps a run goes on for at most.
    static constexpr std::uint64_t noLimit = ~std::uint64_t{0};

    /// Goes on until one of the reasons to stop, the last when so many steps are done since the
    /// program's start. A watched line at which the machine stands already is no reason.
    Stop run(std::uint64_t untilStep = noLimit);
    /// One line of the intermediate code. A call leads into the function.
    Stop step() { return run(stepsDone() + 1); }
    /// Steps since the program's start.
    std::uint64_t stepsDone() const { return state.steps; }
    /// Bytes printed since the program's start.
    std::uint64_t bytesPrinted() const { return state.printed; }

    /// Stops before a line of the intermediate code from now on, or no longer.
    void watch(std::size_t line, bool wanted) { watched[line] = wanted ? 1 : 0; }
    void watchAll(bool wanted) { watched.assign(watched.size(), wanted ? 1 : 0); }
    bool isWatched(std::size_t line) const { return watched[line] != 0; }
    /// How often each line was run, if the code was translated with Wanted::counts.
    const std::vector<std::uint64_t>& counts() const { return lineCounts; }
    /// How often a function was called, in the same case.
    std::uint64_t callsOf(std::size_t function) const {
        return lineCounts[code.lineCount + function];
    }

    /// The line of the intermediate code that is next, or at which the machine was stopped by a
    /// fault or a trap; Code::noLine before main and behind it.
    std::uint32_t line() const { return lineAt(state.next); }
    /// How many calls have not returned; 0 before main and behind it.
    std::size_t depth() const { return calls.size(); }
    /// A call that has not returned; 0 is the innermost.
    CallFrame call(std::size_t number) const;

    /// The bits in a slot of a call's frame.
    std::uint64_t value(const CallFrame& call, std::int32_t slot) const { return call.frame[slot]; }
    /// What the slot holds, if the run is checked: nothing when the tag has no bit of Tags::any.
    Tag tag(const CallFrame& call, std::int32_t slot) const;
    /// Changes a slot. The tag has no effect when the run is not checked.
    void setValue(const CallFrame& call, std::int32_t slot, std::uint64_t bits, Tag tag);
    /// The text at an address, as it would be printed; nothing when there is none.
    std::optional<std::string> textAt(std::uint64_t address) const;
    /// A new text, which lives as long as a slot or a snapshot holds its address. 0 when memory is
    /// exhausted.
    std::uint64_t makeText(std::string_view bytes) { return texts.ofBytes(bytes); }

    /// The state as it is, to come back to. Costs as much as the used part of the stack is large.
    /// A snapshot may outlive the machine, but belongs to it alone.
    std::shared_ptr<const Snapshot> snapshot() const;
    /// Goes back, or forward, to the state of a snapshot. What is watched, and the counts of lines,
    /// stay as they are.
    void restore(const Snapshot& snapshot);

    /// What was found when the reason to stop was a fault; valid until the machine goes on.
    const Fault& fault() const { return found; }

    const Code& program() const { return code; }
    const Settings& settings() const { return how; }

private:
    friend class Snapshot;

    /// All that changes while the program runs, but for stack and calls.
    struct State {
        const Instruction* next;
        std::uint64_t* frame;
        std::uint64_t whole = 0;  // the registers for results
        double real = 0;
        Tag wholeTag = Tags::noResult;
        Tag realTag = Tags::noResult;
        std::uint64_t wholes[6] = {};  // the registers for arguments
        double reals[8] = {};
        Tag wholeTags[6] = {};
        Tag realTags[8] = {};
        std::uint64_t steps = 0;
        std::uint64_t printed = 0;
    };

    /// The stack of calls. What it has is what a return needs.
    struct Caller {
        const Instruction* next;
        std::uint64_t* frame;
    };

    /// What a call needs to know of a function.
    struct Entry {
        const Instruction* entry;
        std::ptrdiff_t slots;
    };

    class Roots;

    /// The element of an array in a frame. It need not be in the stack.
    static std::uint64_t* elementAt(std::uint64_t* frame, const Array& array, std::uint64_t index) {
        const auto first = reinterpret_cast<std::uintptr_t>(frame + array.slot);
        return reinterpret_cast<std::uint64_t*>(first + index * sizeof(std::uint64_t));
    }

    template <bool checked>
    Stop execute(std::uint64_t untilStep);
    Stop trapped(Trap trap) const;

    // What to do about a fault at the next instruction: whether the program may go on. Otherwise
    // what was found is kept.
    bool isTolerated(Rule rule);
    bool areOperandsTolerated();
    bool isElementTolerated();
    bool isStoredTolerated();

    bool print(std::uint64_t text);
    std::uint32_t lineAt(const Instruction* instruction) const;
    std::span<const std::uint64_t> usedStack() const;

    const Code& code;
    const Settings how;
    Sink& sink;
    mutable Texts texts;
    Stack stack;
    State state;
    std::vector<Entry> entries;  // of all functions
    std::vector<Caller> calls;
    std::vector<std::uint8_t> watched;
    std::vector<std::uint64_t> lineCounts;  // behind them those of the functions
    Fault found;
    std::unique_ptr<Roots> roots;
};

}  // namespace krel::Execution
