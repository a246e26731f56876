// The part of the repairer that all rules use: copies with edits of single tokens, reports, fresh
// names, preludes. Comes in: the user's text and its tree. Goes out: pieces of the repaired text.

#include "tools/check/repairer.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace krel::Check {

Repairer::Repairer(const Model& itsModel, const std::unordered_set<NodeId>& itsLeftOut,
                   Purpose itsPurpose, Guesses itsGuesses)
    : model(itsModel),
      tree(itsModel.tree()),
      effects(itsModel),
      leftOut(itsLeftOut),
      purpose(itsPurpose),
      guesses(itsGuesses),
      topLevel(itsModel.tree().children(itsModel.tree().root())) {
    for (const Syntax::Token& token : tree.tokens.words) {
        if (token.word == Word::Name) {
            usedNames.emplace(tree.textOf(token.range));
        }
    }
    for (const Function& each : model.functions()) {
        sharedByAll.emplace(each.name);
    }
    for (const Variable& variable : model.variables()) {
        if (variable.function == noFunction) {
            sharedByAll.emplace(variable.name);
        }
    }
}

/// Finds the variables that are changed, and those that are compared.
void Repairer::collectUses() {
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const Kind kind = tree[id].kind;
        if (kind == Kind::Assign || kind == Kind::Update) {
            changedVariables.insert(effects.variableOf(tree[id].first));
        } else if (kind == Kind::Binary && isComparison(tree[id].op)) {
            comparedVariables.insert(effects.variableOf(tree[id].first));
            comparedVariables.insert(effects.variableOf(tree.child(id, 1)));
        }
    }
    changedVariables.erase(noVariable);
    comparedVariables.erase(noVariable);
}

Pieces Repairer::repair() {
    collectUses();
    findNames();
    findGlobals();
    findForeignWords();
    findUnread();
    planInlining();
    placeGlobals();
    collectTokenEdits();
    Pieces out;
    program(out);
    return out;
}

void Repairer::editToken(SourceRange range, std::string text) {
    tokenEdits.push_back({range, std::move(text)});
}

namespace {

struct MissingWord {
    Syntax::Gap::Kind kind;
    std::string_view text;
    std::string_view name;
};

constexpr std::array missingWords = {
    MissingWord{Syntax::Gap::Kind::Semicolon, ";", "semicolon"},
    MissingWord{Syntax::Gap::Kind::Parameters, "()", "parameter list"},
    MissingWord{Syntax::Gap::Kind::Parenthesis, ")", "closing parenthesis"},
    MissingWord{Syntax::Gap::Kind::Bracket, "]", "closing bracket"},
    MissingWord{Syntax::Gap::Kind::Brace, "}", "closing brace"},
};

}  // namespace

/// Whether a character that begins no token stands in the line of a place.
bool Repairer::isInUnknownLine(std::uint32_t at) const {
    const std::size_t before = at == 0 ? tree.text.npos : tree.text.rfind('\n', at - 1);
    const std::size_t begin = before == tree.text.npos ? 0 : before + 1;
    const std::size_t end = std::min(tree.text.find('\n', at), tree.text.size());
    const auto place = std::lower_bound(unknown.begin(), unknown.end(), begin);
    return place != unknown.end() && *place < end;
}

/// Whether nobody knows that this is missing: a bracket, where other things cannot be read, and
/// anything in a line with unknown characters.
bool Repairer::isDoubtful(const Syntax::Gap& gap) const {
    if (purpose == Purpose::Ask) {
        return false;
    }
    if (gap.kind == Syntax::Gap::Kind::Semicolon || isInUnknownLine(gap.at)) {
        return isInUnknownLine(gap.at);
    }
    const auto& all = tree.nodes;
    const auto isBefore = [&](NodeId id, std::uint32_t place) { return all[id].range.end < place; };
    const auto around = std::lower_bound(topLevel.begin(), topLevel.end(), gap.at, isBefore);
    if (around == topLevel.end()) {
        return !unread.empty();
    }
    const auto place = std::lower_bound(unread.begin(), unread.end(), all[*around].range.begin);
    return place != unread.end() && *place <= all[*around].range.end;
}

void Repairer::findUnread() {
    for (const Syntax::Gap& gap : tree.gaps) {
        if (gap.kind == Syntax::Gap::Kind::Unexpected || gap.kind == Syntax::Gap::Kind::TooDeep) {
            unread.push_back(gap.at);
        }
    }
    std::sort(unread.begin(), unread.end());
    for (const Syntax::Token& token : tree.tokens.words) {
        if (token.word == Word::Illegal) {
            unknown.push_back(token.range.begin);
        }
    }
}

