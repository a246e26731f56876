#include "codegen/literalTable.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace krel {

namespace {

TEST(LiteralTableTest, NumbersByFirstAppearance) {
    LiteralTable table;
    EXPECT_TRUE(table.empty());
    EXPECT_EQ(table.add("\"b\""), 0U);
    EXPECT_EQ(table.add("\"a\""), 1U);
    EXPECT_EQ(table.add("\"b\""), 0U);
    EXPECT_FALSE(table.empty());
    EXPECT_EQ(table.find("\"a\""), 1U);
    EXPECT_EQ(table.find("\"c\""), std::nullopt);
}

TEST(LiteralTableTest, StartsAnew) {
    LiteralTable table;
    table.add("1.5");
    table.clear();
    EXPECT_TRUE(table.empty());
    EXPECT_EQ(table.find("1.5"), std::nullopt);
    EXPECT_EQ(table.add("2.5"), 0U);
}

TEST(LiteralTableTest, OrdersTheNumbersAsTexts) {
    for (const int count : {0, 1, 2, 10, 11, 12, 99, 100, 101, 123, 1000, 1234}) {
        std::vector<std::string> literals;
        std::vector<std::string> expected;
        for (int number = 0; number < count; ++number) {
            literals.push_back("literal " + std::to_string(number));
            expected.push_back(std::to_string(number));
        }
        std::sort(expected.begin(), expected.end());
        LiteralTable table;
        for (const std::string& literal : literals) {
            table.add(literal);
        }
        std::vector<std::string> found;
        table.forEachByLabel([&](std::size_t number, std::string_view literal) {
            EXPECT_EQ(literal, literals[number]);
            found.push_back(std::to_string(number));
        });
        EXPECT_EQ(found, expected);
    }
}

}  // namespace

}  // namespace krel
