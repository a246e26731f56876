#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/machine/code.hpp"

namespace krel::Execution {

/// Where the texts that conversions give lie among the constant ones.
namespace FixedTexts {
inline constexpr std::size_t ofCharacter = 0;  // two bytes for each code
inline constexpr std::size_t ofFalse = 512;
inline constexpr std::size_t ofTrue = 518;
inline constexpr std::size_t end = 523;
}  // namespace FixedTexts

/// Collects the constants of a program, each once. Texts get their addresses at the end.
class Constants {
public:
    Constants();

    /// The numbers of constants.
    std::int32_t whole(std::int64_t value) {
        return number(wholes, static_cast<std::uint64_t>(value), Tags::whole);
    }
    std::int32_t real(double value) {
        return number(reals, std::bit_cast<std::uint64_t>(value), Tags::real);
    }
    /// Of a literal with its quotes. What is between them is kept as it is.
    std::int32_t text(std::string_view literal);

    /// Hands all of them over.
    void moveTo(Code& code);

private:
    using Numbers = std::unordered_map<std::uint64_t, std::int32_t>;

    std::int32_t number(Numbers& known, std::uint64_t bits, Tag tag);
    std::int32_t add(std::uint64_t bits, Tag tag);

    std::vector<std::uint64_t> values;
    std::vector<Tag> tags;
    Numbers wholes;
    Numbers reals;
    std::unordered_map<std::string, std::int32_t> numbersOfTexts;  // by their literals
    std::vector<std::int32_t> texts;  // the numbers of constants that are still positions
    std::string bytes;
};

}  // namespace krel::Execution
