// Lines and columns of editors. Comes in: a text, once, and then bytes or places. Goes out: the
// other of the two.
//
// Where columns do not count bytes, the units before each block of the text are counted once. So no
// more than a block has to be looked at to find a place.

#include "tools/lsp/lines.hpp"

#include <algorithm>

namespace krel::Lsp {

namespace {

constexpr std::uint32_t blockSize = 256;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80U; });
}

}  // namespace

Lines::Lines(std::string_view itsText, Encoding itsEncoding)
    : text(itsText), encoding(itsEncoding), begins{0} {
    findBegins();
    if (encoding != Encoding::Utf8 && !isAscii(text)) {
        countUnits();
    }
}

/// Texts usually have no carriage returns, and one character is found faster than two.
void Lines::findBegins() {
    const bool hasReturns = text.find('\r') != text.npos;
    const auto nextEnd = [&](std::size_t from) {
        return hasReturns ? text.find_first_of("\r\n", from) : text.find('\n', from);
    };
    for (std::size_t end = nextEnd(0); end != text.npos; end = nextEnd(end + 1)) {
        const bool isFirstOfTwo = text.substr(end, 2) == "\r\n";
        if (!isFirstOfTwo) {
            begins.push_back(static_cast<std::uint32_t>(end + 1));
        }
    }
}

/// The units that the byte adds: all of a character's stand at its first byte.
std::uint32_t Lines::widthAt(std::uint32_t offset) const {
    const char byte = text[offset];
    if (isContinuation(byte)) {
        return 0;
    }
    return encoding == Encoding::Utf16 && static_cast<unsigned char>(byte) >= 0xF0U ? 2 : 1;
}

void Lines::countUnits() {
    std::uint32_t units = 0;
    for (std::uint32_t offset = 0; offset < text.size(); ++offset) {
        if (offset % blockSize == 0) {
            blocks.push_back(units);
        }
        units += widthAt(offset);
    }
    blocks.push_back(units);
}

std::uint64_t Lines::unitsBefore(std::uint32_t offset) const {
    if (blocks.empty()) {
        return offset;
    }
    std::uint64_t units = blocks[offset / blockSize];
    for (std::uint32_t at = offset - offset % blockSize; at < offset; ++at) {
        units += widthAt(at);
    }
    return units;
}

Position Lines::positionOf(std::uint32_t offset) const {
    offset = std::min(offset, static_cast<std::uint32_t>(text.size()));
    while (offset > 0 && offset < text.size() && isContinuation(text[offset])) {
        --offset;
    }
    const auto next = std::upper_bound(begins.begin(), begins.end(), offset);
    const auto number = static_cast<std::uint64_t>(next - begins.begin()) - 1;
    return {number, unitsBefore(offset) - unitsBefore(begins[number])};
}

SourceRange Lines::line(std::uint64_t number) const {
    const auto size = static_cast<std::uint32_t>(text.size());
    if (number >= begins.size()) {
        return {size, size};
    }
    std::uint32_t end = number + 1 < begins.size() ? begins[number + 1] : size;
    while (end > begins[number] && (text[end - 1] == '\n' || text[end - 1] == '\r')) {
        --end;
    }
    return {begins[number], end};
}

std::uint32_t Lines::offsetOf(Position position) const {
    const SourceRange range = line(position.line);
    if (position.character >= range.end - range.begin && blocks.empty()) {
        return range.end;
    }
    if (blocks.empty()) {
        std::uint32_t offset = range.begin + static_cast<std::uint32_t>(position.character);
        while (offset > range.begin && isContinuation(text[offset])) {
            --offset;
        }
        return offset;
    }
    const std::uint64_t wanted =
        unitsBefore(range.begin) + std::min<std::uint64_t>(position.character, text.size());
    const auto behind = std::upper_bound(blocks.begin(), blocks.end(), wanted);
    const auto block = static_cast<std::uint32_t>(behind - blocks.begin()) - 1;
    std::uint32_t offset = std::max(range.begin, std::min(block * blockSize, range.end));
    std::uint64_t units = unitsBefore(offset);
    while (offset < range.end && units + widthAt(offset) <= wanted) {
        units += widthAt(offset);
        ++offset;
    }
    while (offset > range.begin && offset < text.size() && isContinuation(text[offset])) {
        --offset;
    }
    return offset;
}

}  // namespace krel::Lsp
