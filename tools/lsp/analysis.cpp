// What is known about a text. Comes in: the text. Goes out: tree, model and report, and ways from
// bytes to nodes.

#include "tools/lsp/analysis.hpp"

#include <algorithm>
#include <cctype>

namespace krel::Lsp {

namespace {

bool isWordToken(const Syntax::Tree& tree, const Syntax::Token& token) {
    const auto first = static_cast<unsigned char>(tree.textOf(token.range).front());
    return std::isalnum(first) != 0 || first == '_' || first == '"' || first == '\'';
}

bool holds(SourceRange outer, SourceRange inner) {
    return outer.begin <= inner.begin && inner.end <= outer.end;
}

}  // namespace

const Syntax::Tree& Analysis::tree() {
    if (itsTree == nullptr) {
        itsTree = std::make_unique<Syntax::Tree>(Syntax::read(source));
    }
    return *itsTree;
}

const Check::Model& Analysis::model() {
    if (itsModel == nullptr) {
        itsModel = std::make_unique<Check::Model>(tree());
    }
    return *itsModel;
}

const Check::Report& Analysis::report() {
    if (itsReport == nullptr) {
        itsReport = std::make_unique<Check::Report>(Check::check(source, "program.krl"));
    }
    return *itsReport;
}

std::uint32_t tokenAt(const Syntax::Tree& tree, std::uint32_t offset) {
    const std::vector<Syntax::Token>& words = tree.tokens.words;
    const auto last = static_cast<std::uint32_t>(words.size() - 1);
    const auto behind = std::upper_bound(
        words.begin(), words.end() - 1, offset,
        [](std::uint32_t value, const Syntax::Token& token) { return value < token.range.begin; });
    if (behind == words.begin()) {
        return last;
    }
    const auto found = static_cast<std::uint32_t>(behind - words.begin()) - 1;
    if (words[found].range.end < offset) {
        return last;
    }
    const bool touchesTwo =
        found > 0 && words[found].range.begin == offset && words[found - 1].range.end == offset;
    const bool isEarlier =
        touchesTwo && !isWordToken(tree, words[found]) && isWordToken(tree, words[found - 1]);
    return isEarlier ? found - 1 : found;
}

NodeId nodeOfToken(const Syntax::Tree& tree, std::uint32_t token) {
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        if (tree[id].token == token) {
            return id;
        }
    }
    return noNode;
}

/// Nodes follow each other by their ends, from the leaves to the root. So the first that ends
/// behind the range is in the right place, and only those around it may begin before it.
NodeId nodeAround(const Syntax::Tree& tree, SourceRange range) {
    const auto first = std::partition_point(
        tree.nodes.begin(), tree.nodes.end(),
        [range](const Syntax::Node& node) { return node.range.end < range.end; });
    if (first == tree.nodes.end()) {
        return tree.root();
    }
    auto id = static_cast<NodeId>(first - tree.nodes.begin());
    while (tree[id].parent != noNode && !holds(tree[id].range, range)) {
        id = tree[id].parent;
    }
    return id;
}

bool isInText(const Syntax::Tree& tree, std::uint32_t offset) {
    const auto lastBefore = [offset](const auto& list, const auto& rangeOf) {
        const auto behind = std::partition_point(list.begin(), list.end(), [&](const auto& each) {
            return rangeOf(each).begin < offset;
        });
        return behind == list.begin() ? SourceRange{} : rangeOf(*(behind - 1));
    };
    const auto itself = [](SourceRange range) { return range; };
    for (const auto* const comments : {&tree.tokens.comments, &tree.tokens.foreignComments}) {
        const SourceRange comment = lastBefore(*comments, itself);
        const bool isClosed = tree.textOf(comment).ends_with("}#");
        if (offset < comment.end || (offset == comment.end && offset > 0 && !isClosed)) {
            return true;
        }
    }
    SourceRange literal{};
    literal = lastBefore(tree.tokens.words, [](const Syntax::Token& token) {
        const bool isText = token.word == Word::CharacterLiteral ||
                            token.word == Word::StringLiteral ||
                            token.word == Word::ForeignString || token.word == Word::UnclosedString;
        return isText ? token.range : SourceRange{token.range.begin, token.range.begin};
    });
    return offset < literal.end;
}

}  // namespace krel::Lsp
