// The sizes of branches, and streams of everything, against the system's assembler.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "native/assembler.hpp"
#include "native/instructionSet.hpp"
#include "tests/native/support/comparison.hpp"
#include "tests/native/support/instances.hpp"

namespace krel::Native {

namespace {

/// Instructions of one byte.
std::string filler(std::size_t size) {
    std::string text;
    for (std::size_t number = 0; number < size; ++number) {
        text += "\tleave\n";
    }
    return text;
}

std::string label(std::size_t number) {
    return ".Lf_B" + std::to_string(number);
}

std::string branch(std::string_view word, std::size_t target) {
    return "\t" + std::string{word} + " " + label(target) + "\n";
}

class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}

    /// A number from `least` to `most`.
    std::size_t between(std::size_t least, std::size_t most) {
        return std::uniform_int_distribution<std::size_t>{least, most}(engine);
    }

    template <typename Value>
    const Value& oneOf(const std::vector<Value>& values) {
        return values[between(0, values.size() - 1)];
    }

    std::string_view branchWord() {
        return branchForms.all()[between(0, branchForms.all().size() - 1)].word;
    }

private:
    std::mt19937 engine;
};

TEST(NativeBranchesTest, EveryDistanceWhereTheSizeChanges) {
    std::string text = "\t.text\n";
    std::size_t next = 0;
    for (const BranchForm& form : branchForms.all()) {
        for (std::size_t distance = 0; distance < 140; distance += distance == 0 ? 110 : 1) {
            const std::size_t forwards = next++;
            const std::size_t backwards = next++;
            text += branch(form.word, forwards) + filler(distance) + label(forwards) + ":\n";
            text += label(backwards) + ":\n" + filler(distance) + branch(form.word, backwards);
        }
    }
    expectSameObject(text);
}

std::size_t codeSize(const std::string& text) {
    return assemble(text).sections.front().size;
}

// Each branch just reaches its target, which is behind the next branch. If the last one does not
// reach, it grows, and pushes the target of the one before it out of reach.
TEST(NativeBranchesTest, ChainForwardsInWhichOneMakesAllOthersGrow) {
    constexpr std::size_t count = 2000;
    const auto chain = [&](std::size_t excess) {
        std::string text = "\t.text\n";
        for (std::size_t number = 0; number < count; ++number) {
            text += branch("jmp", number) + filler(62);
            text += number == 0 ? "" : label(number - 1) + ":\n";
            text += filler(1);
        }
        return text + filler(64 + excess) + label(count - 1) + ":\n";
    };
    EXPECT_EQ(codeSize(chain(0)), count * (2 + 63) + 64);
    EXPECT_EQ(codeSize(chain(1)), count * (5 + 63) + 65);
    expectSameObject(chain(0));
    expectSameObject(chain(1));
}

TEST(NativeBranchesTest, ChainBackwardsInWhichOneMakesAllOthersGrow) {
    constexpr std::size_t count = 2000;
    const auto chain = [&](std::size_t excess) {
        std::string text = "\t.text\n" + label(0) + ":\n" + filler(34 + excess);
        for (std::size_t number = 0; number < count; ++number) {
            text += filler(60) + label(number + 1) + ":\n" + filler(32) + branch("jne", number);
        }
        return text;
    };
    EXPECT_EQ(codeSize(chain(0)), count * (2 + 92) + 34);
    EXPECT_EQ(codeSize(chain(1)), count * (6 + 92) + 35);
    expectSameObject(chain(0));
    expectSameObject(chain(1));
}

/// Branches between labels that are so near to each other that half of them are short.
std::string manyBranches(Random& random, std::size_t count, std::size_t reach) {
    std::string text = "\t.text\n";
    for (std::size_t number = 0; number < count; ++number) {
        text += label(number) + ":\n" + filler(random.between(0, 9));
        const std::size_t least = number < reach ? 0 : number - reach;
        text +=
            branch(random.branchWord(), random.between(least, std::min(number + reach, count - 1)));
        text += filler(random.between(0, 9));
    }
    return text;
}

TEST(NativeBranchesTest, ThousandsInRandomDistances) {
    for (unsigned seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        Random random{seed};
        expectSameObject(manyBranches(random, 4000, 6 + seed));
    }
}

/// A program of functions with random instructions, labels, branches and data.
std::string randomProgram(Random& random, std::size_t functions, std::size_t lines) {
    static const std::vector<std::string> instances = allInstances();
    std::string text = "\t.text\n";
    for (std::size_t number = 0; number < functions; ++number) {
        const std::string name = "f" + std::to_string(number);
        const std::size_t labels = lines / 8 + 1;
        text += "\n\t.globl " + name + "\n\t.type " + name + ", @function\n" + name + ":\n";
        for (std::size_t at = 0; at < labels; ++at) {
            const std::string own = ".L" + name + "_B";
            text += own + std::to_string(at) + ":\n";
            for (std::size_t line = random.between(0, 14); line > 0; --line) {
                text += random.oneOf(instances);
            }
            const std::size_t near = std::min(labels - 1, at + 3);
            const std::size_t target = random.between(at < 3 ? 0 : at - 3, near);
            text +=
                "\t" + std::string{random.branchWord()} + " " + own + std::to_string(target) + "\n";
        }
        text += "\tleave\n\tret\n\t.size " + name + ", .-" + name + "\n";
    }
    return text + "\n\t.section .rodata\n.LC0:\n\t.string \"a \\\"b\\\" \\\\n\"\n.LC1:\n" +
           "\t.string \"\"\n.LCD0:\n\t.double 0.1\n.LCD1:\n\t.double 12345.678\n" +
           "\t.section .note.GNU-stack,\"\",@progbits\n";
}

TEST(NativeBranchesTest, RandomPrograms) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        Random random{seed};
        expectSameObject(randomProgram(random, random.between(1, 20), random.between(1, 400)));
    }
}

}  // namespace

}  // namespace krel::Native
