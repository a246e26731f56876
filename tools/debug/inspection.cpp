// The requests that look at the program while it stands, and change it. Comes in: requests. Goes
// out: bodies of answers.

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include "tools/debug/session.hpp"
#include "tools/debug/values.hpp"

namespace krel::Debug {

namespace {

/// The address of the first row, so that there are addresses before it.
constexpr std::int64_t firstAddress = 0x100000;
constexpr std::size_t mostAtOnce = 100'000;

std::string hexadecimal(std::int64_t number) {
    std::array<char, 20> text{'0', 'x'};
    const auto end = std::to_chars(text.begin() + 2, text.end(), number, 16).ptr;
    return {text.begin(), end};
}

std::int64_t numberIn(const std::string& address) {
    std::int64_t number = 0;
    const char* const begin = address.data() + (address.starts_with("0x") ? 2 : 0);
    const auto [end, fault] = std::from_chars(begin, address.data() + address.size(), number, 16);
    if (fault != std::errc{} || end != address.data() + address.size()) {
        throw RequestError("'" + address + "' is no address");
    }
    return number;
}

}  // namespace

// Places.

int Session::columnOf(std::uint32_t offset) const {
    const LineIndex& lines = program->compilation->lines();
    const int line = lines.positionOf(offset).line;
    int units = 0;
    for (std::uint32_t at = lines.offsetOf({line, 1}); at < offset; ++at) {
        const auto byte = static_cast<unsigned char>(program->compilation->text()[at]);
        units += (byte & 0xC0U) == 0x80U ? 0 : byte >= 0xF0U ? 2 : 1;
    }
    return units + firstColumn;
}

void Session::addPlace(Json& target, SourceRange range, bool withEnd) const {
    const LineIndex& lines = program->compilation->lines();
    target["line"] = lines.positionOf(range.begin).line + firstLine - 1;
    target["column"] = columnOf(range.begin);
    if (withEnd) {
        target["endLine"] = lines.positionOf(range.end).line + firstLine - 1;
        target["endColumn"] = columnOf(range.end);
    }
}

Json Session::sourceJson() const {
    const std::size_t slash = path.rfind('/');
    return {{"name", path.substr(slash == path.npos ? 0 : slash + 1)}, {"path", path}};
}

std::string Session::addressOf(std::size_t row) const {
    return hexadecimal(firstAddress + static_cast<std::int64_t>(row));
}

/// The number of the row whose address is there; one that does not exist when it is outside.
std::size_t Session::rowAt(const Json& arguments, const char* key) const {
    const std::int64_t row = numberIn(arguments.at(key).get<std::string>()) +
                             arguments.value("offset", std::int64_t{0}) - firstAddress;
    return static_cast<std::size_t>(row);
}

// Calls.

Json Session::threads(const Json& /*arguments*/) {
    return {{"threads", {{{"id", 1}, {"name", "main"}}}}};
}

Json Session::stackTrace(const Json& arguments) {
    const std::size_t count = debugger->callCount();
    const std::size_t begin = std::min(arguments.value("startFrame", std::size_t{0}), count);
    std::size_t levels = arguments.value("levels", std::size_t{0});
    levels = std::min({levels == 0 ? mostAtOnce : levels, count - begin, mostAtOnce});
    Json frames = Json::array();
    for (std::size_t call = begin; call < begin + levels; ++call) {
        Json frame = {
            {"id", call + 1},
            {"name", debugger->functionOf(call).name},
            {"source", sourceJson()},
            {"instructionPointerReference", addressOf(listing->rowOf(debugger->call(call).line))}};
        addPlace(frame, debugger->partOf(call), true);
        frames.push_back(std::move(frame));
    }
    return {{"stackFrames", std::move(frames)}, {"totalFrames", count}};
}

/// The call that a request is about; the innermost one if it does not say.
std::size_t Session::callOf(const Json& arguments) const {
    const std::size_t frame = arguments.value("frameId", std::size_t{1});
    if (frame == 0 || frame > debugger->callCount()) {
        throw RequestError("there is no such call");
    }
    return frame - 1;
}

// Variables.

int Session::refer(Container container) {
    containers.push_back(container);
    return static_cast<int>(containers.size());
}

Json Session::scopes(const Json& arguments) {
    const std::size_t call = callOf(arguments);
    Json found = Json::array();
    found.push_back({{"name", "Variables"},
                     {"presentationHint", "locals"},
                     {"variablesReference", refer({Container::Kind::Variables, call})},
                     {"expensive", false}});
    if (!debugger->changesOf(call).empty()) {
        found.push_back({{"name", "Changed"},
                         {"variablesReference", refer({Container::Kind::Changes, call})},
                         {"expensive", false}});
    }
    found.push_back({{"name", "Temporaries"},
                     {"presentationHint", "registers"},
                     {"variablesReference", refer({Container::Kind::Temporaries, call})},
                     {"expensive", true}});
    return {{"scopes", std::move(found)}};
}

Json Session::describe(const std::string& name, const Value& value, std::size_t call,
                       const std::string& expression) {
    Json answer = {{"name", name},
                   {"value", value.text},
                   {"type", value.type},
                   {"evaluateName", expression},
                   {"variablesReference", 0}};
    if (value.array != nullptr) {
        answer["variablesReference"] = refer({Container::Kind::Array, call, value.array});
        answer["indexedVariables"] = value.array->length;
    }
    return answer;
}

Json Session::variableOf(std::size_t call, const Execution::Variable& variable) {
    Value value = debugger->valueOf(call, variable);
    if (!variable.isDeclared && !variable.isTemporary) {
        value.type = "undeclared";
    }
    return describe(variable.name, value, call, variable.name);
}

Json Session::elementOf(std::size_t call, const Execution::Variable& array, std::int32_t index) {
    const std::string name = "[" + std::to_string(index) + "]";
    return describe(name, debugger->elementOf(call, array, index), call, array.name + name);
}

Json Session::changesIn(std::size_t call) {
    Json found = Json::array();
    for (const Changes::Change& change : debugger->changesOf(call)) {
        const Execution::Variable& variable = *change.variable;
        Json one =
            variable.isArray ? elementOf(call, variable, change.index) : variableOf(call, variable);
        one["name"] = one["evaluateName"];
        found.push_back(std::move(one));
    }
    return found;
}

Json Session::elementsOf(const Container& container, const Json& arguments) {
    const auto length = static_cast<std::size_t>(container.array->length);
    const std::size_t begin = std::min(arguments.value("start", std::size_t{0}), length);
    std::size_t count = arguments.value("count", std::size_t{0});
    count = std::min({count == 0 ? mostAtOnce : count, length - begin, mostAtOnce});
    Json found = Json::array();
    for (std::size_t index = begin; index < begin + count; ++index) {
        found.push_back(
            elementOf(container.call, *container.array, static_cast<std::int32_t>(index)));
    }
    return found;
}

Json Session::variables(const Json& arguments) {
    const auto reference = arguments.at("variablesReference").get<std::size_t>();
    if (reference == 0 || reference > containers.size()) {
        throw RequestError("there are no such variables any more");
    }
    const Container container = containers[reference - 1];
    if (container.kind == Container::Kind::Array) {
        const bool isNamed = arguments.value("filter", std::string{}) == "named";
        return {{"variables", isNamed ? Json::array() : elementsOf(container, arguments)}};
    }
    if (container.kind == Container::Kind::Changes) {
        return {{"variables", changesIn(container.call)}};
    }
    Json found = Json::array();
    if (container.kind == Container::Kind::Temporaries) {
        for (const auto& variable : debugger->functionOf(container.call).variables) {
            if (variable.isTemporary) {
                found.push_back(variableOf(container.call, variable));
            }
        }
    } else {
        for (const Execution::Variable* variable : debugger->variablesOf(container.call)) {
            found.push_back(variableOf(container.call, *variable));
        }
        mark(found, debugger->changesOf(container.call));
    }
    return {{"variables", std::move(found)}};
}

/// Says which variables have changed since the last stop.
void Session::mark(Json& variables, const std::vector<Changes::Change>& changes) {
    for (Json& variable : variables) {
        const bool hasChanged = std::ranges::any_of(changes, [&](const Changes::Change& change) {
            return change.variable->name == variable["name"].get_ref<const std::string&>();
        });
        if (hasChanged) {
            variable["presentationHint"] = {{"attributes", {"changed"}}};
        }
    }
}

Json Session::setVariable(const Json& arguments) {
    const auto reference = arguments.at("variablesReference").get<std::size_t>();
    if (reference == 0 || reference > containers.size()) {
        throw RequestError("there are no such variables any more");
    }
    const Container& container = containers[reference - 1];
    const auto name = arguments.at("name").get<std::string>();
    return assign(container.call,
                  container.kind == Container::Kind::Array ? container.array->name + name : name,
                  arguments.at("value").get<std::string>());
}

Json Session::setExpression(const Json& arguments) {
    return assign(callOf(arguments), arguments.at("expression").get<std::string>(),
                  arguments.at("value").get<std::string>());
}

Json Session::assign(std::size_t call, const std::string& target, const std::string& value) {
    if (Expression::isChange(target) || Expression::isChange(value)) {
        throw RequestError("a value cannot hold an assignment");
    }
    debugger->change(call, target + " = " + value);
    const Value now = debugger->evaluate(call, target);
    Json answer = describe(target, now, call, target);
    answer.erase("name");
    answer.erase("evaluateName");
    return answer;
}

// Expressions.

Json Session::evaluate(const Json& arguments) {
    const auto expression = arguments.at("expression").get<std::string>();
    const std::string context = arguments.value("context", std::string{});
    const std::size_t call = callOf(arguments);
    if (context == "hover" && Expression::callsFunctions(expression)) {
        throw RequestError("functions are not called for a look");
    }
    if (Expression::isChange(expression)) {
        if (context != "repl") {
            throw RequestError("this is a change and no expression");
        }
        debugger->change(call, expression);
        return {{"result", ""}, {"variablesReference", 0}};
    }
    Json answer = describe(expression, debugger->evaluate(call, expression), call, expression);
    answer["result"] = answer["value"];
    for (const char* superfluous : {"name", "value", "evaluateName"}) {
        answer.erase(superfluous);
    }
    return answer;
}

Json Session::completions(const Json& arguments) {
    std::string text = arguments.at("text").get<std::string>();
    const int column = arguments.at("column").get<int>() - firstColumn;
    text.resize(std::min(text.size(), static_cast<std::size_t>(std::max(column, 0))));
    const std::size_t before = text.find_last_of(" \t()[]+-*/<>=!&|,");
    const std::string begun = text.substr(before == text.npos ? 0 : before + 1);
    Json found = Json::array();
    for (const Execution::Variable* variable : debugger->variablesOf(callOf(arguments))) {
        if (variable->name.starts_with(begun)) {
            found.push_back({{"label", variable->name},
                             {"type", "variable"},
                             {"start", text.size() - begun.size()},
                             {"length", begun.size()}});
        }
    }
    return {{"targets", std::move(found)}};
}

Json Session::exceptionInfo(const Json& /*arguments*/) {
    if (last.reason != Standing::Reason::Fault) {
        throw RequestError("the program has no fault here");
    }
    return {{"exceptionId", last.rule},
            {"description", last.text + (last.help.empty() ? "" : "\nhelp: " + last.help)},
            {"breakMode", "always"}};
}

// Code.

/// A row for each line of the intermediate code, and one for each line of its assembly. Exactly as
/// many as are asked for have to be given.
Json Session::disassemble(const Json& arguments) {
    const auto begin = static_cast<std::int64_t>(rowAt(arguments, "memoryReference")) +
                       arguments.value("instructionOffset", std::int64_t{0});
    const auto count = arguments.at("instructionCount").get<std::size_t>();
    Json found = Json::array();
    for (std::int64_t row = begin; found.size() < std::min(count, mostAtOnce); ++row) {
        Json one = {{"address", hexadecimal(firstAddress + row)}};
        if (row < 0 || row >= std::ssize(listing->rows())) {
            one["instruction"] = "";
            one["presentationHint"] = "invalid";
        } else {
            const Listing::Row& code = listing->rows()[static_cast<std::size_t>(row)];
            one["instruction"] = (code.isAssembly ? "    " : "") + std::string{code.text};
            one["location"] = sourceJson();
            addPlace(one, program->lines.partOf(code.irLine), false);
            const auto& function = program->compilation->irLines()[code.irLine].function;
            if (code.irLine == program->code.functions[function].firstLine && !code.isAssembly) {
                one["symbol"] = program->code.functions[function].name;
            }
        }
        found.push_back(std::move(one));
    }
    return {{"instructions", std::move(found)}};
}

Json Session::sourceText(const Json& /*arguments*/) {
    return {{"content", program->compilation->text()}};
}

Json Session::loadedSources(const Json& /*arguments*/) {
    return {{"sources", {sourceJson()}}};
}

}  // namespace krel::Debug
