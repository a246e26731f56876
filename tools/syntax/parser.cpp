// The tolerant parser. Comes in: tokens. Goes out: a tree of whatever they say, in Krel or in the
// languages that people come from.
//
// It descends by recursion, with a limit: what is nested more deeply is left out as a whole. It
// builds the tree from the leaves: each function leaves one node on the stack, and reduce() takes
// the children from there. After anything unexpected it goes on at the end of the statement, at
// the next line that begins a statement, or at a brace. Each token is read once.

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

#include "tools/syntax/foreignWords.hpp"
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

constexpr std::array<std::string_view, 12> modifiers = {
    "const",  "final",   "static",    "constexpr", "mut",    "register",
    "public", "private", "protected", "inline",    "extern", "volatile"};

/// Words whose braces hold functions.
constexpr std::array<std::string_view, 3> wrappers = {"class", "namespace", "object"};

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
    Level{Word::Power, 11},
};
constexpr int strongest = 11;

bool isAssignment(Word word) {
    return (Word::Assign <= word && word <= Word::MinusAssign) ||
           (Word::TimesAssign <= word && word <= Word::ShiftRightAssign);
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
            parseTopLevel();
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
            } else if (type == Word::End && enumerations.count(textAhead(index)) != 0) {
                type = Word::Int;
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
        return length > 0 && at(Word::Name, length) &&
               (at(Word::LeftParenthesis, length + 1) || lacksParameters(length + 1));
    }

    /// `void f {`
    bool lacksParameters(std::uint32_t ahead) const {
        return at(Word::LeftBrace, ahead) && isTypeWord(token().word) &&
               (at(Word::Void) || token(ahead).beginsLine || token(ahead + 1).beginsLine);
    }

    void parseTopLevel() {
        if (wrapperLength() > 0) {
            parseWrapper();
        } else if (beginsFunction()) {
            parseFunction();
        } else {
            parseStatement();
        }
    }

    /// How many tokens there are from here to the brace of a class; 0 when there is none.
    std::uint32_t wrapperLength() const {
        constexpr std::uint32_t longest = 8;
        std::uint32_t length = 0;
        while (atModifier(length) && length < longest) {
            ++length;
        }
        const bool isWrapper =
            at(Word::Name, length) &&
            std::find(wrappers.begin(), wrappers.end(), textAhead(length)) != wrappers.end() &&
            at(Word::Name, length + 1);
        if (!isWrapper) {
            return 0;
        }
        while (at(Word::Name, length) && length < longest) {
            ++length;
        }
        return at(Word::LeftBrace, length) ? length : 0;
    }

    /// The functions of a class are read as if it were not there.
    void parseWrapper() {
        const Mark mark = begin();
        const Descent descent{*this};
        if (descent.tooDeep()) {
            leaveOutDeep(Kind::Skipped);
            return;
        }
        next += wrapperLength() + 1;
        while (!at(Word::RightBrace) && !at(Word::End)) {
            const std::uint32_t before = next;
            parseTopLevel();
            if (next == before) {
                skipToken();
            }
        }
        expect(Word::RightBrace, Gap::Kind::Brace);
        reduce(Kind::Wrapper, mark, Word::End, mark.token);
    }

    void parseFunction() {
        const Mark mark = begin();
        parseType(typeLength());
        const std::uint32_t name = next++;
        if (at(Word::LeftBrace)) {
            miss(Gap::Kind::Parameters);
        } else {
            parseParameters();
        }
        if (at(Word::LeftBrace)) {
            parseBlock();
        } else if (accept(Word::Semicolon)) {
            reduce(Kind::Prototype, mark, Word::End, name);
            return;
        } else {
            miss(Gap::Kind::Brace);
            reduce(Kind::Block, begin());
        }
        reduce(Kind::Function, mark, Word::End, name);
    }

    void parseParameters() {
        expect(Word::LeftParenthesis, Gap::Kind::Parenthesis);
        while (!at(Word::RightParenthesis) && !at(Word::LeftBrace) && !at(Word::End)) {
            parseParameter();
            if (!accept(Word::Comma)) {
                break;
            }
        }
        leaveOutUntil(Word::RightParenthesis);
        expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
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
        while (at(Word::Times) || at(Word::BitAnd) || at(Word::Power)) {  // `int* a`
            const Mark star = begin();
            ++next;
            reduce(Kind::ArrayBound, star);
        }
        const std::uint32_t name = parseNameAndBounds();
        reduce(Kind::Parameter, mark, Word::End, name);
    }

    /// Brackets may stand before the name: `int[] a`.
    std::uint32_t parseNameAndBounds() {
        while (at(Word::LeftBracket)) {
            parseBound();
        }
        std::uint32_t name = noToken;
        if (at(Word::Name)) {
            name = next++;
        }
        while (at(Word::LeftBracket)) {
            parseBound();
        }
        return name;
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
        if (declaresReservedWord()) {
            const Mark mark = begin();
            next += 2;
            passLine();
            passBlock();
            accept(Word::Semicolon);
            reduce(Kind::Foreign, mark, Word::Name, mark.token + 1);
        } else if (atName("do") && (at(Word::LeftBrace, 1) || beginsStatement(token(1).word))) {
            parseDo();
        } else if (at(Word::Name) && parseForeign()) {
            return;
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

    // Other languages

    /// `int if = 3;`
    bool declaresReservedWord() const {
        const Word word = token(1).word;
        return isTypeWord(token().word) && Word::If <= word && word <= Word::Return &&
               !token(1).beginsLine &&
               (at(Word::Assign, 2) || at(Word::Semicolon, 2) || at(Word::Comma, 2) ||
                at(Word::LeftBracket, 2) || (at(Word::LeftParenthesis, 2) && isHeader(2)));
    }

    /// Whether what follows a foreign word shows that it is no name: in Krel nothing of that kind
    /// stands behind one.
    bool isForeignUse() const {
        const Word word = token(1).word;
        if (token(1).beginsLine && word != Word::LeftBrace) {
            return false;
        }
        return word == Word::Name || isTypeWord(word) || word == Word::LeftBrace ||
               word == Word::Return || (Word::IntLiteral <= word && word <= Word::StringLiteral) ||
               word == Word::ForeignString || (word == Word::Less && atName("template")) ||
               (word == Word::LeftParenthesis && isHeader());
    }

    /// Whether a block follows the parentheses that begin there.
    bool isHeader(std::uint32_t first = 1) const {
        constexpr std::uint32_t farthest = 60;
        int open = 0;
        for (std::uint32_t ahead = first; ahead < farthest && !at(Word::Semicolon, ahead);
             ++ahead) {
            open += at(Word::LeftParenthesis, ahead)    ? 1
                    : at(Word::RightParenthesis, ahead) ? -1
                                                        : 0;
            if (open == 0) {
                return at(Word::LeftBrace, ahead + 1);
            }
        }
        return false;
    }

    /// Reads what begins with a word of another language. Returns false if it is a plain name.
    bool parseForeign() {
        if (at(Word::Colon, 1) && !atName("default")) {
            parseLabel();
            return true;
        }
        const ForeignWords* const known = findForeignWord(textAhead());
        if (known == nullptr || known->extent == Extent::Value || !isForeignUse()) {
            return false;
        }
        if (atName("switch") && at(Word::LeftParenthesis, 1)) {
            parseSwitch();
            return true;
        }
        const Mark mark = begin();
        if (atName("enum") && at(Word::Name, 1)) {
            enumerations.insert(textAhead(1));
        }
        ++next;
        if (known->extent != Extent::Word) {
            passLine();
        }
        if (known->extent == Extent::Statement || known->extent == Extent::Body) {
            passBlock();
            passLine();
            accept(Word::Semicolon);
        }
        reduce(Kind::Foreign, mark, Word::End, mark.token);
        return true;
    }

    /// `again:`
    void parseLabel() {
        const Mark mark = begin();
        next += 2;
        reduce(Kind::Foreign, mark, Word::Colon, mark.token);
    }

    /// Passes over the rest of the line, up to a semicolon or a brace.
    void passLine() {
        while (!token().beginsLine && !at(Word::Semicolon) && !at(Word::LeftBrace) &&
               !at(Word::RightBrace)) {
            ++next;
        }
    }

    /// Passes over a block, if there is one.
    void passBlock() {
        int open = 0;
        while (!at(Word::End) && (open > 0 || at(Word::LeftBrace))) {
            open += at(Word::LeftBrace) ? 1 : at(Word::RightBrace) ? -1 : 0;
            ++next;
        }
    }

    bool atCase() const {
        return (atName("case") && !at(Word::Assign, 1)) ||
               (atName("default") && at(Word::Colon, 1));
    }

    void parseSwitch() {
        const Mark mark = begin();
        ++next;
        parseCondition();
        expect(Word::LeftBrace, Gap::Kind::Brace);
        while (!at(Word::RightBrace) && !at(Word::End)) {
            const std::uint32_t before = next;
            atCase() ? parseCase() : parseStatement();
            if (next == before) {
                skipToken();
            }
        }
        expect(Word::RightBrace, Gap::Kind::Brace);
        reduce(Kind::Switch, mark, Word::End, mark.token);
    }

    /// `case 1: case 2:` and what follows, up to the next one.
    void parseCase() {
        const Mark mark = begin();
        bool takesOthers = false;
        while (atCase()) {
            takesOthers = takesOthers || atName("default");
            const bool hasLabels = atName("case");
            ++next;
            while (hasLabels) {
                parseBinary(1);
                if (!accept(Word::Comma)) {
                    break;
                }
            }
            if (!accept(Word::Colon)) {
                miss(Gap::Kind::Unexpected);
            }
        }
        while (!atCase() && !at(Word::RightBrace) && !at(Word::End)) {
            const std::uint32_t before = next;
            parseStatement();
            if (next == before) {
                skipToken();
            }
        }
        reduce(Kind::Case, mark, takesOthers ? Word::Else : Word::If, mark.token);
    }

    /// How many tokens the type of a loop over an array takes.
    std::uint32_t elementTypeLength() const {
        const bool isBare = atName("in", 1) || atName("of", 1);
        return isBare ? 0 : typeLength();
    }

    /// Whether a `for` goes through the elements of an array.
    bool isForEach() const {
        const std::uint32_t length = elementTypeLength();
        return at(Word::Name, length) && (at(Word::Colon, length + 1) || atName("in", length + 1) ||
                                          atName("of", length + 1));
    }

    /// `int x : a) ...`
    void parseForEach(Mark mark) {
        const Mark declaration = begin();
        parseType(elementTypeLength());
        const Mark name = begin();
        ++next;
        reduce(Kind::Declarator, name, Word::End, name.token);
        reduce(Kind::Declaration, declaration);
        ++next;
        parseExpression();
        leaveOutUntil(Word::RightParenthesis);
        expect(Word::RightParenthesis, Gap::Kind::Parenthesis);
        parseBody();
        reduce(Kind::ForEach, mark, Word::End, mark.token);
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
        if (at(Word::Colon)) {  // behind the condition, in other languages
            const SourceRange colon = token().range;
            ++next;
            addGap({Gap::Kind::Unexpected, colon, colon.begin});
        }
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
        if (at(Word::Name)) {  // `for i in ...`
            passLine();
            reduce(Kind::Foreign, mark, Word::End, mark.token);
            return;
        }
        expect(Word::LeftParenthesis, Gap::Kind::Parenthesis);
        if (isForEach()) {
            parseForEach(mark);
            return;
        }
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
        const std::uint32_t name = parseNameAndBounds();
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
            } else if (at(Word::Dot) && (at(Word::Name, 1) || at(Word::Print, 1))) {
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
                while (at(Word::Scope, 1) && at(Word::Name, 2)) {  // `std::cout`
                    next += 2;
                }
                if (at(Word::LeftParenthesis, 1)) {
                    const std::uint32_t callee = next++;
                    parseArguments();
                    reduce(Kind::Call, mark, words[callee].word, callee);
                } else if (at(Word::Name)) {
                    const std::uint32_t name = next++;
                    reduce(Kind::Name, mark, Word::Name, name);
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
    std::unordered_set<std::string_view> enumerations;  // their names, which are types
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
