// Findings for people. Comes in: a checked file. Goes out: text.

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "tools/check/render.hpp"

namespace krel::Check {

namespace {

constexpr std::size_t widest = 160;  // bytes of a line that are shown

struct Style {
    std::string_view bold;
    std::string_view blue;
    std::string_view none;
    std::array<std::string_view, 3> severities;
};

constexpr Style plain = {"", "", "", {"", "", ""}};
constexpr Style coloured = {
    "\x1b[1m", "\x1b[34m", "\x1b[0m", {"\x1b[1;31m", "\x1b[1;33m", "\x1b[1;36m"}};

/// A byte as it may be shown. What a terminal would take as a command is no such byte.
char shown(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return (code < 0x20 && byte != '\t') || code == 0x7f ? '?' : byte;
}

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::string shown(std::string_view text) {
    std::string made;
    for (const char byte : text) {
        made += shown(byte);
    }
    return made;
}

/// The line of a range, and marks below the range.
std::string excerptOf(std::string_view text, const LineIndex& lines, SourceRange range,
                      const Style& style, std::string_view colour) {
    const LineAndColumn place = lines.positionOf(range.begin);
    const std::size_t begin = lines.offsetOf({place.line, 1});
    std::size_t first = begin;  // what is shown of a long line
    if (range.begin - begin > widest / 2) {
        first = range.begin - widest / 2;
    }
    const std::string_view window = text.substr(first, widest);
    const std::size_t last = first + std::min(window.find('\n'), window.size());
    const std::string number = std::to_string(place.line);
    const std::string margin(number.size(), ' ');
    std::string marks;
    for (std::size_t at = first; at < range.begin && at < last; ++at) {
        if (!continuesCharacter(text[at])) {
            marks += text[at] == '\t' ? '\t' : ' ';
        }
    }
    const std::size_t marked = std::clamp<std::size_t>(range.end, range.begin + 1, last + 1);
    for (std::size_t at = range.begin; at < marked; ++at) {
        if (at == range.begin || at >= last || !continuesCharacter(text[at])) {
            marks += '^';
        }
    }
    const std::string blue{style.blue};
    const std::string none{style.none};
    return " " + blue + number + " | " + none + shown(text.substr(first, last - first)) + "\n " +
           blue + margin + " | " + none + std::string{colour} + marks + none + "\n";
}

}  // namespace

std::string_view nameOf(Severity severity) {
    constexpr std::array<std::string_view, 3> names = {"error", "warning", "hint"};
    return names[static_cast<std::size_t>(severity)];
}

std::string textOf(const CheckedFile& file, bool colours) {
    const Style& style = colours ? coloured : plain;
    const LineIndex lines{file.text};
    std::string all;
    std::set<std::pair<std::string_view, std::string_view>> shownHelps;  // once for each rule
    for (const Finding& finding : file.report.findings) {
        const LineAndColumn place = lines.positionOf(finding.range.begin);
        const std::string_view colour =
            style.severities[static_cast<std::size_t>(finding.severity)];
        all += std::string{style.bold} + file.path + ":" + std::to_string(place.line) + ":" +
               std::to_string(place.column) + ": " + std::string{style.none} + std::string{colour} +
               std::string{nameOf(finding.severity)} + std::string{style.none} + ": " +
               shown(finding.message) + " [" + std::string{finding.rule} + "]\n";
        all += excerptOf(file.text, lines, finding.range, style, colour);
        if (!finding.help.empty() && shownHelps.emplace(finding.rule, finding.help).second) {
            all += "   help: " + shown(finding.help) + "\n";
        }
    }
    return all;
}

namespace {

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

/// A stretch of lines that differ: the numbers of the first ones, and how many.
struct Hunk {
    std::size_t oldBegin;
    std::size_t oldCount;
    std::size_t newBegin;
    std::size_t newCount;
};

/// Where two texts differ. Looks a limited number of lines ahead for the next common stretch, so
/// that it takes time in proportion to the texts; a hunk may be larger than it has to be.
std::vector<Hunk> hunksOf(const std::vector<std::string_view>& before,
                          const std::vector<std::string_view>& after) {
    constexpr std::size_t farthest = 40;
    std::vector<Hunk> hunks;
    std::size_t left = 0;
    std::size_t right = 0;
    while (left < before.size() || right < after.size()) {
        if (left < before.size() && right < after.size() && before[left] == after[right]) {
            ++left;
            ++right;
            continue;
        }
        std::size_t oldCount = before.size() - left;
        std::size_t newCount = after.size() - right;
        bool found = false;
        for (std::size_t sum = 1; sum <= 2 * farthest && !found; ++sum) {
            for (std::size_t down = 0; down <= sum && !found; ++down) {
                const std::size_t i = left + down;
                const std::size_t j = right + (sum - down);
                if (i < before.size() && j < after.size() && before[i] == after[j] &&
                    before[i].find_first_not_of(" \t\n}") != before[i].npos) {
                    oldCount = down;
                    newCount = sum - down;
                    found = true;
                }
            }
        }
        hunks.push_back({left, oldCount, right, newCount});
        left += oldCount;
        right += newCount;
    }
    return hunks;
}

std::string rangeText(std::size_t begin, std::size_t count) {
    return std::to_string(count == 0 ? begin : begin + 1) + "," + std::to_string(count);
}

void addLine(std::string& all, char sign, std::string_view line, const Style& style) {
    const std::string_view colour = sign == '-'   ? style.severities[0]
                                    : sign == '+' ? style.severities[2]
                                                  : std::string_view{};
    const bool complete = !line.empty() && line.back() == '\n';
    all += std::string{colour} + sign + shown(line.substr(0, line.size() - (complete ? 1 : 0))) +
           std::string{colour.empty() ? std::string_view{} : style.none} + "\n";
    if (!complete) {
        all += "\\ No newline at end of file\n";
    }
}

}  // namespace

std::string differenceOf(const CheckedFile& file, bool colours) {
    const Style& style = colours ? coloured : plain;
    const std::vector<std::string_view> before = linesOf(file.text);
    const std::vector<std::string_view> after = linesOf(file.report.fixed);
    std::string all;
    for (const Hunk& hunk : hunksOf(before, after)) {
        if (all.empty()) {
            all = "--- " + file.path + "\n+++ " + file.path + "\n";
        }
        all += "@@ -" + rangeText(hunk.oldBegin, hunk.oldCount) + " +" +
               rangeText(hunk.newBegin, hunk.newCount) + " @@\n";
        for (std::size_t index = 0; index < hunk.oldCount; ++index) {
            addLine(all, '-', before[hunk.oldBegin + index], style);
        }
        for (std::size_t index = 0; index < hunk.newCount; ++index) {
            addLine(all, '+', after[hunk.newBegin + index], style);
        }
    }
    return all;
}

}  // namespace krel::Check
