// Comes in: a text, and the pieces that the compiler's scanner cuts it into. Goes out: the tokens
// of the tolerant reading, which joins what other languages write as one word.

#include "tools/syntax/tokens.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "parser/parser.hpp"

namespace krel::Syntax {

namespace {

using Piece = FrontEnd::Token;

constexpr std::array wordsOfCodes = {
    std::pair{int{T_ID}, Word::Name},
    std::pair{int{T_INT_LITERAL}, Word::IntLiteral},
    std::pair{int{T_DECIMAL_LITERAL}, Word::DoubleLiteral},
    std::pair{int{T_CHARACTER_LITERAL}, Word::CharacterLiteral},
    std::pair{int{T_STRING_LITERAL}, Word::StringLiteral},
    std::pair{int{T_PLUS}, Word::Plus},
    std::pair{int{T_MINUS}, Word::Minus},
    std::pair{int{T_TIMES}, Word::Times},
    std::pair{int{T_DIVIDE}, Word::Divide},
    std::pair{int{T_LPAREN}, Word::LeftParenthesis},
    std::pair{int{T_RPAREN}, Word::RightParenthesis},
    std::pair{int{T_LBRACE}, Word::LeftBrace},
    std::pair{int{T_RBRACE}, Word::RightBrace},
    std::pair{int{T_LBRACKET}, Word::LeftBracket},
    std::pair{int{T_RBRACKET}, Word::RightBracket},
    std::pair{int{T_SEMICOLON}, Word::Semicolon},
    std::pair{int{T_COMMA}, Word::Comma},
    std::pair{int{T_ASSIGN}, Word::Assign},
    std::pair{int{T_PLUS_ASSIGN}, Word::PlusAssign},
    std::pair{int{T_MINUS_ASSIGN}, Word::MinusAssign},
    std::pair{int{T_INCREMENT}, Word::Increment},
    std::pair{int{T_DECREMENT}, Word::Decrement},
    std::pair{int{T_LESS}, Word::Less},
    std::pair{int{T_GREATER}, Word::Greater},
    std::pair{int{T_LESS_EQUAL}, Word::LessEqual},
    std::pair{int{T_GREATER_EQUAL}, Word::GreaterEqual},
    std::pair{int{T_EQUAL}, Word::Equal},
    std::pair{int{T_NOT_EQUAL}, Word::NotEqual},
    std::pair{int{T_NOT}, Word::Not},
    std::pair{int{T_AND}, Word::And},
    std::pair{int{T_OR}, Word::Or},
    std::pair{int{T_INT}, Word::Int},
    std::pair{int{T_DOUBLE}, Word::Double},
    std::pair{int{T_BOOLEAN}, Word::Boolean},
    std::pair{int{T_CHARACTER}, Word::Character},
    std::pair{int{T_VOID}, Word::Void},
    std::pair{int{T_STRING}, Word::String},
    std::pair{int{T_IF}, Word::If},
    std::pair{int{T_ELSE}, Word::Else},
    std::pair{int{T_ELSEIF}, Word::ElseIf},
    std::pair{int{T_EXIT}, Word::Exit},
    std::pair{int{T_PRINT}, Word::Print},
    std::pair{int{T_TRUE}, Word::True},
    std::pair{int{T_FALSE}, Word::False},
    std::pair{int{T_FOR}, Word::For},
    std::pair{int{T_WHILE}, Word::While},
    std::pair{int{T_CONTINUE}, Word::Continue},
    std::pair{int{T_BREAK}, Word::Break},
    std::pair{int{T_RETURN}, Word::Return},
};

constexpr std::array wordsOfCharacters = {
    std::pair{'%', Word::Percent}, std::pair{'?', Word::Question},   std::pair{':', Word::Colon},
    std::pair{'.', Word::Dot},     std::pair{'&', Word::BitAnd},     std::pair{'|', Word::BitOr},
    std::pair{'^', Word::BitXor},  std::pair{'~', Word::Complement},
};

/// Two words that touch and are one elsewhere.
struct Pair {
    Word first;
    Word second;
    Word joined;
};

constexpr std::array pairs = {
    Pair{Word::Times, Word::Assign, Word::TimesAssign},
    Pair{Word::Divide, Word::Assign, Word::DivideAssign},
    Pair{Word::Percent, Word::Assign, Word::PercentAssign},
    Pair{Word::Colon, Word::Assign, Word::Assign},
    Pair{Word::Less, Word::Less, Word::ShiftLeft},
    Pair{Word::Greater, Word::Greater, Word::ShiftRight},
    Pair{Word::BitAnd, Word::Assign, Word::BitAndAssign},
    Pair{Word::BitOr, Word::Assign, Word::BitOrAssign},
    Pair{Word::BitXor, Word::Assign, Word::BitXorAssign},
    Pair{Word::Less, Word::LessEqual, Word::ShiftLeftAssign},
    Pair{Word::Greater, Word::GreaterEqual, Word::ShiftRightAssign},
    Pair{Word::Equal, Word::Assign, Word::Equal},        // ===
    Pair{Word::NotEqual, Word::Assign, Word::NotEqual},  // !==
    Pair{Word::Times, Word::Times, Word::Power},
    Pair{Word::Colon, Word::Colon, Word::Scope},
    Pair{Word::Less, Word::Greater, Word::NotEqual},
    Pair{Word::Dot, Word::IntLiteral, Word::ForeignNumber},
    Pair{Word::IntLiteral, Word::Dot, Word::ForeignNumber},
    Pair{Word::IntLiteral, Word::Name, Word::ForeignNumber},
    Pair{Word::DoubleLiteral, Word::Name, Word::ForeignNumber},
    Pair{Word::ForeignNumber, Word::Name, Word::ForeignNumber},
    Pair{Word::Illegal, Word::Illegal, Word::Illegal},
    Pair{Word::Illegal, Word::Name, Word::Illegal},
};

Word wordOf(const Piece& piece, char character) {
    if (piece.kind == Piece::Kind::Word) {
        const auto entry =
            std::find_if(wordsOfCodes.begin(), wordsOfCodes.end(),
                         [&](const auto& candidate) { return candidate.first == piece.code; });
        return entry == wordsOfCodes.end() ? Word::Illegal : entry->second;
    }
    const auto entry =
        std::find_if(wordsOfCharacters.begin(), wordsOfCharacters.end(),
                     [&](const auto& candidate) { return candidate.first == character; });
    return entry == wordsOfCharacters.end() ? Word::Illegal : entry->second;
}

class Joiner {
public:
    Joiner(std::string_view itsText, const std::vector<Piece>& itsPieces)
        : text(itsText), pieces(itsPieces) {}

