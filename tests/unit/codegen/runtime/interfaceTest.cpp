#include "codegen/runtime/interface.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <limits>
#include <random>
#include <string>

#include "codegen/runtime/output.hpp"
#include "codegen/runtime/stringHeap.hpp"
#include "tests/unit/codegen/runtime/guardedText.hpp"
#include "tests/unit/codegen/runtime/mainStack.hpp"
#include "tests/unit/support/childProcess.hpp"

namespace {

/// Makes the runtime ready, as its start does for a program: the strings that the tests hold lie on
/// the stack of this process.
void openRuntime() {
    static const bool opened = [] {
        krel::stringHeap.open(endOfMainStack);
        return true;
    }();
    ASSERT_TRUE(opened);
}

class InterfaceTest : public testing::Test {
protected:
    void SetUp() override { openRuntime(); }
};

/// What a program that prints the text writes.
std::string printed(const char* text) {
    return runInChild([text] {
               krel::standardOutput.open(STDOUT_FILENO);
               krel_print(text);
               krel::standardOutput.flush();
               return 0;
           })
        .out;
}

std::size_t availableMemory() {
    std::ifstream file("/proc/meminfo");
    std::string name;
    std::size_t kilobytes = 0;
    for (std::string unit; file >> name >> kilobytes;) {
        if (name == "MemAvailable:") {
            return kilobytes * 1024;
        }
        std::getline(file, unit);
    }
    return 0;
}

}  // namespace

TEST_F(InterfaceTest, ConcatenatesLiteralsDecodingThemOnce) {
    EXPECT_STREQ(krel_concat("", ""), "");
    EXPECT_STREQ(krel_concat("a", "b"), "ab");
    EXPECT_STREQ(krel_concat(R"(one\n)", R"(\ttwo)"), "one\n\ttwo");
    EXPECT_STREQ(krel_concat(R"(\\)", "n"), "\\n");
    // The backslash is text by now; a second concatenation leaves it alone.
    const char* backslash = krel_concat(R"(\\)", "");
    EXPECT_STREQ(krel_concat(backslash, "n"), "\\n");
    EXPECT_STREQ(krel_concat(krel_concat(backslash, "n"), backslash), "\\n\\");
}

TEST_F(InterfaceTest, ACharacterIsNoHalfOfAnEscape) {
    EXPECT_STREQ(krel_concat(krel_chartostring('\\'), "n"), "\\n");
    EXPECT_STREQ(krel_concat(krel_chartostring('\\'), krel_chartostring('n')), "\\n");
    EXPECT_EQ(printed(krel_concat(krel_chartostring('\\'), "n")), "\\n");
    EXPECT_EQ(printed(krel_chartostring('\\')), "\\");
}

TEST_F(InterfaceTest, PrintsLiteralsDecodedAndStringsAsTheyAre) {
    EXPECT_EQ(printed(""), "");
    EXPECT_EQ(printed(R"(a\n)"), "a\n");
    EXPECT_EQ(printed(R"(\\n)"), "\\n");
    EXPECT_EQ(printed(krel_concat(R"(\\)", R"(n\n)")), "\\n\n");
}

TEST_F(InterfaceTest, CharactersAreTheirLowEightBits) {
    EXPECT_STREQ(krel_chartostring(0), "");
    EXPECT_EQ(printed(krel_chartostring(0)), "");
    for (std::uint64_t code = 1; code < 256; ++code) {
        const std::string expected(1, static_cast<char>(code));
        EXPECT_EQ(krel_chartostring(code), expected) << code;
        EXPECT_EQ(krel_chartostring(code + 256), expected) << code;
        EXPECT_EQ(krel_chartostring(code - 256), expected) << code;
        EXPECT_EQ(krel_concat(krel_chartostring(code), krel_chartostring(code)),
                  expected + expected);
    }
}

TEST_F(InterfaceTest, BooleansAreWords) {
    EXPECT_STREQ(krel_booltostring(0), "false");
    EXPECT_STREQ(krel_booltostring(1), "true");
}

