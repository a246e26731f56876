#pragma once

#include <string_view>
#include <vector>

#include "tools/check/finding.hpp"
#include "tools/check/model.hpp"

namespace krel::Check {

/// Finds what no pass of the compiler refuses, but the assembler or the linker.
void findLinkFaults(const Model& model, std::vector<Finding>& findings);

/// Whether a finding is one of these.
bool isLinkFault(const Finding& finding);

/// The nodes that an internal error speaks of, which names no place.
std::vector<NodeId> nodesBehind(const Model& model, std::string_view message);

}  // namespace krel::Check
