// The tolerant parser. Comes in: tokens. Goes out: a tree of whatever they say, in Krel or in the
// languages that people come from.
//
// It descends by recursion, with a limit: what is nested more deeply is left out as a whole. It
// builds the tree from the leaves: each function leaves one node on the stack, and reduce() takes
// the children from there. After anything unexpected it goes on at the end of the statement, at
// the next line that begins a statement, or at a brace. Each token is read once.

#include <algorithm>
#include <array>
#include <utility>

#include "tools/syntax/syntaxTree.hpp"

namespace krel::Syntax {

namespace {

constexpr int maxDepth = 200;     // of nested statements and expressions
constexpr int maxPostfixes = 50;  // of one operand

struct ForeignType {
    std::string_view word;
    Word type;  // Name when the initial value tells
};

constexpr std::array foreignTypes = {
    ForeignType{"char", Word::Character},  ForeignType{"bool", Word::Boolean},
    ForeignType{"Boolean", Word::Boolean}, ForeignType{"long", Word::Int},
    ForeignType{"short", Word::Int},       ForeignType{"unsigned", Word::Int},
    ForeignType{"signed", Word::Int},      ForeignType{"integer", Word::Int},
    ForeignType{"Integer", Word::Int},     ForeignType{"size_t", Word::Int},
    ForeignType{"int64_t", Word::Int},     ForeignType{"int32_t", Word::Int},
    ForeignType{"uint64_t", Word::Int},    ForeignType{"uint32_t", Word::Int},
    ForeignType{"byte", Word::Int},        ForeignType{"float", Word::Double},
    ForeignType{"real", Word::Double},     ForeignType{"Double", Word::Double},
    ForeignType{"String", Word::String},   ForeignType{"str", Word::String},
    ForeignType{"var", Word::Name},        ForeignType{"let", Word::Name},
    ForeignType{"auto", Word::Name},       ForeignType{"Char", Word::Character},
};

constexpr std::array<std::string_view, 6> modifiers = {"const",     "final", "static",
                                                       "constexpr", "mut",   "register"};

struct Level {
    Word word;
    int strength;
};

/// How strongly the binary operators bind.
constexpr std::array levels = {
    Level{Word::Or, 1},         Level{Word::And, 2},          Level{Word::BitOr, 3},
    Level{Word::BitXor, 4},     Level{Word::BitAnd, 5},       Level{Word::Equal, 6},
    Level{Word::NotEqual, 6},   Level{Word::Less, 7},         Level{Word::Greater, 7},
    Level{Word::LessEqual, 7},  Level{Word::GreaterEqual, 7}, Level{Word::ShiftLeft, 8},
    Level{Word::ShiftRight, 8}, Level{Word::Plus, 9},         Level{Word::Minus, 9},
    Level{Word::Times, 10},     Level{Word::Divide, 10},      Level{Word::Percent, 10},
};
constexpr int strongest = 10;

bool isAssignment(Word word) {
    return word == Word::Assign || word == Word::PlusAssign || word == Word::MinusAssign ||
           word == Word::TimesAssign || word == Word::DivideAssign || word == Word::PercentAssign;
}

bool beginsStatement(Word word) {
    return isTypeWord(word) || word == Word::If || word == Word::For || word == Word::While ||
           word == Word::Continue || word == Word::Break || word == Word::Return ||
           word == Word::Print || word == Word::Exit || word == Word::Name || word == Word::Else ||
           word == Word::ElseIf;
}

class Parser {
public:
    explicit Parser(Tree& itsTree) : tree(itsTree), words(itsTree.tokens.words) {}

    void parse() {
        const Mark mark = begin();
        while (!at(Word::End)) {
            const std::uint32_t before = next;
            if (beginsFunction()) {
                parseFunction();
            } else {
                parseStatement();
            }
            if (next == before) {
                skipToken();
            }
        }
        reduce(Kind::Program, mark);
        tree.nodes.back().range = {0, static_cast<std::uint32_t>(tree.text.size())};
    }

private:
    /// Where a node begins: its first token and its first child on the stack.
    struct Mark {
        std::uint32_t token;
        std::size_t height;
    };

