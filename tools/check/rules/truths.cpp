// Comparisons and conditions as values, choices, and both sides of `&&`.

/// # comparison-value
///
/// ## What it finds
///
/// A comparison where a `boolean` is needed, or where its value is printed.
///
/// ## Why
///
/// A comparison has the type of its operands: `n > 1` is an `int`, and `d > 0.5` a `double`.
///
/// ## Example
///
/// ```krel example fragment
/// b = n > 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// b = false;
/// if (n > 1) {
///     b = true;
/// }
/// ```

/// # double-condition
///
/// ## What it finds
///
/// A `double` as a condition by itself.
///
/// ## Why
///
/// Such a condition holds when the double is zero.
///
/// ## Example
///
/// ```krel example fragment
/// if (d) { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// double zero = (double) 0;
/// if (d != zero) { }
/// ```

/// # both-sides
///
/// ## What it finds
///
/// `&&` and `||` whose right side divides by something, or calls a function, where the left side
/// seems to protect it.
///
/// ## Why
///
/// Both sides are always evaluated.
///
/// ## Example
///
/// ```krel example fragment
/// if (n != 0 && 10 / n > 2) { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// if (n != 0) {
///     if (10 / n > 2) { }
/// }
/// ```

/// # conditional-expression
///
/// ## What it finds
///
/// `condition ? one : other`.
///
/// ## Why
///
/// There is no such operator.
///
/// ## Example
///
/// ```krel example fragment
/// i = n > 1 ? n : 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 1;
/// if (n > 1) {
///     i = n;
/// }
/// ```

#include <algorithm>
#include <string>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

/// Decides by `if` what value a comparison has.
void Repairer::truthValue(NodeId id, const Context& context, Pieces& out) {
    const SourceRange range = tree[id].range;
    const bool asInt = context.want == Word::Int;
    const std::string type = asInt ? "int" : "boolean";
    Context decided;
    decided.calls = decided.typed = false;
    decided.condition = true;
    Pieces test;
    expression(id, decided, test);
    const std::string written = textOf(test);
    const std::string name = fresh("holds");
    Pieces statement;
    statement.insert(type + " " + name + (asInt ? " = 0; if (" : " = false; if ("), range);
    test.markAsMoved();
    statement.append(std::move(test));
    statement.insert(") { " + name + (asInt ? " = 1; }" : " = true; }"), range);
    prelude.push_back(std::move(statement));
    if (model.hasCall(id)) {
        lastHoistWithCall = std::max(lastHoistWithCall, id);
    }
    const bool silent = context.printed;
    const std::string krel{nameOf(model.krel(id))};
    say("comparison-value", silent ? Severity::Warning : Severity::Error, range,
        krel.empty() ? "a comparison has the type of its operands, and is no `boolean` value"
                     : "the type of this comparison is that of its operands, `" + krel + "`",
        "decide by `if`: " + quoted(textOf(prelude.back())));
    if (context.want == Word::String) {
        const std::string text = fresh(name + "Text");
        Pieces cast;
        cast.insert("string " + text + " = (string) " + name + ";", range);
        prelude.push_back(std::move(cast));
        out.insert(text, range);
        return;
    }
    out.insert(name, range);
}

void Repairer::doubleCondition(NodeId id, const Context& context, Pieces& out) {
    Context inside = context;
    inside.condition = false;
    const std::string zero = doubleConstant(id, 0.0);
    say("double-condition", Severity::Warning, tree[id].range,
        "a `double` is no condition: this holds when it is zero",
        writeHelp(std::string{tree.textOf(id)} + " != " + zero));
    const Kind parent = tree[tree[id].parent].kind;
    const bool isBare =
        parent == Kind::Condition || parent == Kind::ForPart || parent == Kind::Parentheses;
    out.insert(isBare ? "" : "(", tree[id].range);
    expression(id, inside, out);
    out.insert(" != " + zero + (isBare ? "" : ")"), tree[id].range);
}

/// Whether the right side of `&&` or `||` may fault unless the left side decides: it divides by
/// something that is no literal.
bool Repairer::needsLeft(NodeId right) const {
    for (NodeId id = model.firstWithin(right); id <= right; ++id) {
        if (tree[id].kind == Kind::Binary &&
            (tree[id].op == Word::Divide || tree[id].op == Word::Percent) &&
            model.meant(id) == Word::Int) {
            const NodeId divisor = inner(tree.child(id, 1));
            if (tree[divisor].kind != Kind::Literal) {
                return true;
            }
        }
    }
    return false;
}

/// Evaluates the right side only where the left one does not decide.
Pieces Repairer::shortCircuit(NodeId id, Pieces&& left, Prelude&& before, Pieces&& right) {
    const SourceRange range = tree[id].range;
    const bool isAnd = tree[id].op == Word::And;
    const std::string name = fresh(isAnd ? "both" : "either");
    if (before.empty()) {
        say("both-sides", Severity::Warning, tree.wordRange(id),
            "both sides of `" + std::string{tree.wordOf(id)} +
                "` are evaluated, whatever the left one is",
            "decide in two steps, by an `if` in an `if`");
    }
    Pieces all;
    all.insert("boolean " + name + " = false; if (", range);
    left.markAsMoved();
    all.append(std::move(left));
    all.insert(isAnd ? ") { " : ") { " + name + " = true; } else { ", range);
    for (Pieces& each : before) {
        all.append(std::move(each));
        all.insert(" ", range);
    }
    all.insert("if (", range);
    right.markAsMoved();
    all.append(std::move(right));
    all.insert(") { " + name + " = true; } }", range);
    prelude.push_back(std::move(all));
    lastHoistWithCall = model.hasCall(id) ? std::max(lastHoistWithCall, id) : lastHoistWithCall;
    Pieces result;
    result.insert(name, range);
    return result;
}

