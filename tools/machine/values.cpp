// Values for people. Comes in: bits, and what they are. Goes out: text, all of it printable.

#include "tools/machine/values.hpp"

#include <array>
#include <bit>
#include <optional>

#include "codegen/runtime/doubleText.hpp"
#include "shared/ast/spelling.hpp"

namespace krel::Execution {

namespace {

constexpr std::size_t longestText = 60;  // bytes of a text that are shown

void addEscaped(std::string& shown, char byte, char quote) {
    constexpr std::string_view escaped = "\n\t\r\\";
    constexpr std::string_view letters = "ntr\\";
    const std::size_t escape = escaped.find(byte);
    if (escape != escaped.npos || byte == quote) {
        shown += '\\';
        shown += byte == quote ? quote : letters[escape];
    } else {
        shown += static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f ? '?' : byte;
    }
}

std::string shownText(std::string_view text) {
    std::string shown = "\"";
    for (const char byte : text.substr(0, longestText)) {
        addEscaped(shown, byte, '"');
    }
    return shown + (text.size() > longestText ? "\"..." : "\"");
}

std::string shownCharacter(std::uint64_t code) {
    if (code == 0 || code > 0xFF) {
        return code == 0 ? "''" : std::to_string(static_cast<std::int64_t>(code));
    }
    std::string shown = "'";
    addEscaped(shown, static_cast<char>(code), '\'');
    return shown + "'";
}

std::string shownReal(double value) {
    std::array<char, longestDoubleText> text;
    return {text.data(), writeDouble(text.data(), value)};
}

}  // namespace

std::string shownValue(const Machine& machine, std::uint64_t bits, Tag tag, std::string_view type) {
    if ((tag & Tags::any) == 0) {
        return "(unset)";
    }
    // Without checks nothing but the type tells what it is.
    const bool isKnown = tag != Tags::any;
    if (isKnown ? (tag & Tags::real) != 0 : type == Spelling::Double) {
        return shownReal(std::bit_cast<double>(bits));
    }
    if (isKnown ? (tag & Tags::text) != 0 : type == Spelling::String) {
        const std::optional<std::string> text = machine.textAt(bits);
        return text ? shownText(*text) : "(no string)";
    }
    if (type == Spelling::Boolean && bits <= 1) {
        return bits == 1 ? "true" : "false";
    }
    return type == Spelling::Character ? shownCharacter(bits)
                                       : std::to_string(static_cast<std::int64_t>(bits));
}

}  // namespace krel::Execution
