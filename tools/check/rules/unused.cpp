// What nobody uses.
#include "tools/check/treeRules.hpp"
namespace krel::Check {
void findInTree(const Model&, std::vector<Finding>&) {}
}  // namespace krel::Check
