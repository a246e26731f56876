// Comments that silence rules. Comes in: comments and findings. Goes out: fewer findings.

#include "tools/check/silence.hpp"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

namespace krel::Check {

namespace {

struct Silenced {
    std::set<std::pair<int, std::string_view>> onLines;
    std::set<std::string_view> everywhere;
};

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
    const std::size_t end = text.find_last_not_of(" \t") + 1;
    return begin < end ? text.substr(begin, end - begin) : std::string_view{};
}

/// Calls `take` with each rule of "WORD(RULE, ...)".
template <typename Take>
void eachRule(std::string_view comment, std::string_view word, const Take& take) {
    if (comment.substr(0, word.size()) != word || comment.size() <= word.size() ||
        comment[word.size()] != '(') {
        return;
    }
    std::string_view rest = comment.substr(word.size() + 1);
    rest = rest.substr(0, std::min(rest.find(')'), rest.size()));
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        take(trimmed(rest.substr(0, comma)));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
}

}  // namespace

void silence(const Syntax::Tree& tree, const LineIndex& lines, std::vector<Finding>& findings) {
    Silenced silenced;
    for (const SourceRange range : tree.tokens.comments) {
        std::string_view comment = tree.textOf(range);
        constexpr std::string_view mark = "krel:";
        comment = trimmed(comment.substr(1));
        if (comment.substr(0, mark.size()) != mark) {
            continue;
        }
        comment = trimmed(comment.substr(mark.size()));
        const int line = lines.positionOf(range.begin).line;
        const std::uint32_t begin = lines.offsetOf({line, 1});
        const bool isAlone = trimmed(tree.textOf({begin, range.begin})).empty();
        eachRule(comment, "allow", [&](std::string_view rule) {
            silenced.onLines.emplace(isAlone ? line + 1 : line, rule);
        });
        eachRule(comment, "allow-file",
                 [&](std::string_view rule) { silenced.everywhere.insert(rule); });
    }
    if (silenced.onLines.empty() && silenced.everywhere.empty()) {
        return;
    }
    const auto isSilenced = [&](const Finding& finding) {
        return finding.severity != Severity::Error &&
               (silenced.everywhere.count(finding.rule) != 0 ||
                silenced.onLines.count(
                    {lines.positionOf(finding.range.begin).line, finding.rule}) != 0);
    };
    findings.erase(std::remove_if(findings.begin(), findings.end(), isSilenced), findings.end());
}

}  // namespace krel::Check