void Repairer::collectTokenEdits() {
    for (const Syntax::Gap& gap : tree.gaps) {
        for (const MissingWord& missing : missingWords) {
            if (missing.kind == gap.kind && !isDoubtful(gap)) {
                tokenEdits.push_back({{gap.at, gap.at}, std::string{missing.text}, true});
                say("missing-token", Severity::Error, {gap.at, gap.range.end},
                    "a " + std::string{missing.name} + " is missing here",
                    "insert " + quoted(missing.text));
            }
        }
    }
    std::stable_sort(tokenEdits.begin(), tokenEdits.end(),
                     [](const TokenEdit& left, const TokenEdit& right) {
                         return left.range.begin < right.range.begin;
                     });
}

/// Takes over a range, with the edits of the tokens in it. An insertion belongs to the range that
/// begins there.
void Repairer::copy(std::uint32_t begin, std::uint32_t end, Pieces& out) {
    auto edit = std::lower_bound(tokenEdits.begin(), tokenEdits.end(), begin,
                                 [](const TokenEdit& candidate, std::uint32_t place) {
                                     return candidate.range.begin < place;
                                 });
    for (; edit != tokenEdits.end() && edit->range.begin < end; ++edit) {
        if ((edit->once && edit->done) || edit->range.begin < begin) {
            continue;
        }
        out.keep({begin, edit->range.begin});
        out.insert(edit->text, edit->range);
        markDone(*edit);
        begin = std::max(begin, edit->range.end);
    }
    out.keep({begin, end});
}

void Repairer::markDone(TokenEdit& edit) {
    if (!edit.done) {
        edit.done = true;
        doneEdits.push_back(static_cast<std::size_t>(&edit - tokenEdits.data()));
    }
}

/// Writes what is missing at the end of something, before anything else is written there.
void Repairer::finishAt(std::uint32_t place, Pieces& out) {
    auto edit = std::lower_bound(
        tokenEdits.begin(), tokenEdits.end(), place,
        [](const TokenEdit& candidate, std::uint32_t at) { return candidate.range.begin < at; });
    for (; edit != tokenEdits.end() && edit->range.begin == place; ++edit) {
        if (edit->once && !edit->done) {
            out.insert(edit->text, edit->range);
            markDone(*edit);
        }
    }
}

void Repairer::say(std::string_view rule, Severity severity, SourceRange range, std::string message,
                   std::string help) {
    if (said.emplace(rule, range.begin).second) {
        findings.push_back({rule, severity, range, std::move(message), std::move(help)});
    }
}

/// Whether a text is one name or one number.
bool Repairer::isWord(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char letter) {
        return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_';
    });
}

std::string Repairer::quoted(std::string_view text) {
    return "`" + std::string{text} + "`";
}

/// The names in a function, its own and new ones.
std::unordered_set<std::string>& Repairer::namesIn(FunctionId function) {
    const auto [entry, isNew] = ownNames.try_emplace(function);
    if (isNew) {
        const SourceRange range = tree[model.functions()[function].node].range;
        const auto& words = tree.tokens.words;
        auto token = std::lower_bound(words.begin(), words.end(), range.begin,
                                      [](const Syntax::Token& candidate, std::uint32_t place) {
                                          return candidate.range.begin < place;
                                      });
        for (; token != words.end() && token->range.begin < range.end; ++token) {
            if (token->word == Word::Name) {
                entry->second.emplace(tree.textOf(token->range));
            }
        }
    }
    return entry->second;
}

/// Whether nothing in the function at hand has the name, or nothing in the whole program.
bool Repairer::isFree(const std::string& name, bool inProgram) {
    constexpr std::array<std::string_view, 29> reserved = {
        "arg",          "boolean",      "break",       "call",        "character",      "chartoint",
        "chartostring", "booltostring", "continue",    "double",      "doubletostring", "else",
        "elseif",       "exit",         "false",       "for",         "goto",           "if",
        "int",          "inttochar",    "inttodouble", "inttostring", "param",          "print",
        "return",       "string",       "true",        "void",        "while"};
    const bool isUsed =
        inProgram || currentFunction == noFunction
            ? usedNames.count(name) != 0
            : sharedByAll.count(name) != 0 || namesIn(currentFunction).count(name) != 0;
    return !isUsed && std::find(reserved.begin(), reserved.end(), name) == reserved.end();
}

/// The name, or one with a number behind it, that is free and no word of the intermediate code.
std::string Repairer::freeName(std::string base, bool inProgram) {
    constexpr std::size_t longest = 60;
    if (base.size() > longest) {
        base.resize(longest);
    }
    std::string name = base;
    int& number = lastNumbers[{inProgram ? noFunction : currentFunction, base}];
    while (!isFree(name, inProgram)) {
        number = std::max(number + 1, 2);
        name = base + (std::isdigit(static_cast<unsigned char>(base.back())) != 0 ? "_" : "") +
               std::to_string(number);
    }
    usedNames.insert(name);
    return name;
}

/// A name for a variable of the function at hand.
std::string Repairer::fresh(std::string base) {
    std::string name = freeName(base, false);
    if (currentFunction != noFunction) {
        namesIn(currentFunction).insert(name);
    }
    newNames.push_back({name, std::move(base)});
    return name;
}

/// A name for a function that is added to the program.
std::string Repairer::freshFunction(const std::string& base) {
    std::string name = freeName(base, true);
    sharedByAll.insert(name);
    return name;
}