TEST_F(InterfaceTest, IntegersAreDecimal) {
    EXPECT_STREQ(krel_inttostring(0), "0");
    EXPECT_STREQ(krel_inttostring(-1), "-1");
    EXPECT_STREQ(krel_inttostring(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
    EXPECT_STREQ(krel_inttostring(std::numeric_limits<std::int64_t>::min()),
                 "-9223372036854775808");
    for (std::int64_t value = 1; value < 1'000'000'000'000'000'000; value *= 10) {
        for (const std::int64_t number : {value - 1, value, -value, 1 - value, value * 9}) {
            EXPECT_EQ(krel_inttostring(number), std::to_string(number));
        }
    }
}

TEST_F(InterfaceTest, DoublesAreTheirShortestText) {
    EXPECT_STREQ(krel_doubletostring(2.5), "2.5");
    EXPECT_STREQ(krel_doubletostring(-0.0), "-0");
    EXPECT_STREQ(krel_doubletostring(-2.2250738585072014e-308), "-2.2250738585072014e-308");
    EXPECT_STREQ(krel_concat(krel_doubletostring(1e16), "!"), "1e+16!");
}

TEST_F(InterfaceTest, StringsEndWithTheirNul) {
    for (const char* text : {krel_inttostring(12345678), krel_doubletostring(0.1),
                             krel_concat("1234567", ""), krel_concat("12345678", "")}) {
        EXPECT_EQ(std::strlen(text), krel::StringHeap::lengthOf(text));
    }
}

TEST_F(InterfaceTest, ConcatenatesOperandsOfEveryLength) {
    for (std::size_t left = 0; left < 140; ++left) {
        for (std::size_t right = 0; right < 140; ++right) {
            const std::string first(left, 'l');
            const std::string second(right, 'r');
            const char* made = krel_concat(first.c_str(), second.c_str());
            ASSERT_EQ(made, first + second);
            const char* madeFirst = krel_concat("", first.c_str());
            const char* madeSecond = krel_concat(second.c_str(), "");
            ASSERT_EQ(krel_concat(madeFirst, madeSecond), first + second);
            ASSERT_EQ(krel_concat(first.c_str(), madeSecond), first + second);
            ASSERT_EQ(krel_concat(madeFirst, second.c_str()), first + second);
        }
    }
}

TEST_F(InterfaceTest, ConcatenatesTheEndsOfStrings) {
    // The bytes before an end are never taken for its length, whatever they are.
    for (const char byte : {'a', '\x01', '\xFF'}) {
        for (const std::size_t length : {1UL, 7UL, 8UL, 30UL, 111UL, 119UL, 120UL, 300UL}) {
            const std::string text(length, byte);
            const char* made = krel_concat(text.c_str(), "");
            for (std::size_t offset = 0; offset <= length; ++offset) {
                const std::string rest = text.substr(offset);
                ASSERT_EQ(krel_concat(made + offset, ""), rest);
                ASSERT_EQ(krel_concat("", made + offset), rest);
                ASSERT_EQ(krel_concat(made + offset, "right"), rest + "right");
                ASSERT_EQ(krel_concat("left", made + offset), "left" + rest);
                ASSERT_EQ(krel_concat(made + offset, made + offset), rest + rest);
                ASSERT_EQ(krel_concat(made, made + offset), text + rest);
                ASSERT_EQ(krel_concat(made + offset, made), rest + text);
            }
        }
    }
}

TEST_F(InterfaceTest, ConcatenatesTheEndsOfLargeStrings) {
    std::string text;
    for (int i = 0; text.size() < 300'000; ++i) {
        text += std::to_string(i);
    }
    const char* made = krel_concat(text.c_str(), "");
    for (const std::size_t offset : {1UL, 65'471UL, 65'472UL, 65'473UL, 131'008UL, 250'000UL,
                                     299'990UL, text.size() - 1, text.size()}) {
        EXPECT_EQ(krel_concat(made + offset, "."), text.substr(offset) + ".");
        EXPECT_EQ(krel_concat(made + offset, made + 5), text.substr(offset) + text.substr(5));
    }
}

TEST_F(InterfaceTest, PrintsTheEndsOfStringsAsTheyAre) {
    const char* made = krel_concat(R"(a\\nb\\)", krel_inttostring(123));
    const std::string text = R"(a\nb\123)";
    ASSERT_EQ(made, text);
    for (std::size_t offset = 0; offset <= text.size(); ++offset) {
        EXPECT_EQ(printed(made + offset), text.substr(offset));
        EXPECT_EQ(krel_concat(made + offset, ""), text.substr(offset));
    }
}

TEST_F(InterfaceTest, PrintsTheEndsOfLargeStrings) {
    std::string text = R"(a\n)";
    for (int i = 0; text.size() < 200'000; ++i) {
        text += std::to_string(i);
    }
    const char* made = krel_concat(R"(a\\n)", krel_concat(text.c_str() + 3, ""));
    for (const std::size_t offset : {0UL, 1UL, 70'000UL, 190'000UL, text.size()}) {
        EXPECT_TRUE(printed(made + offset) == text.substr(offset)) << offset;
    }
}

// Only the address that walks through the text says that it is in use.
TEST_F(InterfaceTest, AStringLivesWhileAnAddressWalksThroughIt) {
    for (const std::size_t length : {50UL, 3000UL, 200'000UL}) {
        const std::string text(length, 'w');
        const std::size_t stride = 1 + length / 100;
        const std::size_t before = krel::stringHeap.collections();
        const char* volatile place = krel_concat(text.c_str(), "");
        for (std::size_t offset = 0; krel::stringHeap.collections() < before + 20;) {
            ASSERT_EQ(krel_concat("", place), text.substr(offset));
            const std::size_t next = offset < length ? std::min(offset + stride, length) : 0;
            place = place + (next - offset);
            offset = next;
        }
    }
}

TEST_F(InterfaceTest, AddressesBehindAStringDoNoHarm) {
    for (const std::size_t length : {0UL, 1UL, 8UL, 20UL, 1000UL, 100'000UL}) {
        const char* made = krel_concat(std::string(length, 'x').c_str(), "");
        for (const std::size_t behind : {1UL, 2UL, 3UL, 7UL, 8UL, 9UL, 16UL, 33UL}) {
            const char* text = krel_concat(made + length + behind, made + length + behind);
            EXPECT_LE(krel::stringHeap.lengthFrom(text), 2 * krel::blockSize);
            EXPECT_LE(printed(made + length + behind).size(), krel::blockSize);
        }
        EXPECT_EQ(made, std::string(length, 'x'));
    }
}

TEST_F(InterfaceTest, ReadsNothingBeyondALiteralsPage) {
    const GuardedPages pages(1);
    for (std::size_t length = 0; length < 300; ++length) {
        const std::string text(length, 'x');
        ASSERT_EQ(krel_concat("left ", pages.putAtEnd(text)), "left " + text);
        ASSERT_EQ(krel_concat(pages.putAtEnd(text + R"(\n)"), "!"), text + "\n!");
    }
}

TEST_F(InterfaceTest, DoesNotWriteToItsOperands) {
    const char* left = krel_concat("left", "");
    const char* right = krel_concat("right", "");
    krel_concat(left, right);
    EXPECT_STREQ(left, "left");
    EXPECT_STREQ(right, "right");
}

TEST_F(InterfaceTest, BuildsAStringBytewise) {
    const char* volatile text = "";
    std::string expected;
    for (int i = 0; i < 3000; ++i) {
        text = krel_concat(text, i % 7 == 0 ? R"(\n)" : "abc");
        expected += i % 7 == 0 ? "\n" : "abc";
    }
    EXPECT_EQ(text, expected);
}

// Random operations beside the same ones of the standard library; all that is held lies on the
// stack, and far more than the first collection waits for is made.
TEST_F(InterfaceTest, RandomStringsAreAsExpected) {
    std::mt19937_64 random(3);
    constexpr std::size_t count = 64;
    const char* volatile held[count];
    std::string expected[count];
    for (std::size_t i = 0; i < count; ++i) {
        held[i] = "";
    }
    const std::size_t collectionsBefore = krel::stringHeap.collections();
    for (int step = 0; step < 200'000; ++step) {
        const std::size_t to = random() % count;
        const std::size_t from = random() % count;
        const auto number = static_cast<std::int64_t>(random()) >> (random() % 64);
        switch (random() % 6) {
            case 0:
                held[to] = krel_inttostring(number);
                expected[to] = std::to_string(number);
                break;
            case 1:
                held[to] = R"(tab\tfeed\n)";
                expected[to] = "tab\tfeed\n";
                break;
            case 2:
                held[to] = krel_chartostring(static_cast<std::uint64_t>('A' + number % 16));
                expected[to] = std::string(1, static_cast<char>('A' + number % 16));
                break;
            default:
                if (expected[to].size() + expected[from].size() > 100'000) {
                    held[to] = "";
                    expected[to].clear();
                }
                held[to] = krel_concat(held[to], held[from]);
                expected[to] += expected[from];
        }
        if (step % 1000 == 0) {
            for (std::size_t i = 0; i < count; ++i) {
                ASSERT_EQ(krel_concat("", held[i]), expected[i]);
            }
        }
    }
    EXPECT_GT(krel::stringHeap.collections(), collectionsBefore);
}

TEST_F(InterfaceTest, StringsOfAGigabyte) {
    constexpr std::size_t gigabyte = std::size_t{1} << 30;
    if (availableMemory() < 5 * gigabyte) {
        GTEST_SKIP() << "needs 5 GB of free memory";
    }
    const char* volatile text = krel_concat("0123456789abcdef", "0123456789abcdef");
    while (krel::StringHeap::lengthOf(text) < gigabyte) {
        text = krel_concat(text, text);
    }
    ASSERT_EQ(krel::StringHeap::lengthOf(text), gigabyte);
    for (std::size_t place = 0; place < gigabyte; place += 999'983) {
        ASSERT_EQ(text[place], "0123456789abcdef"[place % 16]);
    }
    EXPECT_EQ(text[gigabyte - 1], 'f');
    EXPECT_EQ(text[gigabyte], '\0');
    text = "";
}
