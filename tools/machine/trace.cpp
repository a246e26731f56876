// Tells what a program does, line by line. Comes in: a machine at its start. Goes out: a line of
// text for each line of the source that runs.

#include "tools/machine/trace.hpp"

#include <algorithm>
#include <utility>

#include "shared/krelir-cfg/vocabulary.hpp"
#include "tools/machine/values.hpp"

namespace krel::Execution {

namespace {

std::string_view trimmed(std::string_view line) {
    const std::size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
    return line.substr(begin);
}

/// Whether an instruction sets the slot `to`.
bool sets(Operation operation) {
    return (operation >= Operation::EqualSlots && operation <= Operation::LoadElement) ||
           operation == Operation::Result || operation == Operation::RealResult ||
           operation == Operation::Take || operation == Operation::TakeReal;
}

const Variable* variableAt(const Function& function, std::int32_t slot) {
    const auto found = std::ranges::find_if(function.variables, [slot](const Variable& each) {
        return slot >= each.slot && slot < each.slot + each.length;
    });
    return found == function.variables.end() || found->isTemporary ? nullptr : &*found;
}

}  // namespace

Trace::Trace(const FrontEnd::Compilation& itsCompilation, std::string_view itsPath,
             Machine& itsMachine, Write itsWrite)
    : compilation(itsCompilation), path(itsPath), machine(itsMachine), write(std::move(itsWrite)) {}

Stop Trace::run(std::uint64_t untilStep) {
    machine.watchAll(true);
    Stop stop = machine.run(untilStep);
    while (stop.reason == Stop::Reason::Watched) {
        const std::uint32_t irLine = machine.line();
        begin(irLine);
        const std::vector<Target> targets = targetsOf(irLine);
        const std::size_t depth = machine.depth();
        stop = machine.run(untilStep);
        if (machine.depth() > depth) {
            tell(events.back());  // before the lines of the function that it has called
        } else if (stop.reason != Stop::Reason::Faulted && stop.reason != Stop::Reason::Trapped) {
            addChanges(events.back(), targets);
        }
    }
    while (!events.empty()) {
        tell(events.back());
        events.pop_back();
    }
    return stop;
}

/// Whether a line of the intermediate code does something that the source says there. Jumps belong
/// to statements around them, and so does the return at the end of a function.
bool Trace::isStatement(std::uint32_t irLine) const {
    const FrontEnd::IRLine& place = compilation.irLines()[irLine];
    const IRFunction& function = compilation.ir().getFunctions()[place.function];
    const std::string_view text =
        function.getBlocks()[place.block].getInstructions().text(place.instruction);
    return !text.starts_with(Keyword::Goto) &&
           (text != Keyword::Return ||
            compilation.textOf(place.source).starts_with(Keyword::Return));
}

/// A line of the intermediate code is next. Tells of the line of the source that has ended by that.
/// What comes a second time in the same line is a new run of it.
void Trace::begin(std::uint32_t irLine) {
    const std::size_t depth = machine.depth();
    while (events.size() > depth) {
        tell(events.back());
        events.pop_back();
    }
    if (events.size() == depth && !isStatement(irLine)) {
        return;
    }
    const int line =
        compilation.lines().positionOf(compilation.irLines()[irLine].source.begin).line;
    if (events.size() < depth) {
        events.push_back({line, depth});
    } else if (events.back().line != line || events.back().irLines.contains(irLine)) {
        tell(events.back());
        events.back() = {line, depth};
    }
    events.back().irLines.insert(irLine);
}

void Trace::tell(Event& event) {
    if (event.isTold && event.changes.empty()) {
        return;
    }
    const std::size_t begin = compilation.lines().offsetOf({event.line, 1});
    const std::string_view rest = std::string_view{compilation.text()}.substr(begin);
    std::string text(2 * (event.depth - 1), ' ');
    text += path + ":" + std::to_string(event.line) + ": ";
    text += trimmed(rest.substr(0, rest.find('\n')));
    for (std::size_t number = 0; number < event.changes.size(); ++number) {
        text += (number == 0 ? "    " : ", ") + event.changes[number];
    }
    write(text + "\n");
    event.isTold = true;
    event.changes.clear();
}

/// The slots that the next line of the intermediate code will change.
std::vector<Trace::Target> Trace::targetsOf(std::uint32_t irLine) const {
    const Code& code = machine.program();
    const CallFrame here = machine.call(0);
    const Function& function = code.functions[here.function];
    const auto [first, last] = std::equal_range(code.lines.begin() + function.entry,
                                                code.lines.begin() + function.end, irLine);
    std::vector<Target> targets;
    for (auto at = first; at != last; ++at) {
        const Instruction& instruction =
            code.instructions[static_cast<std::size_t>(at - code.lines.begin())];
        if (sets(instruction.operation)) {
            if (const Variable* variable = variableAt(function, instruction.to)) {
                targets.push_back({here, variable, instruction.to});
            }
        } else if (instruction.operation == Operation::StoreElement) {
            const Array& array = code.arrays[static_cast<std::size_t>(instruction.right)];
            const std::uint64_t index = machine.value(here, instruction.left);
            const Variable* const variable = variableAt(function, array.slot);
            if (variable != nullptr && index < static_cast<std::uint64_t>(array.length)) {
                targets.push_back({here, variable, array.slot + static_cast<std::int32_t>(index)});
            }
        }
    }
    return targets;
}

void Trace::addChanges(Event& event, const std::vector<Target>& targets) const {
    for (const auto& [call, variable, slot] : targets) {
        std::string name = variable->name;
        if (variable->isArray) {
            name += "[" + std::to_string(slot - variable->slot) + "]";
        }
        event.changes.push_back(name + " = " +
                                shownValue(machine, machine.value(call, slot),
                                           machine.tag(call, slot), variable->type));
    }
}

}  // namespace krel::Execution
