// Functions that share arrays or variables with others. Comes in: the model. Goes out: the
// statements of such a function in place of its calls.
//
// A function that takes an array, or uses a variable that is declared outside and changes, is no
// function of Krel. But what it does can be written where it is called: each call becomes a copy of
// the body, with variables of its own. A `return` sets the result and leaves a loop that runs once;
// within other loops it also sets a flag, which the statement behind each of them asks for.

#include <algorithm>
#include <string>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

constexpr std::size_t mostBytes = 60'000;  // of all copies

bool isLoop(Kind kind) {
    return kind == Kind::While || kind == Kind::DoWhile || kind == Kind::For ||
           kind == Kind::ForEach || kind == Kind::Switch;
}

}  // namespace

/// Decides which functions are written where they are called: all that have to be, or none.
void Repairer::planInlining() {
    const std::size_t count = model.functions().size();
    std::vector<bool> shares(count, false);
    std::vector<FunctionId> open;
    const FunctionId start = model.functionNamed("main");
    const auto add = [&](FunctionId function) {
        if (function != noFunction && function != start && !shares[function]) {
            shares[function] = true;
            open.push_back(function);
        }
    };
    for (const VariableId number : stayingGlobals) {
        for (const NodeId use : model.variables()[number].uses) {
            add(model.functionAround(use));
        }
    }
    while (!open.empty()) {  // what calls such a function shares the variable as well
        const FunctionId function = open.back();
        open.pop_back();
        for (const NodeId call : model.functions()[function].calls) {
            add(model.functionAround(call));
        }
    }
    for (FunctionId function = 0; function < count; ++function) {
        const auto& parameters = model.functions()[function].parameters;
        shares[function] = function != start &&
                           (shares[function] ||
                            std::any_of(parameters.begin(), parameters.end(), [&](VariableId each) {
                                return model.variables()[each].isArray;
                            }));
    }
    inlined = std::move(shares);
    if (start == noFunction || !canInline()) {
        inlined.assign(count, false);
    }
    const bool isAny = std::find(inlined.begin(), inlined.end(), true) != inlined.end();
    for (FunctionId function = 0; isAny && function < count; ++function) {
        for (const VariableId number : model.functions()[function].variables) {
            if (inlined[function] && renamed.count(number) == 0) {
                rename(number, nameNow(number));
            }
        }
    }
}

/// Whether all of them can be: none calls itself, each argument for an array is one, and the copies
/// are not too many.
bool Repairer::canInline() {
    copiedBytes.assign(inlined.size(), 0);
    const FunctionId start = model.functionNamed("main");
    for (const VariableId number : stayingGlobals) {
        const auto& own = model.functions()[start].variables;
        if (std::any_of(own.begin(), own.end(), [&](VariableId each) {
                return model.variables()[each].name == model.variables()[number].name;
            })) {
            whyStaying = "`main` has a variable with the name of a shared one";
            return false;
        }
    }
    std::size_t all = 0;
    for (FunctionId function = 0; function < inlined.size(); ++function) {
        if (!inlined[function]) {
            continue;
        }
        const std::size_t bytes = bytesOfCopy(function, 0);
        all += bytes * model.functions()[function].calls.size();
        if (bytes == 0 || all > mostBytes || !isCopyable(function)) {
            const std::string name = quoted(model.functions()[function].name);
            whyStaying = callsItself(function) ? name + " calls itself"
                         : bytes == 0 || all > mostBytes
                             ? "the copies of " + name + " would be too long"
                             : name + " cannot be written where it is called";
            return false;
        }
    }
    return true;
}

bool Repairer::callsItself(FunctionId number) const {
    const std::vector<NodeId>& calls = model.functions()[number].calls;
    return std::any_of(calls.begin(), calls.end(),
                       [&](NodeId call) { return model.functionAround(call) == number; });
}

/// How long a copy of a function is, with the copies in it; 0 when there is no end of it.
std::size_t Repairer::bytesOfCopy(FunctionId number, int depth) {
    constexpr int deepest = 12;
    if (copiedBytes[number] != 0 || depth > deepest) {
        return copiedBytes[number];
    }
    const NodeId node = model.functions()[number].node;
    std::size_t bytes = tree.textOf(node).size() + 1;
    for (NodeId id = model.firstWithin(node); id < node; ++id) {
        const FunctionId callee = calleeOf(id);
        if (callee == noFunction || !inlined[callee]) {
            continue;
        }
        const std::size_t inside = callee == number ? 0 : bytesOfCopy(callee, depth + 1);
        bytes += inside;
        if (inside == 0 || bytes > mostBytes) {
            return 0;
        }
    }
    return copiedBytes[number] = bytes;
}

