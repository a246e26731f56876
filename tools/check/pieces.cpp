// Repaired texts as sequences of pieces. Comes in: ranges of the user's text and new texts. Goes
// out: the text, the way back from it, and the list of changes.

#include "tools/check/pieces.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace krel::Check {

void Pieces::keep(SourceRange range) {
    if (range.begin >= range.end) {
        return;
    }
    if (!list.empty() && list.back().kind == Piece::Kind::Kept &&
        list.back().origin.end == range.begin) {
        list.back().origin.end = range.end;
        return;
    }
    list.push_back({Piece::Kind::Kept, range, {}});
}

void Pieces::insert(std::string text, SourceRange origin) {
    if (!text.empty()) {
        list.push_back({Piece::Kind::New, origin, std::move(text)});
    }
}

void Pieces::append(Pieces&& other) {
    for (Piece& piece : other.list) {
        if (piece.kind == Piece::Kind::Kept) {
            keep(piece.origin);
        } else {
            list.push_back(std::move(piece));
        }
    }
    other.list.clear();
}

void Pieces::markAsMoved() {
    for (Piece& piece : list) {
        piece.kind = piece.kind == Piece::Kind::Kept ? Piece::Kind::Moved : piece.kind;
    }
}

std::string Pieces::textOver(std::string_view source) const {
    std::string text;
    for (const Piece& piece : list) {
        text += piece.kind == Piece::Kind::New
                    ? std::string_view{piece.text}
                    : source.substr(piece.origin.begin, piece.origin.end - piece.origin.begin);
    }
    return text;
}

RepairedText::RepairedText(const Pieces& pieces, std::string_view source)
    : made(pieces.textOver(source)) {
    std::uint32_t at = 0;
    for (const Piece& piece : pieces.pieces()) {
        const bool exact = piece.kind != Piece::Kind::New;
        stretches.push_back({at, exact, piece.origin});
        at += exact ? piece.origin.end - piece.origin.begin
                    : static_cast<std::uint32_t>(piece.text.size());
    }
    if (stretches.empty()) {
        stretches.push_back({0, true, {}});
    }
    listEdits(pieces, source);
}

const RepairedText::Stretch& RepairedText::stretchAt(std::uint32_t place) const {
    const auto behind = std::upper_bound(
        stretches.begin(), stretches.end(), place,
        [](std::uint32_t value, const Stretch& stretch) { return value < stretch.begin; });
    return behind == stretches.begin() ? stretches.front() : *std::prev(behind);
}

SourceRange RepairedText::originOf(SourceRange range) const {
    const Stretch& first = stretchAt(range.begin);
    if (range.end <= range.begin) {
        const std::uint32_t place =
            first.exact ? std::min(first.origin.begin + range.begin - first.begin, first.origin.end)
                        : first.origin.begin;
        return {place, first.exact ? place : std::max(place, first.origin.end)};
    }
    const Stretch& last = stretchAt(range.end - 1);
    SourceRange origin = first.origin;
    if (first.exact) {
        origin.begin = std::min(first.origin.begin + (range.begin - first.begin), origin.end);
    }
    origin.end = last.exact
                     ? std::min(last.origin.begin + (range.end - last.begin), last.origin.end)
                     : last.origin.end;
    if (origin.end < origin.begin) {  // the pieces come from several places
        return first.exact && first.origin.end > origin.begin
                   ? SourceRange{origin.begin, first.origin.end}
                   : first.origin;
    }
    return origin;
}

/// Everything between two kept pieces is a change. Moved pieces are part of the new text.
void RepairedText::listEdits(const Pieces& pieces, std::string_view source) {
    std::uint32_t end = 0;  // of what was kept or replaced so far
    std::string pending;
    std::vector<SourceRange> because;
    const auto flush = [&](std::uint32_t begin) {
        if (end < begin || !pending.empty()) {
            changes.push_back({{end, begin}, std::move(pending)});
            reasons.push_back(std::move(because));
            reasons.back().push_back({end, begin});
        }
        pending.clear();
        because.clear();
    };
    for (const Piece& piece : pieces.pieces()) {
        const std::string_view taken =
            source.substr(piece.origin.begin, piece.origin.end - piece.origin.begin);
        if (piece.kind == Piece::Kind::Kept && piece.origin.begin >= end) {
            flush(piece.origin.begin);
            end = piece.origin.end;
        } else {
            const std::string_view added =
                piece.kind == Piece::Kind::New ? std::string_view{piece.text} : taken;
            pending += added;
            if (added.find_first_not_of(" \t\n") != added.npos) {
                because.push_back(piece.origin);
            }
        }
    }
    flush(static_cast<std::uint32_t>(source.size()));
}

}  // namespace krel::Check
