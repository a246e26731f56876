#pragma once

#include <string>
#include <vector>

#include "tools/check/finding.hpp"
#include "tools/lsp/analysis.hpp"

namespace krel::Lsp {

/// One of several things that may be meant.
struct Meaning {
    std::string title;
    std::vector<Check::Edit> edits;  // in order; they do not overlap
};

/// What may be meant where a repair would be a guess, the most likely first: the user chooses.
/// Empty for all other findings. What a choice makes may have findings of its own.
std::vector<Meaning> meaningsOf(Analysis& analysis, const Check::Finding& finding);

}  // namespace krel::Lsp
