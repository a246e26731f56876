#pragma once

#include <string>
#include <utility>

namespace krel {

/// One line of the intermediate representation, as its generator wrote it. Owns its text.
class IRInstruction {
public:
    /// A `separated` instruction has an empty line before it in the dump; it means nothing else.
    IRInstruction(std::string line, bool setApart) : text(std::move(line)), separated(setApart) {}

    const std::string& getText() const { return text; }
    bool isSeparated() const { return separated; }

    friend bool operator==(const IRInstruction&, const IRInstruction&) = default;

private:
    std::string text;
    bool separated;
};

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::IRInstruction;
