#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "tools/lsp/analysis.hpp"
#include "tools/lsp/lines.hpp"
#include "tools/lsp/quickFixes.hpp"

namespace krel::Lsp {

/// A place of a text from one position up to, not including, another one.
struct Range {
    Position start;
    Position end;
};

/// A text that an editor has open, and all that is known of it. It is not copied or moved: its
/// parts refer to its text.
class Document {
public:
    Document(std::string itsUri, std::int64_t itsVersion, std::string itsText,
             Encoding itsEncoding);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() = default;

    const std::string& uri() const { return name; }
    std::int64_t version() const { return number; }
    const std::string& text() const { return content; }
    const Lines& lines() const { return *index; }
    /// What is known about the text; until it changes.
    Analysis& analysis() { return *known; }
    /// The repairs of the same text.
    QuickFixes& fixes() { return *repairs; }

    /// The bytes of a range; an end before the start changes places with it.
    SourceRange bytesOf(const Range& range) const;
    Range rangeOf(SourceRange bytes) const;

    /// Puts a text in the place of a range, or of everything.
    void replace(const std::optional<Range>& range, std::string_view text);
    void setVersion(std::int64_t version) { number = version; }

private:
    void startAnew();

    std::string name;
    std::int64_t number;
    std::string content;
    Encoding encoding;
    std::unique_ptr<Lines> index;
    std::unique_ptr<Analysis> known;
    std::unique_ptr<QuickFixes> repairs;
};

/// The open documents by their names.
using Documents = std::map<std::string, std::unique_ptr<Document>, std::less<>>;

}  // namespace krel::Lsp
