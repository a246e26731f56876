// Blocks and their successors, and the dump. Comes in: the lines that the lowering emits. Goes out:
// the program as text. Adding blocks and finding successors changes the function; the dump changes
// nothing.

#include "shared/krelir-cfg/ir-program.hpp"

#include <algorithm>
#include <charconv>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "shared/krelir-cfg/textParts.hpp"
#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

namespace {

constexpr JoinedText jumpStart{Keyword::Goto, " ", Keyword::Block};
constexpr JoinedText branchStart{Keyword::If, " "};
constexpr JoinedText exitStart{Keyword::Call, " ", Callee::Exit, ","};

/// The number after the last mark of a branch in a line.
int branchTarget(std::string_view text) {
    constexpr std::string_view mark = jumpStart;
    const std::size_t place = text.rfind(mark);
    if (place == std::string::npos) {
        throw std::runtime_error("branch instruction has no target: " + std::string{text});
    }
    const std::string_view digits = text.substr(place + mark.size());
    int number = 0;
    if (std::from_chars(digits.begin(), digits.end(), number).ec == std::errc{}) {
        return number;
    }
    return std::stoi(std::string{digits});  // throws, unless blanks or a plus sign stand before
}

/// Only the beginning is looked at (kept): a line that assigns to a variable whose name begins with
/// "return" counts as one that leaves the function.
bool leavesFunction(std::string_view text) {
    return text.starts_with(Keyword::Return) || text.starts_with(exitStart);
}

void printFunction(std::ostream& out, const IRFunction& function) {
    out << function.getName() << ":\n";
    bool isFirst = true;
    for (const IRBasicBlock& block : function.getBlocks()) {
        out << (isFirst ? "" : "\n") << Keyword::Block << block.getNumber() << ":\n";
        isFirst = false;
        const IRInstructionList& instructions = block.getInstructions();
        for (std::size_t index = 0; index < instructions.size(); ++index) {
            out << (instructions.isSeparated(index) ? "\n    " : "    ") << instructions.text(index)
                << '\n';
        }
    }
    out << '\n';
}

}  // namespace

/// Blocks are laid out nearly in the order of their numbers. So a new number goes near the end of
/// the list, which costs little.
IRBasicBlock& IRFunction::addBlock(int number) {
    if (blocks.empty()) {
        constexpr std::size_t usualBlocks = 8;
        blocks.reserve(usualBlocks);
        numbers.reserve(usualBlocks);
    }
    const auto place = std::lower_bound(numbers.begin(), numbers.end(), number);
    if (place != numbers.end() && *place == number) {
        throw std::runtime_error("duplicate IR basic block B" + std::to_string(number));
    }
    numbers.insert(place, number);
    return blocks.emplace_back(number);
}

void IRFunction::rebuildCFG() {
    for (std::size_t index = 0; index < blocks.size(); ++index) {
        IRBasicBlock& block = blocks[index];
        block.successors.clear();
        const IRInstructionList& lines = block.instructions;
        const std::string_view last =
            lines.empty() ? std::string_view{} : lines.text(lines.size() - 1);
        if (leavesFunction(last)) {
            continue;
        }
        const bool jumps = last.starts_with(jumpStart);
        const bool branches = last.starts_with(branchStart) && last.find(jumpStart) != last.npos;
        if (jumps || branches) {
            block.successors.add(branchTarget(last));
        }
        if (!jumps && index + 1 < blocks.size()) {
            block.successors.add(blocks[index + 1].getNumber());
        }
    }
}

IRFunction& IRProgram::addFunction(const std::string& name) {
    return functions.emplace_back(name);
}

/// Between two functions and after the last stands one empty line.
void IRProgram::print(std::ostream& out) const {
    for (const IRFunction& function : functions) {
        printFunction(out, function);
    }
}

std::string IRProgram::toString() const {
    std::ostringstream out;
    print(out);
    return std::move(out).str();
}

}  // namespace krel
