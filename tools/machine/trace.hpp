#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/frontEnd.hpp"
#include "tools/machine/machine.hpp"

namespace krel::Execution {

/// Runs a program and tells each line of the source that runs, with the values that it has changed:
///
///     p.krl:3: int sum = a + b;    sum = 7
///
/// Lines of called functions are indented. A line that goes on after a call is told once more, if
/// it then changes anything.
class Trace {
public:
    using Write = std::function<void(const std::string&)>;

    /// The code must have been translated with Wanted::stops. `write` gets one line at a time.
    Trace(const FrontEnd::Compilation& itsCompilation, std::string_view itsPath,
          Machine& itsMachine, Write itsWrite);

    /// Goes on until the program cannot, or so many steps are done.
    Stop run(std::uint64_t untilStep);

private:
    /// A run of one line of the source in one call.
    struct Event {
        int line = 0;
        std::size_t depth = 0;
        std::set<std::uint32_t> irLines = {};  // those of it that have run
        bool isTold = false;
        std::vector<std::string> changes = {};
    };

    /// A slot that an instruction will change.
    struct Target {
        CallFrame call;
        const Variable* variable;
        std::int32_t slot;
    };

    void begin(std::uint32_t irLine);
    bool isStatement(std::uint32_t irLine) const;
    void tell(Event& event);
    std::vector<Target> targetsOf(std::uint32_t irLine) const;
    void addChanges(Event& event, const std::vector<Target>& targets) const;

    const FrontEnd::Compilation& compilation;
    const std::string path;
    Machine& machine;
    const Write write;
    std::vector<Event> events;  // the innermost call's last; one for each call
};

}  // namespace krel::Execution
