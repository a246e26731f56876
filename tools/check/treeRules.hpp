#pragma once

#include <vector>

#include "tools/check/finding.hpp"
#include "tools/check/model.hpp"

/// What the compiler accepts and people should know of: the classic faults that the language leaves
/// to its users, and words that do something else than they seem to say. Each function adds its
/// findings in any order.
namespace krel::Check {

/// All of the rules below.
void findInTree(const Model& model, std::vector<Finding>& findings);

/// Variables, parameters and functions that nobody uses.
void findUnused(const Model& model, std::vector<Finding>& findings);
/// Ways through functions and loops that are missing, or that nothing takes.
void findPaths(const Model& model, std::vector<Finding>& findings);
/// Expressions with a value that surprises.
void findValues(const Model& model, std::vector<Finding>& findings);
/// Names and variables that have no value.
void findUnknownValues(const Model& model, std::vector<Finding>& findings);

}  // namespace krel::Check
