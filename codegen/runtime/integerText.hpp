// Unsigned and signed integers as decimal text.
#pragma once

#include <cstddef>
#include <cstdint>

namespace krel {

/// The longest decimal text of a 64-bit integer: a sign and nineteen digits, or twenty digits.
inline constexpr std::size_t longestIntegerText = 20;

/// Eight decimal digits, one in each byte, the first one in the lowest byte: what is stored to
/// memory is in the order of reading.
using EightDigits = std::uint64_t;

inline constexpr std::uint64_t tenTo8 = 100'000'000;
inline constexpr std::uint64_t tenTo16 = tenTo8 * tenTo8;
inline constexpr EightDigits asciiZeros = 0x3030303030303030;

/// The digits of a value below 10^8 as numbers 0 to 9, one in each byte, with leading zeros. In
/// three steps every part is cut into halves, all parts at once:
///
///     12345678  ->  1234 5678  ->  12 34 56 78  ->  1 2 3 4 5 6 7 8
///
/// The quotient of the division by 10000, 100 or 10 is found by a multiplication. The quotient is
/// put into the lower half of the part's bits, the remainder into the upper half. With q = n / 100
/// the result is q + (n - 100 * q) * 2^16, computed as n * 2^16 - q * (100 * 2^16 - 1).
constexpr EightDigits splitDigits(std::uint64_t value) {
    const std::uint64_t tenThousands = value * 3518437209 >> 45;
    const std::uint64_t fours = (value << 32) - tenThousands * ((std::uint64_t{10'000} << 32) - 1);
    const std::uint64_t hundreds = fours * 5243 >> 19 & 0x0000'007F'0000'007F;
    const std::uint64_t twos = (fours << 16) - hundreds * ((100 << 16) - 1);
    const std::uint64_t tens = twos * 103 >> 10 & 0x000F'000F'000F'000F;
    return (twos << 8) - tens * ((10 << 8) - 1);
}

inline void storeDigits(char* to, EightDigits ascii) {
    struct [[gnu::packed, gnu::may_alias]] Unaligned {
        EightDigits value;
    };
    reinterpret_cast<Unaligned*>(to)->value = ascii;
}

/// The digits of an integer: up to eight leading ones, and full groups of eight.
class DecimalInteger {
public:
    constexpr explicit DecimalInteger(std::uint64_t value) {
        std::uint64_t upper = value;
        if (value >= tenTo8) [[unlikely]] {
            upper = value >= tenTo16 ? value / tenTo16 : value / tenTo8;
            groupCount = value >= tenTo16 ? 2 : 1;
            others = value;
        }
        leading = splitDigits(upper);
        constexpr EightDigits onlyLastDigit = EightDigits{1} << 56;
        leadingZeros = static_cast<unsigned>(__builtin_ctzll(leading | onlyLastDigit)) / 8;
    }

    /// The number of digits; 1 for zero.
    constexpr unsigned length() const { return 8 - leadingZeros + 8 * groupCount; }

    /// Writes the digits, and up to 7 bytes beyond them with anything. Returns the byte after them.
    char* write(char* to) const {
        storeDigits(to, (leading | asciiZeros) >> 8 * leadingZeros);
        to += 8 - leadingZeros;
        if (groupCount == 2) [[unlikely]] {
            to = writeGroup(to, others / tenTo8 % tenTo8);
        }
        if (groupCount != 0) [[unlikely]] {
            to = writeGroup(to, others % tenTo8);
        }
        return to;
    }

private:
    static char* writeGroup(char* to, std::uint64_t group) {
        storeDigits(to, splitDigits(group) | asciiZeros);
        return to + 8;
    }

    EightDigits leading = 0;
    std::uint64_t others = 0;  // the value, where it has further digits
    unsigned leadingZeros = 0;
    unsigned groupCount = 0;
};

/// The absolute value. It is unsigned, so that of the least integer fits, too.
constexpr std::uint64_t magnitudeOf(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? 0 - bits : bits;
}

}  // namespace krel