    // Tokens

    const Token& token(std::uint32_t ahead = 0) const {
        return words[std::min<std::size_t>(next + ahead, words.size() - 1)];
    }
    bool at(Word word, std::uint32_t ahead = 0) const { return token(ahead).word == word; }
    std::string_view textAhead(std::uint32_t ahead = 0) const {
        return tree.textOf(token(ahead).range);
    }
    bool atName(std::string_view text, std::uint32_t ahead = 0) const {
        return at(Word::Name, ahead) && textAhead(ahead) == text;
    }
    bool accept(Word word) {
        if (!at(word)) {
            return false;
        }
        ++next;
        return true;
    }
    std::uint32_t endOfLast() const { return next == 0 ? 0 : words[next - 1].range.end; }

    void expect(Word word, Gap::Kind kind) {
        if (!accept(word)) {
            miss(kind);
        }
    }

    void miss(Gap::Kind kind) {
        const SourceRange before = next == 0 ? SourceRange{} : words[next - 1].range;
        addGap({kind, {before.begin, token().range.end}, before.end});
    }

    void addGap(const Gap& gap) { tree.gaps.push_back(gap); }

    // Nodes

    Mark begin() const { return {next, stack.size()}; }

    Node& reduce(Kind kind, Mark mark, Word op = Word::End, std::uint32_t word = noToken) {
        const auto id = static_cast<NodeId>(tree.nodes.size());
        Node node;
        node.kind = kind;
        node.op = op;
        node.token = word;
        node.range = {words[std::min<std::size_t>(mark.token, words.size() - 1)].range.begin, 0};
        node.range.end = std::max(endOfLast(), node.range.begin);
        if (stack.size() > mark.height) {  // an empty child stands where the next token begins
            node.range.end = std::max(node.range.end, tree.nodes[stack.back()].range.end);
        }
        NodeId* link = &node.first;
        for (std::size_t index = mark.height; index < stack.size(); ++index) {
            *link = stack[index];
            tree.nodes[stack[index]].parent = id;
            link = &tree.nodes[stack[index]].next;
        }
        stack.resize(mark.height);
        stack.push_back(id);
        tree.nodes.push_back(node);
        return tree.nodes.back();
    }

    /// Whether there is room for one more level; if not, passes over what would be there.
    class Descent {
    public:
        explicit Descent(Parser& itsParser) : parser(itsParser) { ++parser.depth; }
        Descent(const Descent&) = delete;
        Descent& operator=(const Descent&) = delete;
        ~Descent() { --parser.depth; }
        bool tooDeep() const { return parser.depth > maxDepth; }

    private:
        Parser& parser;
    };

    /// Passes over everything up to the end of the statement, or to what closes a bracket of any
    /// kind that was opened before.
    void leaveOutDeep(Kind kind) {
        const Mark mark = begin();
        const SourceRange first = token().range;
        int open = 0;
        while (!at(Word::End)) {
            const bool closes =
                at(Word::RightBrace) || at(Word::RightParenthesis) || at(Word::RightBracket);
            if (open == 0 && (closes || at(Word::Semicolon))) {
                break;
            }
            const bool opens =
                at(Word::LeftBrace) || at(Word::LeftParenthesis) || at(Word::LeftBracket);
            open += opens ? 1 : closes ? -1 : 0;
            ++next;
        }
        addGap({Gap::Kind::TooDeep, {first.begin, endOfLast()}, first.begin});
        reduce(kind, mark);
    }

    void skipToken() {
        const Mark mark = begin();
        ++next;
        addGap({Gap::Kind::Unexpected, words[mark.token].range, words[mark.token].range.begin});
        reduce(Kind::Skipped, mark);
    }

    // Types and functions

