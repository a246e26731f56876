#include "shared/ast/hashing.hpp"

#include <gtest/gtest.h>
#include <sys/auxv.h>

#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace krel {

namespace {

// Another implementation's values, for a secret of zeros.
TEST(SipHashTest, GivesThePublishedFunction) {
    EXPECT_EQ(sipHash("a", 0, 0), 0x407448d2b89b1813U);
    EXPECT_EQ(sipHash("seven77", 0, 0), 0xa6db6108ea1ca0c6U);
    EXPECT_EQ(sipHash("eight888", 0, 0), 0xde3012c86e77952fU);
    EXPECT_EQ(sipHash("nine99999", 0, 0), 0xc277005464d2dae5U);
    std::string bytes;
    for (int byte = 200; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    EXPECT_EQ(sipHash(bytes, 0, 0), 0xedcba5a03367e83aU);
}

TEST(SipHashTest, DependsOnBothWordsOfTheSecret) {
    EXPECT_NE(sipHash("text", 0, 0), sipHash("text", 1, 0));
    EXPECT_NE(sipHash("text", 0, 0), sipHash("text", 0, 1));
}

TEST(HashSecretTest, StaysTheSameInAProcess) {
    EXPECT_EQ(hashSecret().first, hashSecret().first);
    EXPECT_EQ(hashSecret().multiplier % 2, 1U);
    EXPECT_NE(hashSecret().first, hashSecret().second);
}

TEST(HashSecretTest, ComesFromTheRandomBytesThatTheProcessBeganWith) {
    std::uint64_t random[2];
    std::memcpy(random, reinterpret_cast<const void*>(getauxval(AT_RANDOM)), sizeof random);
    EXPECT_EQ(hashSecret().first, sipHash("first", random[0], random[1]));
    EXPECT_EQ(hashSecret().second, sipHash("second", random[0], random[1]));
    EXPECT_EQ(hashSecret().multiplier, sipHash("multiplier", random[0], random[1]) | 1);
}

constexpr unsigned chosenBits = 11;

/// Words that meet in one of the 2048 chains under a multiplier.
std::vector<std::uint64_t> keysThatMeet(std::uint64_t multiplier, std::size_t count) {
    std::vector<std::uint64_t> keys;
    std::string word = "aaaaaaa";
    while (keys.size() < count) {
        const std::uint64_t key = KeyedText{word}.key();
        if (chainOf(key, multiplier, chosenBits) == 0) {
            keys.push_back(key);
        }
        for (auto character = word.rbegin(); ++*character > 'z'; ++character) {
            *character = 'a';
        }
    }
    return keys;
}

/// How many pairs of keys meet in a chain.
std::size_t meetings(const std::vector<std::uint64_t>& keys, std::uint64_t multiplier) {
    std::vector<std::size_t> chains(std::size_t{1} << chosenBits);
    std::size_t pairs = 0;
    for (const std::uint64_t key : keys) {
        pairs += chains[chainOf(key, multiplier, chosenBits)]++;
    }
    return pairs;
}

// Who knows one multiplier can choose words that all meet. Under the others two of them meet with a
// chance of two in the number of chains at most.
TEST(ChainOfTest, WordsThatMeetUnderOneMultiplierDoNotUnderOthers) {
    constexpr std::uint64_t known = 0x9E3779B97F4A7C15;
    constexpr std::size_t count = 1000;
    constexpr std::size_t allPairs = count * (count - 1) / 2;
    const std::vector<std::uint64_t> keys = keysThatMeet(known, count);
    EXPECT_EQ(meetings(keys, known), allPairs);
    std::mt19937_64 random{1};
    constexpr std::size_t multipliers = 1000;
    std::size_t pairs = 0;
    for (std::size_t round = 0; round < multipliers; ++round) {
        pairs += meetings(keys, random() | 1);
    }
    EXPECT_LT(pairs / multipliers, allPairs * 2 >> chosenBits);
}

TEST(KeyedTextTest, KeysOfShortWordsAreUnique) {
    const std::string characters = "aAzZ_09";
    std::set<std::uint64_t> keys;
    std::size_t words = 0;
    for (std::size_t size = 1; size <= 4; ++size) {
        std::string word(size, characters.front());
        for (std::size_t number = 0;; ++number) {
            std::size_t rest = number;
            for (char& character : word) {
                character = characters[rest % characters.size()];
                rest /= characters.size();
            }
            if (rest != 0) {
                break;
            }
            const KeyedText text{word};
            EXPECT_TRUE(text.isUniqueWord());
            keys.insert(text.key());
            ++words;
        }
    }
    EXPECT_EQ(keys.size(), words);
}

TEST(KeyedTextTest, NineCharactersArePackedAndTenAreHashed) {
    EXPECT_TRUE(KeyedText{"abcdefghi"}.isUniqueWord());
    EXPECT_FALSE(KeyedText{"abcdefghij"}.isUniqueWord());
    EXPECT_EQ(KeyedText{"abcdefghij"}.key(), KeyedText{std::string{"abcdefghij"}}.key());
    EXPECT_NE(KeyedText{"abcdefghij"}.key(), KeyedText{"abcdefghik"}.key());
}

TEST(KeyedTextTest, MayBePackedOnTheWay) {
    for (const std::string word : {"x", "word", "abcdefghi", "abcdefghij"}) {
        std::uint64_t packed = 0;
        for (const char character : word) {
            packed = KeyedText::packNext(packed, character);
        }
        EXPECT_EQ(KeyedText(word, packed).key(), KeyedText{word}.key());
        EXPECT_EQ(KeyedText(word, packed).text(), word);
    }
}

}  // namespace

}  // namespace krel
