// The constants of a program. Comes in: values and literals, as the translator meets them. Goes
// out: a table of 64-bit values, and one piece of memory with all texts.

#include "tools/machine/constants.hpp"

#include <algorithm>
#include <utility>

namespace krel::Execution {

namespace {

// The runtime reads literals in chunks that end in their page, but not always in the literal.
constexpr std::size_t margin = 16;

}  // namespace

Constants::Constants() {
    bytes.assign(FixedTexts::ofFalse, '\0');
    for (std::size_t code = 0; code < 256; ++code) {
        bytes[FixedTexts::ofCharacter + 2 * code] = static_cast<char>(code);
    }
    bytes.append("false").push_back('\0');
    bytes.append("true").push_back('\0');
}

std::int32_t Constants::add(std::uint64_t bits, Tag tag) {
    values.push_back(bits);
    tags.push_back(tag);
    return static_cast<std::int32_t>(values.size() - 1);
}

std::int32_t Constants::number(Numbers& known, std::uint64_t bits, Tag tag) {
    const auto [place, isNew] = known.try_emplace(bits, 0);
    if (isNew) {
        place->second = add(bits, tag);
    }
    return place->second;
}

std::int32_t Constants::text(std::string_view literal) {
    const auto [place, isNew] = numbersOfTexts.try_emplace(std::string{literal}, 0);
    if (isNew) {
        place->second = add(bytes.size(), Tags::text);
        texts.push_back(place->second);
        bytes.append(literal.substr(1, literal.size() - 2)).push_back('\0');
    }
    return place->second;
}

void Constants::moveTo(Code& code) {
    code.texts = std::make_unique<char[]>(bytes.size() + margin);
    code.textSize = bytes.size();
    std::copy(bytes.begin(), bytes.end(), code.texts.get());
    for (const std::int32_t text : texts) {
        values[static_cast<std::size_t>(text)] +=
            reinterpret_cast<std::uintptr_t>(code.texts.get());
    }
    code.constants = std::move(values);
    code.constantTags = std::move(tags);
}

}  // namespace krel::Execution
