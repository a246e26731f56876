// Declarations of variables and arrays.

/// # initial-value
///
/// ## What it finds
///
/// A variable that is declared without a value.
///
/// ## Why
///
/// A declaration of a scalar always has an initial value.
///
/// ## Example
///
/// ```krel example fragment
/// int x;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int x = 0;
/// ```

/// # array-declaration
///
/// ## What it finds
///
/// An array in one declaration with other variables, or with two dimensions.
///
/// ## Why
///
/// An array has a declaration of its own, and one dimension. What follows an array in its
/// declaration is never declared, without a message.
///
/// ## Example
///
/// ```krel example fragment
/// int t[3], u[3];
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int t[3];
/// int u[3];
/// ```

/// # array-size
///
/// ## What it finds
///
/// An array without a size, or with one that is computed.
///
/// ## Why
///
/// The size is an integer literal, or a variable that is set from one.
///
/// ## Example
///
/// ```krel example fragment
/// int t[] = {1, 2};
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int t[2] = {1, 2};
/// ```

/// # list-length
///
/// ## What it finds
///
/// An initialiser list that is longer than its array, or shorter.
///
/// ## Why
///
/// The length is not checked. The values behind the end overwrite other variables. Elements without
/// a value in the list are not 0: they hold whatever lies in memory. An array that gets its values
/// by an assignment to `t[i]` may have a short list.
///
/// ## Example
///
/// ```krel example fragment
/// int t[1] = {1, 2, 3};
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int t[3] = {1, 2, 3};
/// ```

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

std::string Repairer::defaultOf(Type type) const {
    switch (type) {
        case Word::Double:
            return "(double) 0";
        case Word::Boolean:
            return "false";
        case Word::Character:
            return "' '";
        case Word::String:
            return "\"\"";
        default:
            return "0";
    }
}

bool Repairer::isArray(NodeId declarator) const {
    const VariableId variable = model.declared(declarator);
    return variable != noVariable && model.variables()[variable].isArray;
}

/// Whether the brackets stand before the name: `int[] a`.
bool Repairer::hasBoundFirst(NodeId declarator) const {
    const NodeId first = tree[declarator].first;
    return first != noNode && tree[first].kind == Kind::ArrayBound &&
           tree[first].range.begin < tree.wordRange(declarator).begin;
}

/// Whether it stays one declaration.
bool Repairer::isPlainDeclaration(NodeId id) const {
    std::size_t count = 0;
    bool hasArray = false;
    bool isAssigned = false;
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
        const VariableId variable = model.declared(child);
        if (tree[child].kind != Kind::Declarator) {
            continue;
        }
        ++count;
        if (variable != noVariable) {
            hasArray = hasArray || model.variables()[variable].isArray;
            isAssigned = isAssigned || hasBoundFirst(child);  // written anew, too
            isAssigned = isAssigned || assignedOnly.count(variable) != 0;
        }
    }
    return (!hasArray && !isAssigned) || (count == 1 && !isAssigned);
}

/// Reports arrays that stand in one declaration with something else.
void Repairer::findMixedArrays(NodeId id) {
    const std::vector<NodeId> children = tree.children(id);
    if (children.size() <= 2) {
        return;
    }
    const VariableId first = model.declared(children[1]);
    const bool silent = first != noVariable && model.variables()[first].isArray;
    for (std::size_t index = 1; index < children.size(); ++index) {
        const VariableId variable = model.declared(children[index]);
        if (variable != noVariable && (silent ? index > 1 : model.variables()[variable].isArray)) {
            say("array-declaration", Severity::Error, tree[children[index]].range,
                "an array stands in a declaration of its own",
                "declare `" + std::string{model.variables()[variable].name} + "` by itself");
        }
    }
}

