#pragma once

#include <string_view>

namespace krel::Native {

/// Expects that our assembler knows a text, and makes of it what the system's makes.
void expectSameObject(std::string_view text);

}  // namespace krel::Native
