// Doubles to text. Comes in: a double. Goes out: its shortest decimal, as digits or as text.
// Nothing is changed but the room for the text.
//
// The digits are found by Schubfach (Raffaello Giulietti, "The Schubfach way to render doubles").
// The interval of the numbers that round to the double is scaled by a power of ten, so that it
// holds one to ten integers, or at most one multiple of ten. Its bounds are computed with 128-bit
// powers of ten, which are exact enough to compare the bounds with integers.

#include "codegen/runtime/doubleText.hpp"

#include <bit>

#include "codegen/runtime/decimalPowers.hpp"
#include "codegen/runtime/integerText.hpp"

namespace krel {

namespace {

constexpr int fractionBits = 52;
constexpr std::uint64_t hiddenBit = std::uint64_t{1} << fractionBits;
constexpr std::uint64_t fractionMask = hiddenBit - 1;
constexpr unsigned exponentMask = 0x7FF;
constexpr std::uint64_t infinity = static_cast<std::uint64_t>(exponentMask) << fractionBits;
constexpr std::uint64_t signBit = std::uint64_t{1} << 63;

/// floor(log10(2^exponent)); for a double whose lower neighbour is closer, floor(log10(3/4 *
/// 2^exponent)).
constexpr int floorLog10(int exponent, bool lowerNeighbourIsCloser) {
    return (exponent * 1262611 - (lowerNeighbourIsCloser ? 524031 : 0)) >> 22;
}

/// The product of power and factor without its lowest 128 bits; the last bit is also set when the
/// product is not exact, so that it still compares correctly with multiples of two.
std::uint64_t multiplyRoundingToOdd(const ScaledPower& power, std::uint64_t factor) {
    const Wide low = static_cast<Wide>(power.low) * factor;
    const Wide sum = static_cast<Wide>(power.high) * factor + static_cast<std::uint64_t>(low >> 64);
    const auto fraction = static_cast<std::uint64_t>(sum);
    return static_cast<std::uint64_t>(sum >> 64) | (fraction > 1 ? 1 : 0);
}

/// A decimal with seventeen digits, the first of which is not zero: 0.ddd... * 10^point.
struct AlignedDecimal {
    std::uint64_t first;
    EightDigits upper;
    EightDigits lower;
    int length;  // without trailing zeros
    int point;
};

constexpr int alignedLength = 17;

constexpr std::uint64_t powersOfTen[] = {
    1,
    10,
    100,
    1'000,
    10'000,
    100'000,
    1'000'000,
    10'000'000,
    100'000'000,
    1'000'000'000,
    10'000'000'000,
    100'000'000'000,
    1'000'000'000'000,
    10'000'000'000'000,
    100'000'000'000'000,
    1'000'000'000'000'000,
    10'000'000'000'000'000,
    100'000'000'000'000'000,
};

/// The number of decimal digits of a positive value below 10^17.
int countDigits(std::uint64_t value) {
    const int bits = 64 - __builtin_clzll(value);
    const int guess = bits * 1233 >> 12;  // at most one too few: 1233/4096 is nearly log10(2)
    return guess + (value >= powersOfTen[guess] ? 1 : 0);
}

int countTrailingZeros(EightDigits digits) {
    return __builtin_clzll(digits) / 8;
}

AlignedDecimal align(const Decimal& decimal) {
    const int count = countDigits(decimal.digits);
    const std::uint64_t digits = decimal.digits * powersOfTen[alignedLength - count];
    const std::uint64_t first = digits / tenTo16;
    const std::uint64_t others = digits - first * tenTo16;
    const EightDigits upper = splitDigits(others / tenTo8);
    const EightDigits lower = splitDigits(others % tenTo8);
    int length = 1;
    if (lower != 0) {
        length = alignedLength - countTrailingZeros(lower);
    } else if (upper != 0) {
        length = 9 - countTrailingZeros(upper);
    }
    return {first, upper | asciiZeros, lower | asciiZeros, length, count + decimal.exponent};
}

/// The digits with a point before digit number `position`, 0 to 7; the last digit is dropped.
EightDigits insertPoint(EightDigits digits, int position) {
    const int shift = 8 * position;
    const EightDigits after = digits >> shift << shift;
    return (digits ^ after) | after << 8 | EightDigits{'.'} << shift;
}

// The functions below return the byte after what they wrote.

char* writeExponent(char* to, int exponent) {
    *to++ = 'e';
    *to++ = exponent < 0 ? '-' : '+';
    int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude >= 100) {
        *to++ = static_cast<char>('0' + magnitude / 100);
        magnitude %= 100;
    }
    *to++ = static_cast<char>('0' + magnitude / 10);
    *to++ = static_cast<char>('0' + magnitude % 10);
    return to;
}

/// One digit, the point and the others.
char* writeScientific(char* to, const AlignedDecimal& decimal) {
    to[0] = static_cast<char>('0' + decimal.first);
    to[1] = '.';
    storeDigits(to + 2, decimal.upper);
    storeDigits(to + 10, decimal.lower);
    const int length = decimal.length == 1 ? 1 : decimal.length + 1;
    return writeExponent(to + length, decimal.point - 1);
}

/// "0.", up to three zeros and the digits.
char* writeFraction(char* to, const AlignedDecimal& decimal) {
    storeDigits(to, insertPoint(asciiZeros, 1));
    to += 2 - decimal.point;
    to[0] = static_cast<char>('0' + decimal.first);
    storeDigits(to + 1, decimal.upper);
    storeDigits(to + 9, decimal.lower);
    return to + decimal.length;
}

/// One to sixteen digits, and a point and further digits if there are any. The digits are written
/// as if the point were behind the first one; then the digits before the point are written again,
/// with the point.
char* writeFixed(char* to, const AlignedDecimal& decimal) {
    to[0] = static_cast<char>('0' + decimal.first);
    storeDigits(to + 2, decimal.upper);
    storeDigits(to + 10, decimal.lower);
    const int position = decimal.point - 1;
    if (position < 8) {
        storeDigits(to + 1, insertPoint(decimal.upper, position));
    } else {
        storeDigits(to + 1, decimal.upper);
        storeDigits(to + 9, insertPoint(decimal.lower, position - 8));
    }
    return to + (decimal.length <= decimal.point ? decimal.point : decimal.length + 1);
}

char* writeDecimal(char* to, const AlignedDecimal& decimal) {
    if (decimal.point > 16 || decimal.point < -3) {
        return writeScientific(to, decimal);
    }
    return decimal.point > 0 ? writeFixed(to, decimal) : writeFraction(to, decimal);
}

char* writeInteger(char* to, std::uint64_t value) {
    return DecimalInteger(value).write(to);
}

char* writeWord(char* to, const char* word) {
    while (*word != '\0') {
        *to++ = *word++;
    }
    return to;
}

}  // namespace

