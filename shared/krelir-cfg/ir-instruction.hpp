#pragma once

#include <string_view>

/// One line of the intermediate representation, as its generator wrote it. The text is the
/// block's, and good as long as nothing is added to the block.
class IRInstruction {
public:
    /// A `separated` instruction has an empty line before it in the dump; it means nothing else.
    IRInstruction(std::string_view line, bool setApart) : text(line), separated(setApart) {}

    std::string_view getText() const { return text; }
    bool isSeparated() const { return separated; }

private:
    std::string_view text;
    bool separated;
};
