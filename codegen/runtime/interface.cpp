#include "codegen/runtime/interface.hpp"

#include "codegen/runtime/bytes.hpp"
#include "codegen/runtime/doubleText.hpp"
#include "codegen/runtime/integerText.hpp"
#include "codegen/runtime/literal.hpp"
#include "codegen/runtime/output.hpp"
#include "codegen/runtime/stringHeap.hpp"

namespace krel {

namespace {

std::size_t textLengthDecoded(const char* text) {
    return stringHeap.owns(text) ? StringHeap::lengthOf(text) : decodedLength(text);
}

char* writeDecoded(const char* text, char* to) {
    if (!stringHeap.owns(text)) {
        return decode(text, to);
    }
    const std::size_t length = StringHeap::lengthOf(text);
    copyBytes(to, text, length);
    return to + length;
}

const char* newText(const char* bytes, std::size_t length) {
    char* text = stringHeap.allocate(length);
    copyBytes(text, bytes, length);
    return text;
}

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
    const std::size_t length = krel::textLengthDecoded(left) + krel::textLengthDecoded(right);
    char* text = krel::stringHeap.allocate(length);
    krel::writeDecoded(right, krel::writeDecoded(left, text));
    return text;
}

const char* krel_inttostring(std::int64_t value) {
    const std::uint64_t magnitude = krel::magnitudeOf(value);
    const unsigned digits = krel::countDigits(magnitude);
    const unsigned sign = value < 0 ? 1 : 0;
    char* text = krel::stringHeap.allocate(sign + digits);
    text[0] = '-';
    krel::writeDigits(text + sign, magnitude, digits);
    return text;
}

const char* krel_chartostring(std::uint64_t value) {
    const char character = static_cast<char>(value & 0xFF);
    return krel::newText(&character, character == '\0' ? 0 : 1);
}

const char* krel_booltostring(std::uint64_t value) {
    return value != 0 ? krel::newText("true", 4) : krel::newText("false", 5);
}

const char* krel_doubletostring(double value) {
    char buffer[krel::doubleTextSpace];
    const char* end = krel::writeDouble(buffer, value);
    return krel::newText(buffer, static_cast<std::size_t>(end - buffer));
}
