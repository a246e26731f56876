// What is around the loop: start, calls as others see them, slots, snapshots. Comes in: translated
// code. Goes out: a program that runs as far as one wants.

#include "tools/machine/machine.hpp"

#include <algorithm>
#include <cstring>

namespace krel::Execution {

/// A copy of all that a machine changes while the program runs.
class Snapshot final : public TextHolder {
public:
    explicit Snapshot(const Machine& machine) : state(machine.state), calls(machine.calls) {
        const std::span<const std::uint64_t> used = machine.usedStack();
        slots.assign(used.begin(), used.end());
        if (machine.stack.hasTags()) {
            const Tag* const first = machine.stack.tagOf(used.data());
            tags.assign(first, first + used.size());
        }
    }

    std::span<const std::uint64_t> words() const override { return slots; }

    void copyTo(Machine& machine) const {
        machine.state = state;
        machine.calls = calls;
        std::uint64_t* const first = machine.stack.end() - slots.size();
        std::copy(slots.begin(), slots.end(), first);
        std::copy(tags.begin(), tags.end(), machine.stack.tagOf(first));
    }

private:
    Machine::State state;
    std::vector<Machine::Caller> calls;
    std::vector<std::uint64_t> slots;  // the used part of the stack
    std::vector<Tag> tags;
};

/// The texts that the program can still reach.
class Machine::Roots final : public TextHolder {
public:
    explicit Roots(const Machine& itsMachine) : machine(itsMachine) {}
    std::span<const std::uint64_t> words() const override { return machine.usedStack(); }

private:
    const Machine& machine;
};

Machine::Machine(const Code& itsCode, const Settings& settings, Sink& itsSink)
    : code(itsCode),
      how(settings),
      sink(itsSink),
      texts(itsCode),
      stack(settings.stackSize, settings.checked),
      state{code.entryOfMain, stack.end()},
      watched(code.lineCount),
      lineCounts(code.lineCount + code.functions.size()),
      roots(std::make_unique<Roots>(*this)) {
    std::fill(std::begin(state.wholeTags), std::end(state.wholeTags), Tags::notPassed);
    std::fill(std::begin(state.realTags), std::end(state.realTags), Tags::notPassed);
    state.wholes[0] = 1;  // as the system calls main: the program's name is its only argument
    for (const Function& function : code.functions) {
        entries.push_back({code.instructions.data() + function.entry, function.slots});
    }
}

Machine::~Machine() = default;

Stop Machine::run(std::uint64_t untilStep) {
    return how.checked ? execute<true>(untilStep) : execute<false>(untilStep);
}

Stop Machine::trapped(Trap trap) const {
    return {Stop::Reason::Trapped, trap, 0, {}};
}

bool Machine::print(std::uint64_t text) {
    if (!texts.isText(text)) {
        return false;
    }
    const std::string_view bytes = texts.bytesOf(text);
    sink.print(state.printed, bytes);
    state.printed += bytes.size();
    return true;
}

std::uint32_t Machine::lineAt(const Instruction* instruction) const {
    return instruction >= code.entryOfMain ? Code::noLine : code.lineAt(instruction);
}

/// From the lowest slot of the innermost frame on.
std::span<const std::uint64_t> Machine::usedStack() const {
    const std::int32_t slots =
        calls.empty() ? 0 : code.functions[code.functionAt(state.next)].slots;
    return {state.frame - slots, stack.end()};
}

/// The lowest entry of the stack of calls is that of the start, which called main.
CallFrame Machine::call(std::size_t number) const {
    if (number == 0) {
        return {code.functionAt(state.next), lineAt(state.next), state.frame};
    }
    const Caller& caller = calls[calls.size() - number];
    return {code.functionAt(caller.next - 1), lineAt(caller.next - 1), caller.frame};
}

Tag Machine::tag(const CallFrame& call, std::int32_t slot) const {
    return stack.hasTags() ? *stack.tagOf(call.frame + slot) : Tags::any;
}

void Machine::setValue(const CallFrame& call, std::int32_t slot, std::uint64_t bits, Tag tag) {
    const std::ptrdiff_t place = call.frame + slot - stack.begin();
    stack.begin()[place] = bits;
    if (stack.hasTags()) {
        *stack.tagOf(stack.begin() + place) = tag;
    }
}

std::optional<std::string> Machine::textAt(std::uint64_t address) const {
    if (!texts.isText(address)) {
        return std::nullopt;
    }
    return std::string{texts.bytesOf(address)};
}

std::shared_ptr<const Snapshot> Machine::snapshot() const {
    return std::make_shared<const Snapshot>(*this);
}

void Machine::restore(const Snapshot& snapshot) {
    snapshot.copyTo(*this);
}

}  // namespace krel::Execution
