#include "codegen/runtime/bytes.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/codegen/runtime/guardedText.hpp"

namespace {

constexpr char untouched = '\x5A';

/// A text in which no two neighbouring pieces are alike.
std::string patternOf(std::size_t length) {
    std::string text(length, '\0');
    for (std::size_t i = 0; i < length; ++i) {
        text[i] = static_cast<char>(1 + (i * 7 + i / 251) % 251);
    }
    return text;
}

}  // namespace

TEST(BytesTest, FindInChunkSetsABitPerHit) {
    const char chunk[17] = "a.bcd.efghijklm.";
    EXPECT_EQ(krel::findInChunk(krel::loadChunk(chunk), '.'), 0b1000'0000'0010'0010U);
    EXPECT_EQ(krel::findInChunk(krel::loadChunk(chunk), '\xFF'), 0U);
}

TEST(BytesTest, ChunkStaysInPageUpToItsLastSixteenBytes) {
    const GuardedPages pages(1);
    EXPECT_TRUE(krel::chunkStaysInPage(pages.begin));
    EXPECT_TRUE(krel::chunkStaysInPage(pages.end() - 16));
    for (std::size_t left = 1; left < 16; ++left) {
        EXPECT_FALSE(krel::chunkStaysInPage(pages.end() - left)) << left;
    }
}

TEST(BytesTest, CopyTextCopiesEveryLengthAndLeavesTheRestAlone) {
    for (std::size_t length = 0; length < 1200; ++length) {
        for (const std::size_t offset : {std::size_t{8}, 1 + length % 64}) {
            std::string from = patternOf(length);
            from.resize(length + 16, '.');
            std::vector<char> to(offset + length + 64, untouched);
            krel::copyText(to.data() + offset, from.data(), length);
            ASSERT_EQ(std::string_view(to.data() + offset, length),
                      std::string_view(from.data(), length));
            for (std::size_t i = 0; i < offset; ++i) {
                ASSERT_EQ(to[i], untouched) << "before a text of " << length;
            }
            for (std::size_t i = offset + length + 16; i < to.size(); ++i) {
                ASSERT_EQ(to[i], untouched) << "after a text of " << length;
            }
        }
    }
}

// Both ways have to be right on every machine, whichever is taken there.
TEST(BytesTest, BothWaysCopyLongTextsExactly) {
    using Way = void (*)(char*, const char*, std::size_t);
    std::vector<Way> ways = {krel::copyByStringInstruction, krel::copyLongText};
    if (krel::hasWideRegisters()) {
        ways.push_back(krel::copyByWideRegisters);
    }
    std::vector<std::size_t> lengths = {4095, 4096, 4097, 70'000, 300'000, 1 << 20};
    for (std::size_t length = krel::longTextLength; length < krel::longTextLength + 300; ++length) {
        lengths.push_back(length);
    }
    for (const std::size_t length : lengths) {
        // Both end at the end of a page, where any step too far is found out.
        const GuardedPages from(length / GuardedPages::pageSize + 2);
        const GuardedPages to(length / GuardedPages::pageSize + 2);
        const std::string text = patternOf(length);
        std::memcpy(from.end() - length, text.data(), length);
        for (const Way way : ways) {
            std::memset(to.begin, untouched, to.size);
            way(to.end() - length, from.end() - length, length);
            ASSERT_EQ(std::string_view(to.end() - length, length), text);
            ASSERT_EQ(to.end()[-static_cast<std::ptrdiff_t>(length) - 1], untouched);
        }
    }
}
