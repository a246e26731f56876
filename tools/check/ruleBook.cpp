// Ways to the pages of the rules. Comes in: a name or a message of krelcc. Goes out: a page. The
// table itself is made from the comments while building (makePages.cpp).

#include "tools/check/ruleBook.hpp"

#include <algorithm>
#include <array>

#include "tools/check/compilerFaults.hpp"

namespace krel::Check {

const RulePage* findRule(std::string_view name) {
    const std::span<const RulePage> rules = allRules();
    const auto found = std::lower_bound(
        rules.begin(), rules.end(), name,
        [](const RulePage& page, std::string_view wanted) { return page.name < wanted; });
    return found != rules.end() && found->name == name ? &*found : nullptr;
}

const RulePage* findRuleOfMessage(std::string_view message) {
    constexpr std::array<std::string_view, 5> kinds = {
        "Lexer error", "Syntax error", "Semantic error", "Compilation error", "Internal error"};
    for (const std::string_view kind : kinds) {
        const std::size_t colon = message.find(": ");
        if (message.substr(0, kind.size()) == kind && colon != message.npos) {
            message.remove_prefix(colon + 2);
        }
    }
    return findRule(ruleOfMessage(message));
}

}  // namespace krel::Check
