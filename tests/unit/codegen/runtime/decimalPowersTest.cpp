#include "codegen/runtime/decimalPowers.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

// The table is computed with a fixed number of bits; here the same powers are computed exactly.

namespace {

/// An integer of any size.
class BigInteger {
public:
    explicit BigInteger(std::uint32_t value) : words{value} {}

    void multiply(std::uint32_t factor) {
        std::uint64_t carry = 0;
        for (std::uint32_t& word : words) {
            carry += std::uint64_t{word} * factor;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0) {
            words.push_back(static_cast<std::uint32_t>(carry));
        }
    }

    /// Drops the remainder.
    void divide(std::uint32_t divisor) {
        std::uint64_t remainder = 0;
        for (auto word = words.rbegin(); word != words.rend(); ++word) {
            remainder = remainder << 32 | *word;
            *word = static_cast<std::uint32_t>(remainder / divisor);
            remainder %= divisor;
        }
        while (words.back() == 0) {
            words.pop_back();
        }
    }

    int bitLength() const {
        return static_cast<int>(32 * words.size()) - __builtin_clz(words.back());
    }

    bool bit(int number) const {
        return number >= 0 &&
               (words[static_cast<std::size_t>(number) / 32] >> number % 32 & 1) != 0;
    }

    /// The highest 128 bits, as if zeros followed the last bit; `exact` tells whether they are all.
    krel::Wide top(bool& exact) const {
        krel::Wide bits = 0;
        for (int i = 1; i <= 128; ++i) {
            bits = bits << 1 | (bit(bitLength() - i) ? 1 : 0);
        }
        exact = true;
        for (int i = 0; i < bitLength() - 128; ++i) {
            exact = exact && !bit(i);
        }
        return bits;
    }

private:
    std::vector<std::uint32_t> words;
};

void expectPower(int exponent, krel::Wide expected) {
    const krel::ScaledPower& power = krel::decimalPowers[exponent];
    EXPECT_EQ(power.high, static_cast<std::uint64_t>(expected >> 64)) << exponent;
    EXPECT_EQ(power.low, static_cast<std::uint64_t>(expected)) << exponent;
}

}  // namespace

TEST(DecimalPowersTest, PowersFromOneOnAreTheExactOnesRoundedUp) {
    BigInteger power(1);
    for (int exponent = 0; exponent <= krel::DecimalPowers::greatest; ++exponent) {
        bool exact = false;
        const krel::Wide top = power.top(exact);
        EXPECT_EQ(exact, exponent <= 55);  // 5^55 is the last one with up to 128 bits
        expectPower(exponent, exact ? top : top + 1);
        power.multiply(10);
    }
}

TEST(DecimalPowersTest, FractionsAreTheExactOnesRoundedUp) {
    for (int exponent = -1; exponent >= krel::DecimalPowers::least; --exponent) {
        // A power of two over 10^-exponent, so large that the quotient has more than 128 bits.
        BigInteger quotient(1);
        for (int i = 0; i < 1200; ++i) {
            quotient.multiply(2);
        }
        for (int i = 0; i < -exponent; ++i) {
            quotient.divide(10);
        }
        ASSERT_GT(quotient.bitLength(), 128);
        bool exact = false;
        expectPower(exponent, quotient.top(exact) + 1);  // a tenth is never exact in binary
    }
}

TEST(DecimalPowersTest, FloorOfTheBinaryLogarithm) {
    BigInteger power(1);
    for (int exponent = 0; exponent <= 400; ++exponent) {
        EXPECT_EQ(krel::floorLog2OfPowerOfTen(exponent), power.bitLength() - 1);
        if (exponent > 0) {
            EXPECT_EQ(krel::floorLog2OfPowerOfTen(-exponent), -power.bitLength());
        }
        power.multiply(10);
    }
}
