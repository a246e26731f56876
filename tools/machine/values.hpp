#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/machine/machine.hpp"

namespace krel::Execution {

/// A value as it would be written in a program: `5`, `true`, `'c'`, `0.5`, `"text"`; a long text is
/// cut. Bits that are no value of the type are shown as what the tag says. Nothing has set what is
/// shown as `(unset)`.
std::string shownValue(const Machine& machine, std::uint64_t bits, Tag tag, std::string_view type);

}  // namespace krel::Execution
