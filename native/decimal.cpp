// Doubles from their decimal text. Comes in: a literal. Goes out: its bits, rounded to the nearest,
// when every assembler that rounds with at least 78 bits of precision gives the same.

#include "native/decimal.hpp"

#include <array>
#include <bit>

namespace krel::Native {

namespace {

__extension__ using Wide = unsigned __int128;

/// The digits of a literal as a number, and the power of ten that it has to be multiplied by. When
/// there are more digits than the number can hold, the rest is dropped: the literal is then less
/// than one unit greater.
struct Decimal {
    std::uint64_t digits = 0;
    int exponent = 0;
    bool isCut = false;
};

constexpr std::uint64_t mostBeforeNextDigit = (~std::uint64_t{0} - 9) / 10;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Nothing when the text is not digits with one point.
std::optional<Decimal> readDecimal(std::string_view text) {
    Decimal decimal;
    bool isAfterPoint = false;
    bool hasDigit = false;
    for (const char character : text) {
        if (character == '.' && !isAfterPoint) {
            isAfterPoint = true;
            continue;
        }
        if (!isDigit(character)) {
            return std::nullopt;
        }
        hasDigit = true;
        if (decimal.digits <= mostBeforeNextDigit) {
            decimal.digits = decimal.digits * 10 + static_cast<unsigned>(character - '0');
            decimal.exponent -= isAfterPoint ? 1 : 0;
        } else {
            decimal.isCut = decimal.isCut || character != '0';
            decimal.exponent += isAfterPoint ? 0 : 1;
        }
    }
    if (!isAfterPoint || !hasDigit) {
        return std::nullopt;
    }
    return decimal;
}

/// A number w * 2^exponent, with the highest bit of w set.
struct Binary {
    Wide significand;
    int exponent;
};

constexpr int greatestPower = 27;  // of five that fits into 64 bits, with one to spare

constexpr std::array<std::uint64_t, greatestPower + 1> powersOfFive = [] {
    std::array<std::uint64_t, greatestPower + 1> powers{1};
    for (std::size_t power = 1; power < powers.size(); ++power) {
        powers[power] = powers[power - 1] * 5;
    }
    return powers;
}();

Binary normalised(Binary number) {
    constexpr Wide highestBit = Wide{1} << 127;
    while ((number.significand & highestBit) == 0) {
        number.significand <<= 1;
        --number.exponent;
    }
    return number;
}

/// digits * 5^power * 2^power, exactly.
Binary multiplied(std::uint64_t digits, int power) {
    const Wide product = Wide{digits} * powersOfFive[static_cast<std::size_t>(power)];
    return normalised({product, power});
}

/// digits / 5^power / 2^power, with an error of less than two units of the significand.
Binary divided(std::uint64_t digits, int power) {
    const std::uint64_t divisor = powersOfFive[static_cast<std::size_t>(power)];
    const int digitShift = std::countl_zero(digits);
    const int divisorShift = std::countl_zero(divisor);
    const std::uint64_t divisorBits = divisor << divisorShift;
    const Wide dividend = Wide{digits << digitShift} << 63;
    const Wide upper = dividend / divisorBits;
    const Wide lower = (dividend % divisorBits << 64) / divisorBits;
    return normalised({upper << 64 | lower, divisorShift - digitShift - power - 127});
}

/// The bits of the double that is nearest to a number between 2^-1000 and 2^1000. `uncertainty` is
/// how much greater, in units of the significand, the number may be.
std::optional<std::uint64_t> rounded(const Binary& number, Wide uncertainty) {
    constexpr int droppedBits = 128 - 53;
    constexpr Wide half = Wide{1} << (droppedBits - 1);
    constexpr Wide margin = Wide{1} << 50;  // what assemblers may err by
    const Wide rest = number.significand & (2 * half - 1);
    if (rest + uncertainty + margin >= half && rest <= half + margin) {
        return std::nullopt;
    }
    const auto mantissa = static_cast<std::uint64_t>(number.significand >> droppedBits);
    const int exponent = number.exponent + 127 + 1023;
    // The mantissa's highest bit is not stored. Rounding up may carry into the exponent, and must.
    return (static_cast<std::uint64_t>(exponent) << 52) + (mantissa - (std::uint64_t{1} << 52)) +
           (rest > half ? 1 : 0);
}

std::optional<std::uint64_t> bitsOf(const Decimal& decimal) {
    if (decimal.digits == 0) {
        return 0;
    }
    if (decimal.exponent < -greatestPower || decimal.exponent > greatestPower) {
        return std::nullopt;
    }
    const Binary number = decimal.exponent < 0 ? divided(decimal.digits, -decimal.exponent)
                                               : multiplied(decimal.digits, decimal.exponent);
    return rounded(number, decimal.isCut ? number.significand / decimal.digits + 1 : 0);
}

}  // namespace

std::optional<std::uint64_t> nearestDouble(std::string_view text) {
    const bool hasSign = text.starts_with('-') || text.starts_with('+');
    const std::uint64_t sign = text.starts_with('-') ? std::uint64_t{1} << 63 : 0;
    const std::optional<Decimal> decimal = readDecimal(text.substr(hasSign ? 1 : 0));
    std::optional<std::uint64_t> bits = decimal ? bitsOf(*decimal) : std::nullopt;
    return bits ? std::optional{*bits | sign} : std::nullopt;
}

}  // namespace krel::Native
