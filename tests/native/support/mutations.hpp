#pragma once

#include <random>
#include <string>

namespace krel::Native {

/// A text with one to three small faults, at random: lines exchanged, doubled, dropped or taken
/// from elsewhere; words exchanged; characters dropped, doubled or replaced by others that an
/// assembler may take for something.
std::string mutated(std::string text, std::mt19937& random);

}  // namespace krel::Native
