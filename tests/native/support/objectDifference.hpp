#pragma once

#include <string>

#include "native/objectFile.hpp"

namespace krel::Native {

/// One line for each section that holds something, each symbol with a name, and each relocation,
/// in their order, but for local symbols, which come first.
std::string described(const ObjectFile& object);

/// What makes two objects different, in a few lines: bytes, alignments and flags of their sections,
/// symbols with names, relocations. Empty when nothing does. Sections without content do not count.
std::string difference(const ObjectFile& ours, const ObjectFile& theirs);

}  // namespace krel::Native
