// Semantic tokens: what each word is, for highlighting.

#include <algorithm>
#include <array>

#include "tools/lsp/features.hpp"
#include "tools/lsp/names.hpp"
#include "tools/lsp/words.hpp"

namespace krel::Lsp {

namespace {

/// The numbers are those of `typeNames`.
enum TokenType : std::uint8_t {
    keywordToken,
    typeToken,
    functionToken,
    parameterToken,
    variableToken,
    stringToken,
    numberToken,
    operatorToken,
    commentToken,
    noToken
};

constexpr std::array typeNames = {"keyword", "type",   "function", "parameter", "variable",
                                  "string",  "number", "operator", "comment"};
constexpr std::array modifierNames = {"declaration", "defaultLibrary"};
constexpr int declarationBit = 1;
constexpr int libraryBit = 2;

struct Piece {
    SourceRange range;
    TokenType type = noToken;
    int modifiers = 0;
};

TokenType typeOfWord(Word word) {
    if (Syntax::isTypeWord(word)) {
        return typeToken;
    }
    if (word == Word::Print || word == Word::Exit) {
        return functionToken;
    }
    if (findReservedWord(word) != nullptr) {
        return keywordToken;
    }
    switch (word) {
        case Word::IntLiteral:
        case Word::DoubleLiteral:
        case Word::ForeignNumber:
            return numberToken;
        case Word::CharacterLiteral:
        case Word::StringLiteral:
        case Word::ForeignString:
        case Word::UnclosedString:
            return stringToken;
        case Word::Plus:
        case Word::Minus:
        case Word::Times:
        case Word::Divide:
            return operatorToken;
        default:
            return word >= Word::Assign && word <= Word::Or ? operatorToken : noToken;
    }
}

/// Names are what the tree says they are.
void nameNames(Analysis& analysis, std::vector<Piece>& pieces) {
    const Check::Model& model = analysis.model();
    const Syntax::Tree& tree = analysis.tree();
    const auto isParameter = [&](NodeId id) {
        const Check::VariableId meaning = model.meaning(id);
        return meaning != Check::noVariable && model.variables()[meaning].isParameter;
    };
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const Kind kind = tree[id].kind;
        const std::uint32_t token = tree[id].token;
        const bool isName = token != Syntax::noToken && pieces[token].type == noToken;
        if (!isName) {
            continue;
        }
        if (kind == Kind::Function || kind == Kind::Call) {
            pieces[token].type = functionToken;
        } else if (kind == Kind::Parameter || kind == Kind::Declarator || kind == Kind::Name) {
            pieces[token].type = isParameter(id) ? parameterToken : variableToken;
        }
        const bool declares =
            kind == Kind::Function || kind == Kind::Parameter || kind == Kind::Declarator;
        pieces[token].modifiers = declares ? declarationBit : 0;
    }
}

/// All pieces in the order of the text.
std::vector<Piece> piecesOf(Analysis& analysis) {
    const Syntax::Tree& tree = analysis.tree();
    std::vector<Piece> pieces;
    for (const Syntax::Token& token : tree.tokens.words) {
        const bool isLibrary = token.word == Word::Print || token.word == Word::Exit;
        pieces.push_back({token.range, typeOfWord(token.word), isLibrary ? libraryBit : 0});
    }
    nameNames(analysis, pieces);
    for (const auto* const comments : {&tree.tokens.comments, &tree.tokens.foreignComments}) {
        for (const SourceRange range : *comments) {
            pieces.push_back({range, commentToken, 0});
        }
    }
    std::sort(pieces.begin(), pieces.end(), [](const Piece& left, const Piece& right) {
        return left.range.begin < right.range.begin;
    });
    return pieces;
}

/// Writes pieces as the protocol has them: five numbers each, places relative to the one before.
class Encoder {
public:
    explicit Encoder(const Document& itsDocument) : document(itsDocument) {}

    /// A piece of several lines is one token in each.
    void add(const Piece& piece) {
        const Range range = document.rangeOf(piece.range);
        for (std::uint64_t line = range.start.line; line <= range.end.line; ++line) {
            const SourceRange whole = document.lines().line(line);
            addInLine(
                {{std::max(whole.begin, piece.range.begin), std::min(whole.end, piece.range.end)},
                 piece.type,
                 piece.modifiers});
        }
    }

    Json take() { return {{"data", std::move(data)}}; }

private:
    void addInLine(const Piece& piece) {
        if (piece.range.begin >= piece.range.end) {
            return;
        }
        const Range range = document.rangeOf(piece.range);
        const bool isSameLine = range.start.line == last.line;
        data.push_back(range.start.line - last.line);
        data.push_back(isSameLine ? range.start.character - last.character : range.start.character);
        data.push_back(range.end.character - range.start.character);
        data.push_back(static_cast<int>(piece.type));
        data.push_back(piece.modifiers);
        last = range.start;
    }

    const Document& document;
    Position last;
    Json data = Json::array();
};

Json tokensWithin(Document& document, SourceRange wanted) {
    Encoder encoder{document};
    for (const Piece& piece : piecesOf(document.analysis())) {
        const bool isInside = piece.range.begin < wanted.end && wanted.begin < piece.range.end;
        if (piece.type != noToken && isInside) {
            encoder.add(piece);
        }
    }
    return encoder.take();
}

}  // namespace

Json semanticTokensLegend() {
    return {{"tokenTypes", typeNames}, {"tokenModifiers", modifierNames}};
}

Json semanticTokens(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    return tokensWithin(document, {0, static_cast<std::uint32_t>(document.text().size())});
}

Json semanticTokensOfRange(Session& session, const Json& parameters) {
    Document& document = documentOf(session, parameters);
    return tokensWithin(document, document.bytesOf(rangeFrom(parameters.at("range"))));
}

}  // namespace krel::Lsp
