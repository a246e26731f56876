#include "codegen/runtime/doubleText.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "tests/unit/codegen/runtime/referenceDoubleText.hpp"

namespace {

std::string textOf(double value) {
    char room[krel::longestDoubleText + 1];
    room[krel::longestDoubleText] = '#';
    const char* const end = krel::writeDouble(room, value);
    EXPECT_LE(end, room + krel::longestDoubleText);
    EXPECT_EQ(room[krel::longestDoubleText], '#');
    return {room, static_cast<std::size_t>(end - room)};
}

void expectReference(double value) {
    ASSERT_EQ(textOf(value), referenceDoubleText(value))
        << "bits " << std::bit_cast<std::uint64_t>(value);
}

void expectReferenceAround(double value) {
    expectReference(value);
    expectReference(-value);
    expectReference(std::nextafter(value, 0.0));
    expectReference(std::nextafter(value, HUGE_VAL));
}

struct Sample {
    double value;
    const char* text;
};

}  // namespace

TEST(DoubleTextTest, FormatsAsTheLanguageSays) {
    const Sample samples[] = {
        {2.5, "2.5"},
        {3, "3"},
        {0.0, "0"},
        {-0.0, "-0"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1.0 / 3, "0.3333333333333333"},
        {-1234.5678, "-1234.5678"},
        {100, "100"},
        {0.5, "0.5"},
        {0.001, "0.001"},
        {0.00012345, "0.00012345"},
        {1e-4, "0.0001"},
        {9.999999999999999e-05, "9.999999999999999e-05"},
        {1e-5, "1e-05"},
        {1.5e-7, "1.5e-07"},
        {1e15, "1000000000000000"},
        {1234567890123456, "1234567890123456"},
        {123456789012345.6, "123456789012345.6"},
        {9007199254740993.0, "9007199254740992"},
        {9999999999999998.0, "9999999999999998"},
        {1e16, "1e+16"},
        {1.2e16, "1.2e+16"},
        {1.5e300, "1.5e+300"},
        {1e100, "1e+100"},
        {1e99, "1e+99"},
        {1e-100, "1e-100"},
        {5e-324, "5e-324"},
        {2.2250738585072014e-308, "2.2250738585072014e-308"},
        {-2.2250738585072014e-308, "-2.2250738585072014e-308"},
        {2.225073858507201e-308, "2.225073858507201e-308"},
        {1.7976931348623157e308, "1.7976931348623157e+308"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
        {-std::numeric_limits<double>::quiet_NaN(), "nan"},
        {std::bit_cast<double>(0x7FF0000000000001), "nan"},
        // Doubles whose interval ends exactly at a shorter decimal, or whose digits are a tie.
        {9007199254740994.0, "9007199254740994"},
        {2e23, "2e+23"},
        {9e23, "9e+23"},
        {1e23, "1e+23"},
        {4.35, "4.35"},
        {2.98023223876953125e-8, "2.9802322387695312e-08"},
        {9.5367431640625e-7, "9.5367431640625e-07"},
    };
    for (const Sample& sample : samples) {
        EXPECT_EQ(textOf(sample.value), sample.text);
    }
}

TEST(DoubleTextTest, EveryPowerOfTwo) {
    for (int exponent = -1074; exponent <= 1023; ++exponent) {
        expectReferenceAround(std::ldexp(1.0, exponent));
    }
}

TEST(DoubleTextTest, EveryPowerOfTenAndSomeMultiples) {
    for (int exponent = -323; exponent <= 308; ++exponent) {
        for (int digit = 1; digit < 10; ++digit) {
            const std::string text = std::to_string(digit) + "e" + std::to_string(exponent);
            expectReferenceAround(std::strtod(text.c_str(), nullptr));
        }
    }
}

TEST(DoubleTextTest, EveryNumberOfDigitsAtEveryPlaceOfThePoint) {
    const std::string digits = "12345678912345678";
    for (std::size_t count = 1; count <= digits.size(); ++count) {
        for (int exponent = -30; exponent <= 30; ++exponent) {
            const std::string text = digits.substr(0, count) + "e" + std::to_string(exponent);
            expectReferenceAround(std::strtod(text.c_str(), nullptr));
        }
    }
}

TEST(DoubleTextTest, Subnormals) {
    for (std::uint64_t bits = 1; bits < 3000; ++bits) {
        expectReference(std::bit_cast<double>(bits));
    }
    std::mt19937_64 random(4);
    for (int i = 0; i < 50'000; ++i) {
        const std::uint64_t bits = random() >> (12 + i % 52);
        expectReference(std::bit_cast<double>(bits));
    }
}

TEST(DoubleTextTest, WholeNumbersAndHalvesAroundTheLimitOfExactOnes) {
    for (int offset = -2000; offset <= 2000; ++offset) {
        expectReference(9007199254740992.0 + offset);
        expectReference(4503599627370496.0 + offset / 2.0);
        expectReference(1e16 + 2.0 * offset);
        expectReference(offset);
        expectReference(offset / 4.0);
    }
}

TEST(DoubleTextTest, RandomBits) {
    std::mt19937_64 random(2024);
    for (int i = 0; i < 600'000; ++i) {
        expectReference(std::bit_cast<double>(random()));
    }
}

TEST(DoubleTextTest, RandomDecimalsOfFewDigits) {
    std::mt19937_64 random(7);
    const double divisors[] = {1, 10, 100, 1000, 1e4, 1e5, 1e8, 1e12};
    for (int i = 0; i < 400'000; ++i) {
        const auto number = static_cast<double>(static_cast<std::int64_t>(random()) >> (i % 60));
        expectReference(number / divisors[i % 8]);
    }
}
