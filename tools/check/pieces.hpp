#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shared/error/place.hpp"
#include "tools/check/finding.hpp"

namespace krel::Check {

/// A part of a repaired text.
struct Piece {
    enum class Kind : std::uint8_t {
        Kept,   // stands where it stood; the text is that of the origin
        Moved,  // the same text at another place
        New     // written by a repair, because of what stands at the origin
    };

    Kind kind;
    SourceRange origin;  // in the user's text
    std::string text;    // of new pieces
};

/// A repaired text that is being written, or a part of one.
class Pieces {
public:
    /// Takes over a range of the user's text.
    void keep(SourceRange range);
    /// Writes a text because of a range of the user's text.
    void insert(std::string text, SourceRange origin);
    /// Adds all of `other` behind.
    void append(Pieces&& other);
    /// From now on everything here counts as moved.
    void markAsMoved();
    bool empty() const { return list.empty(); }
    const std::vector<Piece>& pieces() const { return list; }
    /// The text. `source` is the user's.
    std::string textOver(std::string_view source) const;

private:
    std::vector<Piece> list;
};

/// A repaired text as a whole, which knows where everything comes from.
class RepairedText {
public:
    RepairedText(const Pieces& pieces, std::string_view source);

    const std::string& text() const { return made; }
    /// The user's bytes behind a range of the repaired text. What a repair wrote stands for the
    /// range that made it necessary.
    SourceRange originOf(SourceRange range) const;
    /// The changes that lead from the user's text to this one, in order; they do not touch.
    const std::vector<Edit>& edits() const { return changes; }
    /// For each of them, the ranges of the user's text that made it necessary.
    const std::vector<std::vector<SourceRange>>& causes() const { return reasons; }

private:
    struct Stretch {
        std::uint32_t begin;  // in the repaired text
        bool exact;           // taken over byte by byte
        SourceRange origin;
    };

    const Stretch& stretchAt(std::uint32_t place) const;
    void listEdits(const Pieces& pieces, std::string_view source);

    std::string made;
    std::vector<Stretch> stretches;  // in order; at least one
    std::vector<Edit> changes;
    std::vector<std::vector<SourceRange>> reasons;
};

}  // namespace krel::Check
