// The list of the rules that look at the tree. Comes in: a model. Goes out: findings.

#include "tools/check/treeRules.hpp"

namespace krel::Check {

void findInTree(const Model& model, std::vector<Finding>& findings) {
    findUnused(model, findings);
    findPaths(model, findings);
    findValues(model, findings);
    findUnknownValues(model, findings);
}

}  // namespace krel::Check
