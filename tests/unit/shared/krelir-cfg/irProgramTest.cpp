#include "shared/krelir-cfg/ir-program.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace krel {

namespace {

/// A block and the texts of its instructions.
struct Block {
    int number;
    std::vector<std::string> texts;
};

IRFunction functionOf(std::initializer_list<Block> blocks) {
    IRFunction function{"f"};
    for (const Block& block : blocks) {
        IRBasicBlock& added = function.addBlock(block.number);
        for (const std::string& text : block.texts) {
            added.addInstruction(text, false);
        }
    }
    return function;
}

using Numbers = std::vector<int>;

/// The successors of one of a function's blocks.
Numbers successorsOf(const IRFunction& function, std::size_t block) {
    const IRSuccessors& successors = function.getBlocks()[block].getSuccessors();
    return {successors.begin(), successors.end()};
}

/// The successors of the first of some blocks.
Numbers successorsOfFirst(std::initializer_list<Block> blocks) {
    IRFunction function = functionOf(blocks);
    function.rebuildCFG();
    return successorsOf(function, 0);
}

/// What `action` throws as a std::runtime_error.
template <typename Action>
std::string errorOf(Action action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

}  // namespace

TEST(IRProgramTest, EmptyProgramPrintsNothing) {
    EXPECT_EQ(IRProgram{}.toString(), "");
}

TEST(IRProgramTest, PrintsBlocksApartAndSeparatedInstructionsAfterAnEmptyLine) {
    IRProgram program;
    IRBasicBlock& block = program.addFunction("main").addBlock(1);
    block.addInstruction("call exit, 0", false);
    block.addInstruction("return", true);
    EXPECT_EQ(program.toString(),
              "main:\n"
              "B1:\n"
              "    call exit, 0\n"
              "\n"
              "    return\n"
              "\n");
}

TEST(IRProgramTest, PrintsOneEmptyLineBetweenBlocksAndFunctionsAndAtTheEnd) {
    IRProgram program;
    program.addFunction("f").addBlock(2).addInstruction("goto B1", false);
    IRFunction& g = program.addFunction("g");
    g.addBlock(7);
    g.addBlock(3).addInstruction("return", false);
    EXPECT_EQ(program.toString(),
              "f:\n"
              "B2:\n"
              "    goto B1\n"
              "\n"
              "g:\n"
              "B7:\n"
              "\n"
              "B3:\n"
              "    return\n"
              "\n");
}

TEST(IRProgramTest, FunctionWithoutBlocksPrintsItsName) {
    IRProgram program;
    program.addFunction("f");
    program.addFunction("g");
    EXPECT_EQ(program.toString(),
              "f:\n"
              "\n"
              "g:\n"
              "\n");
}

TEST(IRProgramTest, FirstInstructionMayBeSeparated) {
    IRProgram program;
    program.addFunction("f").addBlock(1).addInstruction("x", true);
    EXPECT_EQ(program.toString(),
              "f:\n"
              "B1:\n"
              "\n"
              "    x\n"
              "\n");
}

TEST(IRProgramTest, PrintWritesTheTextOfToString) {
    IRProgram program;
    program.addFunction("f").addBlock(1).addInstruction("return", false);
    std::ostringstream out;
    program.print(out);
    EXPECT_EQ(out.str(), program.toString());
}

TEST(IRProgramTest, InstructionsAreKeptVerbatim) {
    IRProgram program;
    program.addFunction("f").addBlock(1).addInstruction("  x  =\t1 \r", false);
    EXPECT_EQ(program.getFunctions()[0].getBlocks()[0].getInstructions().back().getText(),
              "  x  =\t1 \r");
    EXPECT_EQ(program.toString(),
              "f:\n"
              "B1:\n"
              "      x  =\t1 \r\n"
              "\n");
}

TEST(IRProgramTest, FunctionsOfOneNameAreBothKept) {
    IRProgram program;
    program.addFunction("f");
    program.addFunction("f");
    EXPECT_EQ(program.getFunctions().size(), 2U);
}

TEST(IRProgramTest, ClearRemovesAllFunctions) {
    IRProgram program;
    program.addFunction("f");
    program.clear();
    EXPECT_TRUE(program.getFunctions().empty());
    EXPECT_EQ(program.toString(), "");
}

TEST(IRFunctionTest, BlockNumbersAreUniqueInAFunction) {
    IRFunction function{"f"};
    function.addBlock(3);
    function.addBlock(0);
    EXPECT_EQ(errorOf([&] { function.addBlock(3); }), "duplicate IR basic block B3");
    EXPECT_EQ(function.getBlocks().size(), 2U);
}

TEST(IRFunctionTest, BlockNumbersMayRepeatInAnotherFunction) {
    IRProgram program;
    program.addFunction("f").addBlock(3);
    EXPECT_EQ(program.addFunction("g").addBlock(3).getNumber(), 3);
}

TEST(IRFunctionTest, BlocksFallThroughInLayoutOrder) {
    IRFunction function = functionOf({{0, {"x = 1"}}, {2, {"x = 2"}}, {1, {"x = 3"}}});
    function.rebuildCFG();
    EXPECT_EQ(successorsOf(function, 0), Numbers{2});
    EXPECT_EQ(successorsOf(function, 1), Numbers{1});
    EXPECT_EQ(successorsOf(function, 2), Numbers{});
}

TEST(IRFunctionTest, EmptyBlockFallsThrough) {
    EXPECT_EQ(successorsOfFirst({{1, {}}, {2, {}}}), Numbers{2});
    EXPECT_EQ(successorsOfFirst({{1, {}}}), Numbers{});
}

TEST(IRFunctionTest, ConditionalBranchGoesToItsTargetFirst) {
    EXPECT_EQ(successorsOfFirst({{1, {"if t3 goto B4"}}, {2, {}}, {4, {}}}), (Numbers{4, 2}));
}

TEST(IRFunctionTest, ConditionalBranchToTheNextBlockCountsOnce) {
    EXPECT_EQ(successorsOfFirst({{1, {"if t3 goto B4"}}, {4, {}}}), Numbers{4});
}

TEST(IRFunctionTest, ConditionalBranchInTheLastBlockHasItsTargetOnly) {
    EXPECT_EQ(successorsOfFirst({{1, {"if t3 goto B1"}}}), Numbers{1});
}

TEST(IRFunctionTest, JumpHasItsTargetOnly) {
    EXPECT_EQ(successorsOfFirst({{1, {"goto B5"}}, {2, {}}}), Numbers{5});
}

TEST(IRFunctionTest, ReturnsAndExitLeaveTheFunction) {
    for (const char* text : {"return", "return x", "call exit, 0", "call exit,9"}) {
        EXPECT_EQ(successorsOfFirst({{1, {text}}, {2, {}}}), Numbers{}) << text;
    }
}

TEST(IRFunctionTest, OnlyThePrefixOfALastLineIsCompared) {
    EXPECT_EQ(successorsOfFirst({{1, {"returned = _t1"}}, {2, {}}}), Numbers{});
    for (const char* text : {" return", "call exited, 0", "call exit", "gotoB5", "goto x",
                             "iffy goto B5", "x = \"goto B5\"", "if x"}) {
        EXPECT_EQ(successorsOfFirst({{1, {text}}, {2, {}}}), Numbers{2}) << text;
    }
}

TEST(IRFunctionTest, OnlyTheLastInstructionIsLookedAt) {
    EXPECT_EQ(successorsOfFirst({{1, {"call exit, 0", "x = 1"}}, {2, {}}}), Numbers{2});
    EXPECT_EQ(successorsOfFirst({{1, {"goto B9", "return", "if x goto B8", "x = 1"}}, {2, {}}}),
              Numbers{2});
}

TEST(IRFunctionTest, TargetIsTheNumberAfterTheLastMark) {
    EXPECT_EQ(successorsOfFirst({{1, {"if \"goto B9\" goto B4"}}}), Numbers{4});
    EXPECT_EQ(successorsOfFirst({{1, {"goto B9 goto B4"}}}), Numbers{4});
    EXPECT_EQ(successorsOfFirst({{1, {"goto B12x goto"}}}), Numbers{12});
    EXPECT_EQ(successorsOfFirst({{1, {"if x goto B007"}}}), Numbers{7});
}

TEST(IRFunctionTest, TargetNeedsADigit) {
    IRFunction function = functionOf({{1, {"goto Bx"}}});
    EXPECT_THROW(function.rebuildCFG(), std::invalid_argument);
}

TEST(IRFunctionTest, TargetNeedNotExist) {
    EXPECT_EQ(successorsOfFirst({{1, {"goto B99"}}}), Numbers{99});
}

TEST(IRFunctionTest, RebuildingStartsAnew) {
    IRFunction function = functionOf({{1, {"x = 1"}}, {2, {}}});
    function.rebuildCFG();
    function.rebuildCFG();
    EXPECT_EQ(successorsOf(function, 0), Numbers{2});
    function.addBlock(3);
    function.rebuildCFG();
    EXPECT_EQ(successorsOf(function, 1), Numbers{3});
}

TEST(IRInstructionTest, OwnsItsText) {
    std::string text = "a text that is too long to lie in the string itself";
    const IRInstruction instruction{text, true};
    text.assign(text.size(), '-');
    EXPECT_EQ(instruction.getText(), "a text that is too long to lie in the string itself");
    EXPECT_TRUE(instruction.isSeparated());
}

constexpr const char* longLine = "first = a line that is too long to lie in the string itself";

TEST(IRInstructionListTest, InstructionCopiedFromABlockOutlivesItsGrowth) {
    IRBasicBlock block{1};
    block.addInstruction(longLine, true);
    const auto first = *block.getInstructions().begin();
    const auto indexed = block.getInstructions()[0];
    const auto last = block.getInstructions().back();
    for (int count = 0; count < 1000; ++count) {
        block.addInstruction("another", false);
    }
    for (const IRInstruction& copy : {first, indexed, last, block.getInstructions().front()}) {
        EXPECT_EQ(copy.getText(), longLine);
        EXPECT_TRUE(copy.isSeparated());
    }
}

// Whether or not the block has to grow for it.
TEST(IRInstructionListTest, LineOfABlockCanBeAddedToIt) {
    IRBasicBlock block{1};
    block.addInstruction(longLine, false);
    const IRInstructionList& list = block.getInstructions();
    for (std::size_t count = 1; count < 200; ++count) {
        block.addInstruction(list.text(count - 1), true);
        block.addInstructionOf(false, list.text(0), list.text(count));
        EXPECT_EQ(list.text(list.size() - 1),
                  std::string{longLine} + std::string{list.text(count)});
        EXPECT_EQ(list.text(list.size() - 2), list.text(count - 1));
    }
}

TEST(IRInstructionListTest, IsASequence) {
    IRBasicBlock block{1};
    const IRInstructionList& list = block.getInstructions();
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.begin(), list.end());
    EXPECT_THROW(static_cast<void>(list.at(0)), std::out_of_range);
    block.addInstruction("one", false);
    block.addInstruction("", true);
    block.addInstruction("three", false);
    EXPECT_EQ(list.size(), 3U);
    EXPECT_EQ(list.front().getText(), "one");
    EXPECT_EQ(list[1], (IRInstruction{"", true}));
    EXPECT_EQ(list.at(2).getText(), "three");
    EXPECT_THROW(static_cast<void>(list.at(3)), std::out_of_range);
    EXPECT_EQ(list.back().getText(), "three");
    EXPECT_TRUE((list == std::vector<IRInstruction>{{"one", false}, {"", true}, {"three", false}}));
    EXPECT_FALSE(
        (list == std::vector<IRInstruction>{{"one", false}, {"", false}, {"three", false}}));
    std::string texts;
    for (const IRInstruction& instruction : list) {
        texts += instruction.getText() + (instruction.isSeparated() ? "!" : ".");
    }
    EXPECT_EQ(texts, "one.!three.");
}

