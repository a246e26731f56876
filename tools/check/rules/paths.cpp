// Ways through functions and loops. Comes in: a model. Goes out: findings.
//
// Nodes have greater numbers than their children. So whether a statement can be left at its end is
// worked out from the leaves to the root, in one pass.

/// # missing-return
///
/// ## What it finds
///
/// A function with a value whose end can be reached without a `return`.
///
/// ## Why
///
/// The caller gets whatever the register holds.
///
/// ## Example
///
/// ```krel example
/// int sign(int x) {
///     if (x > 0) {
///         return 1;
///     }
/// }
///
/// void main() {
///     print(sign(2), "\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// int sign(int x) {
///     if (x > 0) {
///         return 1;
///     }
///     return 0;
/// }
///
/// void main() {
///     print(sign(2), "\n");
/// }
/// ```

/// # unreachable-code
///
/// ## What it finds
///
/// A statement that nothing leads to.
///
/// ## Why
///
/// The statement before it always leaves: by `return`, `break`, `continue` or `exit`, or it is a
/// loop without an end.
///
/// ## Example
///
/// ```krel example
/// void main() {
///     print("one\n");
///     return;
///     print("two\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
///     print("one\n");
/// }
/// ```

/// # constant-condition
///
/// ## What it finds
///
/// A condition made of literals only, other than that of `while (true)`.
///
/// ## Why
///
/// It always decides in the same way.
///
/// ## Example
///
/// ```krel example
/// void main() {
///     if (1 > 2) {
///         print("never\n");
///     }
/// }
/// ```
///
/// ## Use instead
///
/// A condition with a variable, or none.

/// # unchanging-loop
///
/// ## What it finds
///
/// A loop whose condition nothing in it changes, and that nothing leaves.
///
/// ## Why
///
/// It is never entered, or never ends.
///
/// ## Example
///
/// ```krel example
/// void main() {
///     int i = 0;
///     int n = 0;
///     while (i < 3) {
///         n++;
///     }
///     print(n, "\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// void main() {
///     int i = 0;
///     int n = 0;
///     while (i < 3) {
///         n++;
///         i++;
///     }
///     print(n, "\n");
/// }
/// ```

/// # endless-recursion
///
/// ## What it finds
///
/// A function that calls itself before it can return.
///
/// ## Why
///
/// It ends with a stack overflow.
///
/// ## Example
///
/// ```krel example
/// int count(int n) {
///     int rest = count(n - 1);
///     return rest + 1;
/// }
///
/// void main() {
///     print(count(3), "\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// int count(int n) {
///     if (n == 0) {
///         return 0;
///     }
///     int rest = count(n - 1);
///     return rest + 1;
/// }
///
/// void main() {
///     print(count(3), "\n");
/// }
/// ```

#include <string>
#include <unordered_set>

#include "tools/check/treeRules.hpp"

namespace krel::Check {

namespace {

class Paths {
public:
    Paths(const Model& itsModel, std::vector<Finding>& itsFindings)
        : model(itsModel),
          tree(itsModel.tree()),
          findings(itsFindings),
          leaves(tree.nodes.size(), false),
          breaks(tree.nodes.size(), false) {}

    void find() {
        for (NodeId id = 0; id < tree.nodes.size(); ++id) {
            leaves[id] = neverEnds(id);
        }
        for (const Function& function : model.functions()) {
            checkEnd(function);
            checkRecursion(function);
        }
    }

private:
    void say(std::string_view rule, SourceRange range, std::string message) {
        findings.push_back({rule, Severity::Warning, range, std::move(message), ""});
    }

    bool isTrue(NodeId condition) const {
        NodeId id = tree[condition].first;
        while (id != noNode && tree[id].kind == Kind::Parentheses) {
            id = tree[id].first;
        }
        return id != noNode && tree[id].kind == Kind::Literal &&
               (tree[id].op == Word::True ||
                (tree[id].op == Word::IntLiteral && numberOf(tree.textOf(id)).whole != 0));
    }

