#include "shared/ast/textRuns.hpp"

#include <gtest/gtest.h>

#include <string>

namespace krel {

namespace {

bool isQuote(char character) {
    return character == '"';
}

TEST(TextRunsTest, RunsEndBeforeWhatIsSpecial) {
    EXPECT_EQ(plainRun("one\"two", 0, isQuote), "one");
    EXPECT_EQ(plainRun("one\"two", 1, isQuote), "ne");
    EXPECT_EQ(plainRun("one\"two", 3, isQuote), "");
    EXPECT_EQ(plainRun("one\"two", 4, isQuote), "two");
    EXPECT_EQ(plainRun("one\"two", 7, isQuote), "");
    EXPECT_EQ(plainRun("", 0, isQuote), "");
}

TEST(TextRunsTest, RunsPointIntoTheText) {
    const std::string text = "a\"bc";
    EXPECT_EQ(plainRun(text, 2, isQuote).data(), text.data() + 2);
}

// Long runs are tested in blocks: every place of a special character in and around two of them.
TEST(TextRunsTest, RunsOfAllLengthsEndWhereTheyMust) {
    for (std::size_t size = 0; size <= 50; ++size) {
        for (std::size_t from = 0; from <= size; ++from) {
            for (std::size_t place = 0; place <= size; ++place) {
                std::string text(size, 'x');
                text.replace(place, place < size ? 1 : 0, place < size ? "\"" : "");
                const std::size_t end = place < from ? size : place;
                EXPECT_EQ(plainRun(text, from, isQuote).size(), end - from);
            }
        }
    }
}

TEST(TextRunsTest, AnyByteCanBeSpecial) {
    for (int code = 0; code < 256; ++code) {
        const char special = static_cast<char>(code);
        const std::string text = std::string(20, static_cast<char>(code ^ 1)) + special + "z";
        const auto isSpecial = [special](char character) { return character == special; };
        EXPECT_EQ(plainRun(text, 0, isSpecial).size(), 20U);
    }
}

}  // namespace

}  // namespace krel
