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
        "write `" + std::string{tree.textOf(id)} + " != " + zero + "`");
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

void Repairer::choose(NodeId id, const Context& context, Pieces& out) {
    const SourceRange range = tree[id].range;
    const Type wanted = context.want == Word::End ? model.meant(id) : context.want;
    const Type type = nameOf(wanted).empty() ? Word::Int : wanted;
    Context decided;
    decided.calls = decided.typed = false;
    decided.condition = true;
    Pieces test;
    expression(tree[id].first, decided, test);
    const std::string name = fresh("chosen");
    Pieces all;
    all.insert(std::string{nameOf(type)} + " " + name + " = " + defaultOf(type) + "; if (", range);
    test.markAsMoved();
    all.append(std::move(test));
    all.insert(") { ", range);
    Context value;
    value.want = type;
    // Calls stay in order within the branches.
    const NodeId firstCall = firstCallInPlace;
    const NodeId limit = std::exchange(hoistCallsBefore, 0);
    for (std::size_t number = 1; number <= 2; ++number) {
        const NodeId branch = tree.child(id, number);
        Pieces text;
        Prelude before = capture([&](Pieces&) { expression(branch, value, text); });
        for (Pieces& each : before) {
            all.append(std::move(each));
            all.insert(" ", range);
        }
        all.insert(name + " = ", range);
        text.markAsMoved();
        all.append(std::move(text));
        all.insert(number == 1 ? "; } else { " : "; }", range);
    }
    firstCallInPlace = firstCall;
    hoistCallsBefore = limit;
    prelude.push_back(std::move(all));
    if (model.hasCall(id)) {
        lastHoistWithCall = std::max(lastHoistWithCall, id);
    }
    say("conditional-expression", Severity::Error, range, "there is no operator `? :`",
        "decide by `if`: " + quoted(textOf(prelude.back())));
    out.insert(name, range);
}

}  // namespace krel::Check
