// Damages assembly. Comes in: text. Goes out: text that is nearly the same.

#include "tests/native/support/mutations.hpp"

#include <array>
#include <string_view>
#include <vector>

namespace krel::Native {

namespace {

using namespace std::string_view_literals;

/// What may stand anywhere, and means something to an assembler.
constexpr std::array pieces = {
    " "sv,      "\t"sv,   "\n"sv,    "\r"sv,     "#"sv,    ";"sv,          "/* "sv,   " */"sv,
    "\""sv,     "\\"sv,   "\\n"sv,   "0"sv,      "1"sv,    "9"sv,          "-"sv,     "+"sv,
    "*"sv,      "("sv,    ")"sv,     "."sv,      ".L"sv,   ","sv,          ", "sv,    "$"sv,
    "%"sv,      "@PLT"sv, "@"sv,     ":"sv,      "0x10"sv, "07"sv,         "1f"sv,    "1b"sv,
    "\0"sv,     "\x80"sv, "%rsp"sv,  "%rax"sv,   "%r11"sv, "%al"sv,        "%xmm7"sv, "(%rip)"sv,
    "(%rbp)"sv, "main"sv, ".text"sv, "128"sv,    "-129"sv, "4294967296"sv, "e5"sv,    "nan"sv,
    "_"sv,      "jmp"sv,  "ret"sv,   ".globl"sv, "'a'"sv,  "!"sv,          "{"sv,     "="sv};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        lines.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line;
    }
    return text;
}

std::string withMovedLine(const std::string& text, std::mt19937& random) {
    std::vector<std::string> lines = linesOf(text);
    std::string& one = lines[random() % lines.size()];
    std::string& other = lines[random() % lines.size()];
    switch (random() % 4) {
        case 0:
            std::swap(one, other);
            break;
        case 1:
            one = other;
            break;
        case 2:
            one += other;
            break;
        default:
            one.clear();
            break;
    }
    return joined(lines);
}

/// The words of a line, with what separates them.
std::vector<std::string> wordsOf(const std::string& line) {
    std::vector<std::string> words(1);
    for (const char character : line) {
        const bool isSeparator = " \t\n,:"sv.find(character) != std::string_view::npos;
        if (isSeparator) {
            words.emplace_back(1, character);
            words.emplace_back();
        } else {
            words.back() += character;
        }
    }
    return words;
}

std::string withMovedWord(const std::string& text, std::mt19937& random) {
    std::vector<std::string> lines = linesOf(text);
    std::string& line = lines[random() % lines.size()];
    std::vector<std::string> words = wordsOf(line);
    const std::vector<std::string> others = wordsOf(lines[random() % lines.size()]);
    words[random() % words.size()] = others[random() % others.size()];
    line = joined(words);
    return joined(lines);
}

std::string withOtherCharacters(std::string text, std::mt19937& random) {
    const std::size_t at = random() % text.size();
    switch (random() % 4) {
        case 0:
            return text.erase(at, 1 + random() % 3);
        case 1:
            return text.insert(at, 1, text[at]);
        case 2:
            return text.insert(at, pieces[random() % pieces.size()]);
        default:
            return text.replace(at, 1, pieces[random() % pieces.size()]);
    }
}

}  // namespace

std::string mutated(std::string text, std::mt19937& random) {
    for (std::size_t faults = 1 + random() % 3; faults > 0 && !text.empty(); --faults) {
        switch (random() % 3) {
            case 0:
                text = withMovedLine(text, random);
                break;
            case 1:
                text = withMovedWord(text, random);
                break;
            default:
                text = withOtherCharacters(std::move(text), random);
                break;
        }
    }
    return text;
}

}  // namespace krel::Native
