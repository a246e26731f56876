// Statements, and where their preludes go. Comes in: nodes of statements. Goes out: pieces.

/// # braces
///
/// ## What it finds
///
/// A body of `if`, `elseif`, `else`, `while` or `for` that is no block.
///
/// ## Why
///
/// Bodies stand in braces, always.
///
/// ## Example
///
/// ```krel example fragment
/// if (b) i = 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// if (b) {
///     i = 1;
/// }
/// ```

/// # else-if
///
/// ## What it finds
///
/// `else if`.
///
/// ## Why
///
/// The chained form is the one word `elseif`.
///
/// ## Example
///
/// ```krel example fragment
/// if (b) { } else if (i == 1) { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// if (b) { } elseif (i == 1) { }
/// ```

/// # do-loop
///
/// ## What it finds
///
/// A loop that tests its condition at the end.
///
/// ## Why
///
/// There are only `while` and `for`.
///
/// ## Example
///
/// ```krel example fragment
/// do { i++; } while (i < n);
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// while (true) {
///     i++;
///     if (!(i < n)) { break; }
/// }
/// ```

/// # for-parts
///
/// ## What it finds
///
/// A `for` loop with several steps.
///
/// ## Why
///
/// There is one step.
///
/// ## Example
///
/// ```krel example fragment
/// for (i = 0; i < n; i++, n--) { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// for (i = 0; i < n; i++) { n--; }
/// ```

/// # empty-statement
///
/// ## What it finds
///
/// A semicolon alone.
///
/// ## Why
///
/// There is no empty statement. An empty block is `{ }`.
///
/// ## Example
///
/// ```krel example fragment
/// i = 1;;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 1;
/// ```

/// # condition-parentheses
///
/// ## What it finds
///
/// A condition without parentheses.
///
/// ## Why
///
/// Conditions stand in parentheses.
///
/// ## Example
///
/// ```krel example fragment
/// if i > 1 { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// if (i > 1) { }
/// ```

/// # missing-token
///
/// ## What it finds
///
/// A semicolon, a closing parenthesis, bracket or brace that is missing.
///
/// ## Why
///
/// The compiler stops at the word behind it. In a function with something that cannot be read only
/// semicolons are inserted: which bracket is missing there is not known.
///
/// ## Example
///
/// ```krel example fragment
/// i = 1
/// n = 2;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 1;
/// n = 2;
/// ```

#include <algorithm>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

void Repairer::program(Pieces& out) {
    const auto size = static_cast<std::uint32_t>(tree.text.size());
    judgeInlined();
    copyTopLevel(tree.root(), 0, size, out);
    finishAt(size, out);
    out.insert(addedFunctions(), {size, size});
}

void Repairer::copyTopLevel(NodeId parent, std::uint32_t at, std::uint32_t end, Pieces& out) {
    for (NodeId id = tree[parent].first; id != noNode; id = tree[id].next) {
        copy(at, tree[id].range.begin, out);
        const bool isMoved = isMovedGlobal(id);
        if (!isMoved) {
            statement(id, out);
        }
        at = tree[id].range.end;
        Pieces notWritten;  // what is missing behind a declaration that goes elsewhere
        finishAt(at, isMoved ? notWritten : out);
    }
    copy(at, end, out);
}

