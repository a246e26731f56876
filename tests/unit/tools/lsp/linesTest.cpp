// Lines and columns of editors.

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <random>
#include <string>
#include <string_view>

#include "tools/lsp/lines.hpp"

namespace krel::Lsp {

/// What GoogleTest shows of a place.
void PrintTo(const Position& position, std::ostream* out) {
    *out << position.line << ':' << position.character;
}

namespace {

constexpr std::array encodings{Encoding::Utf8, Encoding::Utf16, Encoding::Utf32};

// Two bytes, four bytes (two units of UTF-16), one.
constexpr std::string_view several = "\xc3\xa4\xf0\x9f\x98\x80x\ny";

TEST(LinesTest, LinesEndInThreeWays) {
    const Lines lines{"a\nb\r\nc\rd", Encoding::Utf8};
    EXPECT_EQ(lines.count(), 4U);
    EXPECT_EQ(lines.line(0), (SourceRange{0, 1}));
    EXPECT_EQ(lines.line(1), (SourceRange{2, 3}));
    EXPECT_EQ(lines.line(2), (SourceRange{5, 6}));
    EXPECT_EQ(lines.line(3), (SourceRange{7, 8}));
    EXPECT_EQ(lines.line(4), (SourceRange{8, 8}));
}

TEST(LinesTest, EveryTextHasALine) {
    const Lines lines{"", Encoding::Utf16};
    EXPECT_EQ(lines.count(), 1U);
    EXPECT_EQ(lines.line(0), (SourceRange{0, 0}));
    EXPECT_EQ(lines.positionOf(0), (Position{0, 0}));
    EXPECT_EQ(lines.offsetOf({0, 0}), 0U);
    EXPECT_EQ((Lines{"a\n", Encoding::Utf8}.count()), 2U);
}

TEST(LinesTest, EncodingsCountDifferently) {
    EXPECT_EQ((Lines{several, Encoding::Utf8}.positionOf(6)), (Position{0, 6}));
    EXPECT_EQ((Lines{several, Encoding::Utf16}.positionOf(6)), (Position{0, 3}));
    EXPECT_EQ((Lines{several, Encoding::Utf32}.positionOf(6)), (Position{0, 2}));
    EXPECT_EQ((Lines{several, Encoding::Utf16}.positionOf(8)), (Position{1, 0}));
}

TEST(LinesTest, PlacesWithinACharacterAreTheCharacter) {
    for (const Encoding encoding : encodings) {
        const Lines lines{several, encoding};
        EXPECT_EQ(lines.positionOf(4), lines.positionOf(2));
    }
    EXPECT_EQ((Lines{several, Encoding::Utf8}.offsetOf({0, 3})), 2U);
    EXPECT_EQ((Lines{several, Encoding::Utf16}.offsetOf({0, 2})), 2U);
}

TEST(LinesTest, PlacesBehindAnEndAreTheEnd) {
    for (const Encoding encoding : encodings) {
        const Lines lines{several, encoding};
        EXPECT_EQ(lines.offsetOf({0, 100}), 7U);
        EXPECT_EQ(lines.offsetOf({0, ~std::uint64_t{0}}), 7U);
        EXPECT_EQ(lines.offsetOf({1, 1}), 9U);
        EXPECT_EQ(lines.offsetOf({2, 0}), 9U);
        EXPECT_EQ(lines.positionOf(100), lines.positionOf(9));
    }
}

/// Characters of all lengths, in long lines and short ones.
std::string randomText(unsigned seed) {
    constexpr std::array<std::string_view, 6> characters{
        "a", "b", "\xc3\xa4", "\xe2\x82\xac", "\xf0\x9f\x98\x80", "\n"};
    std::mt19937 random{seed};
    std::discrete_distribution<std::size_t> choose{40, 40, 10, 10, 10, seed % 2 == 0 ? 10.0 : 0.2};
    std::string text;
    while (text.size() < 3000) {
        text += characters.at(choose(random));
    }
    return text;
}

std::uint64_t unitsOf(char first, Encoding encoding) {
    const auto byte = static_cast<unsigned char>(first);
    const std::uint64_t bytes = byte < 0x80 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
    return encoding == Encoding::Utf8 ? bytes : encoding == Encoding::Utf16 && bytes == 4 ? 2 : 1;
}

TEST(LinesTest, FindsWhatCountingFinds) {
    for (unsigned seed = 0; seed < 6; ++seed) {
        const std::string text = randomText(seed);
        for (const Encoding encoding : encodings) {
            const Lines lines{text, encoding};
            Position counted;
            for (std::uint32_t offset = 0; offset < text.size(); ++offset) {
                if ((static_cast<unsigned char>(text[offset]) & 0xc0U) == 0x80U) {
                    continue;
                }
                ASSERT_EQ(lines.positionOf(offset), counted) << seed << ' ' << offset;
                ASSERT_EQ(lines.offsetOf(counted), offset) << seed << ' ' << offset;
                counted = text[offset] == '\n'
                              ? Position{counted.line + 1, 0}
                              : Position{counted.line,
                                         counted.character + unitsOf(text[offset], encoding)};
            }
        }
    }
}

}  // namespace

}  // namespace krel::Lsp