    Tokens join() {
        while (next < pieces.size()) {
            take(pieces[next++]);
        }
        const auto size = static_cast<std::uint32_t>(text.size());
        found.words.push_back({Word::End, {size, size}, true});
        return std::move(found);
    }

private:
    void take(const Piece& piece) {
        switch (piece.kind) {
            case Piece::Kind::WhiteSpace:
                noteLines(piece.range);
                return;
            case Piece::Kind::Comment:
                found.comments.push_back(piece.range);
                noteLines(piece.range);
                return;
            case Piece::Kind::IllegalCharacter:
            case Piece::Kind::Word:
                break;
        }
        const char character = text[piece.range.begin];
        if (character == '\r') {
            found.carriageReturns.push_back(piece.range);
        } else if (piece.kind == Piece::Kind::IllegalCharacter && character == '\'') {
            takeQuoted(piece.range);
        } else if (piece.kind == Piece::Kind::IllegalCharacter && character == '"') {
            takeUnclosed(piece.range);
        } else {
            add(wordOf(piece, character), piece.range);
        }
    }

    void noteLines(SourceRange range) {
        const std::string_view piece = text.substr(range.begin, range.end - range.begin);
        lineBegins = lineBegins || piece.find('\n') != piece.npos;
    }

    void add(Word word, SourceRange range) {
        if (!found.words.empty() && found.words.back().range.end == range.begin) {
            Token& before = found.words.back();
            if (before.word == Word::Divide && (word == Word::Divide || word == Word::Times)) {
                takeForeignComment(word);
                return;
            }
            if (isSignOfExponent(before, word, range)) {
                before.word = Word::ForeignNumber;
                before.range.end = range.end;
                return;
            }
            for (const Pair& pair : pairs) {
                if (pair.first == before.word && pair.second == word) {
                    before.word = pair.joined;
                    before.range.end = range.end;
                    return;
                }
            }
            if (before.word == Word::ForeignNumber && word == Word::IntLiteral &&
                !isDigit(before.range.end - 1)) {
                before.range.end = range.end;
                return;
            }
        }
        found.words.push_back({word, range, std::exchange(lineBegins, false)});
    }

