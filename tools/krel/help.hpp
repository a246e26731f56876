#pragma once

#include <string>

namespace krel {

/// The help on krel as a whole: examples, and all commands.
std::string overview();

/// The line that `krel --version` prints.
std::string version();

}  // namespace krel