void Repairer::declaration(NodeId id, Pieces& out) {
    const bool isPlain = isPlainDeclaration(id);
    if (!isPlain) {
        findMixedArrays(id);
    }
    const std::vector<NodeId> children = tree.children(id);
    const SourceRange range = tree[id].range;
    std::uint32_t at = range.begin;
    Pieces text;
    bool isFirst = true;
    for (const NodeId child : children) {
        if (tree[child].kind != Kind::Declarator) {
            if (isPlain) {
                copy(at, tree[child].range.begin, text);
                copy(child, text);
                at = tree[child].range.end;
            }
            continue;
        }
        const NodeId callBefore = std::exchange(firstCallInPlace, noNode);
        const NodeId hoistBefore = lastHoistWithCall;
        Pieces part;
        Prelude before = capture([&](Pieces&) { declarator(child, !isPlain, part); });
        const NodeId callHere =
            std::exchange(firstCallInPlace, std::min(callBefore, firstCallInPlace));
        if (isFirst || before.empty()) {
            if (isPlain) {
                copy(at, tree[child].range.begin, text);
            } else if (!isFirst) {
                text.insert(";" + separatorOf(id), range);
            }
        } else {
            // What runs before this declarator may use the ones before it. So they end here, and
            // their calls are in order with what follows.
            text.insert(";", range);
            prelude.push_back(std::move(text));
            text = Pieces{};
            if (isPlain) {
                text.insert(
                    std::string{nameOf(model.variables()[model.declared(child)].type)} + " ",
                    range);
            }
            if (callBefore >= hoistBefore) {
                firstCallInPlace = callHere;
            }
        }
        std::move(before.begin(), before.end(), std::back_inserter(prelude));
        text.append(std::move(part));
        at = tree[child].range.end;
        isFirst = false;
    }
    copy(at, range.end, text);
    out.append(std::move(text));
}

void Repairer::declarator(NodeId id, bool withType, Pieces& out) {
    const VariableId number = model.declared(id);
    const SourceRange range = tree[id].range;
    if (number == noVariable) {
        return copy(id, out);
    }
    const Variable& variable = model.variables()[number];
    const SourceRange name = tree.wordRange(id);
    if (withType && assignedOnly.count(number) == 0) {
        out.insert(std::string{nameOf(variable.type)} + " ", {range.begin, range.begin});
    }
    if (variable.isArray) {
        return arrayDeclarator(id, out);
    }
    copy(name.begin, name.end, out);
    if (variable.initial == noNode) {
        const std::string value = assignedOnly.count(number) != 0 && variable.type == Word::Double
                                      ? doubleConstant(id, 0.0)
                                      : defaultOf(variable.type);
        say("initial-value", Severity::Error, name,
            "`" + std::string{variable.name} + "` has no initial value",
            "write " + quoted(std::string{variable.name} + " = " + value));
        out.insert(" = " + value, {name.end, range.end});
        copy(name.end, range.end, out);
        return;
    }
    if (decidedDeclarator(id, out)) {
        return;
    }
    copy(name.end, tree[variable.initial].range.begin, out);
    if (assignedOnly.count(number) != 0) {
        Context context;
        context.want = variable.type;
        expression(variable.initial, context, out);
    } else {
        initialValue(variable.initial, variable.type, out);
    }
    copy(tree[variable.initial].range.end, range.end, out);
}

/// The last variable of a declaration, if its value is decided by statements behind that. The name
/// is written already.
bool Repairer::decidedDeclarator(NodeId id, Pieces& out) {
    const VariableId number = model.declared(id);
    const Variable& variable = model.variables()[number];
    if (tree[id].next != noNode || tree[tree[id].parent].kind != Kind::Declaration ||
        assignedOnly.count(number) != 0 || nameOf(variable.type).empty() ||
        !isDecided(variable.initial, variable.type)) {
        return false;
    }
    const std::string name = nameNow(number);
    const std::string value = defaultOf(variable.type);
    const bool isComplete = tree[inner(variable.initial)].kind == Kind::Conditional;
    Pieces statements = decision(variable.initial, variable.type, name + " = ", isComplete);
    sayDecided(variable.initial, std::string{nameOf(variable.type)} + " " + name + " = " + value +
                                     "; " + textOf(statements));
    postlude.push_back(std::move(statements));
    out.insert(" = " + value, {tree.wordRange(id).end, tree[id].range.end});
    return true;
}

