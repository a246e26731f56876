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

namespace {

/// The value of a constant expression; nothing if it has none.
std::optional<std::int64_t> folded(const Tree& tree, NodeId id, int depth) {
    if (id == noNode || depth > 50) {
        return std::nullopt;
    }
    if (tree[id].kind == Kind::Literal && tree[id].op == Word::IntLiteral) {
        const Number number = numberOf(tree.textOf(id));
        return number.whole <= 2147483647U
                   ? std::optional<std::int64_t>{static_cast<std::int64_t>(number.whole)}
                   : std::nullopt;
    }
    if (tree[id].kind == Kind::Parentheses) {
        return folded(tree, tree[id].first, depth + 1);
    }
    if (tree[id].kind != Kind::Binary) {
        return std::nullopt;
    }
    const auto left = folded(tree, tree[id].first, depth + 1);
    const auto right = folded(tree, tree.child(id, 1), depth + 1);
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
        default:
            return std::nullopt;
    }
}

}  // namespace

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

/// Whether elements of an array are assigned one after the other, by a variable index.
bool Repairer::isFilled(const Variable& array) const {
    return std::any_of(array.uses.begin(), array.uses.end(), [&](NodeId use) {
        const NodeId element = tree[use].parent;
        if (tree[element].kind != Kind::Index || tree[element].first != use) {
            return false;
        }
        const NodeId around = tree[element].parent;
        return tree[around].kind == Kind::Assign && tree[around].op == Word::Assign &&
               tree[around].first == element && tree[tree.child(element, 1)].kind != Kind::Literal;
    });
}

/// Reports a list that is shorter than its array, and returns what fills it up; nothing for long
/// arrays, and for doubles: a double 0 is no literal.
std::string Repairer::missingElements(NodeId id, std::size_t count, std::int64_t length) {
    constexpr std::int64_t longest = 32;
    const Variable& variable = model.variables()[model.declared(id)];
    if (static_cast<std::int64_t>(count) >= length || isFilled(variable)) {
        return {};
    }
    std::string rest;
    if (length <= longest && variable.type != Word::Double) {
        for (auto index = static_cast<std::int64_t>(count); index < length; ++index) {
            rest += ", " + defaultOf(variable.type);
        }
    }
    say("list-length", Severity::Warning, tree[variable.initial].range,
        "the list has " + std::to_string(count) + (count == 1 ? " value" : " values") + ", but `" +
            std::string{variable.name} + "` has " + std::to_string(length) +
            " elements; the others hold whatever lies in memory",
        rest.empty() ? "set the others in a loop" : "add the others: " + quoted(rest.substr(2)));
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

void Repairer::arrayDeclarator(NodeId id, Pieces& out) {
    const VariableId number = model.declared(id);
    const Variable& variable = model.variables()[number];
    const SourceRange range = tree[id].range;
    const SourceRange name = tree.wordRange(id);
    const NodeId list = variable.initial != noNode && tree[variable.initial].kind == Kind::List
                            ? variable.initial
                            : noNode;
    const std::string nameText{variable.name};
    copy(name.begin, name.end, out);
    std::uint32_t at = name.end;
    const NodeId bound = variable.bounds.front();
    const NodeId size = tree[bound].first;
    const auto sized = [&](const std::string& text, const std::string& message,
                           std::string_view rule) {
        say(rule, Severity::Error, tree[bound].range, message,
            "write " + quoted(nameText + "[" + text + "]"));
        out.insert("[" + text + "]", tree[bound].range);
        at = std::max(name.end, tree[variable.bounds.back()].range.end);
    };
    const std::size_t count = list == noNode ? 0 : tree.children(list).size();
    std::optional<std::int64_t> length = folded(tree, size, 0);
    if (variable.bounds.size() == 2) {
        const auto columns = folded(tree, tree[variable.bounds[1]].first, 0);
        if (!length && size == noNode && count > 0) {
            length = static_cast<std::int64_t>(count);
        }
        if (length && columns && *length > 0 && *columns > 0) {
            sized(std::to_string(*length * *columns), "arrays have one dimension",
                  "array-declaration");
        }
    } else if (size == noNode && count > 0) {
        sized(std::to_string(count), "an array has a size", "array-size");
    } else if (size != noNode && length && *length > 0 && !isIndexAtom(size)) {
        sized(std::to_string(*length), "a size is one integer literal or one variable",
              "array-size");
    } else if (size != noNode && tree[size].kind == Kind::Name) {
        const VariableId holder = model.meaning(size);
        const NodeId value = holder == noVariable ? noNode : model.variables()[holder].initial;
        const auto fixed = folded(tree, value, 0);
        if (fixed && *fixed > 0 && tree[value].kind != Kind::Literal) {
            sized(std::to_string(*fixed), "the variable of a size is set from one integer literal",
                  "array-size");
        }
    }
    if (hasBoundFirst(id) && at == name.end && size != noNode) {
        say("array-size", Severity::Error, tree[bound].range, "a size stands behind the name",
            "write " + quoted(nameText + std::string{tree.textOf(bound)}));
        out.insert(std::string{tree.textOf(bound)}, tree[bound].range);
    }
    if (list == noNode) {
        copy(at, range.end, out);
        return;
    }
    if (count == 0) {
        say("array-size", Severity::Error, tree[list].range, "an initialiser list has elements",
            "leave the list out");
        return;
    }
    if (length && size != noNode && variable.bounds.size() == 1 &&
        static_cast<std::int64_t>(count) > *length) {
        say("list-length", Severity::Warning, tree[list].range,
            "the list has " + std::to_string(count) + " values, but `" + nameText + "` has " +
                std::to_string(*length) + " elements; the others overwrite other variables",
            "write " + quoted(nameText + "[" + std::to_string(count) + "]"));
    }
    if (variable.bounds.size() == 2) {
        copy(at, tree[list].range.begin, out);
        out.insert("{", tree[list].range);
        elements(list, variable.type, true, out);
        out.insert("}", tree[list].range);
        copy(tree[list].range.end, range.end, out);
        return;
    }
    for (NodeId child = tree[list].first; child != noNode; child = tree[child].next) {
        copy(at, tree[child].range.begin, out);
        Context context;
        context.want = variable.type;
        const std::size_t before = findings.size();
        expression(child, context, out);
        judgeElement(child, variable.type, before);
        at = tree[child].range.end;
    }
    if (length && size != noNode) {
        out.insert(missingElements(id, count, *length), {at, at});
    }
    copy(at, range.end, out);
}

}  // namespace krel::Check