void Repairer::function(NodeId id, Pieces& out) {
    const NodeId block = tree.lastChild(id);
    const FunctionId outer = std::exchange(currentFunction, model.functionAround(id));
    std::map<std::string, std::string> outerConstants;
    std::swap(outerConstants, constants);
    Pieces outerDeclarations;
    std::swap(outerDeclarations, constantDeclarations);
    auto outerTexts = std::exchange(constantTexts, {});
    const std::string_view text = tree.textOf(block);
    const std::string outerSeparator = std::exchange(
        constantSeparator, text.find('\n') == text.npos ? " " : "\n" + indentOf(id) + "    ");

    SourceRange range = tree[block].range;
    Pieces arrays;
    functionHeader(id, out, arrays);
    if (!text.empty() && text.front() == '{') {
        Pieces inside;
        std::uint32_t at = range.begin + 1;
        Pieces globals;
        declareGlobals(globals);
        statements(block, at, inside);
        copy(at, range.end, inside);
        copy(range.begin, range.begin + 1, out);
        out.append(std::move(arrays));
        out.append(std::move(constantDeclarations));  // they are made of literals only
        out.append(std::move(globals));
        out.append(std::move(inside));
    }
    std::swap(outerConstants, constants);
    constantDeclarations = std::move(outerDeclarations);
    constantTexts = std::move(outerTexts);
    constantSeparator = outerSeparator;
    currentFunction = outer;
}

void Repairer::statements(NodeId block, std::uint32_t& at, Pieces& out) {
    for (NodeId id = tree[block].first; id != noNode; id = tree[id].next) {
        copy(at, tree[id].range.begin, out);
        statement(id, out);
        at = tree[id].range.end;
        finishAt(at, out);
    }
}

/// Whether all of a simple statement could be read. What could not be is left to the compiler.
bool Repairer::isReadable(NodeId id) const {
    const Kind kind = tree[id].kind;
    if (kind == Kind::Declaration && tree[tree[id].first].op == Word::End) {
        return false;
    }
    const auto place = std::lower_bound(unread.begin(), unread.end(), tree[id].range.begin);
    return (kind != Kind::Declaration && kind != Kind::ExpressionStatement &&
            kind != Kind::Return) ||
           place == unread.end() || *place > tree[id].range.end;
}

void Repairer::statement(NodeId id, Pieces& out) {
    if (leftOut.count(id) != 0) {
        return stay(id, out);
    }
    if (!isReadable(id)) {
        return copy(id, out);
    }
    switch (tree[id].kind) {
        case Kind::Function:
            return inlined[model.functionAround(id)] ? void() : function(id, out);
        case Kind::Block:
            return blockWith(id, {}, {}, out);
        case Kind::Declaration:
            return withPrelude(
                id, [&](Pieces& text) { declaration(id, text); }, out);
        case Kind::If:
            return ifStatement(id, out);
        case Kind::While:
            whileStatement(id, out);
            return leaveAfter(id, out);
        case Kind::DoWhile:
            doStatement(id, out);
            return leaveAfter(id, out);
        case Kind::For:
            forStatement(id, out);
            return leaveAfter(id, out);
        case Kind::Return:
            return withPrelude(
                id, [&](Pieces& text) { returnStatement(id, text); }, out);
        case Kind::ExpressionStatement:
            return withPrelude(
                id, [&](Pieces& text) { expressionStatement(id, text); }, out);
        case Kind::Prototype:
            return prototype(id);
        case Kind::Wrapper:
            return wrapper(id, out);
        case Kind::Foreign:
            return foreignConstruct(id, out);
        case Kind::Switch:
            withPrelude(
                id, [&](Pieces& text) { switchStatement(id, text); }, out);
            return leaveAfter(id, out);
        case Kind::ForEach:
            forEachStatement(id, out);
            return leaveAfter(id, out);
        case Kind::Break:
            if (needlessBreaks.count(id) == 0) {
                copy(id, out);
            }
            return;
        case Kind::Empty:
            say("empty-statement", Severity::Error, tree[id].range,
                "a semicolon alone is no statement", "remove it");
            return;
        default:
            return copy(id, out);
    }
}