Decimal shortestDecimal(std::uint64_t bits) {
    const std::uint64_t fraction = bits & fractionMask;
    const auto biasedExponent = static_cast<int>(bits >> fractionBits & exponentMask);
    const bool isNormal = biasedExponent != 0;
    const std::uint64_t significand = isNormal ? fraction | hiddenBit : fraction;
    const int exponent = (isNormal ? biasedExponent : 1) - 1075;

    const bool boundsRoundHere = significand % 2 == 0;
    const bool lowerIsCloser = fraction == 0 && biasedExponent > 1;
    const int k = floorLog10(exponent, lowerIsCloser);
    const int shift = exponent + floorLog2OfPowerOfTen(-k) + 1;
    const ScaledPower& power = decimalPowers[-k];

    // All in units of a quarter: the double's value and the bounds of its interval, times 10^-k.
    const std::uint64_t quarters = 4 * significand;
    const std::uint64_t value = multiplyRoundingToOdd(power, quarters << shift);
    const std::uint64_t lowerBound =
        multiplyRoundingToOdd(power, (quarters - (lowerIsCloser ? 1 : 2)) << shift);
    const std::uint64_t upperBound = multiplyRoundingToOdd(power, (quarters + 2) << shift);
    const std::uint64_t lower = lowerBound + (boundsRoundHere ? 0 : 1);
    const std::uint64_t upper = upperBound - (boundsRoundHere ? 0 : 1);

    const std::uint64_t below = value / 4;
    if (below >= 10) {
        const std::uint64_t tens = below / 10;
        const bool tensInside = lower <= 40 * tens;
        const bool nextTensInside = 40 * tens + 40 <= upper;
        if (tensInside != nextTensInside) {
            return {tens + (nextTensInside ? 1 : 0), k + 1};
        }
    }
    const bool belowInside = lower <= 4 * below;
    const bool aboveInside = 4 * below + 4 <= upper;
    if (belowInside != aboveInside) {
        return {below + (aboveInside ? 1 : 0), k};
    }
    const std::uint64_t middle = 4 * below + 2;
    const bool roundsUp = value > middle || (value == middle && below % 2 != 0);
    return {below + (roundsUp ? 1 : 0), k};
}

char* writeDouble(char* to, double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const std::uint64_t magnitude = bits & ~signBit;
    if (magnitude > infinity) {
        return writeWord(to, "nan");
    }
    *to = '-';
    to += bits >> 63;
    if (magnitude == infinity) {
        return writeWord(to, "inf");
    }
    // All whole numbers below 2^53 are their own shortest decimal, down to the last digit.
    constexpr double wholeLimit = 9007199254740992.0;
    const auto absolute = std::bit_cast<double>(magnitude);
    if (absolute < wholeLimit) {
        const auto whole = static_cast<std::int64_t>(absolute);
        if (static_cast<double>(whole) == absolute) {
            return writeInteger(to, static_cast<std::uint64_t>(whole));
        }
    }
    return writeDecimal(to, align(shortestDecimal(magnitude)));
}

}  // namespace krel
