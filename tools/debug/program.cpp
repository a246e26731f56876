// Programs for the debugger. Comes in: a text. Goes out: all that is known of it.

#include "tools/debug/program.hpp"

#include <algorithm>
#include <utility>

#include "tools/machine/translator.hpp"

namespace krel::Debug {

namespace {

std::string refusalOf(const FrontEnd::Compilation& compilation) {
    std::string text;
    for (const FrontEnd::Fault& fault : compilation.faults()) {
        text += (text.empty() ? "" : "\n") + fault.line;
    }
    if (compilation.outcome() == FrontEnd::Outcome::NotTranslated) {
        text = "Compilation error: " + compilation.failure();
    } else if (compilation.outcome() == FrontEnd::Outcome::InternalError) {
        text = "Internal error: " + compilation.failure();
    }
    return text;
}

}  // namespace

std::optional<std::size_t> Program::functionNamed(std::string_view name) const {
    const auto found = std::ranges::find(code.functions, name, &Execution::Function::name);
    if (found == code.functions.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - code.functions.begin());
}

const Execution::Variable* Program::variable(std::size_t function, std::string_view name) const {
    for (const Execution::Variable& variable : code.functions[function].variables) {
        if (variable.name == name && isVisible(function, variable)) {
            return &variable;
        }
    }
    return nullptr;
}

bool Program::isVisible(std::size_t function, const Execution::Variable& variable) const {
    return !variable.isTemporary && variable.name != code.functions[function].name;
}

std::string_view Program::irText(std::size_t irLine) const {
    const FrontEnd::IRLine& line = compilation->irLines()[irLine];
    const IRFunction& function = compilation->ir().getFunctions()[line.function];
    return function.getBlocks()[line.block].getInstructions().text(line.instruction);
}

std::unique_ptr<const Program> load(std::string text, const std::string& path) {
    FrontEnd::Request request;
    request.tokens = true;
    request.sources = true;
    auto compilation = FrontEnd::compile(std::move(text), path, request);
    if (compilation->outcome() != FrontEnd::Outcome::Complete) {
        throw NotAProgram(refusalOf(*compilation));
    }
    Execution::Wanted wanted;
    wanted.stops = true;
    try {
        Execution::Code code = translate(*compilation, wanted);
        LineMap lines{*compilation};
        return std::make_unique<const Program>(
            Program{path, std::move(compilation), std::move(code), std::move(lines)});
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::runtime_error& fault) {
        throw NotAProgram("Compilation error: " + std::string{fault.what()});
    }
}

}  // namespace krel::Debug
