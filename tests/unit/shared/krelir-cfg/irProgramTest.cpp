#include "shared/krelir-cfg/ir-program.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

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
    EXPECT_EQ(program.toString(), "main:\nB1:\n    call exit, 0\n\n    return\n\n");
}

TEST(IRProgramTest, PrintsOneEmptyLineBetweenBlocksAndFunctionsAndAtTheEnd) {
    IRProgram program;
    program.addFunction("f").addBlock(2).addInstruction("goto B1", false);
    IRFunction& g = program.addFunction("g");
    g.addBlock(7);
    g.addBlock(3).addInstruction("return", false);
    EXPECT_EQ(program.toString(), "f:\nB2:\n    goto B1\n\ng:\nB7:\n\nB3:\n    return\n\n");
}

TEST(IRProgramTest, FunctionWithoutBlocksPrintsItsName) {
    IRProgram program;
    program.addFunction("f");
    program.addFunction("g");
    EXPECT_EQ(program.toString(), "f:\n\ng:\n\n");
}

TEST(IRProgramTest, FirstInstructionMayBeSeparated) {
    IRProgram program;
    program.addFunction("f").addBlock(1).addInstruction("x", true);
    EXPECT_EQ(program.toString(), "f:\nB1:\n\n    x\n\n");
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
    EXPECT_EQ(program.toString(), "f:\nB1:\n      x  =\t1 \r\n\n");
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
