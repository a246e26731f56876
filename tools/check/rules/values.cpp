// Expressions whose value surprises. Comes in: a model. Goes out: findings.

/// # string-comparison
///
/// ## What it finds
///
/// A comparison of strings that says nothing about the texts: `<` and its like, and `==` with a
/// text that is made at run time.
///
/// ## Why
///
/// Strings are compared by their addresses. Only equal literals share one.
///
/// ## Example
///
/// ```krel example fragment
/// if (s + "!" == "text!") { }
/// ```
///
/// ## Use instead
///
/// Keep in an `int` or a `character` what the program has to decide on.

/// # array-value
///
/// ## What it finds
///
/// The name of an array without an index.
///
/// ## Why
///
/// It means the first element.
///
/// ## Example
///
/// ```krel example fragment
/// print(a, "\n");
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// print(a[0], "\n");
/// ```

/// # block-comment
///
/// ## What it finds
///
/// A block comment that opens and closes in one line, with something behind it.
///
/// ## Why
///
/// It swallows the rest of the line.
///
/// ## Example
///
/// ```krel example fragment
/// #{ one more }# i++;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i++;    # one more
/// ```

/// # long-double
///
/// ## What it finds
///
/// A double literal with more than 15 significant digits.
///
/// ## Why
///
/// 15 are kept.
///
/// ## Example
///
/// ```krel example fragment
/// d = 3.141592653589793;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// d = 3.14159265358979;
/// ```

/// # index-range
///
/// ## What it finds
///
/// An integer literal as an index that no element of the array has.
///
/// ## Why
///
/// Indices are not checked: other variables are read or overwritten.
///
/// ## Example
///
/// ```krel example fragment
/// n = a[3];
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// n = a[2];
/// ```

/// # zero-division
///
/// ## What it finds
///
/// An `int` that is divided by the literal 0.
///
/// ## Why
///
/// The program ends there.
///
/// ## Example
///
/// ```krel example fragment
/// i = n / 0;
/// ```
///
/// ## Use instead
///
/// Another divisor.

#include <algorithm>
#include <string>

#include "tools/check/treeRules.hpp"

namespace krel::Check {

namespace {

class Values {
public:
    Values(const Model& itsModel, std::vector<Finding>& itsFindings)
        : model(itsModel), tree(itsModel.tree()), findings(itsFindings) {}

    void find() {
        for (NodeId id = 0; id < tree.nodes.size(); ++id) {
            switch (tree[id].kind) {
                case Kind::Binary:
                    checkComparison(id);
                    checkDivision(id);
                    break;
                case Kind::Name:
                    checkArray(id);
                    break;
                case Kind::Index:
                    checkIndex(id);
                    break;
                case Kind::Literal:
                    checkDigits(id);
                    break;
                default:
                    break;
            }
        }
        for (const SourceRange range : tree.tokens.comments) {
            checkComment(range);
        }
    }

private:
    void say(std::string_view rule, SourceRange range, std::string message, std::string help) {
        findings.push_back({rule, Severity::Warning, range, std::move(message), std::move(help)});
    }

    NodeId inner(NodeId id) const {
        while (tree[id].kind == Kind::Parentheses) {
            id = tree[id].first;
        }
        return id;
    }

    /// Whether a text is made at run time.
    bool isMade(NodeId id) const {
        id = inner(id);
        return (tree[id].kind == Kind::Binary && tree[id].op == Word::Plus) ||
               tree[id].kind == Kind::Cast;
    }

    /// The same, or a variable that is only ever given such texts.
    bool isAlwaysMade(NodeId id) const {
        id = inner(id);
        if (tree[id].kind != Kind::Name || model.meaning(id) == noVariable) {
            return isMade(id);
        }
        const Variable& variable = model.variables()[model.meaning(id)];
        if (variable.isParameter || variable.isArray || variable.initial == noNode ||
            !isMade(variable.initial)) {
            return false;
        }
        return std::all_of(variable.uses.begin(), variable.uses.end(), [&](NodeId use) {
            const NodeId parent = tree[use].parent;
            return tree[parent].kind != Kind::Assign || tree[parent].first != use ||
                   tree[parent].op != Word::Assign || isMade(tree.child(parent, 1));
        });
    }

    void checkComparison(NodeId id) {
        const NodeId left = tree[id].first;
        const NodeId right = tree.child(id, 1);
        if (!isComparison(tree[id].op) || model.krel(left) != Word::String ||
            model.krel(right) != Word::String) {
            return;
        }
        const bool orders = tree[id].op != Word::Equal && tree[id].op != Word::NotEqual;
        if (orders || isAlwaysMade(left) || isAlwaysMade(right)) {
            say("string-comparison", tree[id].range,
                orders ? "strings have no order: their addresses are compared"
                       : "addresses are compared, and a text that is made at run time has its own",
                "keep in an `int` or a `character` what the program has to decide on");
        }
    }

