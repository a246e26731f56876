// Values of one type where another one is needed.

/// # implicit-conversion
///
/// ## What it finds
///
/// A value of one type where another one is needed, and a cast would do: `double e = 1;`, `d * n`,
/// `s + n`.
///
/// ## Why
///
/// Nothing is converted by itself, not even an integer literal beside a double. In conditions and
/// behind `+=` types are not checked, and the bits are taken as they are.
///
/// ## Example
///
/// ```krel example fragment
/// d = d * n;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// double factor = (double) n;
/// d = d * factor;
/// ```

#include <cctype>
#include <string>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

/// A truth as a number, or a number as a truth.
std::string truthText(const std::string& name, const std::string& atom, bool asNumber) {
    return asNumber
               ? "int " + name + " = 0; if (" + atom + ") { " + name + " = 1; }"
               : "boolean " + name + " = false; if (" + atom + " != 0) { " + name + " = true; }";
}

}  // namespace

/// What a variable that holds an expression may be called.
std::string Repairer::baseNameOf(NodeId id) const {
    id = inner(id);
    id = tree[id].kind == Kind::Index ? tree[id].first : id;
    return tree[id].kind == Kind::Name || tree[id].kind == Kind::Call ? std::string{tree.wordOf(id)}
                                                                      : "value";
}

/// Casts a value to the type that is needed. Returns false, and writes nothing, when that cannot
/// be done.
bool Repairer::coerce(NodeId id, const Context& context, Pieces& out) {
    const Type from = model.meant(id);
    const Type to = context.want;
    if (tree[id].kind == Kind::Unary && tree[id].op == Word::Minus && to == Word::Double &&
        tree[tree[id].first].kind == Kind::Literal) {
        return false;  // the operand is converted
    }
    if (tree[id].kind == Kind::Parentheses) {
        return false;
    }
    if (coerceLiteral(id, to, out)) {
        return true;
    }
    if (from == Word::Double && to == Word::Int) {
        wholeValue(id, id, context, out);
        return true;
    }
    const bool truth = from == Word::Boolean && to == Word::Int;
    const bool number = from == Word::Int && to == Word::Boolean;
    if (!isConvertible(from, to) && !truth && !number) {
        return false;
    }
    const std::string base = baseNameOf(id);
    const SourceRange range = tree[id].range;
    Pieces value;
    std::string declared;
    if (tree[id].kind == Kind::Name) {
        copy(id, value);
    } else {
        declared = hoisted(id, base == "value" ? base : base + "Value", from, value) + " ";
    }
    const std::string atom = textOf(value);
    std::string name;
    if (truth || number) {
        name = fresh(base + (truth ? "Number" : "Holds"));
        Pieces decided;
        decided.insert(truthText(name, atom, truth), range);
        prelude.push_back(std::move(decided));
    } else {
        Pieces converted;
        converted.insert("(" + std::string{nameOf(to)} + ") " + atom, range);
        name = hoist(to, base + std::string{suffixFor(to)}, std::move(converted), id);
    }
    declared += textOf(prelude.back());
    say("implicit-conversion", context.typed ? Severity::Error : Severity::Warning, range,
        "this is of type `" + std::string{nameOf(from)} + "`, but `" + std::string{nameOf(to)} +
            "` is needed, and nothing is converted by itself",
        "convert it first: " + quoted(declared));
    out.insert(name, range);
    return true;
}

/// The same for literals, which are written in another way.
bool Repairer::coerceLiteral(NodeId id, Type to, Pieces& out) {
    const Type from = model.meant(id);
    const Word op = tree[id].op;
    if (tree[id].kind != Kind::Literal) {
        return false;
    }
    const std::string text{tree.textOf(id)};
    std::string instead;
    const Number number = numberOf(text);
    if (from == Word::Int && to == Word::Double && op == Word::IntLiteral &&
        number.whole <= 2147483647U) {
        instead = doubleConstant(id, number.real);
    } else if (from == Word::Double && to == Word::Int && isWholeDouble(id) &&
               number.real <= 2147483647.0) {
        instead = std::to_string(static_cast<std::int64_t>(number.real));
    } else if ((from == Word::Int || from == Word::Boolean) && to == Word::String) {
        instead = "\"" + text + "\"";
    } else if (from == Word::Int && to == Word::Boolean) {
        instead = number.whole == 0 ? "false" : "true";
    } else if (from == Word::Boolean && to == Word::Int) {
        instead = text == "true" ? "1" : "0";
    } else if (from == Word::Character && to == Word::String) {
        instead = "\"" + text.substr(1, text.size() - 2) + "\"";
        instead = instead == "\"\"\"" ? "\"\\\"\"" : instead == "\"\\'\"" ? "\"'\"" : instead;
    } else if (from == Word::Character && to == Word::Int && text.size() > 2) {
        instead = constant(Word::Int, text,
                           std::isalnum(static_cast<unsigned char>(text[1])) != 0
                               ? "codeOf" + text.substr(1, 1)
                               : "code",
                           "(int) " + text, id);
    } else if (from == Word::Int && to == Word::Character) {
        instead = constant(Word::Character, text, "character" + text, "(character) " + text, id);
    } else if (from == Word::String && to == Word::Character && text.size() == 3 &&
               text[1] != '\'') {
        instead = "'" + text.substr(1, 1) + "'";
    } else {
        return false;
    }
    say("implicit-conversion", Severity::Error, tree[id].range,
        "this is of type `" + std::string{nameOf(from)} + "`, but `" + std::string{nameOf(to)} +
            "` is needed, and nothing is converted by itself",
        writeHelp(instead));
    out.insert(instead, tree[id].range);
    return true;
}

}  // namespace krel::Check
