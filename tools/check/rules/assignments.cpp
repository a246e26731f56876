// Assignments, steps and operators that other languages have.

/// # compound-assignment
///
/// ## What it finds
///
/// `*=`, `/=` and `%=`.
///
/// ## Why
///
/// There are only `+=` and `-=`.
///
/// ## Example
///
/// ```krel example fragment
/// i *= 2;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = i * 2;
/// ```

/// # remainder
///
/// ## What it finds
///
/// The operator `%`.
///
/// ## Why
///
/// There is no such operator.
///
/// ## Example
///
/// ```krel example fragment
/// i = n % 2;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = n - n / 2 * 2;
/// ```

/// # assignment-value
///
/// ## What it finds
///
/// An assignment whose value is used: `a = b = c`, `if (i = 1)`.
///
/// ## Why
///
/// An assignment is a statement. In a condition `==` is meant most of the time; as that is a guess,
/// it is written by `--fix=all` only.
///
/// ## Example
///
/// ```krel example fragment
/// i = n = 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// n = 1;
/// i = n;
/// ```

/// # step-value
///
/// ## What it finds
///
/// `++` or `--` whose value is used: `i = n++`.
///
/// ## Why
///
/// Steps are statements.
///
/// ## Example
///
/// ```krel example fragment
/// i = n++;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = n;
/// n++;
/// ```

/// # double-step
///
/// ## What it finds
///
/// `++` or `--` on a `double`.
///
/// ## Why
///
/// The 1 that is added is an integer, which is refused.
///
/// ## Example
///
/// ```krel example fragment
/// d++;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// double one = (double) 1;
/// d = d + one;
/// ```

/// # untyped-update
///
/// ## What it finds
///
/// A value of another type behind `+=` or `-=`, and a step on something that is no number.
///
/// ## Why
///
/// Types are not checked there. The bits are taken as they are.
///
/// ## Example
///
/// ```krel example fragment
/// i += 1.5;
/// ```
///
/// ## Use instead
///
/// Values of the variable's own type.

/// # ignored-result
///
/// ## What it finds
///
/// A call of a function with a value, as a statement.
///
/// ## Why
///
/// A value cannot be dropped.
///
/// ## Example
///
/// ```krel example fragment
/// f();
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int ignored = f();
/// ```

/// # exit-status
///
/// ## What it finds
///
/// `exit` with an argument.
///
/// ## Why
///
/// The argument is never evaluated. The program ends with status 0.
///
/// ## Example
///
/// ```krel example fragment
/// exit(3);
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// exit();
/// ```

#include <string>
#include <string_view>

#include "tools/check/repairer.hpp"