    void checkDivision(NodeId id) {
        const NodeId divisor = inner(tree.child(id, 1));
        if ((tree[id].op == Word::Divide || tree[id].op == Word::Percent) &&
            tree[divisor].kind == Kind::Literal && tree[divisor].op == Word::IntLiteral &&
            numberOf(tree.textOf(divisor)).whole == 0 && model.krel(tree[id].first) == Word::Int) {
            say("zero-division", tree[id].range, "this divides by zero", "");
        }
    }

    /// Whether the array is meant as a whole: for a parameter, or to go through.
    bool isTaken(NodeId id) const {
        const NodeId parent = tree[id].parent;
        if (tree[parent].kind != Kind::Call) {
            return tree[parent].kind == Kind::ForEach || tree[parent].kind == Kind::Field ||
                   tree[parent].kind == Kind::Method;
        }
        const FunctionId callee = model.functionNamed(tree.wordOf(parent));
        std::size_t number = 0;
        for (NodeId child = tree[parent].first; child != id; child = tree[child].next) {
            ++number;
        }
        return callee != noFunction && tree[parent].op == Word::Name &&
               number < model.functions()[callee].parameters.size() &&
               model.variables()[model.functions()[callee].parameters[number]].isArray;
    }

    void checkArray(NodeId id) {
        const VariableId variable = model.meaning(id);
        const NodeId parent = tree[id].parent;
        const bool hasIndex = tree[parent].kind == Kind::Index && tree[parent].first == id;
        if (variable == noVariable || !model.variables()[variable].isArray || hasIndex ||
            isTaken(id)) {
            return;
        }
        const std::string name{model.variables()[variable].name};
        say("array-value", tree[id].range, "`" + name + "` alone is its first element",
            "write `" + name + "[0]`, if that is meant");
    }

    void checkIndex(NodeId id) {
        const NodeId array = tree[id].first;
        const NodeId index = tree.child(id, 1);
        const VariableId number =
            tree[array].kind == Kind::Name ? model.meaning(array) : noVariable;
        if (number == noVariable || tree[index].op != Word::IntLiteral ||
            tree[index].kind != Kind::Literal) {
            return;
        }
        const Variable& variable = model.variables()[number];
        if (variable.bounds.size() != 1 || tree[variable.bounds[0]].first == noNode) {
            return;
        }
        NodeId size = tree[variable.bounds[0]].first;
        if (tree[size].kind == Kind::Name && model.meaning(size) != noVariable) {
            const NodeId value = model.variables()[model.meaning(size)].initial;
            size = value == noNode ? size : value;
        }
        if (tree[size].kind != Kind::Literal || tree[size].op != Word::IntLiteral) {
            return;
        }
        const std::uint64_t length = numberOf(tree.textOf(size)).whole;
        if (numberOf(tree.textOf(index)).whole >= length) {
            say("index-range", tree[index].range,
                "`" + std::string{variable.name} + "` has the elements 0 to " +
                    std::to_string(length - 1),
                "");
        }
    }

    void checkDigits(NodeId id) {
        constexpr int mostDigits = 15;
        if (tree[id].op != Word::DoubleLiteral) {
            return;
        }
        int digits = 0;
        int trailing = 0;
        for (const char character : tree.textOf(id)) {
            if (character == '.' || (character == '0' && digits == 0)) {
                continue;
            }
            ++digits;
            trailing = character == '0' ? trailing + 1 : 0;
        }
        if (digits - trailing > mostDigits) {
            say("long-double", tree[id].range, "a double literal keeps 15 significant digits", "");
        }
    }

    void checkComment(SourceRange range) {
        const std::string_view comment = tree.textOf(range);
        const std::size_t end =
            comment.substr(0, 2) == "#{" ? comment.find("}#", 2) : std::string_view::npos;
        if (end == comment.npos || comment.substr(0, end).find('\n') != comment.npos) {
            return;
        }
        const std::string_view rest = comment.substr(end + 2);
        const std::size_t begin = rest.find_first_not_of(" \t\r\n");
        if (begin != rest.npos && rest[begin] != '#') {
            say("block-comment", range,
                "this comment reaches to the end of the line, whatever stands behind `}#`",
                "put the code into a line of its own");
        }
    }

    const Model& model;
    const Tree& tree;
    std::vector<Finding>& findings;
};

}  // namespace

void findValues(const Model& model, std::vector<Finding>& findings) {
    Values{model, findings}.find();
}

}  // namespace krel::Check
