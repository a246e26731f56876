// Integers as decimal text.
#pragma once

#include <cstddef>
#include <cstdint>

namespace krel {

// The longest decimal text of a 64-bit integer: a sign and nineteen digits.
inline constexpr std::size_t longestIntegerText = 20;

struct DigitPairs {
    char text[200];
};

constexpr DigitPairs makeDigitPairs() {
    DigitPairs pairs = {};
    for (int i = 0; i < 100; ++i) {
        pairs.text[2 * i] = static_cast<char>('0' + i / 10);
        pairs.text[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}

// "00", "01", ... "99", one after the other.
inline constexpr DigitPairs digitPairs = makeDigitPairs();

struct PowersOfTen {
    std::uint64_t value[20];
};

constexpr PowersOfTen makePowersOfTen() {
    PowersOfTen powers = {};
    std::uint64_t power = 1;
    for (std::uint64_t& value : powers.value) {
        value = power;
        power *= 10;
    }
    return powers;
}

// 10^0 to 10^19, all that fit in 64 bits.
inline constexpr PowersOfTen powersOfTen = makePowersOfTen();

// The number of decimal digits of the value; 1 for zero.
constexpr unsigned countDigits(std::uint64_t value) {
    // 1233/4096 is just above the logarithm of 2 to the base 10.
    const auto bits = static_cast<unsigned>(64 - __builtin_clzll(value | 1));
    const unsigned guess = bits * 1233 >> 12;
    return guess + ((value | 1) >= powersOfTen.value[guess] ? 1U : 0U);
}

// Writes exactly `count` digits, the last ones of the value, with leading zeros.
constexpr void writeDigits(char* to, std::uint64_t value, unsigned count) {
    while (count >= 2) {
        count -= 2;
        const char* pair = digitPairs.text + 2 * (value % 100);
        to[count] = pair[0];
        to[count + 1] = pair[1];
        value /= 100;
    }
    if (count == 1) {
        to[0] = static_cast<char>('0' + value % 10);
    }
}

// The absolute value; that of the least integer fits an unsigned one.
constexpr std::uint64_t magnitudeOf(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? 0 - bits : bits;
}

}  // namespace krel
