#pragma once

#include <string>
#include <string_view>

#include "tools/format/layout.hpp"

namespace krel {

namespace Format {

/// The text of a program that is laid out, with its comments in their columns.
std::string textOf(std::string_view source, const Lines& lines);

}  // namespace Format

}  // namespace krel
