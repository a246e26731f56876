#include "shared/error/lineIndex.hpp"

#include <gtest/gtest.h>

namespace krel {

namespace {

TEST(LineIndexTest, CountsLinesAndColumnsFromOne) {
    const LineIndex index{"ab\n\ncd"};
    EXPECT_EQ(index.lineCount(), 3);
    EXPECT_EQ(index.positionOf(0), (LineAndColumn{1, 1}));
    EXPECT_EQ(index.positionOf(1), (LineAndColumn{1, 2}));
    EXPECT_EQ(index.positionOf(2), (LineAndColumn{1, 3}));  // the line feed
    EXPECT_EQ(index.positionOf(3), (LineAndColumn{2, 1}));
    EXPECT_EQ(index.positionOf(4), (LineAndColumn{3, 1}));
    EXPECT_EQ(index.positionOf(6), (LineAndColumn{3, 3}));  // the end
    EXPECT_EQ(index.positionOf(99), (LineAndColumn{3, 3}));
}

TEST(LineIndexTest, EmptyTextHasALine) {
    const LineIndex index{""};
    EXPECT_EQ(index.lineCount(), 1);
    EXPECT_EQ(index.positionOf(0), (LineAndColumn{1, 1}));
    EXPECT_EQ(index.offsetOf({1, 1}), 0U);
}

TEST(LineIndexTest, LastLineFeedBeginsALine) {
    const LineIndex index{"a\n"};
    EXPECT_EQ(index.lineCount(), 2);
    EXPECT_EQ(index.positionOf(2), (LineAndColumn{2, 1}));
}

TEST(LineIndexTest, FindsOffsets) {
    const LineIndex index{"ab\n\ncd"};
    for (std::uint32_t offset = 0; offset <= 6; ++offset) {
        EXPECT_EQ(index.offsetOf(index.positionOf(offset)), offset);
    }
    EXPECT_EQ(index.offsetOf({1, 9}), 2U);
    EXPECT_EQ(index.offsetOf({2, 9}), 3U);
    EXPECT_EQ(index.offsetOf({9, 1}), 4U);
    EXPECT_EQ(index.offsetOf({9, 9}), 6U);
    EXPECT_EQ(index.offsetOf({0, 0}), 0U);
}

}  // namespace

}  // namespace krel
