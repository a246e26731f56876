// Comes in: the tokens of a program that parses. Goes out: its lines. Where lines begin follows
// from the statements and blocks, and inside of a statement from the line breaks of the source; a
// line always ends behind a comment.
#include "tools/format/layout.hpp"

#include <algorithm>
#include <string_view>

#include "parser/parser.hpp"
#include "tools/format/columns.hpp"
#include "tools/format/spacing.hpp"

namespace krel {

namespace Format {

namespace {

using FrontEnd::Token;

std::string_view textOf(const Token& token, std::string_view source) {
    return source.substr(token.range.begin, token.range.end - token.range.begin);
}

std::size_t countLineFeeds(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// Tells which blocks stay on one line: those that are on one line in the source and hold no
/// other block and at most one statement.
class OneLineBlocks {
public:
    OneLineBlocks(std::string_view source, const std::vector<Token>& tokens) {
        for (const Token& token : tokens) {
            if (token.kind == Token::Kind::Word) {
                add(token.code);
            } else if (!open.empty()) {
                open.back().lineFeeds += countLineFeeds(textOf(token, source));
            }
        }
    }

    /// The answers for all blocks, in the order in which they open.
    const std::vector<bool>& answers() const { return found; }

private:
    struct Brace {
        bool block;
        std::size_t number;  // of the block
        std::size_t lineFeeds = 0;
        std::size_t statements = 0;
    };

    void add(int code) {
        if (code == T_LBRACE) {
            const bool block = previous != T_ASSIGN;
            if (block && !open.empty()) {
                open.back().statements = 2;  // as good as: it holds a block
            }
            open.push_back({block, found.size()});
            if (block) {
                found.push_back(false);
            }
        } else if (code == T_RBRACE) {
            close();
        } else if (code == T_SEMICOLON && !open.empty()) {
            ++open.back().statements;
        }
        previous = code;
    }

    void close() {
        const Brace brace = open.back();
        open.pop_back();
        if (brace.block) {
            found[brace.number] = brace.lineFeeds == 0 && brace.statements <= 1;
        }
        if (!open.empty()) {
            open.back().lineFeeds += brace.lineFeeds;
        }
    }

    std::vector<Brace> open;
    std::vector<bool> found;
    int previous = 0;
};

class Layout {
public:
    Layout(std::string_view itsSource, const std::vector<Token>& tokens)
        : source(itsSource), oneLineBlocks(itsSource, tokens) {
        result.code.reserve(source.size());
        for (const Token& token : tokens) {
            add(token);
        }
    }

    Lines take() { return std::move(result); }

private:
    /// A bracket that is open, and no block's.
    struct Bracket {
        std::size_t outside;  // indentation of the line on which it opened
        std::size_t inside;   // indentation of lines in it
    };

    /// What stands before the next token.
    enum class Before { Nothing, Opening, Word, Comment };

    void add(const Token& token) {
        if (token.kind == Token::Kind::WhiteSpace) {
            lineFeeds = countLineFeeds(textOf(token, source));
            return;
        }
        token.kind == Token::Kind::Comment ? addComment(token) : addWord(token);
        lineFeeds = 0;
    }

    void addComment(const Token& comment) {
        const std::size_t column = sourceColumnOf(comment, source);
        const bool behindCode = before != Before::Nothing && before != Before::Comment;
        if (!behindCode || lineFeeds > 0) {
            const bool continues = continuesComment(column);
            const std::size_t around = continues ? lastLine().depth : depth;
            beginLine(indentationInStatement(), before != Before::Opening);
            lastLine().depth = around;
            lastLine().continues = continues;
            inColumn = continues;
        } else {
            inColumn = lastLine().width + indentationStep <= mostColumns;
        }
        lastLine().comment = &comment;
        commentColumn = column;
        before = Before::Comment;
    }

    /// Whether a comment alone on its line, at a column of the source, belongs to the comment in
    /// the same column on the line before, which stands behind code.
    bool continuesComment(std::size_t column) const {
        return before == Before::Comment && inColumn && lineFeeds == 1 && column == commentColumn;
    }

    void addWord(const Token& word) {
        const Role role = roleOf(word.code, previous, !brackets.empty());
        if (role == Role::ClosingBlock) {
            --depth;
        }
        if (startsLine(word.code, role)) {
            beginLine(indentationOf(role), before != Before::Opening && !closes(role));
        } else {
            if (blankBetween(previous, role)) {
                write(" ");
            }
            if (before == Before::Opening && !brackets.empty()) {
                brackets.back().inside = std::min(lastLine().width, mostColumns);
            }
        }
        write(textOf(word, source));
        follow(role);
        previous = role;
        before = opens(role) ? Before::Opening : Before::Word;
    }

    bool startsLine(int code, Role role) const {
        if (before == Before::Nothing || before == Before::Comment) {
            return true;
        }
        if (inStatement) {
            return lineFeeds > 0 && keepsBreak(previous, role);
        }
        const bool chained = previous == Role::ClosingBlock && (code == T_ELSE || code == T_ELSEIF);
        return !onOneLine && !chained;
    }

    std::size_t indentationOf(Role role) const {
        if (role == Role::OpeningBlock || role == Role::ClosingBlock) {
            return depth * indentationStep;
        }
        return closes(role) ? brackets.back().outside : indentationInStatement();
    }

    /// The indentation of whatever comes next and has none of its own.
    std::size_t indentationInStatement() const {
        return brackets.empty() ? (depth + (inStatement ? 1 : 0)) * indentationStep
                                : brackets.back().inside;
    }

    void beginLine(std::size_t indentation, bool mayHaveBlankBefore) {
        Line line;
        line.indentation = std::min(indentation, mostColumns);
        line.width = line.indentation;
        line.depth = depth;
        line.blankBefore = mayHaveBlankBefore && before != Before::Nothing && lineFeeds > 1;
        line.codeEnd = result.code.size();
        result.lines.push_back(line);
    }

    void write(std::string_view text) {
        result.code += text;
        lastLine().codeEnd = result.code.size();
        lastLine().width = columnBehind(text, lastLine().width);
    }

    /// Enters and leaves what a word opens and closes.
    void follow(Role role) {
        const bool block = role == Role::OpeningBlock || role == Role::ClosingBlock;
        if (role == Role::OpeningBlock) {
            ++depth;
            onOneLine = oneLineBlocks.answers()[blocks++];
        } else if (role == Role::ClosingBlock) {
            onOneLine = false;
        } else if (opens(role)) {
            const std::size_t outside = lastLine().indentation;
            brackets.push_back({outside, outside + indentationStep});
        } else if (closes(role)) {
            brackets.pop_back();
        }
        inStatement = !block && !(role == Role::Semicolon && brackets.empty());
    }

    Line& lastLine() { return result.lines.back(); }

    std::string_view source;
    OneLineBlocks oneLineBlocks;
    std::size_t blocks = 0;  // that have been opened so far
    Lines result;

    std::size_t depth = 0;  // of blocks
    std::vector<Bracket> brackets;
    bool inStatement = false;
    bool onOneLine = false;  // in a block that stays on one line
    Before before = Before::Nothing;
    Role previous = Role::Semicolon;  // of the last word
    std::size_t lineFeeds = 0;        // since the last word or comment
    bool inColumn = false;            // whether the last comment can be continued
    std::size_t commentColumn = 0;    // that of the last comment in the source
};

}  // namespace

std::size_t sourceColumnOf(const Token& comment, std::string_view source) {
    const std::string_view before = source.substr(0, comment.range.begin);
    const std::size_t lineFeed = before.rfind('\n');
    return columnBehind(before.substr(lineFeed == before.npos ? 0 : lineFeed + 1));
}

Lines layOut(std::string_view source, const std::vector<Token>& tokens) {
    return Layout(source, tokens).take();
}

}  // namespace Format

}  // namespace krel
