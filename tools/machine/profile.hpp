#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "frontend/frontEnd.hpp"
#include "tools/machine/machine.hpp"

namespace krel::Execution {

/// How often the lines and functions of a program have run.
class Profile {
public:
    /// The machine has run code that was translated with Wanted::counts.
    Profile(const FrontEnd::Compilation& itsCompilation, const Machine& machine);

    /// A table of the functions, the most called first, and the source with the counts of its
    /// lines.
    std::string asText() const;
    /// A record as lcov writes it. `path` is the source's, as its readers will look for it.
    std::string asLcov(const std::string& path) const;

private:
    struct FunctionRow {
        std::string name;
        int line;
        std::uint64_t calls;
    };

    const FrontEnd::Compilation& compilation;
    std::vector<FunctionRow> functions;  // in the order of their definition
    std::map<int, std::uint64_t> lines;  // those that can run
};

}  // namespace krel::Execution