namespace krel::Check {

/// What an assignment with an operator starts from: the target, or what it held before the value
/// changed it.
std::string Repairer::assignedFrom(NodeId id, const std::string& targetText) {
    const NodeId target = tree[id].first;
    return effects.changeBehind(target, effects.variableOf(target)) ? keptNow(target, targetText)
                                                                    : targetText;
}

/// Returns the text of the target.
std::string Repairer::assignment(NodeId id, Pieces& out) {
    const NodeId target = tree[id].first;
    const NodeId value = tree.child(id, 1);
    const Word op = tree[id].op;
    const Type type = model.meant(target);
    Pieces written;
    expression(target, {}, written);
    std::string targetText = textOf(written);
    out.append(std::move(written));
    Context context;
    context.want = type;
    if (op == Word::Assign) {
        copy(tree[target].range.end, tree[value].range.begin, out);
        expression(value, context, out);
        return targetText;
    }
    const std::string from = assignedFrom(id, targetText);
    if (bitOperatorOf(op) != Word::End) {
        Pieces left;
        left.insert(from, tree[target].range);
        out.insert(" = ", {tree[target].range.end, tree[value].range.begin});
        out.append(bitOperation(id, bitOperatorOf(op), {}, std::move(left)));
        return targetText;
    }
    const bool isKrel = op == Word::PlusAssign || op == Word::MinusAssign;
    if (isKrel && from == targetText) {
        sumAssignment(id, out);
        return targetText;
    }
    const std::size_t before = prelude.size();
    Pieces right;
    if (op == Word::PercentAssign) {
        context.want = Word::Int;
        expression(value, context, right);
        const std::string divisor = atomFor(value, "divisor", std::move(right));
        right = Pieces{};
        right.insert(" = " + from + " - " + from + " / " + divisor + " * " + divisor,
                     {tree[target].range.end, tree[id].range.end});
    } else {
        right.insert(" = " + from + " " + std::string{tree.wordOf(id).substr(0, 1)} + " ",
                     {tree[target].range.end, tree[value].range.begin});
        const Kind kind = tree[value].kind;
        const bool bare = kind != Kind::Binary && kind != Kind::Unary && kind != Kind::Conditional;
        right.insert(bare ? "" : "(", tree[value].range);
        expression(value, context, right);
        right.insert(bare ? "" : ")", tree[value].range);
    }
    if (!isKrel) {
        const std::string declared = declarationsSince(before);
        const std::string text = targetText + textOf(right);
        say("compound-assignment", Severity::Error, tree.wordRange(id),
            "there are only `+=` and `-=`",
            declared.empty()
                ? writeHelp(text)
                : "store it first, " + quoted(declared) + ", and write " + quoted(text));
    }
    out.append(std::move(right));
    return targetText;
}

/// What stands behind the target of `+=` or `-=`.
void Repairer::sumAssignment(NodeId id, Pieces& out) {
    const NodeId target = tree[id].first;
    const NodeId value = tree.child(id, 1);
    const Type type = model.meant(target);
    const Type given = model.meant(value);
    Context context;
    context.calls = context.typed = false;
    context.want = type == Word::Double || (type == Word::String && tree[id].op == Word::PlusAssign)
                       ? type
                       : Word::End;
    if ((given == Word::Double || given == Word::String) && type != given &&
        !nameOf(type).empty() && type != Word::String) {
        say("untyped-update", Severity::Warning, tree[value].range,
            "this is of type `" + std::string{nameOf(given)} + "`, and is added to `" +
                std::string{nameOf(type)} + "` as it is",
            "");
    }
    copy(tree[target].range.end, tree[value].range.begin, out);
    expression(value, context, out);
}

namespace {

/// Whether the first parenthesis closes at the very end. Texts with quotes are not looked into.
bool isInParentheses(std::string_view text) {
    if (text.size() < 2 || text.front() != '(' || text.find_first_of("'\"") != text.npos) {
        return false;
    }
    int open = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        open += text[index] == '(' ? 1 : text[index] == ')' ? -1 : 0;
        if (open == 0) {
            return index + 1 == text.size();
        }
    }
    return false;
}

}  // namespace

/// A text that may stand more than once: that of one name, literal or element, or the name of a
/// variable that holds the value.
std::string Repairer::atomFor(NodeId id, const std::string& base, Pieces&& text) {
    const NodeId core = inner(id);
    std::string written = textOf(text);
    if (written.find_first_of(" (") == written.npos &&
        (isAtom(core) || tree[core].kind == Kind::Index)) {
        return written;
    }
    if (isInParentheses(written)) {
        Pieces bare;  // the declaration needs none
        bare.insert(written.substr(1, written.size() - 2), tree[id].range);
        return hoist(Word::Int, base, std::move(bare), id);
    }
    return hoist(Word::Int, base, std::move(text), id);
}

Pieces Repairer::remainder(NodeId id, Pieces&& left) {
    const NodeId first = tree[id].first;
    const NodeId second = tree.child(id, 1);
    const SourceRange range = tree[id].range;
    const NodeId firstCall = firstCallInPlace;
    const std::size_t before = prelude.size();
    const std::string dividend = atomFor(first, "dividend", std::move(left));
    Pieces right;
    Context context;
    context.want = Word::Int;
    expression(second, context, right);
    const std::string divisor = atomFor(second, "divisor", std::move(right));
    firstCallInPlace = firstCall;
    const std::string rest = dividend + " - " + dividend + " / " + divisor + " * " + divisor;
    const std::string text = isOperand(id) ? "(" + rest + ")" : rest;
    const std::string declared = declarationsSince(before);
    say("remainder", Severity::Error, tree.wordRange(id), "there is no operator `%`",
        declared.empty() ? "write " + quoted(text)
                         : "store it first, " + quoted(declared) + ", and write " + quoted(text));
    Pieces result;
    result.insert(text, range);
    return result;
}

void Repairer::nestedAssignment(NodeId id, const Context& context, Pieces& out) {
    const NodeId target = tree[id].first;
    const NodeId value = tree.child(id, 1);
    if (context.condition && tree[id].op == Word::Assign &&
        tree[tree[id].parent].kind == Kind::Condition) {
        say("assignment-value", Severity::Error, tree.wordRange(id),
            "an assignment is no condition", "if a comparison is meant, write `==`");
        guessed = true;
        if (guesses == Guesses::Left) {
            copy(id, out);
            return;
        }
        expression(target, {}, out);
        const SourceRange sign = tree.wordRange(id);
        copy(tree[target].range.end, sign.begin, out);
        out.insert("==", sign);
        copy(sign.end, tree[value].range.begin, out);
        Context inside = context;
        inside.condition = false;
        expression(value, inside, out);
        return;
    }
    Pieces statement;
    const std::string targetText = assignment(id, statement);
    statement.markAsMoved();
    statement.insert(";", tree[id].range);
    prelude.push_back(std::move(statement));
    if (model.hasCall(id)) {
        lastHoistWithCall = std::max(lastHoistWithCall, id);
    }
    say("assignment-value", Severity::Error, tree[id].range,
        "an assignment is a statement and has no value",
        "assign first: " + quoted(textOf(prelude.back())) + ", and write " + quoted(targetText));
    const bool isChanged = effects.changeBehind(id, effects.variableOf(target));
    out.insert(isChanged ? keptNow(target, targetText) : targetText, tree[target].range);
}