/// Names that are declared stay declared.
void Repairer::leaveOut(NodeId id, Pieces& out) {
    std::string text = "{ }";
    if (tree[id].kind == Kind::Declaration) {
        text.clear();
        for (const NodeId child : tree.children(id)) {
            const VariableId variable = model.declared(child);
            if (tree[child].kind != Kind::Declarator || variable == noVariable) {
                continue;
            }
            const Variable& declared = model.variables()[variable];
            const Type type = nameOf(declared.type).empty() ? Word::Int : declared.type;
            text += std::string{nameOf(type)} + " " + nameNow(variable) +
                    (declared.isArray ? "[1]; " : " = " + defaultOf(type) + "; ");
        }
    } else if (model.functionAround(id) == noFunction || tree[id].kind == Kind::Function) {
        text.clear();
    }
    out.insert(text, tree[id].range);
}

void Repairer::expressionStatement(NodeId id, Pieces& out) {
    const NodeId child = tree[id].first;
    if (isInlined(child)) {
        inlineCall(child);
        return;
    }
    copy(tree[id].range.begin, tree[child].range.begin, out);
    if (tree[child].kind == Kind::Assign && tree[child].op == Word::Assign) {
        const NodeId target = tree[child].first;
        Pieces name;
        if (tree[target].kind == Kind::Name) {
            copy(target, name);
            if (decidedStatement(id, tree.child(child, 1), model.meant(target),
                                 textOf(name) + " = ", out)) {
                return;
            }
        }
    }
    if (foreignPrint(child, out)) {
        return copy(tree[child].range.end, tree[id].range.end, out);
    }
    switch (tree[child].kind) {
        case Kind::Assign:
            assignment(child, out);
            break;
        case Kind::Call:
            callStatement(child, out);
            break;
        default:
            simple(child, out);
            break;
    }
    copy(tree[child].range.end, tree[id].range.end, out);
}

/// An expression as a statement, without its semicolon.
void Repairer::simple(NodeId id, Pieces& out) {
    switch (tree[id].kind) {
        case Kind::Assign:
            assignment(id, out);
            return;
        case Kind::Call:
            return callStatement(id, out);
        case Kind::Update:
            return update(id, out);
        case Kind::Parentheses: {
            const NodeId child = tree[id].first;
            if (tree[child].kind == Kind::Assign || tree[child].kind == Kind::Update) {
                copy(tree[id].range.begin, tree[child].range.begin, out);
                simple(child, out);
                copy(tree[child].range.end, tree[id].range.end, out);
                return;
            }
            break;
        }
        default:
            break;
    }
    if (Syntax::isExpression(tree[id].kind)) {
        expression(id, {}, out);
    } else {
        copy(id, out);
    }
}

void Repairer::returnStatement(NodeId id, Pieces& out) {
    if (!copies.empty()) {
        return returnFromCopy(id, out);
    }
    const NodeId value = tree[id].first;
    const Type type =
        currentFunction == noFunction ? Word::End : model.functions()[currentFunction].type;
    if (value == noNode) {
        copy(id, out);
        return;
    }
    const SourceRange range = tree[id].range;
    if (currentFunction != noFunction && model.functions()[currentFunction].name == "main" &&
        tree[value].kind == Kind::Literal) {
        say("main-type", Severity::Error, tree[value].range, "`main` returns nothing",
            "write `return;`");
        copy(range.begin, tree.wordRange(id).end, out);
        copy(tree[value].range.end, range.end, out);
        return;
    }
    if (tree[inner(value)].kind == Kind::Conditional &&
        decidedStatement(id, value, type, "return ", out)) {
        return;
    }
    Context context;
    context.want = type == Word::Void ? Word::End : type;
    if (type == Word::Boolean && isTruth(value) && !isAsItShouldBe(value, context)) {
        say("comparison-value", Severity::Error, tree[value].range,
            "a comparison has the type of its operands, and is no `boolean` value",
            "decide by `if`: `if (" + std::string{tree.textOf(value)} +
                ") { return true; } return false;`");
        Context decided;
        decided.calls = decided.typed = false;
        decided.condition = true;
        out.insert("if (", range);
        expression(value, decided, out);
        const std::string separator = separatorOf(id);
        const std::string inside = separator == " " ? " " : separator + "    ";
        out.insert(") {" + inside + "return true;" + separator + "}" + separator + "return false;",
                   range);
        return;
    }
    copy(range.begin, tree[value].range.begin, out);
    expression(value, context, out);
    copy(tree[value].range.end, range.end, out);
}

