#include "codegen/runtime/integerText.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace {

std::string textOf(std::uint64_t value) {
    char room[krel::longestIntegerText + 8];
    const krel::DecimalInteger integer(value);
    const char* end = integer.write(room);
    EXPECT_EQ(static_cast<std::size_t>(end - room), integer.length());
    return {room, integer.length()};
}

}  // namespace

TEST(IntegerTextTest, WritesSmallValues) {
    for (std::uint64_t value = 0; value < 20'000; ++value) {
        ASSERT_EQ(textOf(value), std::to_string(value));
    }
}

TEST(IntegerTextTest, WritesTheNeighboursOfPowersOfTenAndTwo) {
    for (std::uint64_t power = 1; power <= 1'000'000'000'000'000'000; power *= 10) {
        for (const std::uint64_t value : {power - 1, power, power + 1, power * 9, power * 10}) {
            ASSERT_EQ(textOf(value), std::to_string(value));
        }
    }
    for (unsigned bit = 0; bit < 64; ++bit) {
        const std::uint64_t power = std::uint64_t{1} << bit;
        for (const std::uint64_t value : {power - 1, power, power + 1}) {
            ASSERT_EQ(textOf(value), std::to_string(value));
        }
    }
}

TEST(IntegerTextTest, WritesRandomValuesOfEveryLength) {
    std::mt19937_64 random(20);
    for (int i = 0; i < 300'000; ++i) {
        const std::uint64_t value = random() >> (i % 64);
        ASSERT_EQ(textOf(value), std::to_string(value));
    }
}

// The products that stand in for divisions, for every value that they are used for.
TEST(IntegerTextTest, SplitsEveryGroupOfFourDigits) {
    for (std::uint64_t value = 0; value < 10'000; ++value) {
        for (const std::uint64_t group : {value, value * 10'000, value * 10'001}) {
            std::uint64_t rest = group;
            krel::EightDigits expected = 0;
            for (int digit = 7; digit >= 0; --digit) {
                expected |= rest % 10 << 8 * digit;
                rest /= 10;
            }
            ASSERT_EQ(krel::splitDigits(group), expected) << group;
        }
    }
}

TEST(IntegerTextTest, MagnitudeOfTheExtremes) {
    EXPECT_EQ(krel::magnitudeOf(0), 0U);
    EXPECT_EQ(krel::magnitudeOf(-1), 1U);
    EXPECT_EQ(krel::magnitudeOf(std::numeric_limits<std::int64_t>::max()), 9223372036854775807U);
    EXPECT_EQ(krel::magnitudeOf(std::numeric_limits<std::int64_t>::min()), 9223372036854775808U);
}
