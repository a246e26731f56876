// Names and types. Comes in: a tree. Goes out: what each name means, which type each expression
// has.
//
// Nodes are numbered from the leaves to the root, in the order of the text. So one pass meets each
// initial value before its variable, each variable before its later uses, and each block after all
// that it holds: a scope is open as long as its block has a greater number.

#include "tools/check/model.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <utility>

namespace krel::Check {

using Syntax::isExpression;

namespace {

constexpr std::array typeNames = {
    std::pair{Word::Int, std::string_view{"int"}},
    std::pair{Word::Double, std::string_view{"double"}},
    std::pair{Word::Boolean, std::string_view{"boolean"}},
    std::pair{Word::Character, std::string_view{"character"}},
    std::pair{Word::String, std::string_view{"string"}},
    std::pair{Word::Void, std::string_view{"void"}},
};

bool isScope(Kind kind) {
    return kind == Kind::Block || kind == Kind::For || kind == Kind::ForEach ||
           kind == Kind::Switch || kind == Kind::Function;
}

}  // namespace

std::string_view nameOf(Type type) {
    for (const auto& [word, name] : typeNames) {
        if (word == type) {
            return name;
        }
    }
    return {};
}

bool isConvertible(Type from, Type to) {
    constexpr std::array conversions = {
        std::pair{Word::Int, Word::Double},      std::pair{Word::Int, Word::Character},
        std::pair{Word::Int, Word::String},      std::pair{Word::Double, Word::String},
        std::pair{Word::Boolean, Word::String},  std::pair{Word::Character, Word::Int},
        std::pair{Word::Character, Word::String}};
    return std::find(conversions.begin(), conversions.end(), std::pair{from, to}) !=
           conversions.end();
}

std::string_view suffixFor(Type type) {
    switch (type) {
        case Word::Double:
            return "Double";
        case Word::String:
            return "Text";
        case Word::Int:
            return "Code";
        default:
            return "Character";
    }
}

Number numberOf(std::string_view text) {
    Number number;
    const bool isHex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const auto [wholeEnd, fault] = isHex ? std::from_chars(begin + 2, end, number.whole, 16)
                                         : std::from_chars(begin, end, number.whole);
    const std::string_view rest{wholeEnd, static_cast<std::size_t>(end - wholeEnd)};
    constexpr std::string_view suffixes = "lLuU";
    if (fault == std::errc{} && rest.find_first_not_of(suffixes) == rest.npos) {
        number.isKnown = true;
        number.real = static_cast<double>(number.whole);
        return number;
    }
    number.isDouble = !isHex;
    const std::string copy{text};
    char* realEnd = nullptr;
    number.real = std::strtod(copy.c_str(), &realEnd);
    const std::string_view suffix{realEnd};
    number.isKnown = !isHex && realEnd != copy.c_str() &&
                     (suffix.empty() || suffix == "f" || suffix == "F" || suffix == "d");
    if (text.find_first_not_of("0123456789") == text.npos) {
        number.isDouble = false;  // more digits than 64 bits hold
        number.whole = static_cast<std::uint64_t>(-1);
    }
    return number;
}

Model::Model(const Tree& itsTree) : source(itsTree) {
    const std::size_t count = source.nodes.size();
    owner.assign(count, noFunction);
    meanings.assign(count, noVariable);
    meantTypes.assign(count, Word::End);
    krelTypes.assign(count, Word::End);
    calls.assign(count, false);
    effects.assign(count, false);
    lows.resize(count);
    collectConstants();
    collectFunctions();
    walk();
}

namespace {

/// The next word of a text, which loses it; what is no letter, digit or sign divides words.
std::string_view takeWord(std::string_view& text) {
    const std::size_t begin = std::min(text.find_first_not_of(" \t\n\r,"), text.size());
    text.remove_prefix(begin);
    const std::string_view word = text.substr(0, text.find_first_of(" \t\n\r,={};"));
    text.remove_prefix(word.size());
    return word;
}

Type typeOfConstant(std::string_view value) {
    const std::size_t sign = value.substr(0, 1) == "-" ? 1 : 0;
    const Number number = numberOf(value.substr(sign));
    if (number.isKnown) {
        return number.isDouble ? Word::Double : Word::Int;
    }
    return value == "true" || value == "false"                                 ? Word::Boolean
           : value.size() > 1 && value.front() == '"' && value.back() == '"'   ? Word::String
           : value.size() > 2 && value.front() == '\'' && value.back() == '\'' ? Word::Character
                                                                               : Word::End;
}

}  // namespace

/// `#define` begins a comment here; what it means stands in it. The words of an enumeration are
/// numbers.
void Model::collectConstants() {
    constants = {{"TRUE", {Word::Boolean, "true"}},
                 {"FALSE", {Word::Boolean, "false"}},
                 {"True", {Word::Boolean, "true"}},
                 {"False", {Word::Boolean, "false"}},
                 {"INT_MAX", {Word::Int, "2147483647"}}};
    constexpr std::string_view define = "#define ";
    for (const SourceRange range : source.tokens.comments) {
        std::string_view text = source.textOf(range);
        if (text.substr(0, define.size()) == define) {
            text.remove_prefix(define.size());
            const std::string_view name = takeWord(text);
            text = text.substr(0, text.find_first_of("#\n"));
            text = text.substr(0, text.find("//"));
            text.remove_prefix(std::min(text.find_first_not_of(" \t("), text.size()));
            text = text.substr(0, text.find_last_not_of(" \t\r)") + 1);
            addConstant(name, text);
        }
    }
    for (const Syntax::Node& node : source.nodes) {
        if (node.kind == Kind::Foreign && source.tokens.words.size() > node.token &&
            source.textOf(source.tokens.words[node.token].range) == "enum") {
            collectEnumeration(source.textOf(node.range));
        }
    }
}

void Model::addConstant(std::string_view name, std::string_view value) {
    const Type type = typeOfConstant(value);
    if (type != Word::End) {
        constants.emplace(name, Constant{type, std::string{value}});
    }
}

/// `enum Name { one, two = 5, three }`
void Model::collectEnumeration(std::string_view text) {
    const std::size_t begin = text.find('{');
    text = begin == text.npos ? std::string_view{} : text.substr(begin + 1);
    std::int64_t value = 0;
    for (std::string_view name = takeWord(text); !name.empty(); name = takeWord(text)) {
        const std::size_t next = std::min(text.find_first_not_of(" \t\n"), text.size());
        if (next < text.size() && text[next] == '=') {
            text.remove_prefix(next + 1);
            const Number number = numberOf(takeWord(text));
            value = static_cast<std::int64_t>(number.whole);
        }
        addConstant(name, std::to_string(value++));
    }
}

const Constant* Model::constantNamed(std::string_view name) const {
    const auto entry = constants.find(name);
    return entry == constants.end() ? nullptr : &entry->second;
}

FunctionId Model::functionNamed(std::string_view name) const {
    const auto entry = functionsByName.find(name);
    return entry == functionsByName.end() ? noFunction : entry->second;
}

void Model::collectFunctions() {
    for (NodeId id = 0; id < source.nodes.size(); ++id) {
        const NodeId first = source[id].first;
        lows[id] = first == noNode ? id : lows[first];
        if (source[id].kind != Kind::Function) {
            continue;
        }
        const auto number = static_cast<FunctionId>(allFunctions.size());
        Function function;
        function.name = source.wordOf(id);
        function.type = source[first].op;
        function.node = id;
        functionsByName.try_emplace(function.name, number);
        allFunctions.push_back(std::move(function));
    }
    for (FunctionId number = 0; number < allFunctions.size(); ++number) {
        const NodeId last = allFunctions[number].node;
        for (NodeId id = lows[last]; id <= last; ++id) {
            owner[id] = owner[id] == noFunction ? number : owner[id];
        }
    }
    // Parameters' types are needed at calls that come earlier.
    for (FunctionId number = 0; number < allFunctions.size(); ++number) {
        for (const NodeId id : source.children(allFunctions[number].node)) {
            if (source[id].kind == Kind::Parameter && source[id].token != Syntax::noToken) {
                declare(id);
            }
        }
    }
}

void Model::walk() {
    std::vector<NodeId> open;  // names that nothing earlier declares
    std::vector<NodeId> late;  // the same in all functions
    FunctionId function = noFunction;
    const auto finish = [&] {
        if (function != noFunction) {
            resolveEarly(function, open);
            late.insert(late.end(), open.begin(), open.end());
        }
        open.clear();
        known.clear();
    };
    for (NodeId id = 0; id < source.nodes.size(); ++id) {
        if (owner[id] != function) {
            finish();
            function = owner[id];
            if (function != noFunction) {
                for (const VariableId parameter : allFunctions[function].parameters) {
                    Declared& entry = known[allVariables[parameter].name];
                    allVariables[parameter].before = entry.last;
                    entry.open.push_back(parameter);
                    entry.last = parameter;
                    entry.first = entry.first == noVariable ? parameter : entry.first;
                }
            }
        }
        const Kind kind = source[id].kind;
        if (kind == Kind::Name) {
            resolve(id);
            if (meanings[id] == noVariable) {
                open.push_back(id);
            }
        } else if (kind == Kind::Declarator && source[id].token != Syntax::noToken) {
            declare(id);
        }
        typeExpression(id);
        takeElementType(id);
        noteCall(id);
        for (NodeId child = source[id].first; child != noNode; child = source[child].next) {
            calls[id] = calls[id] || calls[child];
            effects[id] = effects[id] || effects[child];
        }
        calls[id] = calls[id] || kind == Kind::Call || kind == Kind::Method;
        effects[id] = effects[id] || kind == Kind::Assign || kind == Kind::Update;
    }
    finish();
    resolveLate(late);
}

void Model::noteCall(NodeId id) {
    const bool isNamed = source[id].kind == Kind::Call && source[id].op == Word::Name;
    const FunctionId callee = isNamed ? functionNamed(source.wordOf(id)) : noFunction;
    if (callee != noFunction) {
        allFunctions[callee].calls.push_back(id);
    }
}

/// In other languages a function may use what is declared behind it, outside of functions.
void Model::resolveLate(const std::vector<NodeId>& late) {
    bool isChanged = false;
    for (const NodeId id : late) {
        const auto global = globals.find(source.wordOf(id));
        if (meanings[id] == noVariable && global != globals.end()) {
            meanings[id] = global->second;
            allVariables[global->second].uses.push_back(id);
            isChanged = true;
        }
    }
    for (NodeId id = 0; isChanged && id < source.nodes.size(); ++id) {
        typeExpression(id);
        takeElementType(id);
    }
    for (const auto& entry : globals) {
        std::vector<NodeId>& uses = allVariables[entry.second].uses;
        std::sort(uses.begin(), uses.end());
    }
}

void Model::declare(NodeId id) {
    const bool isParameter = source[id].kind == Kind::Parameter;
    Variable variable;
    variable.name = source.wordOf(id);
    variable.node = id;
    variable.function = owner[id];
    variable.isParameter = isParameter;
    const NodeId type = isParameter ? source[id].first : source.child(source[id].parent, 0);
    variable.type = type == noNode ? Word::End : source[type].op;
    for (NodeId child = source[id].first; child != noNode; child = source[child].next) {
        if (source[child].kind == Kind::ArrayBound) {
            variable.bounds.push_back(child);
        } else if (isExpression(source[child].kind)) {
            variable.initial = child;
        }
    }
    variable.isArray = !variable.bounds.empty();
    if (variable.type == Word::Name) {  // `var x = 1`
        const bool isList =
            variable.initial != noNode && source[variable.initial].kind == Kind::List;
        const NodeId value = isList ? source[variable.initial].first : variable.initial;
        variable.type = value == noNode ? Word::End : meantTypes[value];
    }
    NodeId scope = source[id].parent;
    while (scope != noNode && !isScope(source[scope].kind)) {
        scope = source[scope].parent;
    }
    variable.scope = scope;
    const auto number = static_cast<VariableId>(allVariables.size());
    meanings[id] = number;
    meantTypes[id] = krelTypes[id] = variable.type;
    if (isParameter) {
        allFunctions[owner[id]].parameters.push_back(number);
    } else {
        Declared& entry = known[variable.name];
        variable.before = entry.last;
        entry.open.push_back(number);
        entry.last = number;
        entry.first = entry.first == noVariable ? number : entry.first;
    }
    if (variable.function != noFunction) {
        allFunctions[variable.function].variables.push_back(number);
    } else {
        globals.try_emplace(variable.name, number);
    }
    allVariables.push_back(std::move(variable));
}

/// `for (auto x : a)`: the variable has the type of the elements.
void Model::takeElementType(NodeId id) {
    const NodeId loop = source[id].parent;
    if (loop == noNode || source[loop].kind != Kind::ForEach || !isExpression(source[id].kind)) {
        return;
    }
    const NodeId declarator = source.child(source[loop].first, 1);
    if (meanings[declarator] != noVariable) {
        Variable& variable = allVariables[meanings[declarator]];
        variable.type = variable.type == Word::End ? meantTypes[id] : variable.type;
    }
}

/// The innermost variable whose scope is open; if there is none, the one declared last, as in
/// Krel.
void Model::resolve(NodeId id) {
    const auto entry = known.find(source.wordOf(id));
    if (entry == known.end()) {
        const auto global = globals.find(source.wordOf(id));
        if (global != globals.end()) {
            meanings[id] = global->second;
            allVariables[global->second].uses.push_back(id);
        }
        return;
    }
    std::vector<VariableId>& candidates = entry->second.open;
    while (!candidates.empty() && allVariables[candidates.back()].scope < id) {
        candidates.pop_back();
    }
    meanings[id] = candidates.empty() ? entry->second.last : candidates.back();
    allVariables[meanings[id]].uses.push_back(id);
}

/// In Krel a variable can be used before its declaration.
void Model::resolveEarly(FunctionId function, const std::vector<NodeId>& open) {
    for (const NodeId id : open) {
        const auto entry = known.find(source.wordOf(id));
        if (entry != known.end() && owner[id] == function) {
            meanings[id] = entry->second.first;
            allVariables[meanings[id]].uses.push_back(id);
        }
    }
}

Type Model::typeOfName(NodeId id) const {
    if (meanings[id] != noVariable) {
        return allVariables[meanings[id]].type;
    }
    const Constant* const constant = constantNamed(source.wordOf(id));
    return constant == nullptr ? Word::End : constant->type;
}

Type Model::typeOfLiteral(NodeId id) const {
    switch (source[id].op) {
        case Word::IntLiteral:
            return Word::Int;
        case Word::DoubleLiteral:
            return Word::Double;
        case Word::CharacterLiteral:
            return Word::Character;
        case Word::StringLiteral:
        case Word::ForeignString:
        case Word::UnclosedString:
            return Word::String;
        case Word::True:
        case Word::False:
            return Word::Boolean;
        case Word::ForeignNumber: {
            const Number number = numberOf(source.textOf(id));
            return !number.isKnown ? Word::End : number.isDouble ? Word::Double : Word::Int;
        }
        default:
            return Word::End;
    }
}

Type Model::meantBinary(NodeId id) const {
    const Word op = source[id].op;
    if (op == Word::ShiftLeft || op == Word::ShiftRight) {
        return Word::Int;
    }
    if (isComparison(op) || op == Word::And || op == Word::Or) {
        return Word::Boolean;
    }
    const NodeId first = source[id].first;
    const NodeId second = source.child(id, 1);
    if (krelTypes[first] != Word::End && krelTypes[first] == krelTypes[second]) {
        return krelTypes[first];
    }
    const Type left = meantTypes[first];
    const Type right = meantTypes[second];
    if (left == Word::String || right == Word::String) {
        return Word::String;
    }
    if (left == Word::End || right == Word::End) {
        return Word::End;
    }
    if (left == Word::Double || right == Word::Double) {
        return Word::Double;
    }
    return left == right ? left : Word::Int;
}

void Model::typeExpression(NodeId id) {
    const Syntax::Node& node = source[id];
    Type meant = Word::End;
    Type krel = Word::End;
    switch (node.kind) {
        case Kind::Literal:
            meant = krel = typeOfLiteral(id);
            break;
        case Kind::Name:
            meant = krel = typeOfName(id);
            break;
        case Kind::Unary:
            krel = krelTypes[node.first];
            meant = node.op == Word::Not ? Word::Boolean : meantTypes[node.first];
            break;
        case Kind::Binary: {
            const Type left = krelTypes[node.first];
            krel = left == krelTypes[source.child(id, 1)] ? left : Word::End;
            meant = meantBinary(id);
            break;
        }
        case Kind::Conditional:
            meant = meantTypes[source.child(id, 1)];
            if (meant == Word::Int && meantTypes[source.child(id, 2)] == Word::Double) {
                meant = Word::Double;
            }
            break;
        case Kind::Call: {
            const FunctionId callee = functionNamed(source.wordOf(id));
            if (node.op != Word::Name) {
                meant = krel = Word::Void;
            } else if (callee != noFunction) {
                meant = krel = allFunctions[callee].type;
            }
            break;
        }
        case Kind::Assign:
        case Kind::Update:
        case Kind::Index:
        case Kind::Parentheses:
            meant = meantTypes[node.first];
            krel = krelTypes[node.first];
            break;
        case Kind::Cast:
            meant = krel = source[node.first].op;
            break;
        default:
            return;
    }
    meantTypes[id] = meant;
    krelTypes[id] = krel;
}

}  // namespace krel::Check
