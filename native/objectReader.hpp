#pragma once

#include <string_view>

#include "native/objectFile.hpp"

namespace krel::Native {

/// Reads a relocatable object of x86-64: the sections that take memory, with their relocations, and
/// all symbols. `file` is the whole file, and has to live as long as the result, which has views of
/// it. Throws NotKnown for any other file, a damaged one included: nothing is read out of bounds.
ObjectFile readObject(std::string_view file);

}  // namespace krel::Native
