// What may stand as an index, as the operand of a cast, and where casts and calls may stand.

/// # index-expression
///
/// ## What it finds
///
/// An index that is neither one name nor one integer literal: `a[i + 1]`, `a[-1]`, `a[f()]`, and
/// arrays of two dimensions.
///
/// ## Why
///
/// The grammar has room for one name or one integer literal between the brackets.
///
/// ## Example
///
/// ```krel example fragment
/// a[i + 1] = 0;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int next = i + 1;
/// a[next] = 0;
/// ```

/// # cast-place
///
/// ## What it finds
///
/// A cast that is not the whole initial value of a variable, or whose operand is not one name or
/// one literal.
///
/// ## Why
///
/// Only there does the grammar have room for a cast.
///
/// ## Example
///
/// ```krel example fragment
/// d = (double) i / d;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// double left = (double) i;
/// d = left / d;
/// ```

/// # call-place
///
/// ## What it finds
///
/// A call of a function with a value in a condition, on the right side of `+=` and `-=`, or in the
/// argument of `exit`.
///
/// ## Why
///
/// These places are not typed. The compiler takes a call there for a statement, and refuses it
/// because of its value.
///
/// ## Example
///
/// ```krel example fragment
/// if (f() == 1) { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int result = f();
/// if (result == 1) { }
/// ```
///
/// In the condition of a loop the call belongs to the beginning of the body:
///
/// ```krel fragment
/// while (true) {
///     int value = f();
///     if (!(value == 0)) { break; }
/// }
/// ```

/// # unary-call
///
/// ## What it finds
///
/// `-`, `+` or `!` right before a call.
///
/// ## Why
///
/// The grammar has no room for a call there.
///
/// ## Example
///
/// ```krel example fragment
/// i = -f();
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int result = f();
/// i = -result;
/// ```

#include <string>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

/// The second size of an array of two dimensions; noNode when there is none.
NodeId Repairer::columnsOf(NodeId array) const {
    const VariableId variable = model.meaning(array);
    return variable == noVariable || model.variables()[variable].bounds.size() != 2
               ? noNode
               : tree[model.variables()[variable].bounds[1]].first;
}

/// Declares a variable in the prelude that keeps what a place holds now. Returns its name.
std::string Repairer::keptNow(NodeId place, const std::string& text) {
    const Type meant = model.meant(place);
    Pieces value;
    value.insert(text, tree[place].range);
    return hoist(nameOf(meant).empty() ? Word::Int : meant, "before", std::move(value), place);
}

void Repairer::name(NodeId id, Pieces& out) {
    if (!effects.changeLater(id)) {
        return copy(id, out);
    }
    Pieces text;
    copy(id, text);
    out.insert(keptNow(id, textOf(text)), tree[id].range);
}

void Repairer::place(NodeId id, Pieces& out) {
    if (!effects.changeLater(id)) {
        return element(id, out);
    }
    Pieces text;
    element(id, text);
    out.insert(keptNow(id, textOf(text)), tree[id].range);
}

/// An element of an array. What is between the brackets goes into a variable unless it may stay.
void Repairer::element(NodeId id, Pieces& out) {
    const NodeId base = tree[id].first;
    const NodeId at = tree.child(id, 1);
    const SourceRange range = tree[id].range;
    NodeId array = base;
    const bool isSecond = tree[base].kind == Kind::Index;
    if (isSecond) {
        array = tree[base].first;
    }
    if (tree[array].kind != Kind::Name || tree[at].kind == Kind::Missing) {
        childrenOf(id, {}, out);
        return;
    }
    if (!isSecond && isIndexAtom(at)) {
        childrenOf(id, {}, out);
        return;
    }
    const std::string name{tree.wordOf(array)};
    if (isSecond && columnsOf(array) == noNode) {
        childrenOf(id, {}, out);
        return;
    }
    Pieces value;
    Context context;
    context.want = Word::Int;
    const NodeId firstCall = firstCallInPlace;
    const NodeId limit = std::exchange(hoistCallsBefore, 0);
    if (isSecond) {
        const NodeId columns = columnsOf(array);
        const NodeId row = tree.child(base, 1);
        if (columns == noNode) {
            childrenOf(id, {}, out);
            return;
        }
        const auto wrapped = [&](NodeId node) {
            const bool bare = isAtom(node);
            value.insert(bare ? "" : "(", range);
            expression(node, context, value);
            value.insert(bare ? "" : ")", range);
        };
        wrapped(row);
        value.insert(" * " + std::string{tree.textOf(columns)} + " + ", range);
        wrapped(at);
    } else {
        expression(inner(at), context, value);
    }
    firstCallInPlace = firstCall;
    hoistCallsBefore = limit;
    const std::string written = textOf(value);
    const bool isName = isWord(written);
    const std::string index =
        isName ? written : hoist(Word::Int, name + "Index", std::move(value), id);
    const std::string instead = "`" + name + "[" + index + "]`";
    const bool isStep = !isSecond && tree[inner(at)].kind == Kind::Update;
    if (!isStep || !isName) {  // a step is reported already
        say("index-expression", Severity::Error, isSecond ? range : tree[at].range,
            isSecond ? "arrays have one dimension" : "an index is one name or one integer literal",
            isName
                ? "write " + instead
                : "store it first: `int " + index + " = " + written + ";`, and write " + instead);
    }
    copy(tree[array].range.begin, tree[array].range.end, out);
    out.insert("[" + index + "]", {tree[array].range.end, range.end});
}

