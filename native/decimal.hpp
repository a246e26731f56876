#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace krel::Native {

/// The bits of the double that is nearest to a decimal number: an optional sign, and digits with
/// one point among them. Nothing for any other text; and nothing where assemblers may not agree:
/// when the number lies very close to the middle between two doubles, or has so many digits that
/// this cannot be told.
std::optional<std::uint64_t> nearestDouble(std::string_view decimal);

}  // namespace krel::Native
