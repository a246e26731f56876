#include "tests/unit/codegen/runtime/referenceDoubleText.hpp"

#include <charconv>
#include <cmath>
#include <cstdlib>

std::string referenceDoubleText(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    const std::string sign = std::signbit(value) ? "-" : "";
    const double magnitude = std::fabs(value);
    if (std::isinf(value)) {
        return sign + "inf";
    }
    if (magnitude == 0) {
        return sign + "0";
    }
    // Such as "1.2345e+02": the digits without the point, and the exponent of the first one.
    char buffer[64];
    const auto written =
        std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific);
    const std::string scientific(buffer, written.ptr);
    const std::size_t e = scientific.find('e');
    std::string digits = scientific.substr(0, 1);
    if (e > 2) {
        digits += scientific.substr(2, e - 2);
    }
    const int exponent = std::atoi(scientific.c_str() + e + 1);

    if (magnitude < 1e-4 || magnitude >= 1e16) {
        std::string number = std::to_string(std::abs(exponent));
        if (number.size() < 2) {
            number = "0" + number;
        }
        const std::string fraction = digits.size() > 1 ? "." + digits.substr(1) : "";
        return sign + digits[0] + fraction + (exponent < 0 ? "e-" : "e+") + number;
    }
    if (exponent < 0) {
        return sign + "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    }
    const std::size_t whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) {
        return sign + digits + std::string(whole - digits.size(), '0');
    }
    return sign + digits.substr(0, whole) + "." + digits.substr(whole);
}
