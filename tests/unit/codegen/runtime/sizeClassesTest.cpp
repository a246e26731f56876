#include "codegen/runtime/sizeClasses.hpp"

#include <gtest/gtest.h>

using krel::sizeClassCount;
using krel::sizeClasses;
using krel::SizeClasses;

TEST(SizeClassesTest, EverySizeGetsACellThatHoldsIt) {
    for (std::size_t bytes = 1; bytes <= krel::largestCell; ++bytes) {
        const unsigned serving = sizeClasses.of(bytes);
        ASSERT_LT(serving, sizeClassCount);
        ASSERT_GE(sizeClasses[serving].cellSize, bytes);
    }
}

TEST(SizeClassesTest, SmallSizesGetTheSmallestCellThatHoldsThem) {
    for (std::size_t bytes = 1; bytes <= 1024; ++bytes) {
        const unsigned serving = sizeClasses.of(bytes);
        ASSERT_TRUE(serving == 0 || sizeClasses[serving - 1].cellSize < bytes) << bytes;
    }
}

TEST(SizeClassesTest, LargerSizesWasteLessThanHalfOfTheCell) {
    for (std::size_t bytes = 1025; bytes <= krel::largestCell; ++bytes) {
        ASSERT_LT(sizeClasses[sizeClasses.of(bytes)].cellSize, bytes * 17 / 10) << bytes;
    }
}

TEST(SizeClassesTest, ShortWayAgreesWithTheTables) {
    for (std::size_t bytes = krel::lengthFieldSize + 1; bytes <= SizeClasses::smallLimit; ++bytes) {
        ASSERT_EQ(SizeClasses::ofSmall(bytes), sizeClasses.of(bytes)) << bytes;
        ASSERT_EQ(sizeClasses[sizeClasses.of(bytes)].cellSize,
                  krel::smallestCell + SizeClasses::ofSmall(bytes) * 8);
    }
}

TEST(SizeClassesTest, CellsFillABlockButForItsLastChunk) {
    for (unsigned i = 0; i < sizeClassCount; ++i) {
        const krel::SizeClass& sizeClass = sizeClasses[i];
        const std::size_t used = std::size_t{sizeClass.cellCount} * sizeClass.cellSize;
        EXPECT_LE(used + krel::chunkSize, krel::blockSize);
        EXPECT_GT(used + sizeClass.cellSize + krel::chunkSize, krel::blockSize);
        EXPECT_EQ(sizeClass.cellSize % 8, 0U);
        EXPECT_GE(sizeClass.cellSize, krel::chunkSize);
    }
}

TEST(SizeClassesTest, ReciprocalsDivideEveryOffset) {
    for (unsigned i = 0; i < sizeClassCount; ++i) {
        const krel::SizeClass& sizeClass = sizeClasses[i];
        for (std::uint64_t offset = 0; offset < krel::blockSize; ++offset) {
            ASSERT_EQ(offset * sizeClass.reciprocal >> 32, offset / sizeClass.cellSize)
                << offset << " by " << sizeClass.cellSize;
        }
    }
}