/// A block, with further statements at its beginning and its end.
void Repairer::blockWith(NodeId id, Prelude&& first, Prelude&& last, Pieces& out) {
    const SourceRange range = tree[id].range;
    const std::string_view text = tree.textOf(id);
    if (text.empty() || text.front() != '{') {
        copy(id, out);
        return;
    }
    const bool oneLine = text.find('\n') == text.npos;
    const std::string separator = oneLine ? " " : "\n" + indentOf(id) + "    ";
    std::uint32_t at = range.begin + 1;
    copy(range.begin, at, out);
    for (Pieces& each : first) {
        out.insert(separator, range);
        out.append(std::move(each));
    }
    statements(id, at, out);
    if (last.empty()) {
        copy(at, range.end, out);
        return;
    }
    const bool closed = text.size() > 1 && text.back() == '}';
    const std::uint32_t end = closed ? range.end - 1 : range.end;
    std::uint32_t lastLine = end;  // where the line of the closing brace begins
    while (lastLine > at && (tree.text[lastLine - 1] == ' ' || tree.text[lastLine - 1] == '\t' ||
                             tree.text[lastLine - 1] == '\n')) {
        --lastLine;
    }
    copy(at, lastLine, out);
    for (Pieces& each : last) {
        out.insert(separator, range);
        out.append(std::move(each));
    }
    copy(lastLine, range.end, out);
}

/// Where the parenthesis behind a place ends.
std::uint32_t Repairer::endOfHeader(NodeId before) const {
    const std::uint32_t place = tree[before].range.end;
    const auto& words = tree.tokens.words;
    auto token = std::lower_bound(words.begin(), words.end(), place,
                                  [](const Syntax::Token& candidate, std::uint32_t at) {
                                      return candidate.range.begin < at;
                                  });
    return token != words.end() && token->word == Word::RightParenthesis ? token->range.end : place;
}

void Repairer::body(NodeId id, std::uint32_t header, Prelude&& first, Prelude&& last, Pieces& out) {
    const SourceRange range = tree[id].range;
    if (tree[id].kind == Kind::Block && leftOut.count(id) == 0) {
        copy(header, range.begin, out);
        blockWith(id, std::move(first), std::move(last), out);
        return;
    }
    if (range.begin >= range.end) {  // nothing there at all
        copy(header, range.begin, out);
        return;
    }
    say("braces", Severity::Error, range, "a body has to be a block in braces",
        "put braces around it");
    const auto behind = std::lower_bound(unread.begin(), unread.end(), header);
    const bool isRead = behind == unread.end() || *behind >= range.begin;
    if (purpose == Purpose::Write && (!isRead || isInUnknownLine(header))) {
        copy(header, range.begin, out);
        return statement(id, out);
    }
    const std::string separator = separatorOf(id);
    const std::size_t lineEnd = separator.rfind('\n');
    const bool ownLine = lineEnd != separator.npos;
    const std::string inside = ownLine ? separator : " ";
    out.insert(" {", range);
    copy(header, range.begin, out);
    for (Pieces& each : first) {
        out.append(std::move(each));
        out.insert(inside, range);
    }
    statement(id, out);
    finishAt(range.end, out);
    for (Pieces& each : last) {
        out.insert(inside, range);
        out.append(std::move(each));
    }
    const std::string outer = ownLine && separator.size() > 4
                                  ? separator.substr(0, separator.size() - 4)
                              : ownLine ? "\n"
                                        : " ";
    out.insert(outer + "}", range);
}

