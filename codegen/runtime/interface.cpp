#include "codegen/runtime/interface.hpp"

#include "codegen/runtime/bytes.hpp"
#include "codegen/runtime/doubleText.hpp"
#include "codegen/runtime/integerText.hpp"
#include "codegen/runtime/literal.hpp"
#include "codegen/runtime/output.hpp"
#include "codegen/runtime/stringHeap.hpp"
#include "codegen/runtime/traps.hpp"

namespace krel {

namespace {

char* allocate(std::size_t length, const char* left = nullptr, const char* right = nullptr) {
    char* text = stringHeap.allocate(length, left, right);
    if (text == nullptr) [[unlikely]] {
        endOutOfMemory();
    }
    return text;
}

// An operand of a concatenation.
struct Operand {
    explicit Operand(const char* bytes)
        : text(bytes),
          isLiteral(!stringHeap.owns(bytes)),
          length(isLiteral ? textLength(bytes) : StringHeap::lengthOf(bytes)) {}

    // Writes what the text stands for and returns the byte after it.
    char* write(char* to) const {
        if (isLiteral) {
            return decode(text, to);
        }
        copyText(to, text, length);
        return to + length;
    }

    const char* text;
    bool isLiteral;
    std::size_t length;  // of a literal as it stands: the upper limit of what is written
};

// The texts of all single characters, each with its NUL. None of them could be taken for an escape,
// so they need not be made anew.
struct CharacterTexts {
    char text[256][2] = {};

    consteval CharacterTexts() {
        for (int code = 0; code < 256; ++code) {
            text[code][0] = static_cast<char>(code);
        }
    }
};

constexpr CharacterTexts characterTexts;

}  // namespace

}  // namespace krel

void krel_print(const char* text) {
    if (krel::stringHeap.owns(text)) {
        krel::standardOutput.append(text, krel::StringHeap::lengthOf(text));
    } else {
        krel::standardOutput.appendLiteral(text);
    }
    krel::standardOutput.endPrint();
}

const char* krel_concat(const char* left, const char* right) {
    const krel::Operand first(left);
    const krel::Operand second(right);
    char* text = krel::allocate(first.length + second.length, left, right);
    return krel::StringHeap::setEnd(text, second.write(first.write(text)));
}

const char* krel_inttostring(std::int64_t value) {
    const std::uint64_t magnitude = krel::magnitudeOf(value);
    const unsigned digits = krel::countDigits(magnitude);
    const unsigned length = digits + (value < 0 ? 1 : 0);
    char* text = krel::allocate(length);
    text[0] = '-';
    krel::writeDigits(text + (length - digits), magnitude, digits);
    return krel::StringHeap::setEnd(text, text + length);
}

const char* krel_chartostring(std::uint64_t value) {
    return krel::characterTexts.text[value & 0xFF];
}

const char* krel_booltostring(std::uint64_t value) { return value != 0 ? "true" : "false"; }

const char* krel_doubletostring(double value) {
    char* text = krel::allocate(krel::longestDoubleText);
    return krel::StringHeap::setEnd(text, krel::writeDouble(text, value));
}