/// The function of the program that a node calls; noFunction for others.
FunctionId Repairer::calleeOf(NodeId id) const {
    return tree[id].kind == Kind::Call && tree[id].op == Word::Name
               ? model.functionNamed(tree.wordOf(id))
               : noFunction;
}

bool Repairer::isCopyable(FunctionId number) const {
    const Function& function = model.functions()[number];
    const SourceRange range = tree[function.node].range;
    const auto place = std::lower_bound(unread.begin(), unread.end(), range.begin);
    const bool isReadable = place == unread.end() || *place > range.end;
    const bool hasBlock = !tree.textOf(tree.lastChild(function.node)).empty();
    if (!isReadable || !hasBlock || nameOf(function.type).empty()) {
        return false;
    }
    return std::all_of(function.calls.begin(), function.calls.end(), [&](NodeId call) {
        const std::vector<NodeId> arguments = tree.children(call);
        bool fits = arguments.size() == function.parameters.size();
        for (std::size_t index = 0; fits && index < arguments.size(); ++index) {
            const VariableId given = tree[arguments[index]].kind == Kind::Name
                                         ? model.meaning(arguments[index])
                                         : noVariable;
            fits = !model.variables()[function.parameters[index]].isArray ||
                   (given != noVariable && model.variables()[given].isArray);
        }
        return fits && model.functionAround(call) != noFunction;
    });
}

/// Writes these functions as they are, so that what is said of them has their own names.
void Repairer::judgeInlined() {
    isJudging = true;
    for (FunctionId number = 0; number < inlined.size(); ++number) {
        if (inlined[number]) {
            Pieces ignored;
            function(model.functions()[number].node, ignored);
        }
    }
    isJudging = false;
}

bool Repairer::isInlined(NodeId call) const {
    const FunctionId callee = isJudging ? noFunction : calleeOf(call);
    return callee != noFunction && inlined[callee];
}

/// Gives a variable another name in the copy at hand.
void Repairer::nameInCopy(VariableId number, const std::string& name) {
    const Variable& variable = model.variables()[number];
    renamed[number] = name;
    const auto set = [&](SourceRange range) {
        const auto edit = std::lower_bound(tokenEdits.begin(), tokenEdits.end(), range.begin,
                                           [](const TokenEdit& candidate, std::uint32_t place) {
                                               return candidate.range.begin < place;
                                           });
        for (auto each = edit; each != tokenEdits.end() && each->range.begin == range.begin;
             ++each) {
            each->text = each->once ? each->text : name;
        }
    };
    set(tree.wordRange(variable.node));
    std::for_each(variable.uses.begin(), variable.uses.end(),
                  [&](NodeId use) { set(tree[use].range); });
}

/// The arguments of a call as variables of the copy.
void Repairer::bindArguments(NodeId call, const Function& function) {
    NodeId argument = tree[call].first;
    std::vector<std::pair<VariableId, std::string>> names;
    for (const VariableId number : function.parameters) {
        const Variable& parameter = model.variables()[number];
        const VariableId given =
            tree[argument].kind == Kind::Name ? model.meaning(argument) : noVariable;
        const bool isFixed = given != noVariable && changedVariables.count(number) == 0 &&
                             stayingGlobals.count(given) == 0 &&
                             model.variables()[given].type == parameter.type;
        if (parameter.isArray || isFixed) {
            names.emplace_back(number, nameNow(given));
        } else {
            Pieces value;
            initialValue(argument, parameter.type, value);
            names.emplace_back(number, hoist(parameter.type, std::string{parameter.name},
                                             std::move(value), argument));
        }
        argument = tree[argument].next;
    }
    for (const auto& [number, name] : names) {
        nameInCopy(number, name);
    }
}