void Repairer::condition(NodeId id, Pieces& out) {
    const SourceRange range = tree[id].range;
    if (leftOut.count(id) != 0) {
        return purpose == Purpose::Ask ? out.insert("(true)", range) : out.keep(range);
    }
    const NodeId child = tree[id].first;
    const bool bare = tree[id].foreign;
    if (bare && range.begin < range.end) {
        say("condition-parentheses", Severity::Error, range,
            "a condition has to stand in parentheses",
            "write `(" + std::string{tree.textOf(id)} + ")`");
    }
    if (bare) {
        out.insert("(", range);
    }
    copy(range.begin, tree[child].range.begin, out);
    Context context;
    context.calls = context.typed = false;
    context.condition = true;
    expression(child, context, out);
    copy(tree[child].range.end, range.end, out);
    if (bare) {
        out.insert(")", range);
    }
}

void Repairer::ifStatement(NodeId id, Pieces& out) {
    std::uint32_t at = tree[id].range.begin;
    std::size_t open = 0;
    const std::string outer = separatorOf(id);
    for (const NodeId arm : tree.children(id)) {
        copy(at, tree[arm].range.begin, out);
        at = tree[arm].range.end;
        const NodeId first = tree[arm].first;
        if (tree[arm].kind == Kind::ElseArm) {
            const SourceRange word = tree.wordRange(arm);
            copy(word.begin, word.end, out);
            body(first, word.end, {}, {}, out);
            continue;
        }
        const NodeId statement = tree.child(arm, 1);
        const std::uint32_t begin = tree[arm].range.begin;
        const std::uint32_t header = tree[first].range.end;
        if (tree[arm].op == Word::If) {
            withPrelude(
                id,
                [&](Pieces& text) {
                    copy(begin, tree[first].range.begin, text);
                    condition(first, text);
                },
                out);
            body(statement, header, {}, {}, out);
            continue;
        }
        Pieces text;
        Prelude before = capture([&](Pieces&) { condition(first, text); });
        const SourceRange word = tree.wordRange(arm);
        if (tree[arm].op == Word::Else) {
            const std::uint32_t end = tree.tokens.words[tree[arm].token + 1].range.end;
            say("else-if", Severity::Error, {word.begin, end}, "the word is `elseif`",
                "write `elseif`");
        }
        if (before.empty()) {
            if (tree[arm].op == Word::ElseIf) {
                copy(begin, tree[first].range.begin, out);
            } else {
                out.insert("elseif ", word);
            }
        } else {
            out.insert("else {" + outer + "    ", word);
            for (Pieces& each : before) {
                out.append(std::move(each));
                out.insert(outer + "    ", word);
            }
            out.insert("if ", word);
            ++open;
        }
        out.append(std::move(text));
        body(statement, header, {}, {}, out);
    }
    for (; open > 0; --open) {
        out.insert(outer + "}", tree[id].range);
    }
}

/// Leaves the loop unless the condition holds. The text has parentheses around it.
Pieces Repairer::leaveUnless(NodeId id, Pieces&& text) const {
    Pieces all;
    const std::string written = textOf(text);
    const bool isMissing = written.size() < 2;
    const std::string_view inside =
        isMissing ? std::string_view{} : std::string_view{written}.substr(1, written.size() - 2);
    const NodeId core = inner(Syntax::isExpression(tree[id].kind) ? id : tree[id].first);
    const bool isNot =
        tree[core].kind == Kind::Unary && tree[core].op == Word::Not && inside.substr(0, 1) == "!";
    if (!isMissing && (isNot || isWord(inside))) {
        all.insert("if (" + (isNot ? std::string{inside.substr(1)} : "!" + std::string{inside}) +
                       ") { break; }",
                   tree[id].range);
        return all;
    }
    all.insert("if (!", tree[id].range);
    text.markAsMoved();
    all.append(std::move(text));
    all.insert(") { break; }", tree[id].range);
    return all;
}

