// Formatting. Comes in: a document, and what of it is to be laid out. Goes out: edits of its white
// space. Programs that do not parse are left as they are.

#include <algorithm>
#include <cctype>

#include "tools/format/columns.hpp"
#include "tools/format/format.hpp"
#include "tools/lsp/features.hpp"

namespace krel::Lsp {

namespace {

using Check::Edit;

bool isWhite(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

std::size_t behindWhite(std::string_view text, std::size_t at) {
    while (at < text.size() && isWhite(text[at])) {
        ++at;
    }
    return at;
}

/// The runs of white space in which two texts differ; they have everything else in common.
std::vector<Edit> whiteSpaceEdits(std::string_view from, std::string_view to) {
    std::vector<Edit> edits;
    std::size_t at = 0;
    std::size_t there = 0;
    while (at < from.size() || there < to.size()) {
        const std::size_t end = behindWhite(from, at);
        const std::size_t thereEnd = behindWhite(to, there);
        const std::string_view run = to.substr(there, thereEnd - there);
        if (from.substr(at, end - at) != run) {
            edits.push_back({{static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end)},
                             std::string{run}});
        }
        at = std::min(end + 1, from.size());
        there = std::min(thereEnd + 1, to.size());
    }
    return edits;
}

/// All edits that lay a document out; none when it does not parse.
std::vector<Edit> layoutOf(const Document& document) {
    const Format::Result result = Format::format(document.text(), "program.krl");
    return result.parses ? whiteSpaceEdits(document.text(), result.text) : std::vector<Edit>{};
}

/// Those of them that lie in a range.
std::vector<Edit> layoutWithin(const Document& document, SourceRange range) {
    std::vector<Edit> edits = layoutOf(document);
    edits.erase(std::remove_if(edits.begin(), edits.end(),
                               [range](const Edit& edit) {
                                   return edit.range.begin < range.begin ||
                                          edit.range.end > range.end;
                               }),
                edits.end());
    return edits;
}

/// From the line end before the first line of a range to the end of its last line.
SourceRange wholeLines(const Document& document, SourceRange range) {
    const Lines& lines = document.lines();
    const std::uint64_t first = lines.positionOf(range.begin).line;
    const std::uint64_t last = lines.positionOf(range.end).line;
    const std::uint32_t begin = first == 0 ? 0 : lines.line(first - 1).end;
    return {begin, lines.line(last).end};
}

/// The statement or function that ends with the token right before a byte.
SourceRange finishedAt(Document& document, std::uint32_t offset) {
    const Syntax::Tree& tree = document.analysis().tree();
    const std::uint32_t begin = offset == 0 ? 0 : offset - 1;
    NodeId id = nodeAround(tree, {begin, offset});
    while (id != noNode && tree[id].range.end <= offset && tree[id].parent != noNode &&
           tree[tree[id].parent].range.end == offset &&
           tree[tree[id].parent].kind != Kind::Program) {
        id = tree[id].parent;
    }
    return tree[id].kind == Kind::Program ? SourceRange{begin, offset} : tree[id].range;
}

/// The edit that indents the line of a byte by the blocks that are open there.
std::vector<Edit> indentation(Document& document, std::uint32_t offset) {
    const SourceRange line = document.lines().line(document.lines().positionOf(offset).line);
    std::size_t depth = 0;
    const Syntax::Tree& tree = document.analysis().tree();
    std::uint32_t end = line.begin;
    while (end < line.end && (tree.text[end] == ' ' || tree.text[end] == '\t')) {
        ++end;
    }
    for (const Syntax::Token& token : tree.tokens.words) {
        const bool isBefore = token.range.begin < line.begin;
        if (token.word == Word::LeftBrace && isBefore) {
            ++depth;
        } else if (token.word == Word::RightBrace && (isBefore || token.range.begin == end)) {
            depth -= depth > 0 ? 1 : 0;
        }
        if (!isBefore) {
            break;
        }
    }
    std::string blanks(std::min(depth * Format::indentationStep, Format::mostColumns), ' ');
    if (isInText(tree, line.begin) || tree.text.substr(line.begin, end - line.begin) == blanks) {
        return {};
    }
    return {{{line.begin, end}, std::move(blanks)}};
}

}  // namespace

Json formatDocument(Session& session, const Json& parameters) {
    const Document& document = documentOf(session, parameters);
    return toJson(document, layoutOf(document));
}

Json formatRange(Session& session, const Json& parameters) {
    const Document& document = documentOf(session, parameters);
    const SourceRange range = document.bytesOf(rangeFrom(parameters.at("range")));
    return toJson(document, layoutWithin(document, wholeLines(document, range)));
}

Json formatOnType(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    const std::uint32_t offset = offsetOf(document, parameters);
    if (parameters.at("ch").get<std::string>() == "\n") {
        return toJson(document, indentation(document, offset));
    }
    if (isInText(document.analysis().tree(), offset)) {
        return Json::array();
    }
    const SourceRange finished = finishedAt(document, offset);
    SourceRange range = wholeLines(document, finished);
    range.end = finished.end;
    return toJson(document, layoutWithin(document, range));
}

}  // namespace krel::Lsp
