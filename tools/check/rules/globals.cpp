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

/// # array-parameter
///
/// ## What it finds
///
/// A function that takes an array: `int t[]`, `int* t`.
///
/// ## Why
///
/// Functions take and return single values. The repair writes what the function does where it is
/// called, unless it calls itself.
///
/// ## Example
///
/// ```krel example
/// int first(int t[]) {
///     return t[0];
/// }
///
/// void main() {
///     int a[2] = {1, 2};
///     print(first(a), "\n");
/// }
/// ```
///
/// ## Use instead
///
/// The function's statements in the function that has the array, or a function of the elements:
///
/// ```krel
/// int larger(int x, int y) {
///     if (x > y) {
///         return x;
///     }
///     return y;
/// }
///
/// void main() {
///     int a[2] = {1, 2};
///     print(larger(a[0], a[1]), "\n");
/// }
/// ```

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

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
            stayingGlobals.insert(number);
            continue;
        }
        movableGlobals.insert(number);
        for (const FunctionId user : users) {
            movedGlobals[user].insert(number);
        }
    }
}

/// The variables outside of functions that the declaration of another one reads.
std::vector<VariableId> Repairer::globalsBehind(VariableId number) const {
    std::vector<VariableId> read;
    const NodeId node = model.variables()[number].node;
    for (NodeId id = model.firstWithin(node); id < node; ++id) {
        const VariableId meaning = tree[id].kind == Kind::Name ? model.meaning(id) : noVariable;
        if (meaning != noVariable && model.variables()[meaning].function == noFunction) {
            read.push_back(meaning);
        }
    }
    return read;
}

/// Adds to some variables outside of functions all that their declarations read, over any number
/// of steps.
void Repairer::addGlobalsBehind(std::set<VariableId>& numbers) const {
    std::vector<VariableId> open{numbers.begin(), numbers.end()};
    while (!open.empty()) {
        const VariableId number = open.back();
        open.pop_back();
        for (const VariableId read : globalsBehind(number)) {
            if (numbers.insert(read).second) {
                open.push_back(read);
            }
        }
    }
}

/// A copy of a function's body needs the variables that the function needs.
void Repairer::carryGlobalsToCopies() {
    std::vector<FunctionId> open;
    for (const auto& entry : movedGlobals) {
        open.push_back(entry.first);
    }
    while (!open.empty()) {
        const FunctionId function = open.back();
        open.pop_back();
        if (!inlined[function]) {
            continue;
        }
        for (const NodeId call : model.functions()[function].calls) {
            const FunctionId caller = model.functionAround(call);
            if (caller == noFunction) {
                continue;
            }
            auto& needed = movedGlobals[caller];
            const std::size_t before = needed.size();
            const auto& own = movedGlobals[function];
            needed.insert(own.begin(), own.end());
            if (needed.size() != before) {
                open.push_back(caller);
            }
        }
    }
}

/// A variable that goes to a function with another one of its name gets a name of its own.
void Repairer::renameHiddenGlobals() {
    for (const auto& [function, numbers] : movedGlobals) {
        std::unordered_set<std::string_view> own;
        for (const VariableId number : model.functions()[function].variables) {
            own.insert(model.variables()[number].name);
        }
        for (const VariableId number : numbers) {
            const std::string name{model.variables()[number].name};
            if (own.count(name) != 0 && renamed.count(number) == 0) {
                rename(number, freeName(name, true));
            }
        }
    }
}

/// What several functions use and change goes to `main` if these functions do. If they cannot, it
/// stays; only for the compiler each of them gets its own. What is read for the value or the size
/// of another variable goes, or stays, with that one.
void Repairer::placeGlobals() {
    const FunctionId start = model.functionNamed("main");
    const bool isShared = std::find(inlined.begin(), inlined.end(), true) != inlined.end();
    std::set<VariableId> left;
    for (const VariableId number : stayingGlobals) {
        stayed = stayed || !isShared;
        if (isShared) {
            movableGlobals.insert(number);
            movedGlobals[start].insert(number);
        } else if (purpose == Purpose::Ask) {
            movableGlobals.insert(number);
            for (const NodeId use : model.variables()[number].uses) {
                const FunctionId user = model.functionAround(use);
                if (user != noFunction) {
                    movedGlobals[user].insert(number);
                }
            }
        } else {
            left.insert(number);
        }
    }
    addGlobalsBehind(left);
    for (auto& entry : movedGlobals) {
        addGlobalsBehind(entry.second);
    }
    carryGlobalsToCopies();
    for (auto& entry : movedGlobals) {
        for (const VariableId number : left) {
            entry.second.erase(number);
        }
    }
    for (const VariableId number : left) {
        movableGlobals.erase(number);
    }
    renameHiddenGlobals();
}

/// Why functions with arrays and shared variables are left as they are; empty if they are not.
std::string Repairer::reasonToStay() const {
    return whyStaying.empty() ? "" : "; `--fix` leaves it, because " + whyStaying;
}