void Repairer::whileStatement(NodeId id, Pieces& out) {
    const NodeId test = tree[id].first;
    const NodeId statement = tree.child(id, 1);
    Pieces text;
    Prelude before = capture([&](Pieces&) { condition(test, text); });
    if (before.empty()) {
        copy(tree[id].range.begin, tree[test].range.begin, out);
        out.append(std::move(text));
    } else {
        copy(tree[id].range.begin, tree.wordRange(id).end, out);
        out.insert(" (true)", tree[test].range);
        before.push_back(leaveUnless(test, std::move(text)));
    }
    body(statement, tree[test].range.end, std::move(before), {}, out);
}

/// Whether a `continue` in a loop's body concerns this loop.
bool Repairer::continues(NodeId statement) const {
    for (NodeId id = model.firstWithin(statement); id <= statement; ++id) {
        if (tree[id].kind != Kind::Continue) {
            continue;
        }
        NodeId loop = tree[id].parent;
        while (loop < statement && tree[loop].kind != Kind::While &&
               tree[loop].kind != Kind::DoWhile && tree[loop].kind != Kind::For) {
            loop = tree[loop].parent;
        }
        if (loop >= statement) {
            return true;
        }
    }
    return false;
}

void Repairer::doStatement(NodeId id, Pieces& out) {
    const NodeId statement = tree[id].first;
    const NodeId test = tree.child(id, 1);
    const SourceRange word = tree.wordRange(id);
    say("do-loop", Severity::Error, word, "there is no `do` loop",
        "write `while (true) { ... if (!(...)) { break; } }`");
    Pieces text;
    Prelude check = capture([&](Pieces&) { condition(test, text); });
    check.push_back(leaveUnless(test, std::move(text)));
    Prelude first;
    if (continues(statement)) {
        Prelude before;
        first.push_back(afterFirstRound(std::move(check), word, before));
        flush(before, id, out);
        check.clear();
    }
    out.insert("while (true)", word);
    body(statement, word.end, std::move(first), std::move(check), out);
}

/// Writes the first part of a `for` header, and returns what has to stand before the loop.
Repairer::Prelude Repairer::forInit(NodeId part, Pieces& out) {
    const std::vector<NodeId> children = tree.children(part);
    if (leftOut.count(part) != 0 || children.empty()) {
        stayPart(part, out);
        return {};
    }
    Prelude before;
    if (tree[children.front()].kind == Kind::Declaration) {
        const NodeId declared = children.front();
        if (!isReadable(declared)) {
            copy(declared, out);
            return before;
        }
        Pieces text;
        before = capture([&](Pieces&) { declaration(declared, text); });
        for (Pieces& each : before) {
            each.markAsMoved();
        }
        const bool isAssignment = tree.children(declared).size() == 2 &&
                                  tree[tree.child(declared, 1)].token != Syntax::noToken &&
                                  !isArray(tree.child(declared, 1));
        if ((isPlainDeclaration(declared) || isAssignment) && postlude.empty()) {
            out.append(std::move(text));
        } else {
            text.markAsMoved();
            text.insert(";", tree[declared].range);
            before.push_back(std::move(text));
        }
        std::move(postlude.begin(), postlude.end(), std::back_inserter(before));
        postlude.clear();
        return before;
    }
    for (const NodeId child : children) {
        Pieces text;
        Prelude mine = capture([&](Pieces&) { simple(child, text); });
        std::move(mine.begin(), mine.end(), std::back_inserter(before));
        if (child == children.back()) {
            out.append(std::move(text));
        } else {
            text.markAsMoved();
            text.insert(";", tree[child].range);
            before.push_back(std::move(text));
        }
    }
    return before;
}

/// A part of a `for` header that is left out.
void Repairer::stayPart(NodeId part, Pieces& out) const {
    if (purpose == Purpose::Write) {
        out.keep(tree[part].range);
    }
}

