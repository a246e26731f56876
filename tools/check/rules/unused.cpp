// What nobody uses. Comes in: a model. Goes out: findings.

/// # unused-variable
///
/// ## What it finds
///
/// A variable or array whose value nothing reads, and (as a hint) such a parameter.
///
/// ## Why
///
/// Either it is left over, or another name was meant somewhere.
///
/// ## Example
///
/// ```krel example
/// void main() {
///     int count = 3;
///     int total = 0;
///     total = 5;
///     print(count, "\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
///     int count = 3;
///     print(count, "\n");
/// }
/// ```

/// # unused-function
///
/// ## What it finds
///
/// A function that nothing calls but itself.
///
/// ## Why
///
/// Either it is left over, or a call is missing.
///
/// ## Example
///
/// ```krel example
/// int twice(int x) {
///     return x + x;
/// }
///
/// void main() {
///     print("done\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
///     print("done\n");
/// }
/// ```

/// # overwritten-value
///
/// ## What it finds
///
/// An assignment whose value the next statement overwrites.
///
/// ## Why
///
/// Nothing reads the value. Perhaps another variable was meant.
///
/// ## Example
///
/// ```krel example fragment
/// i = 1;
/// i = 2;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 2;
/// n = 1;
/// ```

#include <algorithm>
#include <string>

#include "tools/check/treeRules.hpp"

namespace krel::Check {

namespace {

/// Whether a use of a variable only changes it.
bool isOnlyChange(const Tree& tree, NodeId use) {
    NodeId id = use;
    while (tree[tree[id].parent].kind == Kind::Index && tree[tree[id].parent].first == id) {
        id = tree[id].parent;
    }
    const NodeId parent = tree[id].parent;
    const NodeId statement = tree[parent].parent;
    const bool isStatement =
        statement != noNode && (tree[statement].kind == Kind::ExpressionStatement ||
                                tree[statement].kind == Kind::ForPart);
    return isStatement && ((tree[parent].kind == Kind::Assign && tree[parent].first == id) ||
                           tree[parent].kind == Kind::Update);
}

/// The variable that a statement gives a new value, whatever the old one is; noVariable for others.
VariableId assignedBy(const Model& model, NodeId statement) {
    const Tree& tree = model.tree();
    const NodeId child = tree[statement].first;
    if (tree[statement].kind != Kind::ExpressionStatement || tree[child].kind != Kind::Assign ||
        tree[child].op != Word::Assign || tree[tree[child].first].kind != Kind::Name) {
        return noVariable;
    }
    const VariableId variable = model.meaning(tree[child].first);
    return variable == noVariable || model.variables()[variable].function == noFunction ||
                   model.variables()[variable].isArray
               ? noVariable
               : variable;
}

/// Whether something in a node uses a variable, but for the target of an assignment by itself.
bool reads(const Model& model, NodeId statement, VariableId variable) {
    const Tree& tree = model.tree();
    for (NodeId id = model.firstWithin(statement); id <= statement; ++id) {
        const NodeId parent = tree[id].parent;
        const bool isTarget = tree[parent].kind == Kind::Assign &&
                              tree[parent].op == Word::Assign && tree[parent].first == id;
        if (tree[id].kind == Kind::Name && model.meaning(id) == variable && !isTarget) {
            return true;
        }
    }
    return false;
}

/// Finds assignments that the next statement does again.
void findOverwritten(const Model& model, std::vector<Finding>& findings) {
    const Tree& tree = model.tree();
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const VariableId variable = assignedBy(model, id);
        const NodeId next = tree[id].next;
        if (variable == noVariable || next == noNode || assignedBy(model, next) != variable ||
            reads(model, next, variable)) {
            continue;
        }
        findings.push_back({"overwritten-value", Severity::Warning, tree[id].range,
                            "the value of `" + std::string{model.variables()[variable].name} +
                                "` is never used: the next statement overwrites it",
                            ""});
    }
}

/// Whether a variable is only there because the value of a call cannot be dropped.
bool takesIgnored(const Tree& tree, const Variable& variable) {
    constexpr std::string_view name = "ignored";
    const std::size_t rest = variable.name.find_last_not_of("0123456789") + 1;
    return variable.name.substr(0, rest) == name && variable.uses.empty() &&
           variable.initial != noNode && tree[variable.initial].kind == Kind::Call;
}

}  // namespace

void findUnused(const Model& model, std::vector<Finding>& findings) {
    const Tree& tree = model.tree();
    findOverwritten(model, findings);
    for (const Variable& variable : model.variables()) {
        const bool isRead = std::any_of(variable.uses.begin(), variable.uses.end(),
                                        [&](NodeId use) { return !isOnlyChange(tree, use); });
        // The elements of an array that a function takes are those of its caller.
        const bool isGiven = variable.isParameter && variable.isArray && !variable.uses.empty();
        if (isRead || isGiven || takesIgnored(tree, variable) || variable.function == noFunction) {
            continue;
        }
        const std::string name{variable.name};
        findings.push_back(
            {"unused-variable", variable.isParameter ? Severity::Hint : Severity::Warning,
             tree.wordRange(variable.node),
             variable.uses.empty() ? "`" + name + "` is never used"
                                   : "`" + name + "` is assigned, but its value is never read",
             ""});
    }
    for (FunctionId number = 0; number < model.functions().size(); ++number) {
        const Function& function = model.functions()[number];
        const bool isCalled =
            std::any_of(function.calls.begin(), function.calls.end(),
                        [&](NodeId call) { return model.functionAround(call) != number; });
        if (!isCalled && function.name != "main" && model.functionNamed(function.name) == number) {
            findings.push_back({"unused-function", Severity::Warning, tree.wordRange(function.node),
                                "`" + std::string{function.name} + "` is never called", ""});
        }
    }
}

}  // namespace krel::Check
