#pragma once

#include <string_view>

#include "native/objectFile.hpp"

namespace krel::Native {

/// Assembles a text as the compiler writes it: each line as it stands in the tables of
/// instructionSet.hpp and of the directives, with one tab, single blanks and a line feed. The
/// sections, symbols and relocations are those that the GNU assembler makes of it. The object's
/// names are views of the text. Throws NotKnown for any other text.
ObjectFile assemble(std::string_view text);

}  // namespace krel::Native