/// The whole initial value of a variable, which may be a cast.
void Repairer::initialValue(NodeId id, Type type, Pieces& out) {
    const SourceRange range = tree[id].range;
    if (tree[id].kind == Kind::Cast && aloneCast(id, type, out)) {
        return;
    }
    const Type meant = model.meant(id);
    const Number number = numberOf(tree.textOf(id));
    const bool isLiteral = tree[id].kind == Kind::Literal;
    const bool isWhole = isLiteral && type == Word::Double &&
                         (isWholeDouble(id) || tree[id].op == Word::IntLiteral) &&
                         number.real <= 2147483647.0;
    const bool isName = tree[id].kind == Kind::Name && meant != type && isConvertible(meant, type);
    const bool isQuote = isLiteral && tree.textOf(id) == "'\"'";
    if (isWhole || isName || isQuote) {
        const std::string operand = isQuote ? "34"
                                    : isName
                                        ? std::string{tree.textOf(id)}
                                        : std::to_string(static_cast<std::int64_t>(number.real));
        const std::string text = "(" + std::string{nameOf(type)} + ") " + operand;
        if (isQuote) {
            say("quote-character", Severity::Error, range,
                "the quote is taken for the beginning of a string", "write " + quoted(text));
        } else if (isWhole && meant == Word::Double) {
            say("whole-double", Severity::Error, range,
                "a double literal with a whole value becomes an integer, which is refused",
                "write " + quoted(text));
        } else {
            say("implicit-conversion", Severity::Error, range,
                "this is of type `" + std::string{nameOf(meant)} + "`, but `" +
                    std::string{nameOf(type)} + "` is needed, and nothing is converted by itself",
                "write " + quoted(text));
        }
        if (isName) {
            out.insert("(" + std::string{nameOf(type)} + ") ", {range.begin, range.begin});
            copy(id, out);
        } else {
            out.insert(text, range);
        }
        return;
    }
    Context context;
    context.want = type;
    expression(id, context, out);
}

/// The value of a constant expression; nothing if it has none. A variable that never changes has
/// that of its initial value.
std::optional<std::int64_t> Repairer::folded(NodeId id, int depth) const {
    if (id == noNode || depth > 50) {
        return std::nullopt;
    }
    switch (tree[id].kind) {
        case Kind::Literal:
            return foldedNumber(tree[id].op, tree.textOf(id));
        case Kind::Parentheses:
            return folded(tree[id].first, depth + 1);
        case Kind::Name:
            return foldedName(id, depth);
        case Kind::Binary:
            return foldedOperation(id, depth);
        default:
            return std::nullopt;
    }
}

std::optional<std::int64_t> Repairer::foldedNumber(Word word, std::string_view text) {
    const Number number = numberOf(text);
    const bool isInt = (word == Word::IntLiteral || word == Word::ForeignNumber) &&
                       number.isKnown && !number.isDouble && number.whole <= 2147483647U;
    return isInt ? std::optional<std::int64_t>{static_cast<std::int64_t>(number.whole)}
                 : std::nullopt;
}

std::optional<std::int64_t> Repairer::foldedName(NodeId id, int depth) const {
    const VariableId number = model.meaning(id);
    if (number == noVariable) {
        const Constant* const constant = model.constantNamed(tree.wordOf(id));
        return constant == nullptr ? std::nullopt : foldedNumber(Word::IntLiteral, constant->value);
    }
    const Variable& variable = model.variables()[number];
    return changedVariables.count(number) != 0 || variable.isArray
               ? std::nullopt
               : folded(variable.initial, depth + 10);
}

std::optional<std::int64_t> Repairer::foldedOperation(NodeId id, int depth) const {
    const auto left = folded(tree[id].first, depth + 1);
    const auto right = folded(tree.child(id, 1), depth + 1);
    if (!left || !right || *left > 2147483647 || *right > 2147483647) {
        return std::nullopt;
    }
    switch (tree[id].op) {
        case Word::Plus:
            return *left + *right;
        case Word::Minus:
            return *left - *right;
        case Word::Times:
            return *left * *right;
        case Word::Divide:
            return *right == 0 ? std::nullopt : std::optional<std::int64_t>{*left / *right};
        default:
            return std::nullopt;
    }
}

void Repairer::elements(NodeId list, Type type, bool isFirst, Pieces& out) {
    for (NodeId child = tree[list].first; child != noNode; child = tree[child].next) {
        if (!isFirst) {
            out.insert(", ", tree[child].range);
        }
        if (tree[child].kind == Kind::List) {
            elements(child, type, true, out);
        } else {
            Context context;
            context.want = type;
            Pieces text;
            expression(child, context, text);
            text.markAsMoved();
            out.append(std::move(text));
        }
        isFirst = false;
    }
}

/// Whether elements of an array are assigned one after the other, by a variable index, before
/// anything else is done with it. Single elements by a literal index do not count.
bool Repairer::isFilled(const Variable& array) const {
    NodeId first = noNode;
    for (const NodeId use : array.uses) {
        const NodeId element = tree[use].parent;
        const bool isElement = tree[element].kind == Kind::Index && tree[element].first == use;
        if (!isElement || tree[tree.child(element, 1)].kind != Kind::Literal) {
            first = std::min(first, use);
        }
    }
    if (first == noNode) {
        return false;
    }
    const NodeId element = tree[first].parent;
    const NodeId around = tree[element].parent;
    return tree[element].kind == Kind::Index && tree[element].first == first &&
           tree[around].kind == Kind::Assign && tree[around].op == Word::Assign &&
           tree[around].first == element;
}

