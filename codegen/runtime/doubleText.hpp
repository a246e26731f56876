// Doubles as the shortest decimal text that reads back as the same double.
#pragma once

#include <cstddef>
#include <cstdint>

namespace krel {

/// A decimal number: digits * 10^exponent.
struct Decimal {
    std::uint64_t digits;
    int exponent;
};

/// The decimal with the fewest digits that rounds to the double with these bits, which has to be
/// finite, positive and not zero; among those the nearest one. It may end in zeros.
Decimal shortestDecimal(std::uint64_t bits);

/// The longest text: a sign, 17 digits, a point and an exponent of five characters
/// ("-2.2250738585072014e-308").
inline constexpr std::size_t longestDoubleText = 24;

/// Writes the text of a double without a NUL and returns the byte after it: fixed notation for
/// magnitudes from 1e-4 up to but not including 1e16, otherwise an exponent with its sign and at
/// least two digits; no ".0"; "inf", "-inf" and "nan". Any of the first longestDoubleText bytes may
/// be written with anything.
char* writeDouble(char* to, double value);

}  // namespace krel