/// Writes a copy of a function's body into the prelude. Returns the variable of its result; empty
/// for a function without one.
std::string Repairer::inlineCall(NodeId call) {
    const FunctionId callee = calleeOf(call);
    const Function& function = model.functions()[callee];
    const NodeId block = tree.lastChild(function.node);
    const SourceRange origin = tree[call].range;
    const NodeId firstCall = firstCallInPlace;
    const NodeId limit = std::exchange(hoistCallsBefore, 0);
    bindArguments(call, function);
    Copy copy = copyOf(callee);
    std::map<VariableId, std::string> leaders;
    for (const VariableId number : function.variables) {
        const auto shared = sharedNames.find(number);
        const VariableId leader = shared == sharedNames.end() ? number : shared->second;
        if (!model.variables()[number].isParameter) {
            const auto [entry, isNew] = leaders.try_emplace(leader);
            entry->second = !model.variables()[leader].isParameter && isNew
                                ? fresh(std::string{model.variables()[leader].name})
                            : isNew ? nameNow(leader)
                                    : entry->second;
            nameInCopy(number, entry->second);
        }
    }
    std::string before;
    if (!copy.result.empty()) {
        before += std::string{nameOf(function.type)} + " " + copy.result + " = " +
                  defaultOf(function.type) + "; ";
    }
    before += copy.flag.empty() ? "" : "boolean " + copy.flag + " = false; ";
    before += copy.needsLoop ? "while (true) " : "";
    Prelude last;
    if (copy.needsLoop) {
        last.emplace_back();
        last.back().insert("break;", origin);
    }
    for (TokenEdit& edit : tokenEdits) {
        edit.done = edit.done && (edit.range.begin < tree[block].range.begin ||
                                  edit.range.begin > tree[block].range.end);
    }
    copies.push_back(copy);
    Prelude outer;
    std::swap(outer, prelude);
    Pieces body;
    blockWith(block, {}, std::move(last), body);
    std::swap(outer, prelude);
    copies.pop_back();
    body.markAsMoved();
    Pieces all;
    all.insert(before, origin);
    all.append(std::move(body));
    prelude.push_back(std::move(all));
    firstCallInPlace = firstCall;
    hoistCallsBefore = limit;
    lastHoistWithCall = std::max(lastHoistWithCall, call);
    return copy.result;
}

/// What a copy needs to give back its result.
Repairer::Copy Repairer::copyOf(FunctionId number) {
    const Function& function = model.functions()[number];
    const NodeId block = tree.lastChild(function.node);
    Copy copy;
    copy.function = number;
    bool needsFlag = false;
    for (NodeId id = model.firstWithin(block); id < block; ++id) {
        if (tree[id].kind == Kind::Return) {
            copy.needsLoop = copy.needsLoop || id != tree.lastChild(block);
            needsFlag = needsFlag || loopAround(id, block) != noNode;
        }
    }
    const std::string name{function.name};
    copy.result = function.type == Word::Void ? "" : fresh(name + "Result");
    copy.flag = needsFlag ? fresh(name + "Done") : "";
    return copy;
}

/// The innermost loop around a node within a block; noNode when there is none.
NodeId Repairer::loopAround(NodeId id, NodeId block) const {
    for (NodeId around = tree[id].parent; around < block; around = tree[around].parent) {
        if (isLoop(tree[around].kind)) {
            return around;
        }
    }
    return noNode;
}

void Repairer::returnFromCopy(NodeId id, Pieces& out) {
    const Copy copy = copies.back();
    const Function& function = model.functions()[copy.function];
    const NodeId block = tree.lastChild(function.node);
    const SourceRange range = tree[id].range;
    if (tree[id].first != noNode && !copy.result.empty()) {
        if (!decidedStatement(id, tree[id].first, function.type, copy.result + " = ", out)) {
            Context context;
            context.want = function.type;
            out.insert(copy.result + " = ", range);
            expression(tree[id].first, context, out);
            out.insert(";", range);
        }
    }
    if (loopAround(id, block) != noNode) {
        out.insert(" " + copy.flag + " = true; break;", range);
    } else if (id != tree.lastChild(block)) {
        out.insert(" break;", range);
    }
}

/// Behind a loop in a copy: leaves what is around it if a `return` has left the loop.
void Repairer::leaveAfter(NodeId loop, Pieces& out) {
    if (copies.empty() || copies.back().flag.empty() || !isLoop(tree[loop].kind)) {
        return;
    }
    for (NodeId id = model.firstWithin(loop); id < loop; ++id) {
        if (tree[id].kind == Kind::Return) {
            out.insert(" if (" + copies.back().flag + ") { break; }", tree[loop].range);
            return;
        }
    }
}

}  // namespace krel::Check
