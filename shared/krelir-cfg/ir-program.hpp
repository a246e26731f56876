#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "shared/krelir-cfg/ir-function.hpp"

namespace krel {

/// A program in the intermediate representation: functions in the order of their definition. It
/// owns them by value, they their blocks, and those their instructions.
class IRProgram {
public:
    /// Removes all functions.
    void clear() { functions.clear(); }
    /// Appends an empty function and returns it; the reference is valid until the next function is
    /// added. Names may repeat.
    IRFunction& addFunction(const std::string& name);
    const std::vector<IRFunction>& getFunctions() const { return functions; }

    /// Writes the dump: a line "name:" a function, "B<n>:" a block, four spaces before an
    /// instruction. Failures stay in the stream's state.
    void print(std::ostream& out) const;
    /// The same text as a string.
    std::string toString() const;

private:
    std::vector<IRFunction> functions;
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::IRProgram;
