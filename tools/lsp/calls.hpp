#pragma once

#include <cstddef>
#include <optional>

#include "tools/lsp/analysis.hpp"

namespace krel::Lsp {

/// A call that is being written.
struct OpenCall {
    std::uint32_t token;   // of the name, `print` or `exit`
    std::size_t argument;  // the number of the one that a place is in, counted from 0
};

/// The innermost call whose parentheses are open at a byte; without value when there is none.
std::optional<OpenCall> openCallAt(const Syntax::Tree& tree, std::uint32_t offset);

}  // namespace krel::Lsp