    static const ForeignType* foreignType(std::string_view word) {
        const auto* const entry =
            std::find_if(foreignTypes.begin(), foreignTypes.end(),
                         [&](const ForeignType& type) { return type.word == word; });
        return entry == foreignTypes.end() ? nullptr : entry;
    }
    bool atForeignType(std::uint32_t ahead = 0) const {
        return at(Word::Name, ahead) && foreignType(textAhead(ahead)) != nullptr;
    }
    bool atModifier(std::uint32_t ahead = 0) const {
        return at(Word::Name, ahead) &&
               std::find(modifiers.begin(), modifiers.end(), textAhead(ahead)) != modifiers.end();
    }

    /// Whether a name may follow a type that ends here. `int float = 1;` has a variable `float`.
    bool nameFollows(std::uint32_t ahead) const {
        const bool isArray = at(Word::LeftBracket, ahead) && at(Word::RightBracket, ahead + 1);
        const Word word = token(isArray ? ahead + 2 : ahead).word;
        return word == Word::Name || isTypeWord(word);
    }

    /// How many tokens make up a type here, when a name follows them; 0 when there is none.
    std::uint32_t typeLength() const {
        std::uint32_t length = 0;
        while (length < 4 && atModifier(length) &&
               (at(Word::Name, length + 1) || isTypeWord(token(length + 1).word))) {
            ++length;
        }
        const std::uint32_t before = length;
        while (length < before + 4 && (isTypeWord(token(length).word) ||
                                       (atForeignType(length) && nameFollows(length + 1)))) {
            ++length;
        }
        if (length == before && at(Word::Name, length) && at(Word::Name, length + 1) &&
            !token(length + 1).beginsLine) {
            ++length;  // some other word for a type
        }
        std::uint32_t behind = length;
        if (at(Word::LeftBracket, behind) && at(Word::RightBracket, behind + 1)) {
            behind += 2;
        }
        return length > 0 && at(Word::Name, behind) ? length : 0;
    }

    void parseType(std::uint32_t length) {
        const Mark mark = begin();
        Word type = Word::End;
        for (std::uint32_t index = 0; index < length; ++index) {
            const Word word = token(index).word;
            const ForeignType* const known =
                word == Word::Name ? foreignType(textAhead(index)) : nullptr;
            if (isTypeWord(word)) {
                type = word;
            } else if (known != nullptr && (type == Word::End || known->type != Word::Int)) {
                type = known->type;
            }
        }
        if (type == Word::End && length > 0 && atModifier(length - 1)) {
            type = Word::Name;  // `const x = 1`
        }
        const bool foreign = length != 1 || !isTypeWord(token().word);
        next += length;
        reduce(Kind::Type, mark, type, mark.token).foreign = foreign;
    }

    bool beginsFunction() const {
        const std::uint32_t length = typeLength();
        return length > 0 && at(Word::Name, length) && at(Word::LeftParenthesis, length + 1);
    }

    void parseFunction() {
        const Mark mark = begin();
        parseType(typeLength());
        const std::uint32_t name = next++;
        expect(Word::LeftParenthesis, Gap::Kind::Parenthesis);
        while (!at(Word::RightParenthesis) && !at(Word::LeftBrace) && !at(Word::End)) {
            parseParameter();
            if (!accept(Word::Comma)) {
                break;
            }
        }
        leaveOutUntil(Word::RightParenthesis);
        expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
        if (at(Word::LeftBrace)) {
            parseBlock();
        } else {
            accept(Word::Semicolon);
            miss(Gap::Kind::Brace);
            reduce(Kind::Block, begin());
        }
        reduce(Kind::Function, mark, Word::End, name);
    }

    void leaveOutUntil(Word word) {
        const SourceRange first = token().range;
        while (!at(word) && !at(Word::LeftBrace) && !at(Word::RightBrace) && !at(Word::Semicolon) &&
               !at(Word::End)) {
            ++next;
        }
        if (endOfLast() > first.begin) {
            addGap({Gap::Kind::Unexpected, {first.begin, endOfLast()}, first.begin});
        }
    }

