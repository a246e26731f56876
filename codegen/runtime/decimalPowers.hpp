// Powers of ten to 128 significant bits, the one table behind the shortest text of a double.
#pragma once

#include <cstdint>

namespace krel {

__extension__ typedef unsigned __int128 Wide;

/// floor(log2(10^exponent)), for exponents of magnitude up to 1233.
constexpr int floorLog2OfPowerOfTen(int exponent) {
    return (exponent * 1741647) >> 19;
}

/// A power 10^k scaled by a power of two so that its highest bit is bit 127, rounded up:
/// ceil(10^k * 2^(127 - floor(log2(10^k)))).
struct ScaledPower {
    std::uint64_t high;
    std::uint64_t low;
};

/// The table of the powers, computed by the compiler.
class DecimalPowers {
public:
    static constexpr int least = -292;
    static constexpr int greatest = 324;

    consteval DecimalPowers();

    constexpr const ScaledPower& operator[](int exponent) const { return powers[exponent - least]; }

private:
    ScaledPower powers[greatest - least + 1] = {};
};

/// A positive number's leading 256 bits; the highest bit of word 3 is set. Digits that do not fit
/// are cut off, so after n steps the value is too small by less than n units of the last place: far
/// below the 128 bits that are kept in the table.
class LeadingBits {
public:
    constexpr void multiplyByTen() {
        std::uint64_t carry = 0;
        for (std::uint64_t& word : words) {
            const Wide product = static_cast<Wide>(word) * 10 + carry;
            word = static_cast<std::uint64_t>(product);
            carry = static_cast<std::uint64_t>(product >> 64);
        }
        const int excess = 64 - __builtin_clzll(carry);
        for (int i = 0; i < count; ++i) {
            const std::uint64_t above = i + 1 < count ? words[i + 1] : carry;
            words[i] = words[i] >> excess | above << (64 - excess);
        }
    }

    constexpr void divideByTen() {
        std::uint64_t remainder = 0;
        std::uint64_t quotient[count + 1] = {};
        for (int i = count; i >= 0; --i) {
            const std::uint64_t word = i > 0 ? words[i - 1] : 0;
            const Wide dividend = static_cast<Wide>(remainder) << 64 | word;
            quotient[i] = static_cast<std::uint64_t>(dividend / 10);
            remainder = static_cast<std::uint64_t>(dividend % 10);
        }
        const int missing = __builtin_clzll(quotient[count]);
        for (int i = 0; i < count; ++i) {
            words[i] = quotient[i + 1] << missing | quotient[i] >> (64 - missing);
        }
    }

    constexpr ScaledPower roundedUp() const {
        Wide top = static_cast<Wide>(words[3]) << 64 | words[2];
        if ((words[1] | words[0]) != 0) {
            ++top;
        }
        return {static_cast<std::uint64_t>(top >> 64), static_cast<std::uint64_t>(top)};
    }

private:
    static constexpr int count = 4;
    std::uint64_t words[count] = {0, 0, 0, std::uint64_t{1} << 63};
};

consteval DecimalPowers::DecimalPowers() {
    LeadingBits power;
    for (int exponent = 0; exponent <= greatest; ++exponent) {
        powers[exponent - least] = power.roundedUp();
        power.multiplyByTen();
    }
    power = LeadingBits();
    for (int exponent = -1; exponent >= least; --exponent) {
        power.divideByTen();
        powers[exponent - least] = power.roundedUp();
    }
}

inline constexpr DecimalPowers decimalPowers;

}  // namespace krel
