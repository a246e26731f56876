// Doubles from their text, against the standard library's conversion.

#include "native/decimal.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <random>
#include <string>

namespace krel::Native {

namespace {

std::uint64_t expectedBits(const std::string& literal) {
    return std::bit_cast<std::uint64_t>(std::strtod(literal.c_str(), nullptr));
}

std::string randomDigits(std::mt19937& random, std::size_t count) {
    std::string digits;
    for (std::size_t number = 0; number < count; ++number) {
        digits += static_cast<char>('0' + random() % 10);
    }
    return digits;
}

/// Checks the answer for a literal, and tells whether there is one.
bool hasRightAnswer(const std::string& literal) {
    const std::optional<std::uint64_t> bits = nearestDouble(literal);
    if (bits) {
        EXPECT_EQ(*bits, expectedBits(literal)) << literal;
    }
    return bits.has_value();
}

TEST(NativeDecimalTest, OrdinaryLiteralsHaveAnAnswer) {
    std::mt19937 random{1};
    for (int round = 0; round < 200000; ++round) {
        const std::size_t places = 1 + random() % 20;
        const std::size_t digits = 1 + random() % 15;
        std::string literal = randomDigits(random, digits);
        literal = literal.size() > places
                      ? literal.insert(literal.size() - places, ".")
                      : "0." + std::string(places - literal.size(), '0') + literal;
        EXPECT_TRUE(hasRightAnswer(literal)) << literal;
    }
}

TEST(NativeDecimalTest, NearlyAllLongerLiteralsHaveAnAnswer) {
    std::mt19937 random{2};
    constexpr int rounds = 200000;
    int answered = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::size_t digits = 16 + random() % 10;
        std::string literal = randomDigits(random, digits);
        literal.insert(random() % (digits + 1), ".");
        answered += hasRightAnswer(literal) ? 1 : 0;
    }
    EXPECT_GE(answered, rounds / 1000 * 995);
}

TEST(NativeDecimalTest, AnyNumberOfDigitsIsRightOrUnanswered) {
    std::mt19937 random{3};
    for (int round = 0; round < 100000; ++round) {
        const std::size_t digits = 1 + random() % 400;
        std::string literal = randomDigits(random, digits);
        literal.insert(random() % (digits + 1), ".");
        hasRightAnswer(literal);
    }
}

TEST(NativeDecimalTest, SignsAndZeros) {
    for (const char* const literal :
         {"0.0", "-0.0", "+0.0", ".0", "0.", "000.000", "-.5", "+5.", "00012.500", "0.1", "-0.1",
          "1.0", "3.0", "9007199254740992.0", "123456789012345678.0", "0.30000000000000004"}) {
        EXPECT_TRUE(hasRightAnswer(literal)) << literal;
    }
}

// 2^53 + 1 lies in the middle between two doubles.
TEST(NativeDecimalTest, MiddlesAreNotAnswered) {
    for (const char* const literal :
         {"9007199254740993.0", "-9007199254740995.0", "4503599627370496.5",
          "9007199254740993.00000000000000000001", "9007199254740992.99999999999999999999"}) {
        EXPECT_FALSE(nearestDouble(literal)) << literal;
    }
}

TEST(NativeDecimalTest, ClearlyBesideTheMiddleIsAnswered) {
    for (const char* const literal : {"9007199254740993.1", "9007199254740992.9",
                                      "4503599627370496.51", "4503599627370496.49"}) {
        EXPECT_TRUE(hasRightAnswer(literal)) << literal;
    }
}

TEST(NativeDecimalTest, OtherTextsAreNotAnswered) {
    for (const char* const text :
         {"",      ".",     "+",    "-",    "+.",   "-.",   "1",     "-1",
          "1.0e5", "1e5",   "1.0f", " 1.0", "1.0 ", "1..0", "1.2.3", "--1.0",
          "+-1.0", "0x1.8", "nan",  "inf",  "1,5",  "a.b",  "1.5a",  "1.-5"}) {
        EXPECT_FALSE(nearestDouble(text)) << text;
    }
}

TEST(NativeDecimalTest, VeryLargeAndVerySmallNumbersAreNotWrong) {
    for (const std::size_t zeros : {10U, 20U, 27U, 28U, 40U, 300U, 308U, 309U, 400U, 5000U}) {
        hasRightAnswer("1" + std::string(zeros, '0') + ".0");
        hasRightAnswer("0." + std::string(zeros, '0') + "1");
        hasRightAnswer("123456789123456789" + std::string(zeros, '0') + ".5");
    }
}

}  // namespace

}  // namespace krel::Native
