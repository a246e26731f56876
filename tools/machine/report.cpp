// Faults for people, in the manner of krel check. Comes in: a machine that has stopped at one. Goes
// out: text.

#include "tools/machine/report.hpp"

#include "shared/symboltable/symbol.hpp"
#include "tools/check/render.hpp"

namespace krel::Execution {

namespace {

constexpr std::size_t shownCalls = 8;  // of each end of a long list

/// What a line of the intermediate code comes from; for none the declaration of the function.
SourceRange sourceOf(const FrontEnd::Compilation& compilation, const std::string& function,
                     std::uint32_t line) {
    if (line < compilation.irLines().size()) {
        return compilation.irLines()[line].source;
    }
    const Symbol* const symbol = compilation.symbol(function, function);
    return symbol == nullptr ? SourceRange{} : symbol->getPlace().range;
}

std::string callsOf(const FrontEnd::Compilation& compilation, const std::string& path,
                    const Machine& machine) {
    const auto nameOf = [&](std::size_t number) -> const std::string& {
        return machine.program().functions[machine.call(number).function].name;
    };
    if (machine.depth() == 0) {
        return {};
    }
    std::string text = "   in `" + nameOf(0) + "`\n";
    const std::size_t count = machine.depth();
    for (std::size_t number = 1; number < count; ++number) {
        if (number == shownCalls && count > 2 * shownCalls) {
            const std::size_t left = count - 2 * shownCalls;
            text += "   ... " + std::to_string(left) + " more calls ...\n";
            number += left;
        }
        const CallFrame call = machine.call(number);
        const LineAndColumn place =
            compilation.lines().positionOf(sourceOf(compilation, nameOf(number), call.line).begin);
        text += "   called in `" + nameOf(number) + "` at " + path + ":" +
                std::to_string(place.line) + ":" + std::to_string(place.column) + "\n";
    }
    return text;
}

std::string report(const FrontEnd::Compilation& compilation, const std::string& path,
                   const Machine& machine, std::string_view rule, const Fault& fault,
                   bool colours) {
    const std::string& function = machine.program().functions[machine.call(0).function].name;
    Check::CheckedFile file{path, compilation.text(), {}};
    file.report.findings.push_back({rule, Check::Severity::Error,
                                    sourceOf(compilation, function, fault.line), fault.message,
                                    fault.help});
    return Check::textOf(file, colours) + callsOf(compilation, path, machine);
}

}  // namespace

std::string reportOf(const FrontEnd::Compilation& compilation, const std::string& path,
                     const Machine& machine, bool colours) {
    const Fault& fault = machine.fault();
    return report(compilation, path, machine, nameOf(fault.rule), fault, colours);
}

std::string reportOfLimit(const FrontEnd::Compilation& compilation, const std::string& path,
                          const Machine& machine, bool colours) {
    const Fault fault{{},
                      machine.line(),
                      std::to_string(machine.stepsDone()) +
                          " steps are done, and the program is "
                          "still running",
                      "give it a larger --limit, or let its loops end"};
    return report(compilation, path, machine, "step-limit", fault, colours);
}

}  // namespace krel::Execution
