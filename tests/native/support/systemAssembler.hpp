#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace krel::Native {

/// The bytes of the object file that the system's assembler, `as`, makes of a text; nothing when it
/// refuses the text. Throws std::runtime_error when there is no assembler.
std::optional<std::string> assembledBySystem(std::string_view text);

/// The same for a text that it must take; throws std::runtime_error when it does not.
std::string objectBySystem(std::string_view text);

}  // namespace krel::Native
