#include "codegen/runtime/literal.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/unit/codegen/runtime/guardedText.hpp"

namespace {

std::string decoded(const char* literal) {
    std::string room(std::strlen(literal) + 16, '\0');
    const char* end = krel::decode(literal, room.data());
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
        krel::decode(literal.c_str(), room.data());
        EXPECT_EQ(room.substr(length + 16), std::string(16, '#')) << length;
    }
}

TEST(LiteralTest, MeasuresAtEveryAlignment) {
    alignas(64) char memory[256];
    for (std::size_t begin = 0; begin < 64; ++begin) {
        for (std::size_t length = 0; length < 100; ++length) {
            std::memset(memory, 'x', sizeof memory);
            // An end and an escape before the literal are none of it.
            memory[begin == 0 ? 255 : begin - 1] = begin % 2 == 0 ? '\0' : '\\';
            memory[begin + length] = '\0';
            const krel::LiteralExtent extent = krel::measureLiteral(memory + begin);
            ASSERT_EQ(extent.length, length) << "at " << begin;
        }
    }
}

TEST(LiteralTest, TakesEveryByteButNulForAPartOfALiteral) {
    std::string literal;
    for (int byte = 1; byte < 256; ++byte) {
        literal += static_cast<char>(byte);
    }
    EXPECT_EQ(krel::measureLiteral(literal.c_str()).length, 255U);
}

TEST(LiteralTest, FindsABackslashAnywhere) {
    for (std::size_t length = 1; length < 70; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::string literal(length, 'x');
            literal[place] = '\\';
            ASSERT_FALSE(krel::measureLiteral(literal.c_str()).isPlain)
                << place << " of " << length;
        }
    }
}

// Copying in chunks would read up to fifteen bytes beyond the literal's end.
TEST(LiteralTest, IsNotPlainCloseToThePagesEnd) {
    const GuardedPages pages(1);
    for (std::size_t length = 0; length < 100; ++length) {
        const std::string text(length, 'x');
        const krel::LiteralExtent atEnd = krel::measureLiteral(pages.putAtEnd(text));
        EXPECT_EQ(atEnd.length, length);
        EXPECT_FALSE(atEnd.isPlain) << length;
        const std::string withRoom = text + std::string(1, '\0') + std::string(15, '.');
        EXPECT_TRUE(krel::measureLiteral(pages.putAtEnd(withRoom)).isPlain) << length;
    }
}

TEST(LiteralTest, TellsALineFeedFromEverythingElse) {
    EXPECT_TRUE(krel::isLineFeed(R"(\n)"));
    for (const char* other : {"", "\n", "n", R"(\)", R"(\t)", R"(\\n)", R"(\n\n)", R"(\n )"}) {
        EXPECT_FALSE(krel::isLineFeed(other)) << other;
    }
    const GuardedPages pages(1);
    for (const char* atEnd : {"", R"(\)"}) {
        EXPECT_FALSE(krel::isLineFeed(pages.putAtEnd(atEnd))) << atEnd;
    }
}
