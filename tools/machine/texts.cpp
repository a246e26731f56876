// Texts. Comes in: addresses and numbers. Goes out: addresses of texts, made as the runtime of
// compiled programs makes them. The runtime looks for strings that are still used on the stack of
// the process; a program that runs here has another one, so here it is told when to look, and
// where.

#include "tools/machine/texts.hpp"

#include <algorithm>

#include "codegen/runtime/doubleText.hpp"
#include "codegen/runtime/integerText.hpp"
#include "codegen/runtime/literal.hpp"
#include "codegen/runtime/stringHeap.hpp"
#include "tools/machine/constants.hpp"

namespace krel::Execution {

namespace {

/// The string memory of the process, and who holds strings in it.
struct Memory {
    std::vector<const TextHolder*> holders;
    std::uint64_t begin = 0;  // of the first string
    std::size_t size = 0;     // of the memory in which there are strings
    /// Bytes that may be handed out before the next collection.
    std::ptrdiff_t allowance = StringHeap::bytesBeforeFirstCollection;

    void open() {
        if (begin == 0) {
            stringHeap.open(0);
            begin = reinterpret_cast<std::uintptr_t>(stringHeap.allocate(0));
            size = begin == 0 ? 0 : stringHeap.footprint();
        }
    }

    /// Takes back what no holder has. The allowance is that of the runtime: collections stay a
    /// small part of the work.
    void collect() {
        std::vector<std::uint64_t> joined;
        std::span<const std::uint64_t> words;
        if (holders.size() == 1) {
            words = holders.front()->words();
        } else {
            for (const TextHolder* holder : holders) {
                const auto more = holder->words();
                joined.insert(joined.end(), more.begin(), more.end());
            }
            words = joined;
        }
        stringHeap.collect(words.data(), words.data() + words.size());
        constexpr std::size_t forEachBlock = 8192;
        allowance = static_cast<std::ptrdiff_t>(
            StringHeap::smallestBudget + 4 * words.size_bytes() + size / blockSize * forEachBlock);
    }
};

constinit Memory memory;

const char* at(std::uint64_t address) {
    return reinterpret_cast<const char*>(address);
}

std::uint64_t addressOf(const char* text) {
    return reinterpret_cast<std::uintptr_t>(text);
}

}  // namespace

TextHolder::TextHolder() {
    memory.open();
    memory.holders.push_back(this);
}

TextHolder::~TextHolder() {
    std::erase(memory.holders, this);
}

Texts::Texts(const Code& itsCode) : code(itsCode) {
    memory.open();
}

bool Texts::isMade(std::uint64_t address) {
    return address - memory.begin < memory.size;
}

/// An operand of a concatenation.
struct Texts::Part {
    explicit Part(std::uint64_t address) : text(at(address)) {
        if (isMade(address)) {
            space = stringHeap.lengthFrom(text);
            return;
        }
        const LiteralExtent extent = measureLiteral(text);
        space = extent.length;
        isPlain = extent.isPlain;
    }

    char* write(char* to) const {
        if (!isPlain) {
            return decode(text, to);
        }
        copyText(to, text, space);
        return to + space;
    }

    const char* text;
    std::size_t space;  // the bytes that it takes at most
    bool isPlain = true;
};

/// Room for a text; the strings at `left` and `right` stay. Null when memory is exhausted.
char* Texts::roomFor(std::size_t length, const char* left, const char* right) {
    constexpr std::ptrdiff_t overhead = 24;
    memory.allowance -= static_cast<std::ptrdiff_t>(length) + overhead;
    if (memory.allowance < 0) {
        memory.collect();
    }
    char* text = stringHeap.allocate(length, left, right);
    if (text == nullptr) {
        memory.collect();
        text = stringHeap.allocate(length, left, right);
    }
    memory.size = stringHeap.footprint();
    return text;
}

std::uint64_t Texts::concatenation(std::uint64_t left, std::uint64_t right) {
    const Part first{left};
    const Part second{right};
    char* const text = roomFor(first.space + second.space, first.text, second.text);
    return text == nullptr ? 0
                           : addressOf(StringHeap::setEnd(text, second.write(first.write(text))));
}

std::uint64_t Texts::ofWhole(std::int64_t value) {
    const DecimalInteger digits{magnitudeOf(value)};
    const unsigned sign = value < 0 ? 1 : 0;
    char* const text = roomFor(sign + digits.length(), nullptr, nullptr);
    if (text == nullptr) {
        return 0;
    }
    *text = '-';
    return addressOf(StringHeap::setEnd(text, digits.write(text + sign)));
}

std::uint64_t Texts::ofReal(double value) {
    char* const text = roomFor(longestDoubleText, nullptr, nullptr);
    return text == nullptr ? 0 : addressOf(StringHeap::setEnd(text, writeDouble(text, value)));
}

std::uint64_t Texts::ofBytes(std::string_view bytes) {
    char* const text = roomFor(bytes.size(), nullptr, nullptr);
    if (text == nullptr) {
        return 0;
    }
    return addressOf(StringHeap::setEnd(text, std::copy(bytes.begin(), bytes.end(), text)));
}

std::uint64_t Texts::ofBoolean(bool value) const {
    return addressOf(code.texts.get()) + (value ? FixedTexts::ofTrue : FixedTexts::ofFalse);
}

std::uint64_t Texts::ofCharacter(std::uint64_t character) const {
    return addressOf(code.texts.get()) + FixedTexts::ofCharacter + 2 * (character & 0xFF);
}

std::string_view Texts::bytesOf(std::uint64_t address) {
    const char* const text = at(address);
    if (isMade(address)) {
        return {text, stringHeap.lengthFrom(text)};
    }
    const std::string_view literal{text};
    if (literal.find('\\') == literal.npos) {
        return literal;
    }
    decoded.resize(literal.size() + chunkSize);
    const char* const end = decode(text, decoded.data());
    return {decoded.data(), static_cast<std::size_t>(end - decoded.data())};
}

}  // namespace krel::Execution