/// The blanks before the first word of the line in which a statement begins.
std::string Repairer::indentOf(NodeId id) const {
    const std::size_t begin = tree[id].range.begin;
    const std::size_t before = begin == 0 ? tree.text.npos : tree.text.rfind('\n', begin - 1);
    const std::size_t line = before == tree.text.npos ? 0 : before + 1;
    const std::size_t word = std::min(tree.text.find_first_not_of(" \t", line), begin);
    return std::string{tree.text.substr(line, word - line)};
}

/// What separates statements written before this one from it.
std::string Repairer::separatorOf(NodeId id) const {
    const std::string indent = indentOf(id);
    const std::size_t begin = tree[id].range.begin;
    const bool beginsLine = begin == indent.size() ||
                            (begin > indent.size() && tree.text[begin - indent.size() - 1] == '\n');
    return beginsLine ? "\n" + indent : " ";
}

/// Runs `write` and returns the prelude that it asks for, instead of adding it to the current one.
Repairer::Prelude Repairer::capture(const Write& write) {
    Prelude mine;
    std::swap(mine, prelude);
    Pieces ignored;
    write(ignored);
    std::swap(mine, prelude);
    return mine;
}

void Repairer::flush(Prelude& statements, NodeId id, Pieces& out) {
    for (Pieces& each : statements) {
        out.append(std::move(each));
        out.insert(separatorOf(id), tree[id].range);
    }
    statements.clear();
}

/// Writes a statement and, before it, its prelude. What the prelude calls is called before what is
/// left in the statement; so if something to the left of it calls a function as well, all is
/// written again, with these calls moved, too.
void Repairer::withPrelude(NodeId id, const Write& write, Pieces& out) {
    Prelude outer;
    std::swap(outer, prelude);
    Prelude outerPostlude;
    std::swap(outerPostlude, postlude);
    const NodeId outerLimit = std::exchange(hoistCallsBefore, 0);
    const NodeId outerLast = std::exchange(lastHoistWithCall, 0);
    const NodeId outerFirst = std::exchange(firstCallInPlace, noNode);
    const std::size_t namesBefore = newNames.size();
    const std::size_t editsBefore = doneEdits.size();
    Pieces text;
    write(text);
    if (firstCallInPlace < lastHoistWithCall) {
        hoistCallsBefore = lastHoistWithCall;
        prelude.clear();
        postlude.clear();
        for (; newNames.size() > namesBefore; newNames.pop_back()) {
            // Constants of the function stay.
            const bool isConstant = std::any_of(
                constants.begin(), constants.end(),
                [&](const auto& entry) { return entry.second == newNames.back().name; });
            if (!isConstant && currentFunction != noFunction) {
                namesIn(currentFunction).erase(newNames.back().name);
                lastNumbers.erase({currentFunction, newNames.back().base});
            }
        }
        for (; doneEdits.size() > editsBefore; doneEdits.pop_back()) {
            tokenEdits[doneEdits.back()].done = false;
        }
        text = Pieces{};
        write(text);
    }
    std::swap(outer, prelude);
    hoistCallsBefore = outerLimit;
    lastHoistWithCall = outerLast;
    firstCallInPlace = outerFirst;
    Pieces last;
    if (text.empty() && !outer.empty()) {
        last = std::move(outer.back());
        outer.pop_back();
    }
    flush(outer, id, out);
    out.append(std::move(last));
    out.append(std::move(text));
    if (!postlude.empty()) {
        finishAt(tree[id].range.end, out);
    }
    for (Pieces& each : postlude) {
        out.insert(separatorOf(id), tree[id].range);
        out.append(std::move(each));
    }
    postlude = std::move(outerPostlude);
}

/// Declares a variable in the prelude and returns its name.
std::string Repairer::hoist(Type type, const std::string& base, Pieces&& value, NodeId because) {
    std::string name = fresh(base);
    const SourceRange origin = tree[because].range;
    value.markAsMoved();
    Pieces declaration;
    declaration.insert(std::string{nameOf(type)} + " " + name + " = ", origin);
    declaration.append(std::move(value));
    declaration.insert(";", origin);
    prelude.push_back(std::move(declaration));
    if (model.hasCall(because)) {
        lastHoistWithCall = std::max(lastHoistWithCall, because);
    }
    return name;
}

/// Moves a whole expression into a variable and writes its name instead. Returns the declaration.
std::string Repairer::hoisted(NodeId id, const std::string& base, Type type, Pieces& out) {
    const NodeId firstCall = firstCallInPlace;
    const NodeId limit = std::exchange(hoistCallsBefore, 0);
    Pieces value;
    Context context;
    context.want = type;
    expression(id, context, value);
    firstCallInPlace = firstCall;
    hoistCallsBefore = limit;
    const std::string name = hoist(type, base, std::move(value), id);
    out.insert(name, tree[id].range);
    return textOf(prelude.back());
}

}  // namespace krel::Check
