// Doubles, strings and names against the system's assembler.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "native/assembler.hpp"
#include "native/decimal.hpp"
#include "native/notKnown.hpp"
#include "tests/native/support/comparison.hpp"
#include "tests/native/support/systemAssembler.hpp"

namespace krel::Native {

namespace {

std::string randomDigits(std::mt19937& random, std::size_t count) {
    std::string digits;
    for (std::size_t number = 0; number < count; ++number) {
        digits += static_cast<char>('0' + random() % 10);
    }
    return digits;
}

/// A literal with so many digits, the point anywhere among them.
std::string randomLiteral(std::mt19937& random, std::size_t count) {
    std::string literal = randomDigits(random, count);
    return literal.insert(random() % (count + 1), ".");
}

/// Exactly the number in the middle between a double and the next one.
std::string middleAfter(double number) {
    const double next = std::nextafter(number, INFINITY);
    const long double middle = (static_cast<long double>(number) + next) / 2;
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.120Lf", middle);
    std::string literal = text.data();
    return literal.erase(literal.find_last_not_of('0') + 1) + (literal.ends_with('.') ? "0" : "");
}

/// Compares those literals that our assembler takes; returns their number.
std::size_t compareDoubles(const std::vector<std::string>& literals) {
    std::string text = "\t.section .rodata\n";
    std::size_t count = 0;
    for (const std::string& literal : literals) {
        if (nearestDouble(literal)) {
            text += "\t.double " + literal + "\n";
            ++count;
        }
    }
    expectSameObject(text);
    return count;
}

TEST(NativeDoublesTest, RandomLiterals) {
    std::mt19937 random{1};
    std::vector<std::string> literals;
    for (std::size_t digits = 1; digits <= 40; ++digits) {
        for (int round = 0; round < 1000; ++round) {
            literals.push_back((round % 2 == 0 ? "" : "-") + randomLiteral(random, digits));
        }
    }
    EXPECT_GT(compareDoubles(literals), literals.size() * 9 / 10);
}

TEST(NativeDoublesTest, SimpleNumbers) {
    std::vector<std::string> literals = {"0.0",
                                         "-0.0",
                                         "+0.5",
                                         ".5",
                                         "5.",
                                         "-.25",
                                         "00.5",
                                         "007.5",
                                         "0.000000000000000000000001",
                                         "1000000000000000000000.0"};
    for (int number = 0; number < 5000; ++number) {
        literals.push_back(std::to_string(number / 100) + "." + std::to_string(number % 100));
    }
    EXPECT_EQ(compareDoubles(literals), literals.size());
}

// What lies between two doubles, and what is a little more or less.
TEST(NativeDoublesTest, MiddlesAndTheirNeighbours) {
    std::mt19937 random{2};
    std::vector<std::string> literals;
    for (int round = 0; round < 3000; ++round) {
        const double number =
            std::ldexp(1.0 + static_cast<double>(random()) / 4294967296.0 +
                           static_cast<double>(random()) / 4294967296.0 / 4294967296.0,
                       static_cast<int>(random() % 120) - 60);
        const std::string middle = middleAfter(number);
        literals.push_back(middle);
        literals.push_back(middle + "1");
        literals.push_back(middle + "00000000000000000001");
        std::string less = middle;
        --less.back();
        literals.push_back(less + "9");
        literals.push_back(less + "99999999999999999999");
        for (const std::size_t length : {16U, 17U, 18U, 19U, 20U, 21U, 25U, 30U}) {
            const std::string cut = middle.substr(0, length);
            if (cut.find('.') != std::string::npos) {
                literals.push_back(cut);
            }
        }
    }
    compareDoubles(literals);
}

bool isKnown(std::string_view text) {
    try {
        assemble(text);
        return true;
    } catch (const NotKnown&) {
        return false;
    }
}

std::string stringWith(std::string_view content) {
    return "\t.string \"" + std::string{content} + "\"\n";
}

// The compiler writes a backslash and a quote with a backslash before them, and everything else as
// it is.
TEST(NativeStringsTest, EveryByte) {
    std::string text = "\t.section .rodata\n";
    for (unsigned byte = 1; byte < 256; ++byte) {
        const auto character = static_cast<char>(byte);
        if (character == '\n') {
            continue;
        }
        const std::string escape = character == '"' || character == '\\' ? "\\" : "";
        const std::string content = escape + character;
        for (const std::string& line :
             {stringWith(content), stringWith("a" + content), stringWith(content + "b"),
              stringWith("a" + content + "b"), stringWith(content + content)}) {
            EXPECT_TRUE(isKnown("\t.section .rodata\n" + line)) << byte;
            text += line;
        }
    }
    expectSameObject(text);
}

// All pairs of bytes, whether the compiler could write them or not: what is taken is taken alike.
TEST(NativeStringsTest, EveryPairOfBytes) {
    std::string text = "\t.section .rodata\n";
    std::size_t count = 0;
    for (unsigned pair = 0; pair < 65536; ++pair) {
        const std::string content = {static_cast<char>(pair >> 8), static_cast<char>(pair & 255)};
        const std::string line = stringWith(content);
        if (isKnown("\t.section .rodata\n" + line)) {
            text += line;
            ++count;
        }
    }
    EXPECT_GE(count, 252U * 252U);
    expectSameObject(text);
}

TEST(NativeStringsTest, WhatTheSystemReadsInAnotherWayIsRefused) {
    for (const char* const content :
         {"\\n", "\\t", "\\101", "\\x41", "\\", "\\'", "\\q", "a\" \"b", "a\", \"b"}) {
        EXPECT_FALSE(isKnown("\t.section .rodata\n" + stringWith(content))) << content;
    }
    using namespace std::string_literals;
    EXPECT_FALSE(isKnown("\t.section .rodata\n" + stringWith("a\0b"s)));
    EXPECT_FALSE(isKnown("\t.section .rodata\n" + stringWith("a\nb")));
}

TEST(NativeStringsTest, Megabytes) {
    std::string content;
    while (content.size() < 3 << 20) {
        content += "plain text, \\\\n and \\\"quotes\\\"; # no comment /* nor this */ \xC3\xA4 ";
    }
    expectSameObject("\t.section .rodata\n.LC0:\n" + stringWith(content) + ".LC1:\n" +
                     stringWith(""));
}

// Words that mean something to an assembler, as names of functions.
TEST(NativeNamesTest, AnyNameMayBeAFunction) {
    std::string text = "\t.text\n";
    for (const char* const name :
         {"main", "rax",  "st",       "eq",      "and",    "or",   "not",   "mod",    "offset",
          "flat", "ptr",  "byte",     "movq",    "call",   "text", "data",  "size",   "globl",
          "rep",  "lock", "_",        "__",      "_L",     "L1",   "Lmain", "B1",     "a1",
          "PLT",  "rip",  "GOTPCREL", "B",       "e",      "f",    "b",     "x",      "E5",
          "inf",  "nan",  "data16",   "_start",  "printf", "dot",  "macro", "rodata", "set",
          "equ",  "st0",  "cs",       "progbits"}) {
        const std::string word = name;
        text += "\n\t.globl " + word + "\n\t.type " + word + ", @function\n" + word +
                ":\n\tpushq %rbp\n.L" + word + "_B1:\n\tcall " + word + "@PLT\n\tcall other_" +
                word + "@PLT\n\tjmp .L" + word + "_B1\n\tjne .L" + word + "_return\n.L" + word +
                "_return:\n\tret\n\t.size " + word + ", .-" + word + "\n";
    }
    expectSameObject(text);
}

TEST(NativeNamesTest, LongNames) {
    const std::string name(100000, 'n');
    expectSameObject("\t.text\n\n\t.globl " + name + "\n\t.type " + name + ", @function\n" + name +
                     ":\n.L" + name + "_B1:\n\tcall " + name + "@PLT\n\tjmp .L" + name +
                     "_B1\n\t.size " + name + ", .-" + name + "\n");
}

}  // namespace

}  // namespace krel::Native