/// The statements of the third part of a `for` header, without the semicolon of the last one.
Repairer::Prelude Repairer::forUpdate(NodeId part) {
    Prelude all;
    if (leftOut.count(part) != 0) {
        all.emplace_back();
        stayPart(part, all.back());
        return all;
    }
    for (NodeId child = tree[part].first; child != noNode; child = tree[child].next) {
        Pieces text;
        Prelude mine = capture([&](Pieces&) { simple(child, text); });
        std::move(mine.begin(), mine.end(), std::back_inserter(all));
        if (tree[child].next != noNode) {
            text.insert(";", tree[child].range);
        }
        all.push_back(std::move(text));
    }
    return all;
}

/// Writes the condition of a `for` header, and returns what has to run before it.
Repairer::Prelude Repairer::forTest(NodeId part, Pieces& out) {
    if (leftOut.count(part) != 0) {
        stayPart(part, out);
        return {};
    }
    const NodeId tested = tree[part].first;
    return capture([&](Pieces&) {
        if (tested != noNode) {
            Context context;
            context.calls = context.typed = false;
            context.condition = true;
            expression(tested, context, out);
        }
    });
}

/// Statements that run in each round but the first. A flag tells that, which is declared in
/// `before`.
Pieces Repairer::afterFirstRound(Prelude&& steps, SourceRange origin, Prelude& before) {
    const std::string again = fresh("again");
    Pieces flag;
    flag.insert("boolean " + again + " = false;", origin);
    before.push_back(std::move(flag));
    Pieces all;
    all.insert("if (" + again + ") { ", origin);
    for (Pieces& each : steps) {
        all.append(std::move(each));
        all.insert(" ", origin);
    }
    all.insert("} " + again + " = true;", origin);
    return all;
}

/// What a loop cannot have in its header moves: the condition to the beginning of the body, the
/// steps to its end, or behind a flag to its beginning when a `continue` would pass over them.
void Repairer::forStatement(NodeId id, Pieces& out) {
    const std::vector<NodeId> parts = tree.children(id);
    const NodeId statement = parts[3];
    const auto rangeOf = [&](NodeId node) { return tree[node].range; };
    Pieces init;
    Prelude before = forInit(parts[0], init);
    Pieces test;
    Prelude first = forTest(parts[1], test);
    Prelude updates = forUpdate(parts[2]);
    if (tree.children(parts[2]).size() > 1) {
        say("for-parts", Severity::Error, rangeOf(parts[2]), "a `for` loop has one step",
            "do the others in the body");
    }
    const bool moveUpdates = updates.size() > 1;
    const bool flagged = moveUpdates && continues(statement);
    const NodeId tested = leftOut.count(parts[1]) != 0 ? noNode : tree[parts[1]].first;
    if (tested != noNode && (!first.empty() || flagged)) {
        Pieces wrapped;
        wrapped.insert("(", rangeOf(parts[1]));
        wrapped.append(std::move(test));
        wrapped.insert(")", rangeOf(parts[1]));
        first.push_back(leaveUnless(tested, std::move(wrapped)));
        test = Pieces{};
    }
    Prelude last;
    if (moveUpdates) {
        for (Pieces& each : updates) {
            each.markAsMoved();
        }
        updates.back().insert(";", rangeOf(parts[2]));
        std::swap(last, updates);
    }
    if (flagged) {
        first.insert(first.begin(), afterFirstRound(std::move(last), rangeOf(parts[2]), before));
        last.clear();
    }
    flush(before, id, out);
    copy(rangeOf(id).begin, rangeOf(parts[0]).begin, out);
    out.append(std::move(init));
    copy(rangeOf(parts[0]).end, rangeOf(parts[1]).begin, out);
    out.append(std::move(test));
    copy(rangeOf(parts[1]).end, rangeOf(parts[2]).begin, out);
    if (!updates.empty()) {
        out.append(std::move(updates.front()));
    }
    const std::uint32_t header = endOfHeader(parts[2]);
    copy(rangeOf(parts[2]).end, header, out);
    body(statement, header, std::move(first), std::move(last), out);
}

}  // namespace krel::Check