    /// Whether the end of a statement is never reached.
    bool neverEnds(NodeId id) {
        switch (tree[id].kind) {
            case Kind::Return:
                return true;
            case Kind::Break:
                noteBreak(id);
                return true;
            case Kind::Continue:
                return true;
            case Kind::ExpressionStatement: {
                const NodeId child = tree[id].first;
                return tree[child].kind == Kind::Call && tree[child].op == Word::Exit;
            }
            case Kind::Block:
                return checkBlock(id);
            case Kind::Arm:
                return leaves[tree.child(id, 1)];
            case Kind::ElseArm:
                return leaves[tree[id].first];
            case Kind::If: {
                bool all = true;
                bool hasElse = false;
                for (NodeId arm = tree[id].first; arm != noNode; arm = tree[arm].next) {
                    all = all && leaves[arm];
                    hasElse = hasElse || tree[arm].kind == Kind::ElseArm;
                }
                return all && hasElse;
            }
            case Kind::While:
                checkLoop(id, tree[id].first, tree.child(id, 1), noNode);
                return isTrue(tree[id].first) && !breaks[id];
            case Kind::For:
                checkLoop(id, tree.child(id, 1), tree.child(id, 3), tree.child(id, 2));
                return tree[tree.child(id, 1)].first == noNode && !breaks[id];
            case Kind::Case:
                return checkBlock(id);
            case Kind::Switch: {
                const NodeId last = tree.lastChild(id);
                bool hasOthers = false;
                for (NodeId each = tree.child(id, 1); each != noNode; each = tree[each].next) {
                    hasOthers = hasOthers || tree[each].op == Word::Else;
                }
                return hasOthers && leaves[last] && !breaks[id];
            }
            case Kind::Condition:
                checkCondition(id);
                return false;
            default:
                return false;
        }
    }

    void noteBreak(NodeId id) {
        NodeId loop = tree[id].parent;
        while (loop != noNode && tree[loop].kind != Kind::While &&
               tree[loop].kind != Kind::DoWhile && tree[loop].kind != Kind::For &&
               tree[loop].kind != Kind::ForEach && tree[loop].kind != Kind::Switch) {
            loop = tree[loop].parent;
        }
        if (loop != noNode) {
            breaks[loop] = true;
        }
    }

    bool checkBlock(NodeId id) {
        bool left = false;
        bool isSaid = false;
        for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
            if (left && !isSaid && tree[child].kind != Kind::Empty &&
                tree[child].kind != Kind::Skipped) {
                say("unreachable-code", tree[child].range, "nothing leads to this statement");
                isSaid = true;
            }
            left = left || leaves[child];
        }
        return left;
    }

    void checkCondition(NodeId id) {
        const NodeId parent = tree[id].parent;
        if (tree[parent].kind == Kind::While && isTrue(id)) {
            return;
        }
        bool hasLiteral = false;
        for (NodeId inside = model.firstWithin(id); inside < id; ++inside) {
            const Kind kind = tree[inside].kind;
            if (kind != Kind::Literal && kind != Kind::Binary && kind != Kind::Unary &&
                kind != Kind::Parentheses) {
                return;
            }
            hasLiteral = hasLiteral || kind == Kind::Literal;
        }
        if (hasLiteral) {
            say("constant-condition", tree[id].range,
                "this condition always decides in the same way");
        }
    }

