// Statements of other languages. Comes in: their nodes. Goes out: statements of Krel where it is
// certain what is meant; otherwise the text stays, and the compiler does not get to see it.

/// # switch
///
/// ## What it finds
///
/// `switch` and `case`.
///
/// ## Why
///
/// There is no such statement. It is repaired if each case ends in `break` or `return`: in Krel
/// nothing goes on into the next one.
///
/// ## Example
///
/// ```krel example fragment
/// switch (n) {
///     case 1: print("one\n"); break;
///     default: print("many\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// if (n == 1) {
///     print("one\n");
/// } else {
///     print("many\n");
/// }
/// ```

/// # for-each
///
/// ## What it finds
///
/// A loop over the elements of an array: `for (int x : t)`.
///
/// ## Why
///
/// `for` counts. It is repaired if the array's size is known.
///
/// ## Example
///
/// ```krel example fragment
/// for (int x : a) { print(x, "\n"); }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// for (int k = 0; k < 3; k++) {
///     int x = a[k];
///     print(x, "\n");
/// }
/// ```

/// # prototype
///
/// ## What it finds
///
/// A function that is declared without its body.
///
/// ## Why
///
/// Functions may be called before they are defined.
///
/// ## Example
///
/// ```krel example
/// int twice(int x);
///
/// void main() {
///     print(twice(2), "\n");
/// }
///
/// int twice(int x) {
///     return x + x;
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
///     print(twice(2), "\n");
/// }
///
/// int twice(int x) {
///     return x + x;
/// }
/// ```

/// # foreign-construct
///
/// ## What it finds
///
/// Statements and declarations of other languages: `struct`, `class`, `enum`, `typedef`, `try`,
/// `throw`, `import`, `def`, `goto`, labels.
///
/// ## Why
///
/// There are none. The message says what there is instead. What only names other files, or only
/// encloses functions, is removed.
///
/// ## Example
///
/// ```krel example
/// import math;
///
/// void main() {
///     print("hello\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
///     print("hello\n");
/// }
/// ```

/// # named-constant
///
/// ## What it finds
///
/// A name that `#define` or `enum` gives a value to; also `TRUE` and `INT_MAX`.
///
/// ## Why
///
/// `#define` begins a comment, and there are no enumerations. So nothing declares the name.
///
/// ## Example
///
/// ```krel example fragment
/// #define LIMIT 10
/// i = LIMIT;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int limit = 10;
/// i = limit;
/// ```

#include <algorithm>
#include <string>
#include <utility>

#include "tools/check/repairer.hpp"
#include "tools/syntax/foreignWords.hpp"

