// Every instruction of the table, with every operand, against the system's assembler.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "native/assembler.hpp"
#include "native/notKnown.hpp"
#include "native/objectReader.hpp"
#include "tests/native/support/instances.hpp"
#include "tests/native/support/objectDifference.hpp"
#include "tests/native/support/systemAssembler.hpp"

namespace krel::Native {

namespace {

bool isKnown(const std::string& text) {
    try {
        assemble(text);
        return true;
    } catch (const NotKnown&) {
        return false;
    }
}

/// The first of some lines that comes out differently. Each is assembled by itself to know its
/// size.
std::string firstDifferent(const std::vector<std::string>& lines, const Bytes& theirs) {
    std::size_t at = 0;
    for (const std::string& line : lines) {
        const std::string program = programOf({line});
        const ObjectFile object = assemble(program);
        const Bytes& bytes = object.sections.front().bytes;
        if (at + bytes.size() > theirs.size() ||
            !std::equal(bytes.begin(), bytes.end(), theirs.begin() + static_cast<long>(at))) {
            return line;
        }
        at += bytes.size();
    }
    return "";
}

void expectSame(const std::vector<std::string>& lines) {
    const std::string program = programOf(lines);
    const std::string file = objectBySystem(program);
    const ObjectFile theirs = readObject(file);
    EXPECT_EQ(difference(assemble(program), theirs), "")
        << "from the line" << firstDifferent(lines, theirs.sections.front().bytes);
}

TEST(NativeInstructionsTest, AllRowsAreEncodedAsBySystem) {
    const std::vector<std::string> lines = allInstances();
    EXPECT_GT(lines.size(), 1000U);
    for (const std::string& line : lines) {
        ASSERT_TRUE(isKnown(programOf({line}))) << line;
    }
    expectSame(lines);
}

TEST(NativeInstructionsTest, EachRowHasInstancesOfItsOwn) {
    std::set<std::string> seen;
    for (const InstructionForm& form : instructionForms.all()) {
        const std::vector<std::string> lines = instancesOf(form);
        EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
            return !seen.contains(line);
        })) << form.word;
        seen.insert(lines.begin(), lines.end());
    }
}

// Whatever else an instruction is given is refused, or is what the system's assembler makes of it.
TEST(NativeInstructionsTest, NoOtherOperandsAreTaken) {
    const std::vector<std::string> instances = allInstances();
    const std::set<std::string> admitted{instances.begin(), instances.end()};
    const std::vector<std::string> operands = allOperands();
    std::vector<std::string> others;
    std::string_view word;
    for (const InstructionForm& form : instructionForms.all()) {
        if (form.word == word) {
            continue;
        }
        word = form.word;
        for (const std::string& first : operands) {
            for (const std::string& second : operands) {
                const std::string line = lineOf(word, first, second);
                if (!admitted.contains(line) && isKnown(programOf({line}))) {
                    others.push_back(line);
                }
            }
        }
    }
    expectSame(others);
}

}  // namespace

}  // namespace krel::Native
