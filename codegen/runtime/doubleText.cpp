#include "codegen/runtime/doubleText.hpp"

#include <bit>

#include "codegen/runtime/bytes.hpp"
#include "codegen/runtime/decimalPowers.hpp"
#include "codegen/runtime/integerText.hpp"

// The digits are found by Schubfach (Raffaello Giulietti, "The Schubfach way to render doubles"):
// the interval of the numbers that round to the double is scaled by a power of ten so that it
// holds one to ten integers, or at most one multiple of ten, and its bounds are computed with
// 128-bit powers that are exact enough to compare them with integers.

namespace krel {

namespace {

constexpr int fractionBits = 52;
constexpr std::uint64_t hiddenBit = std::uint64_t{1} << fractionBits;
constexpr std::uint64_t fractionMask = hiddenBit - 1;
constexpr unsigned exponentMask = 0x7FF;
constexpr std::uint64_t signBit = std::uint64_t{1} << 63;

// floor(log10(2^exponent)), or of 3/4 of it for a double whose lower neighbour is closer.
constexpr int floorLog10(int exponent, bool lowerNeighbourIsCloser) {
    return (exponent * 1262611 - (lowerNeighbourIsCloser ? 524031 : 0)) >> 22;
}

// The product of power and factor without its lowest 128 bits; the last bit is set as well where
// the product is not exact, so that it still compares rightly with multiples of two.
std::uint64_t multiplyRoundingToOdd(const ScaledPower& power, std::uint64_t factor) {
    const Wide low = static_cast<Wide>(power.low) * factor;
    const Wide sum = static_cast<Wide>(power.high) * factor + static_cast<std::uint64_t>(low >> 64);
    const auto fraction = static_cast<std::uint64_t>(sum);
    return static_cast<std::uint64_t>(sum >> 64) | (fraction > 1 ? 1 : 0);
}

void writeText(char*& to, const char* text) {
    for (; *text != '\0'; ++text) {
        *to++ = *text;
    }
}

Decimal withoutTrailingZeros(Decimal decimal) {
    while (decimal.digits % 10 == 0) {
        decimal.digits /= 10;
        ++decimal.exponent;
    }
    return decimal;
}

void writeZeros(char*& to, int count) {
    for (; count > 0; --count) {
        *to++ = '0';
    }
}

// The digits with the decimal point after the first `point` of them, 0 < point.
void writeFixed(char*& to, std::uint64_t digits, int count, int point) {
    writeDigits(to, digits, static_cast<unsigned>(count));
    if (point >= count) {
        to += count;
        writeZeros(to, point - count);
        return;
    }
    for (int i = count; i > point; --i) {
        to[i] = to[i - 1];
    }
    to[point] = '.';
    to += count + 1;
}

void writeExponent(char*& to, int exponent) {
    *to++ = 'e';
    *to++ = exponent < 0 ? '-' : '+';
    const auto magnitude = static_cast<unsigned>(exponent < 0 ? -exponent : exponent);
    const unsigned count = magnitude < 100 ? 2 : 3;
    writeDigits(to, magnitude, count);
    to += count;
}

void writeDecimal(char*& to, Decimal decimal) {
    const auto count = static_cast<int>(countDigits(decimal.digits));
    const int point = count + decimal.exponent;
    if (point > 16 || point < -3) {
        writeFixed(to, decimal.digits, count, 1);
        writeExponent(to, point - 1);
    } else if (point > 0) {
        writeFixed(to, decimal.digits, count, point);
    } else {
        writeText(to, "0.");
        writeZeros(to, -point);
        writeDigits(to, decimal.digits, static_cast<unsigned>(count));
        to += count;
    }
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
    constexpr std::uint64_t infinity = static_cast<std::uint64_t>(exponentMask) << fractionBits;
    if (magnitude > infinity) {
        writeText(to, "nan");
        return to;
    }
    if (magnitude != bits) {
        *to++ = '-';
    }
    if (magnitude == infinity) {
        writeText(to, "inf");
    } else if (magnitude == 0) {
        *to++ = '0';
    } else {
        writeDecimal(to, withoutTrailingZeros(shortestDecimal(magnitude)));
    }
    return to;
}

}  // namespace krel
