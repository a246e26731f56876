// Counts for people and for other tools. Comes in: a machine that has counted. Goes out: a table
// and an annotated source, or a record for lcov.

#include "tools/machine/profile.hpp"

#include <algorithm>

#include "shared/symboltable/symbol.hpp"

namespace krel::Execution {

namespace {

constexpr std::size_t width = 12;  // of a column of counts

std::string rightAligned(const std::string& text, std::size_t columns = width) {
    return std::string(text.size() < columns ? columns - text.size() : 0, ' ') + text;
}

}  // namespace

/// A line has run as often as that part of it that has run most: the condition of a loop, for
/// example.
Profile::Profile(const FrontEnd::Compilation& itsCompilation, const Machine& machine)
    : compilation(itsCompilation) {
    const auto& irLines = compilation.irLines();
    const auto lineOf = [this](SourceRange range) {
        return compilation.lines().positionOf(range.begin).line;
    };
    for (std::size_t number = 0; number < irLines.size(); ++number) {
        std::uint64_t& count = lines[lineOf(irLines[number].source)];
        count = std::max(count, machine.counts()[number]);
    }
    const auto& all = machine.program().functions;
    for (std::size_t number = 0; number < all.size(); ++number) {
        const Symbol* const symbol = compilation.symbol(all[number].name, all[number].name);
        const int line = symbol == nullptr ? 1 : lineOf(symbol->getPlace().range);
        const std::uint64_t calls = machine.callsOf(number);
        functions.push_back({all[number].name, line, calls});
        lines[line] = std::max(lines[line], calls);
    }
}

std::string Profile::asText() const {
    std::vector<FunctionRow> rows = functions;
    std::ranges::stable_sort(rows, std::greater{}, &FunctionRow::calls);
    std::string text = rightAligned("calls") + "  function\n";
    for (const FunctionRow& row : rows) {
        text += rightAligned(std::to_string(row.calls)) + "  " + row.name + "\n";
    }
    text += "\n" + rightAligned("runs") + "  line\n";
    const std::string_view source = compilation.text();
    const auto lineCount = static_cast<std::size_t>(std::ranges::count(source, '\n')) + 1;
    const std::size_t numberWidth = std::to_string(lineCount).size();
    int line = 1;
    for (std::size_t begin = 0; begin < source.size(); ++line) {
        const std::size_t end = std::min(source.find('\n', begin), source.size());
        const auto count = lines.find(line);
        text += rightAligned(count == lines.end() ? "" : std::to_string(count->second)) + "  ";
        text += rightAligned(std::to_string(line), numberWidth) + (end > begin ? " | " : " |");
        text += source.substr(begin, end - begin);
        text += "\n";
        begin = end + 1;
    }
    return text;
}

std::string Profile::asLcov(const std::string& path) const {
    std::string text = "TN:\nSF:" + path + "\n";
    std::string counts;
    std::size_t called = 0;
    for (const FunctionRow& row : functions) {
        text += "FN:" + std::to_string(row.line) + "," + row.name + "\n";
        counts += "FNDA:" + std::to_string(row.calls) + "," + row.name + "\n";
        called += row.calls != 0 ? 1 : 0;
    }
    text += counts + "FNF:" + std::to_string(functions.size()) + "\nFNH:" + std::to_string(called) +
            "\n";
    std::size_t hit = 0;
    for (const auto& [line, count] : lines) {
        text += "DA:" + std::to_string(line) + "," + std::to_string(count) + "\n";
        hit += count != 0 ? 1 : 0;
    }
    return text + "LF:" + std::to_string(lines.size()) + "\nLH:" + std::to_string(hit) +
           "\nend_of_record\n";
}

}  // namespace krel::Execution
