#pragma once

#include <string_view>

namespace krel::Native {

/// The object file of startup.cpp, which is part of this program.
std::string_view startupObject();

}  // namespace krel::Native