/// Reports a list that is shorter than its array, and returns what fills it up; what is long is
/// filled in a loop behind the declaration.
std::string Repairer::missingElements(NodeId id, std::size_t count, std::int64_t length) {
    constexpr std::int64_t longest = 32;
    const Variable& variable = model.variables()[model.declared(id)];
    if (static_cast<std::int64_t>(count) >= length || isFilled(variable)) {
        return {};
    }
    const std::string value =
        variable.type == Word::Double ? doubleConstant(id, 0.0) : defaultOf(variable.type);
    const std::string name = nameNow(model.declared(id));
    std::string rest;
    std::string loop;
    if (length <= longest) {
        for (auto index = static_cast<std::int64_t>(count); index < length; ++index) {
            rest += ", " + value;
        }
    } else {
        const std::string index = fresh(name + "Index");
        loop = "for (int " + index + " = " + std::to_string(count) + "; " + index + " < " +
               std::to_string(length) + "; " + index + "++) { " + name + "[" + index +
               "] = " + value + "; }";
        postlude.emplace_back();
        postlude.back().insert(loop, tree[id].range);
    }
    say("list-length", Severity::Warning, tree[variable.initial].range,
        "the list has " + std::to_string(count) + (count == 1 ? " value" : " values") + ", but `" +
            std::string{variable.name} + "` has " + std::to_string(length) +
            " elements; the others hold whatever lies in memory",
        rest.empty() ? "set the others: " + quoted(loop)
                     : "add the others: " + quoted(rest.substr(2)));
    return rest;
}

/// The compiler takes values of any type in a list, bit by bit. `before` is how many findings there
/// were before the element was written.
void Repairer::judgeElement(NodeId id, Type type, std::size_t before) {
    const Type given = model.meant(id);
    const bool isOther = given != type && !nameOf(given).empty() && !nameOf(type).empty();
    // In a list of doubles all others are refused; of the rest, only these two differ in their
    // bits.
    const bool isNonsense = given == Word::Double || given == Word::String || type == Word::String;
    if (!isOther || !isNonsense || type == Word::Double) {
        return;
    }
    for (std::size_t index = before; index < findings.size(); ++index) {
        if (findings[index].rule == "implicit-conversion") {
            findings[index].severity = Severity::Warning;
        }
    }
    if (findings.size() == before) {
        say("type-mismatch", Severity::Warning, tree[id].range,
            "this is of type `" + std::string{nameOf(given)} + "`, but the elements are of type `" +
                std::string{nameOf(type)} + "`; its bits are taken as they are",
            "");
    }
}

/// How many elements an array has; nothing when that is not known.
std::optional<std::int64_t> Repairer::lengthOf(const Variable& array) const {
    const std::vector<NodeId>& bounds = array.bounds;
    if (bounds.empty() || bounds.size() > 2 || array.isParameter) {
        return std::nullopt;
    }
    const bool hasList = array.initial != noNode && tree[array.initial].kind == Kind::List;
    const auto count = hasList ? static_cast<std::int64_t>(tree.children(array.initial).size()) : 0;
    const NodeId size = tree[bounds.front()].first;
    auto length = size == noNode ? std::optional<std::int64_t>{count} : folded(size, 0);
    if (bounds.size() == 2) {
        const auto columns = folded(tree[bounds[1]].first, 0);
        length = length && columns ? std::optional<std::int64_t>{*length * *columns} : std::nullopt;
    }
    return length && *length > 0 ? length : std::nullopt;
}

/// Whether a size may stand where it stands: a literal, or a variable that is set from one.
bool Repairer::isPlainSize(NodeId size) const {
    if (tree[size].kind == Kind::Name) {
        const VariableId holder = model.meaning(size);
        const NodeId value = holder == noVariable ? noNode : model.variables()[holder].initial;
        return value != noNode && tree[value].kind == Kind::Literal;
    }
    return tree[size].kind == Kind::Literal && tree[size].op == Word::IntLiteral;
}