    /// Whether nothing in a loop can change what its condition says, and nothing leaves it.
    void checkLoop(NodeId loop, NodeId condition, NodeId body, NodeId update) {
        constexpr NodeId mostNodes = 20000;
        if (tree[condition].first == noNode || breaks[loop] ||
            loop - model.firstWithin(loop) > mostNodes) {
            return;
        }
        std::unordered_set<VariableId> tested;
        for (NodeId id = model.firstWithin(condition); id <= condition; ++id) {
            const Kind kind = tree[id].kind;
            if (kind == Kind::Call || kind == Kind::Method || kind == Kind::Assign ||
                kind == Kind::Update || kind == Kind::Missing) {
                return;
            }
            if (kind == Kind::Name) {
                const VariableId variable = model.meaning(id);
                if (variable == noVariable || model.variables()[variable].function == noFunction) {
                    return;
                }
                tested.insert(variable);
            }
        }
        if (tested.empty()) {
            return;
        }
        for (const NodeId part : {body, update}) {
            if (part == noNode) {
                continue;
            }
            for (NodeId id = model.firstWithin(part); id <= part; ++id) {
                if (mayEnd(id, tested)) {
                    return;
                }
            }
        }
        say("unchanging-loop", tree[condition].range,
            "nothing in the loop changes this condition, and nothing leaves the loop");
    }

    bool mayEnd(NodeId id, const std::unordered_set<VariableId>& tested) const {
        const Kind kind = tree[id].kind;
        if (kind == Kind::Return || kind == Kind::Skipped || kind == Kind::Missing ||
            (kind == Kind::Call && tree[id].op == Word::Exit)) {
            return true;
        }
        if (kind == Kind::Declarator) {
            return tested.count(model.declared(id)) != 0;
        }
        if (kind != Kind::Assign && kind != Kind::Update) {
            return false;
        }
        NodeId target = tree[id].first;
        while (target != noNode &&
               (tree[target].kind == Kind::Index || tree[target].kind == Kind::Parentheses)) {
            target = tree[target].first;
        }
        return target == noNode || tree[target].kind != Kind::Name ||
               tested.count(model.meaning(target)) != 0;
    }

    void checkEnd(const Function& function) {
        const NodeId block = tree.lastChild(function.node);
        if (function.type != Word::Void && !nameOf(function.type).empty() &&
            function.name != "main" && !leaves[block] && !tree.textOf(block).empty()) {
            say("missing-return", tree.wordRange(function.node),
                "the end of `" + std::string{function.name} +
                    "` can be reached without a `return`");
        }
    }

    /// Goes through the statements that run in any case.
    void checkRecursion(const Function& function) {
        const NodeId block = tree.lastChild(function.node);
        std::unordered_set<NodeId> own(function.calls.begin(), function.calls.end());
        if (own.empty()) {
            return;
        }
        for (NodeId id = tree[block].first; id != noNode; id = tree[id].next) {
            NodeId always = id;
            const Kind kind = tree[id].kind;
            if (kind == Kind::If || kind == Kind::While) {
                always = kind == Kind::If ? tree[tree[id].first].first : tree[id].first;
            } else if (kind != Kind::Declaration && kind != Kind::ExpressionStatement &&
                       kind != Kind::Return) {
                return;
            }
            for (NodeId inside = model.firstWithin(always); inside <= always; ++inside) {
                if (own.count(inside) != 0 && !isConditional(inside, always)) {
                    say("endless-recursion", tree[inside].range,
                        "`" + std::string{function.name} +
                            "` always calls itself before it can return");
                    return;
                }
            }
            if (kind == Kind::If || kind == Kind::While || leaves[id]) {
                return;
            }
        }
    }

    /// Whether something is evaluated only if something else in the same statement says so.
    bool isConditional(NodeId id, NodeId root) const {
        for (; id != root; id = tree[id].parent) {
            const Kind kind = tree[id].kind;
            if (kind == Kind::Conditional ||
                (kind == Kind::Binary && (tree[id].op == Word::And || tree[id].op == Word::Or))) {
                return true;
            }
        }
        return tree[root].kind == Kind::Conditional;
    }

    const Model& model;
    const Tree& tree;
    std::vector<Finding>& findings;
    std::vector<bool> leaves;  // by node: its end is never reached
    std::vector<bool> breaks;  // by loop: a `break` leaves it
};

}  // namespace

void findPaths(const Model& model, std::vector<Finding>& findings) {
    Paths{model, findings}.find();
}

}  // namespace krel::Check
