// What has changed. Comes in: a machine, twice. Goes out: the variables that hold something else.

#include "tools/debug/changes.hpp"

#include <algorithm>

namespace krel::Debug {

namespace {

constexpr std::size_t mostFrames = 8;
constexpr std::int32_t mostElements = 1000;

std::int32_t keptOf(const Execution::Variable& variable) {
    return variable.isTemporary ? 0 : std::min(variable.length, mostElements);
}

}  // namespace

void Changes::remember(const Execution::Machine& machine) {
    frames.clear();
    for (std::size_t call = 0; call < std::min(machine.depth(), mostFrames); ++call) {
        const Execution::CallFrame found = machine.call(call);
        Frame frame{machine.depth() - 1 - call, found.function, found.frame, {}};
        for (const auto& variable : machine.program().functions[found.function].variables) {
            for (std::int32_t index = 0; index < keptOf(variable); ++index) {
                const std::int32_t slot = variable.slot + index;
                frame.slots.push_back({machine.value(found, slot), machine.tag(found, slot)});
            }
        }
        frames.push_back(std::move(frame));
    }
}

std::vector<Changes::Change> Changes::since(const Execution::Machine& machine,
                                            std::size_t call) const {
    std::vector<Change> changes;
    const Execution::CallFrame found = machine.call(call);
    const std::size_t number = machine.depth() - 1 - call;
    const auto frame = std::ranges::find(frames, number, &Frame::number);
    if (frame == frames.end() || frame->function != found.function || frame->place != found.frame) {
        return changes;
    }
    auto before = frame->slots.begin();
    for (const auto& variable : machine.program().functions[found.function].variables) {
        for (std::int32_t index = 0; index < keptOf(variable); ++index, ++before) {
            const std::int32_t slot = variable.slot + index;
            const Execution::Tag tag = machine.tag(found, slot);
            const bool isSet = (tag & Execution::Tags::any) != 0;
            if (tag != before->tag || (isSet && machine.value(found, slot) != before->bits)) {
                changes.push_back({&variable, index, before->bits, before->tag});
            }
        }
    }
    return changes;
}

}  // namespace krel::Debug
