#include "parser/facade.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>

#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"
#include "tests/unit/support/childProcess.hpp"

namespace krel {

namespace {

/// A source of some good bytes, behind which reading fails.
struct Damaged {
    std::size_t good;

    static ssize_t read(void* cookie, char* buffer, std::size_t size) {
        auto& file = *static_cast<Damaged*>(cookie);
        const std::size_t given = std::min(size, file.good);
        if (given == 0) {
            errno = EIO;
            return -1;
        }
        std::fill_n(buffer, given, '@');
        file.good -= given;
        return static_cast<ssize_t>(given);
    }
};

TEST(FacadeTest, SourceThatCannotBeReadEndsInOneWayWhicheverReadFails) {
    for (const std::size_t good : {0U, 10U, 16384U, 16385U, 50000U}) {
        const ChildResult result = runInChild([&] {
            Damaged damaged{good};
            yyin = fopencookie(&damaged, "r", {&Damaged::read, nullptr, nullptr, nullptr});
            const bool isUnreadable = yyparse() == unreadableSource && errno == EIO;
            return isUnreadable && ast == nullptr && !Error::hasErrors() ? 0 : 1;
        });
        EXPECT_TRUE(result.hasExitedWith(0)) << good;
        EXPECT_EQ(result.err, "") << good;
    }
}

TEST(FacadeTest, StandardInputIsReadWithoutAnotherFile) {
    const ChildResult result = runInChild([] {
        std::string text = "void f() { }";
        stdin = fmemopen(text.data(), text.size(), "r");
        return yyparse() == 0 && ast != nullptr && ast->getKind() == "Program" ? 0 : 1;
    });
    EXPECT_TRUE(result.hasExitedWith(0)) << result.err;
}

}  // namespace

}  // namespace krel
