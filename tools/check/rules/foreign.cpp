// Words of other languages that have a word of their own in Krel.

/// # foreign-type
///
/// ## What it finds
///
/// The names of types in other languages: `char`, `bool`, `long`, `float`, `const int`, `var`.
///
/// ## Why
///
/// The types are `int`, `double`, `boolean`, `character` and `string`. There are no constants.
///
/// ## Example
///
/// ```krel example fragment
/// bool found = false;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// boolean found = false;
/// ```

/// # foreign-word
///
/// ## What it finds
///
/// Operators and words of other languages: `and`, `or`, `not`, `===`, `<>`, `:=`, `elif`, `(void)`.
///
/// ## Why
///
/// They are plain names, or no words at all.
///
/// ## Example
///
/// ```krel example fragment
/// if (n > 1 and b) { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// if (n > 1 && b) { }
/// ```

/// # foreign-comment
///
/// ## What it finds
///
/// Comments that begin with `//` or `/*`.
///
/// ## Why
///
/// A comment begins with `#`.
///
/// ## Example
///
/// ```krel example fragment
/// // one more
/// i++;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// # one more
/// i++;
/// ```

/// # carriage-return
///
/// ## What it finds
///
/// Lines that end in CR LF.
///
/// ## Why
///
/// The carriage return is no white space. Each one is refused.
///
/// ## Example
///
/// A file from Windows.
///
/// ## Use instead
///
/// Line feeds alone.

/// # main-type
///
/// ## What it finds
///
/// A function `main` that returns something.
///
/// ## Why
///
/// `main` is `void main()`. The exit status is 0.
///
/// ## Example
///
/// ```krel example
/// int main() {
///     return 0;
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
/// }
/// ```

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

/// An operator or a word that is written in another way.
struct Spelling {
    Kind kind;
    std::string_view foreign;
    std::string_view krel;
};

constexpr std::array spellings = {
    Spelling{Kind::Binary, "and", "&&"},    Spelling{Kind::Binary, "or", "||"},
    Spelling{Kind::Binary, "<>", "!="},     Spelling{Kind::Binary, "===", "=="},
    Spelling{Kind::Binary, "!==", "!="},    Spelling{Kind::Unary, "not", "!"},
    Spelling{Kind::Assign, ":=", "="},      Spelling{Kind::Arm, "elif", "elseif"},
    Spelling{Kind::Arm, "elsif", "elseif"},
};

/// How Krel writes the word of a node; empty when it writes it like that.
std::string_view spellingOf(Kind kind, std::string_view word) {
    for (const Spelling& spelling : spellings) {
        if (spelling.kind == kind && spelling.foreign == word) {
            return spelling.krel;
        }
    }
    return {};
}

}  // namespace

/// Reports a word and writes another one wherever it is copied.
void Repairer::replaceWord(std::string_view rule, SourceRange range, std::string_view instead,
                           const std::string& message) {
    say(rule, Severity::Error, range, message, "write " + quoted(instead));
    editToken(range, std::string{instead});
}

void Repairer::findForeignWords() {
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const Syntax::Node& node = tree[id];
        const std::string_view word = tree.wordOf(id);
        if (node.kind == Kind::Type && node.foreign) {
            Type type = node.op;
            const NodeId parent = node.parent;
            if (type == Word::Name && tree[parent].kind == Kind::Declaration) {
                const VariableId first = model.declared(tree.child(parent, 1));
                type = first == noVariable ? Word::End : model.variables()[first].type;
            }
            if (!nameOf(type).empty() && node.range.begin < node.range.end) {
                replaceWord("foreign-type", node.range, nameOf(type),
                            "`" + std::string{tree.textOf(id)} + "` is no type");
            }
        } else if (!spellingOf(node.kind, word).empty()) {
            replaceWord("foreign-word", tree.wordRange(id), spellingOf(node.kind, word),
                        "`" + std::string{word} + "` is no word of Krel");
        } else if (node.kind == Kind::Parameter && node.token == Syntax::noToken &&
                   tree.textOf(id) == "void") {
            say("foreign-word", Severity::Error, node.range, "no parameters are written `()`",
                "leave `void` out");
            editToken(node.range, "");
        }
    }
    findMainType();
    findCarriageReturns();
    findForeignComments();
}