    bool isDigit(std::uint32_t at) const { return '0' <= text[at] && text[at] <= '9'; }

    /// "1e" and a sign and a digit.
    bool isSignOfExponent(const Token& before, Word word, SourceRange range) const {
        if (before.word != Word::ForeignNumber || (word != Word::Plus && word != Word::Minus) ||
            range.end >= text.size() || !isDigit(range.end)) {
            return false;
        }
        const char last = text[before.range.end - 1];
        return (last == 'e' || last == 'E') && text[before.range.begin + 1] != 'x';
    }

    /// Turns the "/" before into the beginning of a comment.
    void takeForeignComment(Word second) {
        const Token opener = found.words.back();
        std::size_t end = text.npos;
        if (second == Word::Times) {
            if (!openComments) {
                end = text.find("*/", opener.range.begin + 2);
            }
            openComments = openComments || end == text.npos;
            end = end == text.npos ? end : end + 2;
        }
        if (end == text.npos) {
            end = std::min(text.find('\n', opener.range.begin), text.size());
        }
        found.words.pop_back();
        lineBegins = lineBegins || opener.beginsLine;
        const SourceRange range = {opener.range.begin, static_cast<std::uint32_t>(end)};
        found.foreignComments.push_back(range);
        noteLines(range);
        skipTo(range.end);
    }

    void takeQuoted(SourceRange quote) {
        std::size_t end = quote.end;
        while (end < text.size() && text[end] != '\n' && text[end] != '\'') {
            const bool isEscape =
                text[end] == '\\' && end + 1 < text.size() && text[end + 1] != '\n';
            end += isEscape ? 2U : 1U;
        }
        if (end >= text.size() || text[end] != '\'') {
            add(Word::Illegal, quote);
            return;
        }
        const SourceRange range = {quote.begin, static_cast<std::uint32_t>(end + 1)};
        found.words.push_back({Word::ForeignString, range, std::exchange(lineBegins, false)});
        skipTo(range.end);
    }

    void takeUnclosed(SourceRange quote) {
        std::size_t end = std::min(text.find('\n', quote.begin), text.size());
        const SourceRange range = {quote.begin, static_cast<std::uint32_t>(end)};
        found.words.push_back({Word::UnclosedString, range, std::exchange(lineBegins, false)});
        skipTo(range.end);
    }

    /// Passes over the pieces that begin before a place. What the last of them holds beyond it is
    /// part of it for the compiler, too.
    void skipTo(std::uint32_t end) {
        while (next < pieces.size() && pieces[next].range.begin < end) {
            noteLines(pieces[next].range);
            ++next;
        }
    }

    std::string_view text;
    const std::vector<Piece>& pieces;
    std::size_t next = 0;
    Tokens found;
    bool lineBegins = true;
    bool openComments = false;  // no "*/" follows any more
};

}  // namespace

Tokens tokensOf(std::string_view text, const std::vector<FrontEnd::Token>& pieces) {
    return Joiner{text, pieces}.join();
}

}  // namespace krel::Syntax