    void parseParameter() {
        const Mark mark = begin();
        std::uint32_t length = typeLength();
        if (length == 0 && (isTypeWord(token().word) || atForeignType())) {
            length = 1;
        }
        parseType(length);
        if (at(Word::LeftBracket)) {
            parseBound();
        }
        std::uint32_t name = noToken;
        if (at(Word::Name)) {
            name = next++;
        }
        while (at(Word::LeftBracket)) {
            parseBound();
        }
        reduce(Kind::Parameter, mark, Word::End, name);
    }

    // Statements

    void parseBlock() {
        const Mark mark = begin();
        ++next;
        while (!at(Word::RightBrace)) {
            if (at(Word::End) || (beginsFunction() && token().beginsLine && isFirstColumn())) {
                miss(Gap::Kind::Brace);
                reduce(Kind::Block, mark);
                return;
            }
            const std::uint32_t before = next;
            parseStatement();
            if (next == before) {
                skipToken();
            }
        }
        ++next;
        reduce(Kind::Block, mark);
    }

    bool isFirstColumn() const {
        const std::uint32_t place = token().range.begin;
        return place == 0 || tree.text[place - 1] == '\n';
    }

    void parseStatement() {
        const Descent descent{*this};
        if (descent.tooDeep()) {
            leaveOutDeep(Kind::Skipped);
            return;
        }
        switch (token().word) {
            case Word::LeftBrace:
                return parseBlock();
            case Word::If:
                return parseIf();
            case Word::While:
                return parseWhile();
            case Word::For:
                return parseFor();
            case Word::Return:
                return parseReturn();
            case Word::Break:
                return parseWord(Kind::Break);
            case Word::Continue:
                return parseWord(Kind::Continue);
            case Word::Semicolon: {
                const Mark mark = begin();
                ++next;
                reduce(Kind::Empty, mark);
                return;
            }
            case Word::RightBrace:
            case Word::End:
                return;
            default:
                break;
        }
        if (atName("do") && (at(Word::LeftBrace, 1) || beginsStatement(token(1).word))) {
            parseDo();
        } else if (beginsFunction() && !isCallBehindName()) {
            parseFunction();
        } else if (typeLength() > 0) {
            parseDeclaration();
            endStatement();
            widen();
        } else {
            parseExpressionStatement();
        }
    }

    /// `foo bar(1);` is no function.
    bool isCallBehindName() const { return at(Word::Name) && !atForeignType() && !atModifier(); }

    /// Lets the node on top reach to the last token.
    void widen() {
        Node& node = tree.nodes[stack.back()];
        node.range.end = std::max(node.range.end, endOfLast());
    }

    void parseWord(Kind kind) {
        const Mark mark = begin();
        ++next;
        endStatement();
        reduce(kind, mark, Word::End, mark.token);
    }

    void endStatement() {
        if (accept(Word::Semicolon)) {
            return;
        }
        if (at(Word::RightBrace) || at(Word::End) ||
            (token().beginsLine && beginsStatement(token().word))) {
            miss(Gap::Kind::Semicolon);
            return;
        }
        const SourceRange first = token().range;
        while (!at(Word::Semicolon) && !at(Word::LeftBrace) && !at(Word::RightBrace) &&
               !at(Word::End) && !(token().beginsLine && beginsStatement(token().word))) {
            ++next;
        }
        if (endOfLast() <= first.begin) {
            miss(Gap::Kind::Semicolon);
            return;
        }
        addGap({Gap::Kind::Unexpected, {first.begin, endOfLast()}, first.begin});
        accept(Word::Semicolon);
    }

    void parseBody() {
        if (at(Word::RightBrace) || at(Word::End)) {
            const Mark mark = begin();
            miss(Gap::Kind::Brace);
            reduce(Kind::Skipped, mark);
            return;
        }
        accept(Word::Colon);  // behind the condition, in other languages
        const std::uint32_t before = next;
        const std::size_t height = stack.size();
        parseStatement();
        if (stack.size() == height) {
            const Mark mark = {before, height};
            reduce(Kind::Skipped, mark);
        }
    }