/// Whether a value is better decided by statements than computed: a choice, or a comparison where
/// a truth is needed.
bool Repairer::isDecided(NodeId id, Type type) const {
    Context context;
    context.want = type;
    const NodeId core = inner(id);
    return tree[core].kind == Kind::Conditional ||
           (type == Word::Boolean && isTruth(core) && !isAsItShouldBe(core, context));
}

/// Statements that decide a value, and use it with `begin` before it and a semicolon behind. A
/// comparison that does not hold uses nothing unless it is complete.
Pieces Repairer::decision(NodeId id, Type type, const std::string& begin, bool isComplete) {
    const NodeId core = inner(id);
    const SourceRange range = tree[core].range;
    const bool isChoice = tree[core].kind == Kind::Conditional;
    Context decided;
    decided.calls = decided.typed = false;
    decided.condition = true;
    Pieces test;
    expression(isChoice ? tree[core].first : core, decided, test);
    test.markAsMoved();
    Pieces all;
    all.insert("if (", range);
    all.append(std::move(test));
    if (!isChoice) {
        all.insert(") { " + begin + "true; }" +
                       (isComplete ? " else { " + begin + "false; }" : std::string{}),
                   range);
        return all;
    }
    const NodeId firstCall = firstCallInPlace;  // calls stay in order within the branches
    const NodeId limit = std::exchange(hoistCallsBefore, 0);
    all.insert(") { ", range);
    all.append(branch(tree.child(core, 1), type, begin));
    all.insert(" }", range);
    const NodeId other = tree.child(core, 2);
    Pieces last;
    const bool isChain = tree[inner(other)].kind == Kind::Conditional;
    Prelude before =
        isChain ? capture([&](Pieces&) { last = decision(other, type, begin, true); }) : Prelude{};
    if (isChain && before.empty()) {
        all.insert(" else", range);
        all.append(std::move(last));
    } else {
        all.insert(" else { ", range);
        for (Pieces& each : before) {
            all.append(std::move(each));
            all.insert(" ", range);
        }
        all.append(isChain ? std::move(last) : branch(other, type, begin));
        all.insert(" }", range);
    }
    firstCallInPlace = firstCall;
    hoistCallsBefore = limit;
    return all;
}

/// One of the values of a choice, with what has to run before.
Pieces Repairer::branch(NodeId id, Type type, const std::string& begin) {
    const SourceRange range = tree[id].range;
    Pieces text;
    Prelude before = capture([&](Pieces&) {
        if (isDecided(id, type)) {
            text = decision(id, type, begin, true);
            return;
        }
        Context context;
        context.want = type;
        text.insert(begin, range);
        expression(id, context, text);
        text.insert(";", range);
    });
    text.markAsMoved();
    Pieces all;
    for (Pieces& each : before) {
        all.append(std::move(each));
        all.insert(" ", range);
    }
    all.append(std::move(text));
    return all;
}

/// Says why a value is decided by statements.
void Repairer::sayDecided(NodeId id, const std::string& text) {
    const NodeId core = inner(id);
    if (tree[core].kind == Kind::Conditional) {
        say("conditional-expression", Severity::Error, tree[core].range,
            "there is no operator `? :`", "decide by `if`: " + quoted(text));
        return;
    }
    const std::string krel{nameOf(model.krel(core))};
    say("comparison-value", Severity::Error, tree[core].range,
        krel.empty() ? "a comparison has the type of its operands, and is no `boolean` value"
                     : "the type of this comparison is that of its operands, `" + krel + "`",
        "decide by `if`: " + quoted(text));
}

/// A statement that assigns or returns a decided value. Returns false if it is none.
bool Repairer::decidedStatement(NodeId statement, NodeId value, Type type, const std::string& begin,
                                Pieces& out) {
    const std::string_view text = tree.textOf(statement);
    if (nameOf(type).empty() || !isDecided(value, type) || text.empty() || text.back() != ';') {
        return false;
    }
    Pieces written = decision(value, type, begin, true);
    sayDecided(value, textOf(written));
    out.append(std::move(written));
    return true;
}

/// A choice in the middle of an expression.
void Repairer::choose(NodeId id, const Context& context, Pieces& out) {
    const SourceRange range = tree[id].range;
    const Type wanted = context.want == Word::End ? model.meant(id) : context.want;
    const Type type = nameOf(wanted).empty() ? Word::Int : wanted;
    const std::string name = fresh("chosen");
    Pieces all;
    all.insert(std::string{nameOf(type)} + " " + name + " = " + defaultOf(type) + "; ", range);
    all.append(decision(id, type, name + " = ", true));
    prelude.push_back(std::move(all));
    if (model.hasCall(id)) {
        lastHoistWithCall = std::max(lastHoistWithCall, id);
    }
    sayDecided(id, textOf(prelude.back()));
    out.insert(name, range);
}

}  // namespace krel::Check
