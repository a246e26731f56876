#include "driver/sourceFile.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>

#include "tests/unit/support/temporaryDirectory.hpp"

namespace {

using CompilerDriver::readSource;
using CompilerDriver::readToEnd;

TEST(ReadSourceTest, GivesEveryByte) {
    const TemporaryDirectory directory;
    for (const std::size_t size : {0U, 1U, 4095U, 16384U, 16385U, 100000U}) {
        std::string expected(size, '\0');
        for (std::size_t index = 0; index < size; ++index) {
            expected[index] = static_cast<char>(index % 251);
        }
        std::string text = "old";
        EXPECT_TRUE(readSource(directory.write("file", expected), text));
        EXPECT_TRUE(text == expected) << size;
    }
}

TEST(ReadSourceTest, SaysWhyAFileCannotBeRead) {
    const TemporaryDirectory directory;
    std::string text;
    EXPECT_FALSE(readSource(directory.path / "missing", text));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(readSource(directory.path, text));
    EXPECT_EQ(errno, EISDIR);
}

/// A file of some good bytes, behind which reading fails.
struct Damaged {
    std::size_t good;

    static ssize_t read(void* cookie, char* buffer, std::size_t size) {
        auto& file = *static_cast<Damaged*>(cookie);
        const std::size_t given = std::min(size, file.good);
        if (given == 0) {
            errno = EIO;
            return -1;
        }
        std::fill_n(buffer, given, 'x');
        file.good -= given;
        return static_cast<ssize_t>(given);
    }
};

TEST(ReadToEndTest, FailsWhicheverReadFails) {
    for (const std::size_t good : {0U, 10U, 16384U, 16385U, 50000U}) {
        Damaged damaged{good};
        std::FILE* const file =
            fopencookie(&damaged, "r", {&Damaged::read, nullptr, nullptr, nullptr});
        ASSERT_NE(file, nullptr);
        std::string text;
        errno = 0;
        EXPECT_FALSE(readToEnd(file, text)) << good;
        EXPECT_EQ(errno, EIO) << good;
        std::fclose(file);
    }
}

}  // namespace
