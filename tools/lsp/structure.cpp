// The structure of a text: what can be folded, and what encloses a place.

#include <algorithm>

#include "tools/lsp/features.hpp"

namespace krel::Lsp {

namespace {

/// Folds from the first line to the last one, if these are two.
void addFold(std::uint64_t first, std::uint64_t last, const char* kind, Json& list) {
    if (first >= last) {
        return;
    }
    Json fold = {{"startLine", first}, {"endLine", last}};
    if (kind != nullptr) {
        fold["kind"] = kind;
    }
    list.push_back(std::move(fold));
}

/// Blocks fold without the line of their closing brace.
void addBlocks(Document& document, Json& list) {
    const Syntax::Tree& tree = document.analysis().tree();
    for (const Syntax::Node& node : tree.nodes) {
        if (node.kind == Kind::Block) {
            const Range range = document.rangeOf(node.range);
            const bool isClosed = tree.textOf(node.range).ends_with('}');
            addFold(range.start.line, range.end.line - (isClosed && range.end.line > 0 ? 1 : 0),
                    nullptr, list);
        }
    }
}

bool isAloneInLine(const Document& document, SourceRange comment) {
    const SourceRange line = document.lines().line(document.lines().positionOf(comment.begin).line);
    const std::string_view before =
        std::string_view{document.text()}.substr(line.begin, comment.begin - line.begin);
    return before.find_first_not_of(" \t") == before.npos;
}

/// Comments of several lines fold, and so do several comments of one line below each other.
void addComments(Document& document, Json& list) {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    bool isOpen = false;
    for (SourceRange comment : document.analysis().tree().tokens.comments) {
        while (comment.end > comment.begin && document.text()[comment.end - 1] == '\n') {
            --comment.end;
        }
        const Range range = document.rangeOf(comment);
        const bool continues = isOpen && range.start.line == last + 1;
        if (!isAloneInLine(document, comment)) {
            continue;
        }
        if (!continues) {
            addFold(first, last, "comment", list);
            first = range.start.line;
        }
        isOpen = true;
        last = range.end.line;
    }
    addFold(first, last, "comment", list);
}

/// The ranges around a place, from the smallest to the whole text.
std::vector<SourceRange> rangesAround(Document& document, std::uint32_t offset) {
    const Syntax::Tree& tree = document.analysis().tree();
    std::vector<SourceRange> ranges;
    const SourceRange token = tree.tokens.words[tokenAt(tree, offset)].range;
    const bool hasToken = token.begin < token.end;
    ranges.push_back(hasToken ? token : SourceRange{offset, offset});
    for (NodeId id = nodeAround(tree, ranges.front()); id != noNode; id = tree[id].parent) {
        const SourceRange range = tree[id].range;
        const bool holds = range.begin <= ranges.back().begin && ranges.back().end <= range.end;
        if (holds && range != ranges.back()) {
            ranges.push_back(range);
        }
    }
    const SourceRange whole{0, static_cast<std::uint32_t>(document.text().size())};
    if (ranges.back() != whole) {
        ranges.push_back(whole);
    }
    return ranges;
}

}  // namespace

Json foldingRanges(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    Json list = Json::array();
    addBlocks(document, list);
    addComments(document, list);
    return list;
}

Json selectionRanges(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    Json list = Json::array();
    for (const Json& position : parameters.at("positions")) {
        const std::uint32_t offset = document.lines().offsetOf(positionFrom(position));
        const std::vector<SourceRange> ranges = rangesAround(document, offset);
        Json selection;
        for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
            Json inner = {{"range", toJson(document, *range)}};
            if (!selection.is_null()) {
                inner["parent"] = std::move(selection);
            }
            selection = std::move(inner);
        }
        list.push_back(std::move(selection));
    }
    return list;
}

}  // namespace krel::Lsp
