#include "shared/error/internalError.hpp"

#include <gtest/gtest.h>

#include <csignal>

#include "shared/error/error.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/internalErrors.hpp"

namespace krel {

namespace {

TEST(InternalErrorTest, IsThrownWithItsMessage) {
    EXPECT_EQ(internalErrorOf([] { internalError("break outside loop"); }), "break outside loop");
    EXPECT_FALSE(Error::hasErrors());
}

TEST(InternalErrorTest, AbortsAfterTheMessageAndTheDetails) {
    const ChildResult result = runInChild([]() -> int {
        abortBecauseOf(InternalError{"bad node", "kind: Node\n"});
    });
    EXPECT_TRUE(result.wasKilledBy(SIGABRT));
    EXPECT_EQ(result.err, "Internal error: bad node\n");
    EXPECT_EQ(result.out, "kind: Node\n");
}

TEST(InternalErrorTest, NeedsNoDetails) {
    EXPECT_EQ(InternalError{"bad node"}.details(), "");
}

}  // namespace

}  // namespace krel
