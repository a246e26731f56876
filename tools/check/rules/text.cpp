// Literals of strings and characters that the intermediate code does not keep.

/// # operator-string
///
/// ## What it finds
///
/// A string literal with an operator between blanks, such as `"a - b"`, where it cannot stand: as
/// the value of a variable, in a comparison, or behind the first place of a `print` or a
/// concatenation. The same for `]` and `=` in a literal that is stored in an array.
///
/// ## Why
///
/// The line of intermediate code is split at the operator.
///
/// ## Example
///
/// ```krel example fragment
/// s = "a - b";
/// ```
///
/// ## Use instead
///
/// Two literals, divided behind the operator:
///
/// ```krel fragment
/// s = "a -" + " b";
/// ```

/// # quote-character
///
/// ## What it finds
///
/// The character literal `'"'`.
///
/// ## Why
///
/// The quote is taken for the beginning of a string in the intermediate code.
///
/// ## Example
///
/// ```krel example fragment
/// c = '"';
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// character quote = (character) 34;
/// c = quote;
/// ```

/// # control-character
///
/// ## What it finds
///
/// The character literals `'\t'` and `'\r'`.
///
/// ## Why
///
/// They give the codes of `t` and `r`. In strings the escapes are right.
///
/// ## Example
///
/// ```krel example fragment
/// c = '\t';
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// character tab = (character) 9;
/// c = tab;
/// ```

/// # foreign-string
///
/// ## What it finds
///
/// A text in single quotes.
///
/// ## Why
///
/// Single quotes hold at most one character. Texts stand in double quotes.
///
/// ## Example
///
/// ```krel example fragment
/// s = 'text';
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// s = "text";
/// ```

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

struct Special {
    std::string_view text;
    std::string_view name;
    std::string_view code;
    bool refused;
};

constexpr std::array specials = {
    Special{"'\"'", "quote", "34", true},
    Special{"'\\\"'", "quote", "34", true},
    Special{"'\\t'", "tab", "9", false},
    Special{"'\\r'", "carriageReturn", "13", false},
};

constexpr std::array<std::string_view, 12> operators = {
    "||", "&&", "==", "!=", "<=", ">=", "<", ">", "+", "-", "*", "/"};

bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

/// Behind which bytes of a literal's text an operator between blanks ends.
std::vector<std::size_t> operatorEnds(std::string_view text) {
    std::vector<std::size_t> ends;
    for (std::size_t at = 1; at + 1 < text.size(); ++at) {
        if (!isBlank(text[at - 1])) {
            continue;
        }
        for (const std::string_view op : operators) {
            const std::size_t end = at + op.size();
            if (text.substr(at, op.size()) == op && end < text.size() && isBlank(text[end])) {
                ends.push_back(end);
                break;
            }
        }
    }
    return ends;
}

/// Behind which bytes a "]" ends that "=" follows.
std::vector<std::size_t> bracketEnds(std::string_view text) {
    std::vector<std::size_t> ends;
    for (std::size_t at = text.find(']'); at != text.npos; at = text.find(']', at + 1)) {
        std::size_t next = at + 1;
        while (next < text.size() && isBlank(text[next])) {
            ++next;
        }
        if (next < text.size() && text[next] == '=') {
            ends.push_back(at + 1);
        }
    }
    return ends;
}

/// The literal in pieces, with something between them.
std::string divided(std::string_view text, const std::vector<std::size_t>& ends,
                    std::string_view between) {
    std::string all;
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        all += text.substr(begin, end - begin);
        all += "\"";
        all += between;
        all += "\"";
        begin = end;
    }
    all += text.substr(begin);
    return all;
}

}  // namespace

/// The arguments of `print` that write a literal, behind others or not.
std::string Repairer::printable(const std::string& literal, bool isFirst) {
    return isFirst ? literal : divided(literal, operatorEnds(literal), ", ");
}

/// The text of literals that are joined, as one literal; empty if there is anything else.
std::string Repairer::joinedLiterals(NodeId id) const {
    std::vector<std::string_view> parts;
    for (bool isSum = true; isSum; id = tree[id].first) {
        isSum = tree[id].kind == Kind::Binary && tree[id].op == Word::Plus;
        const NodeId last = isSum ? tree.child(id, 1) : id;
        const std::string_view text = tree.textOf(last);
        if (tree[last].kind != Kind::Literal || tree[last].op != Word::StringLiteral) {
            return {};
        }
        parts.push_back(text.substr(1, text.size() - 2));
    }
    std::string all = "\"";
    std::for_each(parts.rbegin(), parts.rend(), [&](std::string_view part) { all += part; });
    return all + "\"";
}

