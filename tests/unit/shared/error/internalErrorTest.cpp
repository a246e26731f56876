#include "shared/error/internalError.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>

#include "shared/error/error.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/streamCapture.hpp"

namespace {

TEST(InternalErrorTest, WritesThePrefixedLineAndGoesOn) {
    const StreamCapture err{std::cerr};
    writeInternalError("Declarator node has no children.");
    EXPECT_EQ(err.str(), "Internal error: Declarator node has no children.\n");
}

TEST(InternalErrorTest, AbortsAfterTheMessage) {
    EXPECT_EXIT(internalError("break outside loop"), testing::KilledBySignal(SIGABRT),
                testing::Eq("Internal error: break outside loop\n"));
}

TEST(InternalErrorTest, IsNotCountedAmongTheProgramsErrors) {
    const ChildResult child = runInChild([] {
        writeInternalError("m");
        return Error::hasErrors() ? 1 : 0;
    });
    EXPECT_TRUE(child.hasExitedWith(0));
}

}  // namespace
