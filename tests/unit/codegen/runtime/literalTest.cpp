#include "codegen/runtime/literal.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/codegen/runtime/guardedText.hpp"

namespace {

std::string decoded(const char* literal) {
    const std::size_t length = krel::textLength(literal);
    std::string room(length + 16, '\0');
    const char* end = krel::decode(literal, length, room.data());
    room.resize(static_cast<std::size_t>(end - room.data()));
    return room;
}

struct Sample {
    const char* literal;
    std::string text;
};

const Sample samples[] = {
    {"", ""},
    {"plain", "plain"},
    {R"(\n)", "\n"},
    {R"(\r)", "\r"},
    {R"(\t)", "\t"},
    {R"(\")", "\""},
    {R"(\\)", "\\"},
    {R"(\\n)", "\\n"},    // a backslash and an n, no line feed
    {R"(\\\n)", "\\\n"},  // a backslash and a line feed
    {R"(\n\n\n)", "\n\n\n"},
    {R"(a\tb\nc)", "a\tb\nc"},
    {R"(say \"hi\")", "say \"hi\""},
    {R"(\)", "\\"},    // at the end it stands for itself
    {R"(\0)", "\\0"},  // no escape
    {R"(\x\n)", "\\x\n"},
    {R"(\a\\b)", "\\a\\b"},
    {"\x01\x7F\x80\xFF", "\x01\x7F\x80\xFF"},
};

}  // namespace

TEST(LiteralTest, DecodesTheFiveEscapes) {
    for (const Sample& sample : samples) {
        EXPECT_EQ(decoded(sample.literal), sample.text) << sample.literal;
    }
}

// Wherever an escape stands relative to the chunks that are read.
TEST(LiteralTest, DecodesBehindAnyNumberOfBytes) {
    for (std::size_t before = 0; before < 40; ++before) {
        for (std::size_t after = 0; after < 20; ++after) {
            for (const Sample& sample : samples) {
                const std::string left(before, 'l');
                const std::string right(after, '.');
                ASSERT_EQ(decoded((left + sample.literal + right).c_str()),
                          left + sample.text + right)
                    << sample.literal << " behind " << before;
            }
        }
    }
}

TEST(LiteralTest, ReadsNothingBeyondThePage) {
    const GuardedPages pages(1);
    for (std::size_t before = 0; before < 40; ++before) {
        for (const Sample& sample : samples) {
            const std::string left(before, 'l');
            ASSERT_EQ(decoded(pages.putAtEnd(left + sample.literal)), left + sample.text);
        }
    }
}

TEST(LiteralTest, DecodesAcrossPages) {
    const GuardedPages pages(2);
    for (std::size_t back = 1; back < 40; ++back) {
        for (const Sample& sample : samples) {
            char* place = pages.begin + GuardedPages::pageSize - back;
            std::strcpy(place, sample.literal);
            std::strcat(place, "and the next page");
            // What follows a lone backslash at the sample's end is no escape either.
            ASSERT_EQ(decoded(place), sample.text + "and the next page") << back;
        }
    }
}

TEST(LiteralTest, WritesAtMostSixteenBytesTooMuch) {
    for (std::size_t length = 0; length < 100; ++length) {
        const std::string literal(length, 'x');
        std::string room(length + 32, '#');
        krel::decode(literal.c_str(), length, room.data());
        EXPECT_EQ(room.substr(length + 16), std::string(16, '#')) << length;
    }
}
