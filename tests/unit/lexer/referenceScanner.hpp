#pragma once

#include <string>

namespace krel {

/// Scans a text by trying every rule at every place, in the format of `scan` (scan.hpp): the
/// obvious way, which the generated scanner has to agree with.
std::string referenceScan(const std::string& text);

}  // namespace krel