/// Says how a program does without a variable that several functions use and change.
void Repairer::reportGlobal(VariableId number) {
    const Variable& variable = model.variables()[number];
    const std::string name{variable.name};
    std::set<std::string> users;
    for (const NodeId use : variable.uses) {
        const FunctionId function = model.functionAround(use);
        const bool isNamed = function != noFunction && model.functions()[function].name != "main";
        users.insert(isNamed ? "`" + std::string{model.functions()[function].name} + "`" : "");
    }
    users.erase("");
    constexpr std::size_t most = 3;
    std::string list;
    std::size_t count = 0;
    for (const std::string& user : users) {
        list += count == 0 ? "" : count + 1 == std::min(most, users.size()) ? " and " : ", ";
        list += count + 1 == most && users.size() > most ? "others" : user;
        if (++count == most) {
            break;
        }
    }
    say("global-variable", Severity::Error, tree.wordRange(variable.node),
        "there are no global variables, and `" + name + "` is shared with " + list,
        (variable.isArray
             ? "declare it in `main`, and write there what " + list +
                   " do with it; functions take elements and return new values"
             : "declare it in `main`, hand it over as a parameter, and return its new value: `" +
                   name + " = change(" + name + ");`") +
            reasonToStay());
}

/// Whether a declaration outside of functions goes into functions as a whole.
bool Repairer::isMovedGlobal(NodeId id) {
    if (tree[id].kind != Kind::Declaration || !isReadable(id)) {
        return false;
    }
    bool isShared = false;
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
        if (tree[child].kind == Kind::Declarator &&
            stayingGlobals.count(model.declared(child)) != 0) {
            reportGlobal(model.declared(child));
            isShared = true;
        }
    }
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
        if (tree[child].kind == Kind::Declarator &&
            movableGlobals.count(model.declared(child)) == 0) {
            return false;
        }
    }
    if (!isShared) {
        say("global-variable", Severity::Error, tree[id].range, "there are no global variables",
            "declare it in each function that uses it");
    }
    return true;
}

/// Sets all elements of an array to 0, as other languages do by themselves outside of functions.
void Repairer::clearElements(VariableId number) {
    const Variable& variable = model.variables()[number];
    const auto length = lengthOf(variable);
    if (!variable.isArray || !length) {
        return;
    }
    const std::string name = nameNow(number);
    const std::string index = fresh(name + "Index");
    const std::string value = variable.type == Word::Double ? doubleConstant(variable.node, 0.0)
                                                            : defaultOf(variable.type);
    postlude.emplace_back();
    postlude.back().insert("for (int " + index + " = 0; " + index + " < " +
                               std::to_string(*length) + "; " + index + "++) { " + name + "[" +
                               index + "] = " + value + "; }",
                           tree[variable.node].range);
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
        if (model.variables()[number].initial == noNode) {
            clearElements(number);
        }
        std::move(postlude.begin(), postlude.end(), std::back_inserter(before));
        postlude.clear();
        for (Pieces& each : before) {
            each.markAsMoved();
            out.insert(constantSeparator, tree[id].range);
            out.append(std::move(each));
        }
    }
}

/// What stands before the body of a function. Arrays that it takes are declared in it when the
/// compiler is asked.
void Repairer::functionHeader(NodeId id, Pieces& out, Pieces& declarations) {
    std::uint32_t at = tree[id].range.begin;
    if (mainParameters(id, out)) {
        return;
    }
    for (NodeId child = tree[id].first; child != noNode; child = tree[child].next) {
        if (tree[child].kind == Kind::Parameter && isArray(child)) {
            copy(at, tree[child].range.begin, out);
            arrayParameter(child, out, declarations);
            at = tree[child].range.end;
        }
    }
    copy(at, tree[tree.lastChild(id)].range.begin, out);
}

/// What other languages hand over to `main`. Returns false if it is something else.
bool Repairer::mainParameters(NodeId id, Pieces& out) {
    const Function& function = model.functions()[model.functionAround(id)];
    const bool hasArray =
        std::any_of(function.parameters.begin(), function.parameters.end(),
                    [&](VariableId each) { return model.variables()[each].isArray; });
    if (function.name != "main" || !hasArray) {
        return false;
    }
    const SourceRange first = tree[model.variables()[function.parameters.front()].node].range;
    const SourceRange last = tree[model.variables()[function.parameters.back()].node].range;
    say("array-parameter", Severity::Error, {first.begin, last.end}, "`main` has no parameters",
        "leave them out: `void main()`");
    copy(tree[id].range.begin, first.begin, out);
    copy(last.end, tree[tree.lastChild(id)].range.begin, out);
    return true;
}

void Repairer::arrayParameter(NodeId id, Pieces& out, Pieces& declarations) {
    const Variable& variable = model.variables()[model.declared(id)];
    const std::string name{variable.name};
    const Function& function = model.functions()[model.functionAround(id)];
    const bool isCopied = inlined[model.functionAround(id)];
    const std::string instead =
        callsItself(model.functionAround(id))
            ? "declare the array in `main`, and write there a loop in place of the calls"
            : "write what `" + std::string{function.name} +
                  "` does where the array is declared, or hand over elements: `" +
                  std::string{nameOf(variable.type)} + " " + name + "`";
    say("array-parameter", Severity::Error, tree[id].range, "a function cannot take an array",
        instead + reasonToStay());
    stayed = stayed || !isCopied;
    if (purpose == Purpose::Write || nameOf(variable.type).empty()) {
        return copy(id, out);
    }
    const std::string type{nameOf(variable.type)};
    out.insert(type + " " + fresh(name), tree[id].range);
    declarations.insert(" " + type + " " + name + "[1];", tree[id].range);
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
