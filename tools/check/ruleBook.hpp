#pragma once

#include <span>
#include <string_view>

namespace krel::Check {

/// What there is to read about a rule: the comment in rules/ that begins with "# " and its name.
struct RulePage {
    std::string_view name;
    std::string_view summary;  // the paragraph of "What it finds", in one line
    std::string_view text;     // the whole page, in Markdown
};

/// All rules in the order of their names.
std::span<const RulePage> allRules();

/// The page of a rule; null when there is none of that name.
const RulePage* findRule(std::string_view name);

/// The page that explains a message of krelcc, with or without the words before the message itself;
/// null when krelcc says no such thing about a program.
const RulePage* findRuleOfMessage(std::string_view message);

}  // namespace krel::Check