void Repairer::nestedUpdate(NodeId id, Pieces& out) {
    const NodeId operand = inner(tree[id].first);
    if (tree[operand].kind != Kind::Name && tree[operand].kind != Kind::Index) {
        return childrenOf(id, {}, out);
    }
    Pieces target;
    expression(operand, {}, target);
    const std::string text = textOf(target);
    const Type meant = model.meant(operand);
    const Type type = nameOf(meant).empty() ? Word::Int : meant;
    std::string name = text;
    if (tree[id].foreign) {  // behind the operand: the value from before counts
        Pieces value;
        value.insert(text, tree[operand].range);
        name = hoist(type, "before", std::move(value), operand);
    }
    const std::string sign = tree[id].op == Word::Increment ? " + " : " - ";
    Pieces step;
    step.insert(type == Word::Double ? text + " = " + text + sign + doubleConstant(id, 1.0) + ";"
                                     : text + std::string{tree.wordOf(id)} + ";",
                tree[id].range);
    prelude.push_back(std::move(step));
    say("step-value", Severity::Error, tree[id].range,
        "`" + std::string{tree.wordOf(id)} + "` is a statement and has no value",
        "make it a statement of its own");
    const bool isKept = !tree[id].foreign && effects.changeBehind(id, effects.variableOf(operand));
    out.insert(isKept ? keptNow(operand, text) : name, tree[id].range);
}

void Repairer::update(NodeId id, Pieces& out) {
    const NodeId operand = tree[id].first;
    const NodeId core = inner(operand);
    const Type type = model.meant(core);
    const SourceRange range = tree[id].range;
    if (tree[core].kind != Kind::Name && tree[core].kind != Kind::Index) {
        return copy(id, out);
    }
    if (type == Word::String) {
        say("untyped-update", Severity::Warning, range,
            "a `string` is counted up here, and is no text afterwards", "");
    }
    if (type == Word::Double) {
        Pieces target;
        expression(core, {}, target);
        const std::string text = textOf(target);
        const std::string instead = text + " = " + text +
                                    (tree[id].op == Word::Increment ? " + " : " - ") +
                                    doubleConstant(id, 1.0);
        say("double-step", Severity::Error, range, "a `double` cannot be counted up or down",
            writeHelp(instead));
        out.insert(instead, range);
        return;
    }
    if (core != operand) {
        Pieces target;
        expression(core, {}, target);
        const std::string sign{tree.wordOf(id)};
        const std::string text = textOf(target) + sign;
        say("step-value", Severity::Error, range, "what is counted stands without parentheses",
            "write " + quoted(text));
        out.insert(text, range);
        return;
    }
    copy(range.begin, tree[operand].range.begin, out);
    expression(operand, {}, out);
    copy(tree[operand].range.end, range.end, out);
}

void Repairer::callStatement(NodeId id, Pieces& out) {
    const FunctionId callee = model.functionNamed(tree.wordOf(id));
    const NodeId status = tree[id].first;
    if (tree[id].op == Word::Exit && status != noNode && tree.textOf(status) != "0") {
        say("exit-status", Severity::Warning, tree[id].range,
            "the argument of `exit` is never evaluated; the status is 0", "write `exit()`");
    }
    if (tree[id].op == Word::Name && callee != noFunction) {
        const Type type = model.functions()[callee].type;
        const bool isMain = model.functions()[callee].name == "main";
        if (type != Word::Void && !isMain && !nameOf(type).empty()) {
            const std::string name = fresh("ignored");
            const std::string declared = std::string{nameOf(type)} + " " + name + " = ";
            say("ignored-result", Severity::Error, tree[id].range,
                "the value of a call cannot be dropped",
                "store it: `" + declared + std::string{tree.textOf(id)} + ";`");
            out.insert(declared, {tree[id].range.begin, tree[id].range.begin});
        }
    }
    arguments(id, out);
}

}  // namespace krel::Check
