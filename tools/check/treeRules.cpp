// The list of the rules that look at the tree. Comes in: a model. Goes out: findings.

#include "tools/check/treeRules.hpp"

#include <algorithm>

namespace krel::Check {

void findInTree(const Model& model, std::vector<Finding>& findings) {
    const std::vector<Syntax::Gap>& gaps = model.tree().gaps;
    const bool isWhole = std::none_of(gaps.begin(), gaps.end(), [](const Syntax::Gap& gap) {
        return gap.kind == Syntax::Gap::Kind::Unexpected || gap.kind == Syntax::Gap::Kind::TooDeep;
    });
    if (isWhole) {  // what could not be read may use a name or leave a loop
        findUnused(model, findings);
        findPaths(model, findings);
    }
    findValues(model, findings);
    findUnknownValues(model, findings);
}

}  // namespace krel::Check