/// A cast that may stand where it stands, as the whole initial value of a variable of that type.
/// Writes it and returns true, if it is one or can be made one.
bool Repairer::aloneCast(NodeId id, Type target, Pieces& out) {
    const NodeId operand = tree.child(id, 1);
    const Type to = tree[tree[id].first].op;
    const Type from = model.meant(operand);
    if (to != target || from == to || (from == Word::Double && to == Word::Int)) {
        return false;
    }
    const bool isPlainLiteral =
        tree[operand].kind == Kind::Literal &&
        (tree[operand].op == Word::IntLiteral || tree[operand].op == Word::CharacterLiteral ||
         tree[operand].op == Word::DoubleLiteral) &&
        !isWholeDouble(operand) &&
        (tree[operand].op != Word::IntLiteral ||
         numberOf(tree.textOf(operand)).whole <= 2147483647U);
    if (!tree[id].foreign && (tree[operand].kind == Kind::Name || isPlainLiteral)) {
        copy(id, out);
        return true;
    }
    if (!isConvertible(from, to)) {
        return false;
    }
    Pieces value;
    const bool isName = tree[operand].kind == Kind::Name;
    const std::string declared = isName || isPlainLiteral
                                     ? (copy(operand, value), std::string{})
                                     : hoisted(operand, "operand", from, value);
    const std::string text = "(" + std::string{nameOf(to)} + ") " + textOf(value);
    say("cast-place", Severity::Error, tree[id].range, "what is cast is one name or one literal",
        declared.empty() ? "write " + quoted(text)
                         : "store it first, " + quoted(declared) + ", and write " + quoted(text));
    out.insert(text, tree[id].range);
    return true;
}

/// A double as an `int`, by a function that is added to the program. `id` is the cast, or the
/// operand itself where none is written.
void Repairer::wholeValue(NodeId id, NodeId operand, const Context& context, Pieces& out) {
    const SourceRange range = tree[id].range;
    const NodeId firstCall = firstCallInPlace;
    const NodeId core = inner(operand);
    const Number number = numberOf(tree.textOf(core));
    const bool isLiteral = tree[core].kind == Kind::Literal && number.real <= 2147483647.0;
    const bool isCast = id != operand;
    Pieces value;
    if (isLiteral) {
        value.insert(std::to_string(static_cast<std::int64_t>(number.real)), range);
    } else {
        if (wholeName.empty()) {
            wholeName = freshFunction("whole");
        }
        Context inside;
        inside.want = Word::Double;
        value.insert(wholeName + "(", range);
        expression(core, inside, value);
        value.insert(")", range);
    }
    const std::string help =
        isLiteral
            ? "write "
            : "call a function that finds the whole number, which `--fix` adds to the program: ";
    say(isCast ? "cast-place" : "implicit-conversion", Severity::Error, range,
        isCast
            ? "there is no cast from `double` to `int`"
            : "this is of type `double`, but `int` is needed, and nothing is converted by itself",
        help + quoted(textOf(value)));
    if (isLiteral ||
        (context.calls && context.typed && tree[tree[id].parent].kind != Kind::Unary)) {
        out.append(std::move(value));
        return;
    }
    firstCallInPlace = firstCall;
    out.insert(hoist(Word::Int, "wholeValue", std::move(value), id), range);
}

void Repairer::cast(NodeId id, const Context& context, Pieces& out) {
    const NodeId operand = tree.child(id, 1);
    const Type to = tree[tree[id].first].op;
    const Type from = model.meant(operand);
    const SourceRange range = tree[id].range;
    if (from == to && from != Word::End) {
        say("cast-place", Severity::Error, range, "there is no cast to the operand's own type",
            "leave it out: " + quoted(tree.textOf(operand)));
        expression(operand, context, out);
        return;
    }
    Pieces value;
    const NodeId firstCall = firstCallInPlace;
    if (from == Word::Double && to == Word::Int) {
        return wholeValue(id, operand, context, out);
    }
    if (!aloneCast(id, to, value)) {
        firstCallInPlace = firstCall;
        say("cast-place", Severity::Error, range,
            nameOf(from).empty() ? "this cast cannot stand here"
                                 : "there is no cast from `" + std::string{nameOf(from)} +
                                       "` to `" + std::string{nameOf(to)} + "`",
            from == Word::Double && to == Word::Int ? "write a function that finds the whole number"
                                                    : "");
        copy(range.begin, tree[operand].range.begin, out);
        expression(operand, {}, out);
        copy(tree[operand].range.end, range.end, out);
        return;
    }
    firstCallInPlace = firstCall;
    const NodeId named = inner(operand);
    const std::string base = tree[named].kind == Kind::Name || tree[named].kind == Kind::Call
                                 ? std::string{tree.wordOf(named)}
                                 : "operand";
    const std::string written = textOf(value);
    const std::string name = hoist(to, base + std::string{suffixFor(to)}, std::move(value), id);
    say("cast-place", Severity::Error, range, "a cast is the whole initial value of a variable",
        "declare one: `" + std::string{nameOf(to)} + " " + name + " = " + written +
            ";`, and write " + quoted(name));
    out.insert(name, range);
}

