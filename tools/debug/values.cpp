// Values as text. Comes in: slots of frames. Goes out: how they are written in programs.

#include "tools/debug/values.hpp"

#include <algorithm>

#include "tools/machine/values.hpp"

namespace krel::Debug {

std::string quoted(std::string_view bytes, char quote) {
    constexpr std::string_view escaped = "\n\t\r\b\f\\";
    constexpr std::string_view letters = "ntrbf\\";
    std::string text{quote};
    for (const char byte : bytes) {
        const std::size_t escape = escaped.find(byte);
        if (escape != escaped.npos || byte == quote) {
            text += '\\';
        }
        text += escape != escaped.npos ? letters[escape] : byte;
    }
    return text + quote;
}

std::string slotText(const Execution::Machine& machine, const Execution::CallFrame& frame,
                     std::int32_t slot, std::string_view type) {
    return shownValue(machine, machine.value(frame, slot), machine.tag(frame, slot), type);
}

std::string arrayText(const Execution::Machine& machine, const Execution::CallFrame& frame,
                      const Execution::Variable& array) {
    constexpr std::int32_t most = 8;
    std::string text = "{";
    for (std::int32_t index = 0; index < std::min(array.length, most); ++index) {
        text += (index == 0 ? "" : ", ") + slotText(machine, frame, array.slot + index, array.type);
    }
    return text + (array.length > most ? ", ...}" : "}");
}

std::string typeText(const Execution::Variable& variable) {
    return variable.isArray ? variable.type + "[" + std::to_string(variable.length) + "]"
                            : variable.type;
}

}  // namespace krel::Debug
