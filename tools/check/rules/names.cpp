// Names that are declared twice, and names that are not free.

/// # redeclaration
///
/// ## What it finds
///
/// A name that is declared twice in a function, also in different blocks or loops.
///
/// ## Why
///
/// Each function is one scope, loops and blocks included.
///
/// ## Example
///
/// ```krel example fragment
/// for (int k = 0; k < 3; k++) { }
/// for (int k = 0; k < 3; k++) { }
/// ```
///
/// ## Use instead
///
/// An assignment, or another name:
///
/// ```krel fragment
/// for (int k = 0; k < 3; k++) { }
/// for (k = 0; k < 3; k++) { }
/// ```

/// # reserved-name
///
/// ## What it finds
///
/// A variable that is named like a word of Krel (`if`, `print`), like one of the intermediate code
/// (`arg`, `call`, `goto`, `param`, the conversions, `B` and digits), like one of the compiler's
/// temporaries (`_t0`), or like its own function; and a function that is named like one of the
/// run-time library or the start-up files.
///
/// ## Why
///
/// Words of the intermediate code have no place in memory. A temporary shares its place with the
/// variable. A function's own name is in its scope.
///
/// ## Example
///
/// ```krel example fragment
/// int call = 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int calls = 1;
/// ```

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

constexpr std::array<std::string_view, 11> irWords = {
    "arg",       "call",        "goto",           "param",        "inttodouble", "inttochar",
    "chartoint", "inttostring", "doubletostring", "booltostring", "chartostring"};

constexpr std::array<std::string_view, 17> linkedNames = {"_start",
                                                          "_init",
                                                          "_fini",
                                                          "_edata",
                                                          "_end",
                                                          "__bss_start",
                                                          "__data_start",
                                                          "__dso_handle",
                                                          "_IO_stdin_used",
                                                          "_DYNAMIC",
                                                          "_GLOBAL_OFFSET_TABLE_",
                                                          "__TMC_END__",
                                                          "__GNU_EH_FRAME_HDR",
                                                          "__libc_start_main",
                                                          "__gmon_start__",
                                                          "__tunable_get_val",
                                                          "_dl_audit_preinit"};

bool allDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

bool isIrWord(std::string_view name) {
    return std::find(irWords.begin(), irWords.end(), name) != irWords.end() ||
           (name.substr(0, 1) == "B" && allDigits(name.substr(1)));
}

bool isTemporary(std::string_view name) {
    return name.substr(0, 2) == "_t" && allDigits(name.substr(2));
}

std::string otherNameFor(std::string_view name) {
    if (name == "arg") {
        return "argument";
    }
    if (name == "param") {
        return "parameter";
    }
    if (name == "call") {
        return "calls";
    }
    if (name == "goto") {
        return "next";
    }
    if (name.front() == 'B') {
        return "b" + std::string{name.substr(1)};
    }
    return isTemporary(name) ? "t" + std::string{name.substr(2)} : std::string{name} + "Value";
}

/// A place in memory under a name, which several declarations may share.
struct Slot {
    Type type;
    bool isArray;
    NodeId scope;  // of the declaration that used it last
    std::string name;
    VariableId first;
};

}  // namespace

std::string Repairer::nameNow(VariableId variable) const {
    const auto entry = renamed.find(variable);
    return entry == renamed.end() ? std::string{model.variables()[variable].name} : entry->second;
}

void Repairer::rename(VariableId number, const std::string& name) {
    const Variable& variable = model.variables()[number];
    renamed[number] = name;
    editToken(tree.wordRange(variable.node), name);
    for (const NodeId use : variable.uses) {
        editToken(tree[use].range, name);
    }
}

void Repairer::findLinkedName(const Function& function) {
    const bool isLinked =
        std::find(linkedNames.begin(), linkedNames.end(), function.name) != linkedNames.end();
    if (isLinked || function.name.substr(0, 5) == "krel_") {
        const std::string name = freshFunction("my" + std::string{function.name});
        say("linked-name", Severity::Error, tree.wordRange(function.node),
            "the name `" + std::string{function.name} +
                "` belongs to the run-time library or the system",
            "use another one: " + quoted(name));
        editToken(tree.wordRange(function.node), name);
        for (const NodeId call : function.calls) {
            editToken(tree.wordRange(call), name);
        }
    }
}

/// The name of a variable, or another one if its own is not free.
std::string Repairer::freeNameFor(const Variable& variable, const Function& function) {
    std::string name{variable.name};
    if (!isIrWord(name) && !isTemporary(name) && variable.name != function.name) {
        return name;
    }
    std::string other = fresh(otherNameFor(name));
    say("reserved-name", isTemporary(name) ? Severity::Warning : Severity::Error,
        tree.wordRange(variable.node),
        variable.name == function.name ? "`" + name + "` is the name of the function itself"
        : isTemporary(name) ? "`" + name + "` is the name of one of the compiler's temporaries"
                            : "`" + name + "` is a word of the intermediate code",
        "use another name: " + quoted(other));
    return other;
}

void Repairer::findNames() {
    for (const Function& function : model.functions()) {
        currentFunction = model.functionAround(function.node);
        findLinkedName(function);
        std::unordered_map<std::string_view, std::vector<Slot>> slots;
        for (const VariableId number : function.variables) {
            const Variable& variable = model.variables()[number];
            const SourceRange word = tree.wordRange(variable.node);
            std::vector<Slot>& known = slots[variable.name];
            const std::string name{variable.name};
            if (known.empty()) {
                Slot slot = {variable.type, variable.isArray, variable.scope,
                             freeNameFor(variable, function), number};
                if (slot.name != name) {
                    rename(number, slot.name);
                }
                known.push_back(std::move(slot));
                continue;
            }
            const std::string where = "`" + name + "` is declared already in `" +
                                      std::string{function.name} + "`: each function is one scope";
            const auto free = std::find_if(known.begin(), known.end(), [&](const Slot& slot) {
                return slot.type == variable.type && !slot.isArray && !variable.isArray &&
                       !variable.isParameter &&
                       (slot.scope < variable.node || slot.scope == variable.scope);
            });
            if (free != known.end()) {
                say("redeclaration", Severity::Error, word, where,
                    "leave the type out: `" + free->name + " = ...`");
                assignedOnly.insert(number);
                sharedNames.emplace(number, free->first);
                free->scope = variable.scope;
                if (free->name != name) {
                    rename(number, free->name);
                }
                continue;
            }
            Slot slot = {variable.type, variable.isArray, variable.scope, fresh(name), number};
            say("redeclaration", Severity::Error, word, where,
                "use another name: " + quoted(slot.name));
            rename(number, slot.name);
            known.push_back(std::move(slot));
        }
    }
    currentFunction = noFunction;
}

}  // namespace krel::Check