void Repairer::findMainType() {
    const FunctionId start = model.functionNamed("main");
    if (start != noFunction) {
        const Function& function = model.functions()[start];
        const NodeId type = tree[function.node].first;
        if (function.type != Word::Void && !tree[type].foreign) {
            replaceWord("main-type", tree[type].range, "void", "`main` returns nothing");
        }
    }
}

void Repairer::findCarriageReturns() {
    for (const SourceRange range : tree.tokens.carriageReturns) {
        editToken(range, "");
    }
    if (!tree.tokens.carriageReturns.empty()) {
        const std::size_t count = tree.tokens.carriageReturns.size();
        say("carriage-return", Severity::Error, tree.tokens.carriageReturns.front(),
            count == 1 ? "a carriage return is no white space"
                       : std::to_string(count) + " carriage returns are no white space",
            "remove them: lines end in a line feed");
    }
}

/// Whether no comment and no other token reaches over a place.
bool Repairer::isBetweenTokens(std::uint32_t place) const {
    const auto isOutside = [&](const auto& ranges, auto rangeOf) {
        const auto behind = std::lower_bound(
            ranges.begin(), ranges.end(), place,
            [&](const auto& each, std::uint32_t at) { return rangeOf(each).begin < at; });
        return behind == ranges.begin() || rangeOf(*std::prev(behind)).end <= place;
    };
    const auto same = [](SourceRange range) { return range; };
    return isOutside(tree.tokens.words, [](const Syntax::Token& word) { return word.range; }) &&
           isOutside(tree.tokens.foreignComments, same) && isOutside(tree.tokens.comments, same);
}

/// A comment in the middle of a line stands at its end in Krel.
void Repairer::moveComment(SourceRange range, std::uint32_t lineEnd, const std::string& inside) {
    say("foreign-comment", Severity::Error, range, "a comment begins with `#`",
        "write `#" + inside + "` at the end of the line");
    const bool isBlank = range.begin > 0 && tree.text[range.begin - 1] == ' ' &&
                         range.end < tree.text.size() && tree.text[range.end] == ' ';
    editToken({range.begin, range.end + (isBlank ? 1 : 0)}, "");
    editToken({lineEnd, lineEnd}, "  #" + inside.substr(0, inside.find_last_not_of(' ') + 1));
}

void Repairer::findForeignComments() {
    for (const SourceRange range : tree.tokens.foreignComments) {
        const std::string_view text = tree.textOf(range);
        std::string instead;
        if (text[1] == '/') {
            instead = "#" + std::string{text.substr(2)};
        } else {
            const bool closed = text.size() > 3 && text.substr(text.size() - 2) == "*/";
            const std::string inside{text.substr(2, text.size() - (closed ? 4 : 2))};
            const auto lineEnd = static_cast<std::uint32_t>(
                std::min(tree.text.find('\n', range.end), tree.text.size()));
            const bool endsLine =
                tree.text.substr(range.end, lineEnd - range.end).find_first_not_of(" \t\r") ==
                tree.text.npos;
            const bool oneLine = text.find('\n') == text.npos;
            if (oneLine && !endsLine && isBetweenTokens(lineEnd)) {
                moveComment(range, lineEnd, inside);
                continue;
            }
            const bool endsBlank =
                !inside.empty() && (inside.back() == ' ' || inside.back() == '\n');
            instead = oneLine && endsLine ? "#" + inside
                                          : "#{" + inside +
                                                (oneLine     ? "\n}#"
                                                 : endsBlank ? "}#"
                                                             : " }#");
        }
        constexpr std::size_t longest = 60;
        const bool isBlock = instead.find('\n') != instead.npos;
        say("foreign-comment", Severity::Error, range, "a comment begins with `#`",
            isBlock                    ? "write `#{ ... }#`"
            : instead.size() > longest ? "write `#` in place of " + quoted(text.substr(0, 2))
                                       : "write " + quoted(instead));
        editToken(range, instead);
    }
}

}  // namespace krel::Check
