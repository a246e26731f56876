#pragma once

#include <cstddef>
#include <string>

namespace krel {

/// The longest text that is read from standard input, in bytes: far more than krelcc can compile in
/// the memory of usual machines, and an end for what has none.
constexpr std::size_t longestInput = std::size_t{256} * 1024 * 1024;

/// Reads standard input to its end. Throws std::runtime_error when it cannot be read, or is longer
/// than `longestInput`.
std::string readStandardInput();

}  // namespace krel
