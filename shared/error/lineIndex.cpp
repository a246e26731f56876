// Lines and columns. Comes in: a text, once, and then bytes or lines and columns. Goes out: the
// other of the two. Nothing is changed after the construction.

#include "shared/error/lineIndex.hpp"

#include <algorithm>

namespace krel {

LineIndex::LineIndex(std::string_view text)
    : begins{0}, size(static_cast<std::uint32_t>(text.size())) {
    for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n', end + 1)) {
        begins.push_back(static_cast<std::uint32_t>(end + 1));
    }
}

LineAndColumn LineIndex::positionOf(std::uint32_t offset) const {
    const std::uint32_t inside = std::min(offset, size);
    const auto next = std::upper_bound(begins.begin(), begins.end(), inside);
    return {static_cast<int>(next - begins.begin()), static_cast<int>(inside - *(next - 1)) + 1};
}

std::uint32_t LineIndex::offsetOf(LineAndColumn position) const {
    const int line = std::clamp(position.line, 1, lineCount());
    const auto index = static_cast<std::size_t>(line - 1);
    const std::uint32_t end = line < lineCount() ? begins[index + 1] - 1 : size;
    const auto column = static_cast<std::uint32_t>(std::max(position.column, 1) - 1);
    return begins[index] + std::min(column, end - begins[index]);
}

}  // namespace krel