/// Writes the size of an array. Returns the place behind it.
std::uint32_t Repairer::arraySize(NodeId id, Pieces& out) {
    const Variable& variable = model.variables()[model.declared(id)];
    const std::string name{variable.name};
    const NodeId bound = variable.bounds.front();
    const NodeId size = tree[bound].first;
    const std::uint32_t nameEnd = tree.wordRange(id).end;
    const bool isSecond = variable.bounds.size() > 1;
    const auto length = lengthOf(variable);
    const bool isPlain = !isSecond && size != noNode && isPlainSize(size);
    if (isPlain && !hasBoundFirst(id)) {
        return nameEnd;
    }
    const bool isUnknown =
        size != noNode && tree[size].kind == Kind::Name && model.meaning(size) == noVariable;
    if (!isPlain && !length) {
        if (isUnknown) {
            return nameEnd;
        }
        say("array-size", Severity::Error, tree[bound].range,
            "the size of an array is known before the program runs",
            "write the largest number of elements that can occur: `" + name + "[100]`");
        stayed = true;
        if (purpose == Purpose::Ask) {
            out.insert("[1]", tree[bound].range);
            return std::max(nameEnd, tree[variable.bounds.back()].range.end);
        }
        return nameEnd;
    }
    const std::string text = isPlain ? std::string{tree.textOf(size)} : std::to_string(*length);
    const std::string_view message = isSecond         ? "arrays have one dimension"
                                     : size == noNode ? "an array has a size"
                                     : isPlain        ? "a size stands behind the name"
                                     : tree[size].kind == Kind::Name
                                         ? "the variable of a size is set from one integer literal"
                                         : "a size is one integer literal or one variable";
    say(isSecond ? "array-declaration" : "array-size", Severity::Error, tree[bound].range,
        std::string{message}, "write " + quoted(name + "[" + text + "]"));
    out.insert("[" + text + "]", tree[bound].range);
    return std::max(nameEnd, tree[variable.bounds.back()].range.end);
}

void Repairer::arrayDeclarator(NodeId id, Pieces& out) {
    const Variable& variable = model.variables()[model.declared(id)];
    const SourceRange range = tree[id].range;
    const SourceRange name = tree.wordRange(id);
    copy(name.begin, name.end, out);
    const std::uint32_t at = arraySize(id, out);
    const NodeId list = variable.initial;
    if (list == noNode || tree[list].kind != Kind::List) {
        return copy(at, range.end, out);
    }
    if (tree[list].first == noNode) {
        clearElements(model.declared(id));
        say("array-size", Severity::Error, tree[list].range, "an initialiser list has elements",
            postlude.empty() ? "leave the list out"
                             : "set them in a loop: " + quoted(textOf(postlude.back())));
        return copy(at, std::max(at, tree[variable.bounds.back()].range.end), out);
    }
    copy(at, tree[list].range.begin, out);
    if (variable.bounds.size() == 2) {
        out.insert("{", tree[list].range);
        elements(list, variable.type, true, out);
        out.insert("}", tree[list].range);
    } else {
        initialiserList(id, out);
    }
    copy(tree[list].range.end, range.end, out);
}

/// The list of an array of one dimension.
void Repairer::initialiserList(NodeId id, Pieces& out) {
    const Variable& variable = model.variables()[model.declared(id)];
    const NodeId list = variable.initial;
    const std::vector<NodeId> values = tree.children(list);
    const NodeId size = tree[variable.bounds.front()].first;
    const auto length = size == noNode || variable.bounds.size() != 1
                            ? std::optional<std::int64_t>{}
                            : folded(size, 0);
    if (length && static_cast<std::int64_t>(values.size()) > *length) {
        say("list-length", Severity::Warning, tree[list].range,
            "the list has " + std::to_string(values.size()) + " values, but `" +
                std::string{variable.name} + "` has " + std::to_string(*length) +
                " elements; the others overwrite other variables",
            "write " +
                quoted(std::string{variable.name} + "[" + std::to_string(values.size()) + "]"));
    }
    std::uint32_t at = tree[list].range.begin;
    for (const NodeId value : values) {
        copy(at, tree[value].range.begin, out);
        Context context;
        context.want = variable.type;
        const std::size_t before = findings.size();
        expression(value, context, out);
        judgeElement(value, variable.type, before);
        at = tree[value].range.end;
    }
    if (length) {
        finishAt(at, out);
        out.insert(missingElements(id, values.size(), *length), {at, at});
    }
    copy(at, tree[list].range.end, out);
}

}  // namespace krel::Check
