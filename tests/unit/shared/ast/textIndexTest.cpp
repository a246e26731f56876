#include "shared/ast/textIndex.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace krel {

namespace {

using namespace std::string_literals;

/// An index with the texts that it is for.
class Texts {
public:
    std::uint32_t find(const std::string& text) const {
        return index.find(KeyedText{text},
                          [&](std::uint32_t number) { return texts[number - 1] == text; });
    }

    std::uint32_t add(const std::string& text) {
        texts.push_back(text);
        return index.add(KeyedText{text}, static_cast<std::uint32_t>(texts.size()) + 100);
    }

    void shrink(std::uint32_t count) {
        index.shrink(count);
        texts.resize(count);
    }

    TextIndex index;
    std::vector<std::string> texts;
};

TEST(TextIndexTest, NumbersTextsInTheOrderOfTheirAddition) {
    Texts texts;
    EXPECT_EQ(texts.index.size(), 0U);
    EXPECT_EQ(texts.find("one"), 0U);
    EXPECT_EQ(texts.add("one"), 1U);
    EXPECT_EQ(texts.add("a text that is long"), 2U);
    EXPECT_EQ(texts.add(""), 3U);
    EXPECT_EQ(texts.find("one"), 1U);
    EXPECT_EQ(texts.find("a text that is long"), 2U);
    EXPECT_EQ(texts.find(""), 3U);
    EXPECT_EQ(texts.find("two"), 0U);
    EXPECT_EQ(texts.index.size(), 3U);
}

TEST(TextIndexTest, KeepsATagWithEachText) {
    Texts texts;
    texts.add("one");
    texts.add("two");
    EXPECT_EQ(texts.index.tagOf(1), 101U);
    EXPECT_EQ(texts.index.tagOf(2), 102U);
    EXPECT_EQ(texts.index.keyOf(2), KeyedText{"two"}.key());
}

TEST(TextIndexTest, FindsThousands) {
    Texts texts;
    constexpr std::uint32_t count = 5000;
    for (std::uint32_t number = 1; number <= count; ++number) {
        ASSERT_EQ(texts.add("text " + std::to_string(number)), number);
    }
    for (std::uint32_t number = 1; number <= count; ++number) {
        ASSERT_EQ(texts.find("text " + std::to_string(number)), number);
    }
    EXPECT_EQ(texts.find("text 0"), 0U);
}

TEST(TextIndexTest, TextsOfOneKeyAreToldApart) {
    // A byte above 127 spills into the character before it.
    const std::string left = "b\x80";
    const std::string right = "c\0"s;
    ASSERT_EQ(KeyedText{left}.key(), KeyedText{right}.key());
    Texts texts;
    texts.add(left);
    EXPECT_EQ(texts.find(right), 0U);
    texts.add(right);
    EXPECT_EQ(texts.find(left), 1U);
    EXPECT_EQ(texts.find(right), 2U);
}

// However far it grew in between, and wherever the texts that stay were chained.
TEST(TextIndexTest, ShrinksToItsFirstTexts) {
    for (int round = 0; round < 50; ++round) {
        Texts texts;
        for (int number = 0; number < 20; ++number) {
            texts.add("first " + std::to_string(round) + " " + std::to_string(number));
        }
        const std::vector<std::string> first = texts.texts;
        for (int number = 0; number < 300; ++number) {
            texts.add("later " + std::to_string(round) + " " + std::to_string(number));
        }
        texts.shrink(20);
        EXPECT_EQ(texts.index.size(), 20U);
        for (std::uint32_t number = 0; number < first.size(); ++number) {
            ASSERT_EQ(texts.find(first[number]), number + 1);
        }
        EXPECT_EQ(texts.find("later " + std::to_string(round) + " 0"), 0U);
        EXPECT_EQ(texts.add("another"), 21U);
        EXPECT_EQ(texts.find("another"), 21U);
    }
}

}  // namespace

}  // namespace krel
