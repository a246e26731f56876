// Variables outside of functions, and the one function that repairs may need.

/// # global-variable
///
/// ## What it finds
///
/// A variable or constant that is declared outside of all functions.
///
/// ## Why
///
/// There are no global variables. Nothing is shared between functions.
///
/// ## Example
///
/// ```krel example
/// int size = 3;
///
/// void main() {
///     print(size, "\n");
/// }
/// ```
///
/// ## Use instead
///
/// A variable in each function that uses it, if it never changes; a parameter otherwise:
///
/// ```krel
/// void main() {
///     int size = 3;
///     print(size, "\n");
/// }
/// ```

#include <algorithm>
#include <set>
#include <string>

#include "tools/check/repairer.hpp"

namespace krel::Check {

/// Whether a use of a variable may change it, or one of its elements.
bool Repairer::isChanged(NodeId use) const {
    NodeId id = use;
    while (tree[tree[id].parent].kind == Kind::Parentheses ||
           (tree[tree[id].parent].kind == Kind::Index && tree[tree[id].parent].first == id)) {
        id = tree[id].parent;
    }
    const NodeId parent = tree[id].parent;
    return tree[parent].kind == Kind::Update ||
           (tree[parent].kind == Kind::Assign && tree[parent].first == id);
}

/// What never changes can be declared in each function that uses it; what only `main` uses, there.
void Repairer::findGlobals() {
    const FunctionId start = model.functionNamed("main");
    for (VariableId number = 0; number < model.variables().size(); ++number) {
        const Variable& variable = model.variables()[number];
        if (variable.function != noFunction || nameOf(variable.type).empty()) {
            continue;
        }
        std::set<FunctionId> users;
        bool changes = false;
        for (const NodeId use : variable.uses) {
            users.insert(model.functionAround(use));
            changes = changes || isChanged(use);
        }
        users.erase(noFunction);
        const bool onlyMain = users.size() == 1 && *users.begin() == start;
        if (changes && !onlyMain) {
            continue;
        }
        movableGlobals.insert(number);
        for (const FunctionId user : users) {
            movedGlobals[user].push_back(number);
        }
    }
}

/// Whether a declaration outside of functions goes into functions as a whole.
bool Repairer::isMovedGlobal(NodeId id) {
    if (tree[id].kind != Kind::Declaration || !isReadable(id)) {
        return false;
    }
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
        if (tree[child].kind == Kind::Declarator &&
            movableGlobals.count(model.declared(child)) == 0) {
            return false;
        }
    }
    say("global-variable", Severity::Error, tree[id].range, "there are no global variables",
        "declare it in each function that uses it");
    return true;
}

/// Declares what the function at hand uses of them.
void Repairer::declareGlobals(Pieces& out) {
    const auto entry = movedGlobals.find(currentFunction);
    if (entry == movedGlobals.end()) {
        return;
    }
    for (const VariableId number : entry->second) {
        const NodeId id = model.variables()[number].node;
        if (!isMovedGlobal(tree[id].parent)) {
            continue;
        }
        Pieces text;
        Prelude before = capture([&](Pieces&) { declarator(id, true, text); });
        before.push_back(std::move(text));
        before.back().insert(";", tree[id].range);
        for (Pieces& each : before) {
            each.markAsMoved();
            out.insert(constantSeparator, tree[id].range);
            out.append(std::move(each));
        }
    }
}

std::string Repairer::wholeFunction() const {
    return "\n# The double without what is behind its point, between -2^62 and 2^62.\nint " +
           wholeName +
           "(double value) {\n"
           "    double zero = (double) 0;\n"
           "    double rest = value;\n"
           "    if (value < zero) {\n"
           "        rest = zero - value;\n"
           "    }\n"
           "    int step = 1;\n"
           "    double size = (double) step;\n"
           "    while (size <= rest) {\n"
           "        size = size + size;\n"
           "        step = step + step;\n"
           "    }\n"
           "    int result = 0;\n"
           "    while (step > 0) {\n"
           "        if (size <= rest) {\n"
           "            rest = rest - size;\n"
           "            result = result + step;\n"
           "        }\n"
           "        size = size * 0.5;\n"
           "        step = step / 2;\n"
           "    }\n"
           "    if (value < zero) {\n"
           "        result = 0 - result;\n"
           "    }\n"
           "    return result;\n"
           "}\n";
}

}  // namespace krel::Check
