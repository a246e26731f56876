#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace krel {

/// The one layout of Krel programs, described in docs/format.md.
namespace Format {

/// What has become of a text.
struct Result {
    bool parses = false;
    std::string text;                 // formatted; empty when it does not parse
    std::vector<std::string> faults;  // why it does not parse, as the compiler says it, in order
};

/// Lays a program out. Only white space changes, comments keep their places, and formatting the
/// result changes nothing. Takes time in proportion to the text, which has less than two gigabytes.
/// The name of the source stands in the faults. Throws std::length_error for a longer text, and
/// std::logic_error when the result would not be the same program: that is a fault of this library.
Result format(std::string_view source, const std::string& name);

}  // namespace Format

}  // namespace krel