    void parseCondition() {
        const Mark mark = begin();
        // `if (a) && (b)` has its parentheses around the operands only; so the whole is read as an
        // expression first, and its own parentheses are taken for those of the condition.
        if (!at(Word::LeftParenthesis)) {
            parseExpression();
            reduce(Kind::Condition, mark).foreign = true;
            return;
        }
        ++next;
        if (at(Word::RightParenthesis)) {
            missExpression();
        } else {
            parseExpression();
        }
        if (!at(Word::RightParenthesis)) {
            leaveOutUntil(Word::RightParenthesis);
        }
        expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
        reduce(Kind::Condition, mark);
    }

    bool atElseIf() const {
        return at(Word::ElseIf) || (at(Word::Else) && at(Word::If, 1)) || atName("elif") ||
               atName("elsif");
    }

    void parseIf() {
        const Mark mark = begin();
        parseArm(1);
        while (atElseIf()) {
            parseArm(at(Word::Else) ? 2 : 1);
        }
        if (at(Word::Else)) {
            const Mark last = begin();
            ++next;
            parseBody();
            reduce(Kind::ElseArm, last, Word::End, last.token);
        }
        reduce(Kind::If, mark);
    }

    void parseArm(std::uint32_t length) {
        const Mark mark = begin();
        next += length;
        parseCondition();
        parseBody();
        reduce(Kind::Arm, mark, words[mark.token].word, mark.token);
    }

    void parseWhile() {
        const Mark mark = begin();
        ++next;
        parseCondition();
        parseBody();
        reduce(Kind::While, mark, Word::End, mark.token);
    }

    void parseDo() {
        const Mark mark = begin();
        ++next;
        parseBody();
        if (at(Word::While)) {
            ++next;
            parseCondition();
        } else {
            const Mark missing = begin();
            missExpression();
            reduce(Kind::Condition, missing).foreign = true;
        }
        endStatement();
        reduce(Kind::DoWhile, mark, Word::End, mark.token);
    }

    void parseFor() {
        const Mark mark = begin();
        ++next;
        expect(Word::LeftParenthesis, Gap::Kind::Parenthesis);
        for (int part = 0; part < 3; ++part) {
            parseForPart(part);
        }
        leaveOutUntil(Word::RightParenthesis);
        expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
        parseBody();
        reduce(Kind::For, mark, Word::End, mark.token);
    }

    void parseForPart(int part) {
        const Mark mark = begin();
        const Word end = part < 2 ? Word::Semicolon : Word::RightParenthesis;
        if (part == 0 && typeLength() > 0) {
            parseDeclaration();
        } else if (!at(end) && !at(Word::Semicolon) && !at(Word::RightParenthesis)) {
            do {
                parseExpression();
            } while (accept(Word::Comma));
        }
        reduce(Kind::ForPart, mark);
        if (part < 2) {
            if (!at(Word::Semicolon) && !at(Word::RightParenthesis)) {
                leaveOutUntil(Word::Semicolon);
            }
            expect(Word::Semicolon, Gap::Kind::Semicolon);
        }
    }

    void parseReturn() {
        const Mark mark = begin();
        ++next;
        if (!at(Word::Semicolon) && !at(Word::RightBrace) && !at(Word::End)) {
            parseExpression();
        }
        endStatement();
        reduce(Kind::Return, mark, Word::End, mark.token);
    }

    void parseDeclaration() {
        const Mark mark = begin();
        parseType(typeLength());
        do {
            parseDeclarator();
        } while (accept(Word::Comma));
        reduce(Kind::Declaration, mark);
    }

    void parseDeclarator() {
        const Mark mark = begin();
        while (at(Word::LeftBracket)) {  // `int[] a`
            parseBound();
        }
        std::uint32_t name = noToken;
        if (at(Word::Name)) {
            name = next++;
        }
        while (at(Word::LeftBracket)) {
            parseBound();
        }
        if (accept(Word::Assign)) {
            at(Word::LeftBrace) ? parseList() : parseAssignment();
        }
        reduce(Kind::Declarator, mark, Word::End, name);
    }