TEST(IRInstructionListTest, MovesWithItsBlock) {
    std::vector<IRBasicBlock> blocks;
    for (int number = 0; number < 20; ++number) {
        blocks.emplace_back(number).addInstruction(longLine, number % 2 != 0);
    }
    for (const IRBasicBlock& block : blocks) {
        EXPECT_EQ(block.getInstructions().text(0), longLine);
        EXPECT_EQ(block.getInstructions().isSeparated(0), block.getNumber() % 2 != 0);
    }
}

TEST(IRSuccessorsTest, AreASequence) {
    IRFunction function = functionOf({{5, {"if x goto B7"}}, {6, {"return"}}, {7, {}}});
    function.rebuildCFG();
    const IRSuccessors& successors = function.getBlocks()[0].getSuccessors();
    EXPECT_EQ(successors.size(), 2U);
    EXPECT_FALSE(successors.empty());
    EXPECT_EQ(successors[0], 7);
    EXPECT_EQ(successors.at(1), 6);
    EXPECT_THROW(static_cast<void>(successors.at(2)), std::out_of_range);
    EXPECT_EQ(successors.front(), 7);
    EXPECT_EQ(successors.back(), 6);
    EXPECT_TRUE((successors == std::vector<int>{7, 6}));
    EXPECT_FALSE((successors == std::vector<int>{6, 7}));
    EXPECT_FALSE(successors == function.getBlocks()[1].getSuccessors());
    EXPECT_TRUE(function.getBlocks()[1].getSuccessors().empty());
}

}  // namespace krel