/// Whether a text, or the variable that it is stored in, is compared with others.
bool Repairer::isCompared(NodeId id) const {
    const NodeId parent = tree[id].parent;
    if (tree[parent].kind == Kind::Declarator) {
        return comparedVariables.count(model.declared(parent)) != 0;
    }
    if (tree[parent].kind == Kind::Assign) {
        return comparedVariables.count(effects.variableOf(tree[parent].first)) != 0;
    }
    NodeId around = parent;
    while (tree[around].kind == Kind::Parentheses) {
        around = tree[around].parent;
    }
    return tree[around].kind == Kind::Binary && isComparison(tree[around].op);
}

/// Literals that are joined make a new text at run time, which is equal to no other. Where that
/// matters, writes one literal and returns true.
bool Repairer::joinLiterals(NodeId id, Pieces& out) {
    if (tree[id].op != Word::Plus || model.krel(id) != Word::String) {
        return false;
    }
    const std::string joined = isCompared(id) ? joinedLiterals(id) : std::string{};
    if (joined.empty() || (isRefusedText(id) && !operatorEnds(joined).empty())) {
        return false;
    }
    say("string-comparison", Severity::Warning, tree[id].range,
        "a text that is joined at run time is equal to no other", "write " + quoted(joined));
    out.insert(joined, tree[id].range);
    return true;
}

void Repairer::characterLiteral(NodeId id, const Context& context, Pieces& out) {
    const std::string_view text = tree.textOf(id);
    for (const Special& special : specials) {
        if (special.text != text) {
            continue;
        }
        std::string instead;
        if (context.printed) {
            instead = special.refused ? "\"\\\"\""
                                      : "\"" + std::string{text.substr(1, text.size() - 2)} + "\"";
        } else {
            instead =
                constant(Word::Character, std::string{special.code}, std::string{special.name},
                         "(character) " + std::string{special.code}, id);
        }
        say(special.refused ? "quote-character" : "control-character",
            special.refused ? Severity::Error : Severity::Warning, tree[id].range,
            special.refused ? "the quote is taken for the beginning of a string"
                            : "this is the character `" + std::string{text.substr(2, 1)} + "`",
            context.printed ? "write " + quoted(instead)
                            : "set a variable from a cast: `character " + instead +
                                  " = (character) " + std::string{special.code} + ";`");
        out.insert(instead, tree[id].range);
        return;
    }
    copy(id, out);
}

/// Whether the place of a string literal is one where an operator in it is taken for an operation.
bool Repairer::isRefusedText(NodeId id) const {
    NodeId parent = tree[id].parent;
    while (tree[parent].kind == Kind::Parentheses) {
        id = parent;
        parent = tree[id].parent;
    }
    switch (tree[parent].kind) {
        case Kind::Return:
        case Kind::List:
            return false;
        case Kind::Call:
            return tree[parent].op == Word::Print && tree[parent].first != id;
        case Kind::Binary:
            return tree[parent].op != Word::Plus || tree[parent].first != id;
        case Kind::Assign:
            return tree[tree[parent].first].kind != Kind::Index;
        default:
            return true;
    }
}

void Repairer::stringLiteral(NodeId id, const Context& context, Pieces& out) {
    const SourceRange range = tree[id].range;
    std::string text{tree.textOf(id)};
    const bool foreign = tree[id].op == Word::ForeignString;
    if (foreign) {
        std::string inside;
        for (std::size_t at = 1; at + 1 < text.size(); ++at) {
            inside += text[at] == '"' ? "\\\"" : std::string(1, text[at]);
            if (text[at] == '\\' && at + 2 < text.size()) {
                inside += text[++at];
            }
        }
        text = "\"" + inside + "\"";
        say("foreign-string", Severity::Error, range, "a text stands in double quotes",
            "write " + quoted(text));
    }
    std::vector<std::size_t> ends;
    if (isRefusedText(id)) {
        ends = operatorEnds(text);
    } else {
        const Kind parent = tree[tree[id].parent].kind;
        if (parent == Kind::List || parent == Kind::Assign) {
            ends = bracketEnds(text);
        }
    }
    if (ends.empty()) {
        if (foreign) {
            out.insert(text, range);
        } else {
            copy(id, out);
        }
        return;
    }
    const Kind parent = tree[tree[id].parent].kind;
    std::string instead = divided(text, ends, context.printed ? ", " : " + ");
    if (!context.printed && parent != Kind::Declarator && parent != Kind::Assign &&
        parent != Kind::List) {
        instead = "(" + instead + ")";
    }
    say("operator-string", Severity::Error, range,
        "an operator between blanks in a string literal is taken for an operation here",
        "divide the literal behind it: " + quoted(instead));
    out.insert(instead, range);
}

}  // namespace krel::Check
