// An open text. Comes in: edits. Goes out: the text as it is now, and what is known of it.

#include "tools/lsp/document.hpp"

#include <algorithm>

namespace krel::Lsp {

Document::Document(std::string itsUri, std::int64_t itsVersion, std::string itsText,
                   Encoding itsEncoding)
    : name(std::move(itsUri)),
      number(itsVersion),
      content(std::move(itsText)),
      encoding(itsEncoding) {
    startAnew();
}

/// What was known is let go before the rest, which it refers to.
void Document::startAnew() {
    repairs.reset();
    known = std::make_unique<Analysis>(content);
    repairs = std::make_unique<QuickFixes>(*known);
    index = std::make_unique<Lines>(content, encoding);
}

SourceRange Document::bytesOf(const Range& range) const {
    const std::uint32_t start = index->offsetOf(range.start);
    const std::uint32_t end = index->offsetOf(range.end);
    return {std::min(start, end), std::max(start, end)};
}

Range Document::rangeOf(SourceRange bytes) const {
    return {index->positionOf(bytes.begin), index->positionOf(bytes.end)};
}

void Document::replace(const std::optional<Range>& range, std::string_view text) {
    if (range) {
        const SourceRange bytes = bytesOf(*range);
        content.replace(bytes.begin, bytes.end - bytes.begin, text);
    } else {
        content = text;
    }
    startAnew();
}

}  // namespace krel::Lsp