    void parseBound() {
        const Mark mark = begin();
        ++next;
        if (!at(Word::RightBracket)) {
            parseExpression();
        }
        expect(Word::RightBracket, Gap::Kind::Bracket);
        reduce(Kind::ArrayBound, mark);
    }

    void parseList() {
        const Mark mark = begin();
        const Descent descent{*this};
        if (descent.tooDeep()) {
            leaveOutDeep(Kind::Missing);
            return;
        }
        ++next;
        while (!at(Word::RightBrace) && !at(Word::Semicolon) && !at(Word::End)) {
            at(Word::LeftBrace) ? parseList() : parseAssignment();
            if (!accept(Word::Comma)) {
                break;
            }
        }
        leaveOutUntil(Word::RightBrace);
        expect(Word::RightBrace, Gap::Kind::Brace);
        reduce(Kind::List, mark);
    }

    void parseExpressionStatement() {
        const Mark mark = begin();
        const std::uint32_t before = next;
        parseExpression();
        if (next == before) {  // nothing that begins an expression
            stack.resize(mark.height);
            tree.nodes.pop_back();
            tree.gaps.pop_back();
            skipToken();
            accept(Word::Semicolon);
            widen();
            return;
        }
        endStatement();
        reduce(Kind::ExpressionStatement, mark);
    }

    // Expressions

    void missExpression() {
        const Mark mark = begin();
        miss(Gap::Kind::Unexpected);
        reduce(Kind::Missing, mark);
    }

    void parseExpression() { parseAssignment(); }

    void parseAssignment() {
        const Descent descent{*this};
        if (descent.tooDeep()) {
            leaveOutDeep(Kind::Missing);
            return;
        }
        const Mark mark = begin();
        parseConditional();
        if (isAssignment(token().word)) {
            const std::uint32_t op = next++;
            parseAssignment();
            reduce(Kind::Assign, mark, words[op].word, op);
        }
    }

    void parseConditional() {
        const Mark mark = begin();
        parseBinary(1);
        if (at(Word::Question)) {
            const std::uint32_t op = next++;
            parseAssignment();
            if (!accept(Word::Colon)) {
                miss(Gap::Kind::Unexpected);
            }
            parseAssignment();
            reduce(Kind::Conditional, mark, Word::Question, op);
        }
    }

    /// The strength of the binary operator at hand; 0 when there is none.
    std::pair<Word, int> binaryOperator() const {
        Word word = token().word;
        if (atName("and") || atName("or")) {
            word = atName("and") ? Word::And : Word::Or;
        }
        for (const Level& level : levels) {
            if (level.word == word) {
                return {word, level.strength};
            }
        }
        return {word, 0};
    }

    void parseBinary(int weakest) {
        const Mark mark = begin();
        if (weakest > strongest) {
            parseUnary();
            return;
        }
        parseBinary(weakest + 1);
        while (binaryOperator().second == weakest) {
            const Word word = binaryOperator().first;
            const std::uint32_t op = next++;
            parseBinary(weakest + 1);
            reduce(Kind::Binary, mark, word, op);
        }
    }

    bool beginsOperand(std::uint32_t ahead) const {
        const Word word = token(ahead).word;
        return word == Word::Name || word == Word::LeftParenthesis || word == Word::Not ||
               word == Word::True || word == Word::False || word == Word::ForeignNumber ||
               word == Word::ForeignString || (Word::IntLiteral <= word && word <= Word::Minus);
    }

    void parseUnary() {
        const Descent descent{*this};
        if (descent.tooDeep()) {
            leaveOutDeep(Kind::Missing);
            return;
        }
        const Mark mark = begin();
        const Word word = token().word;
        if (word == Word::Not || word == Word::Minus || word == Word::Plus ||
            word == Word::Complement || (atName("not") && beginsOperand(1))) {
            const std::uint32_t op = next++;
            parseUnary();
            reduce(Kind::Unary, mark, word == Word::Name ? Word::Not : word, op);
        } else if (word == Word::Increment || word == Word::Decrement) {
            const std::uint32_t op = next++;
            parseUnary();
            reduce(Kind::Update, mark, word, op);
        } else if (word == Word::LeftParenthesis && at(Word::RightParenthesis, 2) &&
                   (isTypeWord(token(1).word) || atForeignType(1)) && beginsOperand(3)) {
            ++next;
            parseType(1);
            ++next;
            parseUnary();
            reduce(Kind::Cast, mark);
        } else {
            parsePostfix();
        }
    }

