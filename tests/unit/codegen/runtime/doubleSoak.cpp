// Compares the texts of random doubles with the standard library's, as many as one likes.
// Usage: krel_double_soak COUNT [SEED]

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>

#include "codegen/runtime/doubleText.hpp"
#include "tests/unit/codegen/runtime/referenceDoubleText.hpp"

int main(int count, char** arguments) {
    if (count < 2) {
        std::cerr << "Usage: krel_double_soak COUNT [SEED]\n";
        return 1;
    }
    const std::uint64_t total = std::strtoull(arguments[1], nullptr, 10);
    const std::uint64_t seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 1;
    std::mt19937_64 random(seed);
    for (std::uint64_t i = 0; i < total; ++i) {
        // By turns any bits, a number of moderate size, and one with few digits.
        const std::uint64_t bits = random();
        double value = std::bit_cast<double>(bits);
        if (i % 3 == 1) {
            value = static_cast<double>(bits >> 11) / 9007199254740992.0 * 1e6;
        } else if (i % 3 == 2) {
            value = static_cast<double>(static_cast<std::int64_t>(bits) >> (20 + i % 40)) / 1000;
        }
        char room[krel::longestDoubleText];
        const std::string text(room, krel::writeDouble(room, value));
        if (text != referenceDoubleText(value)) {
            std::cerr << "bits " << std::bit_cast<std::uint64_t>(value) << ": " << text
                      << " instead of " << referenceDoubleText(value) << '\n';
            return 1;
        }
    }
    std::cout << total << " doubles are right\n";
    return 0;
}
