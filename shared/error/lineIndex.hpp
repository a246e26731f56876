#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace krel {

/// A line and a column, both counted from 1; columns count bytes.
struct LineAndColumn {
    int line = 1;
    int column = 1;

    friend bool operator==(const LineAndColumn&, const LineAndColumn&) = default;
};

/// Where the lines of a text begin: turns places that are counted in bytes into lines and columns,
/// and back. It does not hold the text.
class LineIndex {
public:
    explicit LineIndex(std::string_view text);

    /// The line and column of a byte. The end of the text has a place, too; any later byte has the
    /// same one.
    LineAndColumn positionOf(std::uint32_t offset) const;
    /// The byte at a line and column. A column behind the end of its line is that end; a line
    /// before the first counts as the first, one after the last as the last.
    std::uint32_t offsetOf(LineAndColumn position) const;
    int lineCount() const { return static_cast<int>(begins.size()); }

private:
    std::vector<std::uint32_t> begins;  // of all lines; the first is 0
    std::uint32_t size;                 // of the text
};

}  // namespace krel
