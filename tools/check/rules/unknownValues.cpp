// Names and variables that have no value. Comes in: a model. Goes out: findings.

/// # untyped-name
///
/// ## What it finds
///
/// An undeclared name in a condition, in an index, at `++` and `--`, behind `+=` and `-=`, in the
/// argument of `exit` or in an initialiser list.
///
/// ## Why
///
/// The compiler does not check these places. The name becomes a variable of its own with an unknown
/// value.
///
/// ## Example
///
/// ```krel example fragment
/// if (missing > 1) { }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int known = 0;
/// if (known > 1) { }
/// ```

/// # early-use
///
/// ## What it finds
///
/// A variable that is used before its declaration, and an array that is read and never written; as
/// a hint, a variable that is declared in a body that may not run, and used behind it.
///
/// ## Why
///
/// It holds whatever the stack held.
///
/// ## Example
///
/// ```krel example fragment
/// n = later;
/// int later = 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int later = 1;
/// n = later;
/// ```

#include <algorithm>
#include <string>

#include "tools/check/compilerFaults.hpp"
#include "tools/check/treeRules.hpp"

namespace krel::Check {

namespace {

/// Whether the compiler checks no types where a node stands.
bool isUntyped(const Tree& tree, NodeId id) {
    for (NodeId parent = tree[id].parent; parent != noNode; id = parent, parent = tree[id].parent) {
        switch (tree[parent].kind) {
            case Kind::Condition:
            case Kind::Update:
            case Kind::List:
                return true;
            case Kind::ForPart:
                return tree[tree[parent].parent].first != parent &&
                       tree.child(tree[parent].parent, 1) == parent;
            case Kind::Index:
                if (tree[parent].first != id) {
                    return true;
                }
                break;
            case Kind::Assign:
                return tree[parent].op != Word::Assign;
            case Kind::Call:
                return tree[parent].op == Word::Exit;
            case Kind::ExpressionStatement:
            case Kind::Declarator:
            case Kind::Return:
                return false;
            default:
                break;
        }
    }
    return false;
}

bool isLoop(Kind kind) {
    return kind == Kind::While || kind == Kind::DoWhile || kind == Kind::For;
}

/// Whether a loop goes around both nodes, so that the later one may run first.
bool shareLoop(const Tree& tree, NodeId use, NodeId declaration) {
    for (NodeId around = use; around != noNode; around = tree[around].parent) {
        if (isLoop(tree[around].kind) && around > declaration) {
            return true;
        }
    }
    return false;
}

/// Whether a variable is declared in a body that may not run, and used outside of it.
bool isDeclaredElsewhere(const Tree& tree, NodeId use, const Variable& variable) {
    const NodeId scope = variable.scope;
    if (variable.isParameter || variable.isArray || variable.function == noFunction ||
        scope == noNode || use < scope || tree[scope].kind != Kind::Block) {
        return false;
    }
    const Kind around = tree[tree[scope].parent].kind;
    return around == Kind::Arm || around == Kind::ElseArm || around == Kind::While ||
           around == Kind::For;
}

void checkArray(const Model& model, const Variable& variable, std::vector<Finding>& findings) {
    const Tree& tree = model.tree();
    if (variable.initial != noNode || variable.uses.empty() || variable.function == noFunction) {
        return;
    }
    NodeId read = noNode;
    for (const NodeId use : variable.uses) {
        NodeId element = use;
        while (tree[tree[element].parent].kind == Kind::Index &&
               tree[tree[element].parent].first == element) {
            element = tree[element].parent;
        }
        const NodeId parent = tree[element].parent;
        const bool isGiven = element == use && tree[parent].kind == Kind::Call;
        if (isGiven || (tree[parent].kind == Kind::Assign && tree[parent].first == element)) {
            return;
        }
        read = read == noNode ? element : read;
    }
    findings.push_back({"early-use", Severity::Warning, tree[read].range,
                        "no element of `" + std::string{variable.name} + "` is ever set", ""});
}

}  // namespace

void findUnknownValues(const Model& model, std::vector<Finding>& findings) {
    const Tree& tree = model.tree();
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        if (tree[id].kind != Kind::Name || model.functionAround(id) == noFunction) {
            continue;
        }
        const VariableId meaning = model.meaning(id);
        const std::string name{tree.wordOf(id)};
        if (meaning == noVariable) {
            if (isUntyped(tree, id) && model.constantNamed(name) == nullptr) {
                const std::string similar = similarName(model, model.functionAround(id), name);
                findings.push_back({"untyped-name", Severity::Warning, tree[id].range,
                                    "`" + name +
                                        "` is not declared; here it is a variable with an unknown "
                                        "value",
                                    similar.empty() ? "" : "did you mean `" + similar + "`?"});
            }
            continue;
        }
        const Variable& variable = model.variables()[meaning];
        const NodeId parent = tree[id].parent;
        const bool isTarget = tree[parent].kind == Kind::Assign && tree[parent].first == id &&
                              tree[parent].op == Word::Assign;
        if (id < variable.node && !variable.isParameter && !variable.isArray && !isTarget &&
            variable.function != noFunction && tree[parent].kind != Kind::ArrayBound &&
            !shareLoop(tree, id, variable.node)) {
            findings.push_back({"early-use", Severity::Warning, tree[id].range,
                                "`" + name + "` has no value before its declaration", ""});
        } else if (!isTarget && isDeclaredElsewhere(tree, id, variable)) {
            findings.push_back(
                {"early-use", Severity::Hint, tree[id].range,
                 "`" + name + "` has no value if the block that declares it did not run",
                 "declare it before that block"});
        }
    }
    for (const Variable& variable : model.variables()) {
        if (variable.isArray && !variable.isParameter) {
            checkArray(model, variable, findings);
        }
    }
}

}  // namespace krel::Check
