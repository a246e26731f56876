// The entry points. Comes in: texts and numbers from the compiled program. Goes out: texts, in
// string memory or constant, and what is printed. String memory and the output buffer change.
//
// There are two ways to make a text. The quick way is for short texts when there is room at hand:
// it has so few instructions that no register has to be saved around them. When it has to give up,
// the thorough way does the whole work from the beginning; it never gives up.

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

const char* concatenateThoroughly(const char* left, const char* right);
const char* integerToTextThoroughly(std::int64_t value);
const char* doubleToTextThoroughly(double value);

/// For short texts when there is room at hand.
struct QuickWay {
    static constexpr bool isQuick = true;

    /// The length of a text of the runtime. If the address lies inside of a text, the result is too
    /// large for this way.
    static std::size_t lengthFrom(const char* text) { return StringHeap::lengthOf(text); }

    /// Sets `text` to room for so many bytes; returns false when there is none.
    static bool getRoom(std::size_t length, const char*, const char*, char*& text) {
        return stringHeap.allocateShort(length, text);
    }

    static void copy(char* to, const char* from, std::size_t length) {
        copyChunks(to, from, length);
    }
};

/// For all others.
struct ThoroughWay {
    static constexpr bool isQuick = false;

    static std::size_t lengthFrom(const char* text) { return stringHeap.lengthFrom(text); }

    static bool getRoom(std::size_t length, const char* left, const char* right, char*& text) {
        text = stringHeap.allocate(length, left, right);
        if (text == nullptr) [[unlikely]] {
            endOutOfMemory();
        }
        return true;
    }

    static void copy(char* to, const char* from, std::size_t length) { copyText(to, from, length); }
};

/// A line feed, with room for copyChunks to read a whole chunk.
constexpr char lineFeed[chunkSize] = {'\n'};

/// An operand of a concatenation.
template <typename Way>
class Operand {
public:
    explicit Operand(const char* bytes) : text(bytes) {
        if (stringHeap.owns(bytes)) {
            space = Way::lengthFrom(bytes);
        } else if (isLineFeed(bytes)) {
            text = lineFeed;
            space = 1;
        } else {
            const LiteralExtent extent = measureLiteral(bytes);
            space = extent.length;
            isPlain = extent.isPlain;
        }
    }

    /// The number of bytes that it takes at most when it is written.
    std::size_t spaceNeeded() const { return space; }

    /// Whether this way can handle the operand.
    bool isFit() const { return !Way::isQuick || space <= SizeClasses::smallLimit; }

    /// Writes what the text stands for and returns the byte after it.
    char* write(char* to) const {
        if (!isPlain) {
            return decode(text, to);
        }
        Way::copy(to, text, space);
        return to + space;
    }

private:
    const char* text;
    std::size_t space = 0;
    bool isPlain = true;
};

/// The texts of all single characters, each with its NUL. None of them looks like an escape, so
/// they can be constants.
struct CharacterTexts {
    char text[256][2] = {};

    consteval CharacterTexts() {
        for (int code = 0; code < 256; ++code) {
            text[code][0] = static_cast<char>(code);
        }
    }
};

constexpr CharacterTexts characterTexts;

template <typename Way>
const char* concatenate(const char* left, const char* right) {
    const Operand<Way> first(left);
    if (!first.isFit()) [[unlikely]] {
        return concatenateThoroughly(left, right);
    }
    const Operand<Way> second(right);
    if (!second.isFit()) [[unlikely]] {
        return concatenateThoroughly(left, right);
    }
    char* text;
    if (!Way::getRoom(first.spaceNeeded() + second.spaceNeeded(), left, right, text)) [[unlikely]] {
        return concatenateThoroughly(left, right);
    }
    char* middle = first.write(text);
    return StringHeap::setEnd(text, second.write(middle));
}

template <typename Way>
const char* integerToText(std::int64_t value) {
    const std::uint64_t magnitude = magnitudeOf(value);
    if (Way::isQuick && magnitude >= tenTo8) [[unlikely]] {
        return integerToTextThoroughly(value);
    }
    const DecimalInteger digits(magnitude);
    const unsigned sign = value < 0 ? 1 : 0;
    char* text;
    if (!Way::getRoom(sign + digits.length(), nullptr, nullptr, text)) [[unlikely]] {
        return integerToTextThoroughly(value);
    }
    *text = '-';
    return StringHeap::setEnd(text, digits.write(text + sign));
}

template <typename Way>
const char* doubleToText(double value) {
    char* text;
    if (!Way::getRoom(longestDoubleText, nullptr, nullptr, text)) [[unlikely]] {
        return doubleToTextThoroughly(value);
    }
    return StringHeap::setEnd(text, writeDouble(text, value));
}

[[gnu::noinline]] const char* concatenateThoroughly(const char* left, const char* right) {
    return concatenate<ThoroughWay>(left, right);
}

[[gnu::noinline]] const char* integerToTextThoroughly(std::int64_t value) {
    return integerToText<ThoroughWay>(value);
}

[[gnu::noinline]] const char* doubleToTextThoroughly(double value) {
    return doubleToText<ThoroughWay>(value);
}

[[gnu::noinline]] void printThoroughly(const char* text) {
    standardOutput.print(text, stringHeap.lengthFrom(text));
}

}  // namespace

}  // namespace krel

// At an address that lies in no text, the length that is read may be any number. If the buffer has
// room for so many bytes, they can be read.
static_assert(krel::Output::capacity < krel::StringHeap::readableLength);

void krel_print(const char* text) {
    if (krel::stringHeap.owns(text)) {
        const std::size_t length = krel::StringHeap::lengthOf(text);
        if (!krel::standardOutput.printToBuffer(text, length)) [[unlikely]] {
            krel::printThoroughly(text);
        }
    } else {
        krel::standardOutput.printLiteral(text);
    }
}

const char* krel_concat(const char* left, const char* right) {
    return krel::concatenate<krel::QuickWay>(left, right);
}

const char* krel_inttostring(std::int64_t value) {
    return krel::integerToText<krel::QuickWay>(value);
}

const char* krel_chartostring(std::uint64_t value) {
    return krel::characterTexts.text[value & 0xFF];
}

const char* krel_booltostring(std::uint64_t value) {
    return value != 0 ? "true" : "false";
}

const char* krel_doubletostring(double value) {
    return krel::doubleToText<krel::QuickWay>(value);
}
