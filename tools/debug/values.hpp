#pragma once

#include <string>
#include <string_view>

#include "tools/machine/machine.hpp"

namespace krel::Debug {

/// What a slot of a frame holds, as people read it.
std::string slotText(const Execution::Machine& machine, const Execution::CallFrame& frame,
                     std::int32_t slot, std::string_view type);

/// An array on one line: its first elements in braces.
std::string arrayText(const Execution::Machine& machine, const Execution::CallFrame& frame,
                      const Execution::Variable& array);

/// A whole string or character literal with these bytes between the quotes.
std::string quoted(std::string_view bytes, char quote);

/// The type of a variable as it is declared.
std::string typeText(const Execution::Variable& variable);

}  // namespace krel::Debug