    void parsePostfix() {
        const Mark mark = begin();
        parsePrimary();
        for (int count = 0; count < maxPostfixes; ++count) {
            if (at(Word::LeftBracket)) {
                ++next;
                at(Word::RightBracket) ? missExpression() : parseExpression();
                expect(Word::RightBracket, Gap::Kind::Bracket);
                reduce(Kind::Index, mark);
            } else if ((at(Word::Increment) || at(Word::Decrement)) && !token().beginsLine) {
                const std::uint32_t op = next++;
                reduce(Kind::Update, mark, words[op].word, op).foreign = true;
            } else if (at(Word::Dot) && at(Word::Name, 1)) {
                const std::uint32_t name = next + 1;
                next += 2;
                const bool isCall = at(Word::LeftParenthesis);
                if (isCall) {
                    parseArguments();
                }
                reduce(isCall ? Kind::Method : Kind::Field, mark, Word::End, name);
            } else {
                return;
            }
        }
    }

    void parseArguments() {
        ++next;
        while (!at(Word::RightParenthesis) && !at(Word::Semicolon) && !at(Word::End) &&
               !at(Word::LeftBrace) && !at(Word::RightBrace)) {
            parseAssignment();
            if (!accept(Word::Comma)) {
                break;
            }
        }
        leaveOutUntil(Word::RightParenthesis);
        expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
    }

    void parsePrimary() {
        const Mark mark = begin();
        switch (token().word) {
            case Word::Name:
            case Word::Print:
            case Word::Exit:
                if (at(Word::LeftParenthesis, 1)) {
                    const Word callee = token().word;
                    ++next;
                    parseArguments();
                    reduce(Kind::Call, mark, callee, mark.token);
                } else if (at(Word::Name)) {
                    ++next;
                    reduce(Kind::Name, mark, Word::Name, mark.token);
                } else {
                    missExpression();
                }
                return;
            case Word::IntLiteral:
            case Word::DoubleLiteral:
            case Word::CharacterLiteral:
            case Word::StringLiteral:
            case Word::True:
            case Word::False:
            case Word::ForeignNumber:
            case Word::ForeignString:
            case Word::UnclosedString: {
                const Word word = token().word;
                ++next;
                reduce(Kind::Literal, mark, word, mark.token);
                return;
            }
            case Word::LeftParenthesis:
                ++next;
                at(Word::RightParenthesis) ? missExpression() : parseExpression();
                if (!at(Word::RightParenthesis)) {
                    leaveOutUntil(Word::RightParenthesis);
                }
                expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
                reduce(Kind::Parentheses, mark);
                return;
            case Word::Int:
            case Word::Double:
            case Word::Boolean:
            case Word::Character:
            case Word::String:
                if (at(Word::LeftParenthesis, 1)) {
                    parseFunctionCast();
                    return;
                }
                break;
            default:
                break;
        }
        missExpression();
    }

    /// `int(x)`
    void parseFunctionCast() {
        const Mark mark = begin();
        parseType(1);
        ++next;
        parseExpression();
        leaveOutUntil(Word::RightParenthesis);
        expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
        reduce(Kind::Cast, mark).foreign = true;
    }

    Tree& tree;
    const std::vector<Token>& words;
    std::uint32_t next = 0;
    int depth = 0;
    std::vector<NodeId> stack;
};

}  // namespace

Tree read(std::string_view text, const std::vector<FrontEnd::Token>& pieces) {
    Tree tree;
    tree.text = text;
    tree.tokens = tokensOf(text, pieces);
    Parser{tree}.parse();
    return tree;
}

Tree read(std::string_view text) {
    return read(text, FrontEnd::tokensOf(std::string{text}));
}

}  // namespace krel::Syntax