namespace krel::Check {

/// Leaves a statement to the user; the compiler gets something that it accepts.
void Repairer::stay(NodeId id, Pieces& out) {
    stayed = true;
    if (purpose == Purpose::Ask) {
        return leaveOut(id, out);
    }
    out.keep(tree[id].range);
}

/// Up to where `for i in range(5)` counts; something else if that is not told.
std::string Repairer::endOfRange(NodeId id) const {
    const auto& words = tree.tokens.words;
    const std::size_t first = tree[id].token + 3;  // behind the name and `in`
    const bool isRange = first + 3 < words.size() && tree.textOf(words[first].range) == "range" &&
                         words[first + 1].word == Word::LeftParenthesis &&
                         words[first + 3].word == Word::RightParenthesis;
    return isRange ? std::string{tree.textOf(words[first + 2].range)} : "10";
}

void Repairer::foreignConstruct(NodeId id, Pieces& out) {
    const std::string word{tree.wordOf(id)};
    if (tree[id].op == Word::Colon) {
        say("foreign-construct", Severity::Error, tree[id].range, "there are no labels",
            "leave loops by `break`, functions by `return`");
        return stay(id, out);
    }
    if (tree[id].op == Word::Name) {
        say("reserved-name", Severity::Error, tree.wordRange(id),
            "`" + word + "` is a word of Krel", "use another name");
        return stay(id, out);
    }
    const Syntax::ForeignWords* const known = Syntax::findForeignWord(word);
    if (known == nullptr) {  // `for` without parentheses
        const Syntax::Token name = tree.tokens.words[tree[id].token + 1];
        const std::string counter{name.word == Word::Name ? tree.textOf(name.range) : "i"};
        say("foreign-construct", Severity::Error, tree[id].range,
            "a `for` loop has three parts in parentheses",
            "write " + quoted("for (int " + counter + " = 0; " + counter + " < " + endOfRange(id) +
                              "; " + counter + "++) { }"));
        return stay(id, out);
    }
    say("foreign-construct", Severity::Error, tree.wordRange(id),
        "`" + word + "`: " + std::string{known->message}, std::string{known->help});
    if (!known->isRemoved) {
        stay(id, out);
    }
}

/// Removes what encloses functions.
void Repairer::wrapper(NodeId id, Pieces& out) {
    const SourceRange range = tree[id].range;
    const std::string_view text = tree.textOf(id);
    const std::uint32_t open =
        range.begin + static_cast<std::uint32_t>(std::min(text.find('{'), text.size() - 1)) + 1;
    const bool isClosed = text.back() == '}';
    say("foreign-construct", Severity::Error, tree.wordRange(id),
        "`" + std::string{tree.wordOf(id)} + "`: functions stand in the file itself",
        "remove it, and the brace at its end");
    copyTopLevel(id, open, range.end - (isClosed ? 1 : 0), out);
}

void Repairer::prototype(NodeId id) {
    say("prototype", Severity::Error, tree[id].range,
        "functions need no declaration before their definition", "remove it");
}

// switch

/// Whether a statement never goes on to the next one.
bool Repairer::leavesAlways(NodeId id) const {
    if (id == noNode) {
        return false;
    }
    switch (tree[id].kind) {
        case Kind::Break:
        case Kind::Return:
        case Kind::Continue:
            return true;
        case Kind::ExpressionStatement:
            return tree[tree[id].first].op == Word::Exit;
        case Kind::Block:
            return leavesAlways(tree.lastChild(id));
        case Kind::If: {
            const std::vector<NodeId> arms = tree.children(id);
            return tree[arms.back()].kind == Kind::ElseArm &&
                   std::all_of(arms.begin(), arms.end(),
                               [&](NodeId arm) { return leavesAlways(tree.lastChild(arm)); });
        }
        default:
            return false;
    }
}

/// The loop or `switch` that a `break`, or a `continue`, leaves.
NodeId Repairer::leftBy(NodeId id) const {
    const bool isBreak = tree[id].kind == Kind::Break;
    for (NodeId around = tree[id].parent; around != noNode; around = tree[around].parent) {
        const Kind kind = tree[around].kind;
        if (kind == Kind::While || kind == Kind::DoWhile || kind == Kind::For ||
            kind == Kind::ForEach || (isBreak && kind == Kind::Switch)) {
            return around;
        }
    }
    return noNode;
}

/// The `break` at the end of a case, which is not needed; noNode when there is none.
NodeId Repairer::lastBreak(NodeId id) const {
    while (id != noNode && tree[id].kind == Kind::Block) {
        id = tree.lastChild(id);
    }
    return id != noNode && tree[id].kind == Kind::Break ? id : noNode;
}

/// How the cases of a `switch` can be written.
Repairer::Cases Repairer::casesOf(NodeId id) {
    Cases cases;
    std::size_t needless = 0;
    for (NodeId child = tree.child(id, 1); child != noNode; child = tree[child].next) {
        if (tree[child].kind != Kind::Case) {
            cases.isCertain = false;
            continue;
        }
        const NodeId last = tree.lastChild(child);
        const bool isEmpty = last == noNode || Syntax::isExpression(tree[last].kind);
        const bool goesOn = tree[child].next != noNode && (isEmpty || !leavesAlways(last));
        cases.isCertain = cases.isCertain && !goesOn;
        if (lastBreak(last) != noNode) {
            needlessBreaks.insert(lastBreak(last));
            ++needless;
        }
        (tree[child].op == Word::Else ? cases.others : cases.chosen).push_back(child);
    }
    std::size_t breaks = 0;
    bool continues = false;
    for (NodeId inside = model.firstWithin(id); inside < id; ++inside) {
        breaks += tree[inside].kind == Kind::Break && leftBy(inside) == id ? 1U : 0U;
        continues = continues || (tree[inside].kind == Kind::Continue && leftBy(inside) > id);
    }
    cases.needsLoop = breaks > needless;
    cases.isCertain =
        cases.isCertain && cases.others.size() <= 1 && !(cases.needsLoop && continues);
    return cases;
}

/// The statements of a case, in braces.
void Repairer::caseBody(NodeId id, Pieces& out) {
    const SourceRange range = tree[id].range;
    NodeId first = tree[id].first;
    std::uint32_t at = range.end;
    for (; first != noNode && Syntax::isExpression(tree[first].kind); first = tree[first].next) {
    }
    if (first != noNode) {
        const std::string_view labels =
            tree.text.substr(range.begin, tree[first].range.begin - range.begin);
        at = range.begin + static_cast<std::uint32_t>(labels.rfind(':') + 1);
    }
    out.insert("{", range);
    for (; first != noNode; first = tree[first].next) {
        copy(at, tree[first].range.begin, out);
        statement(first, out);
        at = tree[first].range.end;
        finishAt(at, out);
    }
    const NodeId next = tree[id].next;
    const SourceRange around = tree[tree[id].parent].range;
    const bool isClosed = tree.text[around.end - 1] == '}';
    copy(at, next != noNode ? tree[next].range.begin : around.end - (isClosed ? 1 : 0), out);
    out.insert("}", range);
}

void Repairer::switchStatement(NodeId id, Pieces& out) {
    const NodeId condition = tree[id].first;
    const NodeId tested = inner(tree[condition].first);
    const Cases cases = casesOf(id);
    say("switch", Severity::Error, tree.wordRange(id),
        cases.isCertain ? "there is no `switch`"
                        : "there is no `switch`, and in this one a case runs on into the next",
        "write `if (" + std::string{tree.textOf(tested)} + " == ...) { } elseif ...`" +
            (cases.isCertain ? ""
                             : "; end each case by `break`, or write what it shares with the next "
                               "in both"));
    stayed = stayed || !cases.isCertain;
    if (!cases.isCertain && purpose == Purpose::Write) {
        return stay(id, out);
    }
    const SourceRange word = tree.wordRange(id);
    Pieces value;
    if (tree[tested].kind == Kind::Name) {
        copy(tested, value);
    } else {
        const Type type = model.meant(tested);
        hoisted(tested, "selected", nameOf(type).empty() ? Word::Int : type, value);
    }
    const std::string selected = textOf(value);
    if (cases.needsLoop) {
        out.insert("while (true) { ", word);
    }
    std::string_view begin = "if (";
    for (const NodeId each : cases.chosen) {
        out.insert(std::string{begin}, tree[each].range);
        for (NodeId label = tree[each].first;
             label != noNode && Syntax::isExpression(tree[label].kind); label = tree[label].next) {
            out.insert((label == tree[each].first ? "" : " || ") + selected + " == ",
                       tree[label].range);
            Context context;
            context.calls = context.typed = false;
            Pieces text;
            expression(label, context, text);
            text.markAsMoved();
            out.append(std::move(text));
        }
        out.insert(") ", tree[each].range);
        caseBody(each, out);
        begin = " elseif (";
    }
    for (const NodeId each : cases.others) {
        out.insert(cases.chosen.empty() ? "" : " else ", tree[each].range);
        caseBody(each, out);
    }
    if (cases.needsLoop) {
        out.insert(" break; }", word);
    }
}

// Loops

/// How many elements the array of an expression has; empty when that is not known.
std::string Repairer::lengthText(NodeId array) const {
    const VariableId number =
        array != noNode && tree[array].kind == Kind::Name ? model.meaning(array) : noVariable;
    const auto length = number == noVariable ? std::nullopt : lengthOf(model.variables()[number]);
    return length ? std::to_string(*length) : std::string{};
}

void Repairer::forEachStatement(NodeId id, Pieces& out) {
    const NodeId declared = tree.child(tree[id].first, 1);
    const NodeId array = tree.child(id, 1);
    const NodeId statement = tree.child(id, 2);
    const VariableId number = model.declared(declared);
    const std::string length = lengthText(array);
    say("for-each", Severity::Error,
        {tree.wordRange(id).begin, std::max(tree[array].range.end, tree.wordRange(id).end)},
        "there is no loop over the elements of an array",
        "count: `for (int k = 0; k < " + (length.empty() ? "10" : length) +
            "; k++) { ... }`, and take `" + std::string{tree.textOf(array)} + "[k]`");
    if (length.empty() || number == noVariable || nameOf(model.variables()[number].type).empty()) {
        return stay(id, out);
    }
    const Variable& variable = model.variables()[number];
    const SourceRange range = tree.wordRange(id);
    const std::string index = fresh(std::string{variable.name} + "Index");
    out.insert("for (int " + index + " = 0; " + index + " < " + length + "; " + index + "++)",
               range);
    Pieces element;
    copy(array, element);
    const bool isNew = assignedOnly.count(number) == 0;
    Prelude first(1);
    first.front().insert((isNew ? std::string{nameOf(variable.type)} + " " : "") + nameNow(number) +
                             " = " + textOf(element) + "[" + index + "];",
                         range);
    body(statement, endOfHeader(array), std::move(first), {}, out);
}

/// A name that other languages put a literal in place of. Returns false if it is none.
bool Repairer::namedConstant(NodeId id, const Context& context, Pieces& out) {
    const Constant* const constant =
        model.meaning(id) == noVariable ? model.constantNamed(tree.wordOf(id)) : nullptr;
    if (constant == nullptr) {
        return false;
    }
    const bool isSigned = constant->value.front() == '-';
    const Number number = numberOf(constant->value);
    const bool isDouble = constant->type == Word::Double ||
                          (constant->type == Word::Int && context.want == Word::Double);
    const std::string text = isDouble && !isSigned && number.real <= 2147483647.0
                                 ? doubleText(id, number.real)
                             : isSigned ? "(" + constant->value + ")"
                                        : constant->value;
    say("named-constant", Severity::Error, tree[id].range,
        "`" + std::string{tree.wordOf(id)} + "` is not declared: " +
            (tree.wordOf(id) == "TRUE" ? "the words are `true` and `false`"
                                       : "there are no named constants"),
        writeHelp(text));
    out.insert(text, tree[id].range);
    return true;
}

}  // namespace krel::Check