void Repairer::call(NodeId id, const Context& context, Pieces& out) {
    if (isInlined(id)) {
        out.insert(inlineCall(id), tree[id].range);
        return;
    }
    const FunctionId callee = model.functionNamed(tree.wordOf(id));
    const bool mustMove = !context.calls || id < hoistCallsBefore;
    if (!mustMove || callee == noFunction || model.functions()[callee].type == Word::Void ||
        nameOf(model.functions()[callee].type).empty()) {
        firstCallInPlace = std::min(firstCallInPlace, id);
        arguments(id, out);
        return;
    }
    const NodeId firstCall = firstCallInPlace;
    const NodeId limit = std::exchange(hoistCallsBefore, 0);
    Pieces value;
    arguments(id, value);
    firstCallInPlace = firstCall;
    hoistCallsBefore = limit;
    const std::string written = textOf(value);
    const Type type = model.functions()[callee].type;
    const std::string name =
        hoist(type, std::string{tree.wordOf(id)} + "Result", std::move(value), id);
    if (!context.calls) {
        say("call-place", Severity::Error, tree[id].range,
            context.typed ? "a function cannot be called on this side"
                          : "a function with a value cannot be called here",
            helpForCall(id, std::string{nameOf(type)} + " " + name + " = " + written + ";", name));
    }
    out.insert(name, tree[id].range);
}

/// Where the result of a call goes that stands in a condition: not in front of the statement, if
/// the call has to happen again, or only sometimes.
std::string Repairer::helpForCall(NodeId id, const std::string& declared,
                                  const std::string& name) const {
    NodeId part = id;
    bool isSecond = false;
    constexpr int mostSteps = 50;
    constexpr std::uint32_t longest = 200;
    for (int step = 0; Syntax::isExpression(tree[tree[part].parent].kind); ++step) {
        if (step == mostSteps) {
            return "store the result first: " + quoted(declared);
        }
        const NodeId around = tree[part].parent;
        isSecond = isSecond || (tree[around].kind == Kind::Binary && tree[around].first != part &&
                                (tree[around].op == Word::And || tree[around].op == Word::Or));
        part = around;
    }
    const NodeId holder = tree[part].parent;
    const SourceRange whole = tree[part].range;
    const bool isCondition =
        tree[holder].kind == Kind::Condition && whole.end - whole.begin <= longest;
    const NodeId statement = isCondition ? tree[holder].parent : noNode;
    const SourceRange own = tree[id].range;
    const std::string test = std::string{tree.textOf(SourceRange{whole.begin, own.begin})} + name +
                             std::string{tree.textOf(SourceRange{own.end, whole.end})};
    if (isCondition && isSecond) {
        return "store the result where the left side is decided, in an `if` of its own: " +
               quoted(declared + " if (" + name + ") { ... }");
    }
    if (isCondition && tree[statement].kind == Kind::While) {
        return "store the result in each round: " +
               quoted("while (true) { " + declared + " if (!" +
                      (isWord(test) ? test : "(" + test + ")") + ") { break; } ... }");
    }
    if (isCondition && tree[statement].kind == Kind::Arm &&
        tree[tree[statement].parent].first != statement) {
        return "store the result in an `else`: " +
               quoted("else { " + declared + " if (" + test + ") { ... } }");
    }
    return "store the result first: " + quoted(declared);
}

void Repairer::arguments(NodeId id, Pieces& out) {
    const FunctionId callee = model.functionNamed(tree.wordOf(id));
    const bool isPrint = tree[id].op == Word::Print;
    std::uint32_t at = tree[id].range.begin;
    std::size_t number = 0;
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next, ++number) {
        copy(at, tree[child].range.begin, out);
        Context context;
        context.printed = isPrint;
        context.calls = tree[id].op != Word::Exit;
        context.typed = context.calls;
        if (callee != noFunction && tree[id].op == Word::Name) {
            const std::vector<VariableId>& parameters = model.functions()[callee].parameters;
            if (number < parameters.size()) {
                context.want = model.variables()[parameters[number]].type;
            }
        }
        expression(child, context, out);
        at = tree[child].range.end;
    }
    copy(at, tree[id].range.end, out);
}

}  // namespace krel::Check
