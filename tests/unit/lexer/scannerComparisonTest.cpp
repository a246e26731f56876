// The scanner against the reference: random texts of pieces in which the rules compete.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <random>
#include <string>

#include "referenceScanner.hpp"
#include "scan.hpp"

namespace krel {

namespace {

using namespace std::string_literals;

template <std::size_t Count>
std::string randomText(std::mt19937& random, const std::array<std::string, Count>& pieces,
                       std::size_t size) {
    std::uniform_int_distribution<std::size_t> choice{0, Count - 1};
    std::string text;
    for (std::size_t piece = 0; piece < size; ++piece) {
        text += pieces[choice(random)];
    }
    return text;
}

template <std::size_t Count>
void compareOnRandomTexts(unsigned seed, const std::array<std::string, Count>& pieces) {
    constexpr int rounds = 30;
    std::mt19937 random{seed};
    std::uniform_int_distribution<std::size_t> size{1, 200};
    for (int round = 0; round < rounds; ++round) {
        const std::string text = randomText(random, pieces, size(random));
        ASSERT_EQ(scan(text), referenceScan(text)) << "in the text <" << text << ">";
    }
}

TEST(ScannerComparisonTest, CommentsOpenAndClosed) {
    const std::array<std::string, 9> pieces = {"#", "{", "}", "#{", "}#", "\n", "a", " ", "\""};
    compareOnRandomTexts(1, pieces);
}

TEST(ScannerComparisonTest, CommentsThatRarelyClose) {
    const std::array<std::string, 12> pieces = {"#{", "\n", "#{", "}", "x", "\n",
                                                "#",  "{",  " ",  "1", "'", "}}"};
    compareOnRandomTexts(2, pieces);
}

TEST(ScannerComparisonTest, QuotesAndBackslashes) {
    const std::array<std::string, 8> pieces = {"\"", "'", "\\", "\n", "a", "#", "\\\"", " "};
    compareOnRandomTexts(3, pieces);
}

TEST(ScannerComparisonTest, QuotesThatRarelyClose) {
    const std::array<std::string, 10> pieces = {"\"", "a", "b", "\n",   "#{",
                                                "\\", "1", "'", "\\\"", "}#"};
    compareOnRandomTexts(4, pieces);
}

TEST(ScannerComparisonTest, NumbersAndWords) {
    const std::array<std::string, 18> pieces = {"0",  "12",   ".",       "a",  "e",     "_",
                                                " ",  "int",  "if",      "er", "else",  "elseif",
                                                "tr", "true", "boolean", "9",  "print", "\n"};
    compareOnRandomTexts(5, pieces);
}

TEST(ScannerComparisonTest, Operators) {
    const std::array<std::string, 20> pieces = {"+", "-", "=", "<", ">", "!", "&", "|", "*", "/",
                                                "(", ")", "{", "}", "[", "]", ";", ",", "a", "#\n"};
    compareOnRandomTexts(6, pieces);
}

TEST(ScannerComparisonTest, AnyBytes) {
    std::array<std::string, 256> pieces;
    for (std::size_t code = 0; code < pieces.size(); ++code) {
        pieces[code] = std::string(1, static_cast<char>(code));
    }
    compareOnRandomTexts(7, pieces);
}

TEST(ScannerComparisonTest, NulBytesInEverything) {
    const std::array<std::string, 8> pieces = {"\0"s, "\"", "'", "#", "{", "}#", "\n", "a"};
    compareOnRandomTexts(8, pieces);
}

}  // namespace

}  // namespace krel
