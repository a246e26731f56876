#include "shared/ast/nameMap.hpp"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

namespace {

TEST(NameMapTest, IsEmptyAtFirst) {
    const NameMap<int> map;
    EXPECT_EQ(map.find(Name{"map key"}), nullptr);
    EXPECT_EQ(map.find(Name{}), nullptr);
    map.forEach([](Name name, int) { ADD_FAILURE() << name.text(); });
}

TEST(NameMapTest, FindsWhatWasInserted) {
    NameMap<int> map;
    EXPECT_TRUE(map.insert("map one", 1));
    EXPECT_TRUE(map.insert("map two", 2));
    ASSERT_NE(map.find("map one"), nullptr);
    EXPECT_EQ(*map.find("map one"), 1);
    EXPECT_EQ(*map.find("map two"), 2);
    EXPECT_EQ(map.find("map three"), nullptr);
    EXPECT_EQ(map.find(Name{}), nullptr);
}

TEST(NameMapTest, KeepsTheFirstValueOfAName) {
    NameMap<int> map;
    EXPECT_TRUE(map.insert("map one", 1));
    EXPECT_FALSE(map.insert("map one", 2));
    EXPECT_EQ(*map.find("map one"), 1);
}

TEST(NameMapTest, ValuesCanBeChanged) {
    NameMap<int> map;
    map.insert("map one", 1);
    *map.find("map one") = 5;
    const NameMap<int>& same = map;
    EXPECT_EQ(*same.find("map one"), 5);
}

TEST(NameMapTest, HoldsValuesThatCanOnlyBeMoved) {
    NameMap<std::unique_ptr<int>> map;
    for (int number = 0; number < 100; ++number) {
        EXPECT_TRUE(map.insert("moved " + std::to_string(number), std::make_unique<int>(number)));
    }
    for (int number = 0; number < 100; ++number) {
        EXPECT_EQ(**map.find("moved " + std::to_string(number)), number);
    }
}

TEST(NameMapTest, HoldsManyNamesAndVisitsEachOnce) {
    constexpr int many = 10000;
    NameMap<int> map;
    for (int number = 0; number < many; ++number) {
        ASSERT_TRUE(map.insert("entry " + std::to_string(number), number));
    }
    for (int number = 0; number < many; ++number) {
        const Name name{"entry " + std::to_string(number)};
        ASSERT_FALSE(map.insert(name, -1));
        ASSERT_EQ(*map.find(name), number);
    }
    EXPECT_EQ(map.find("entry " + std::to_string(many)), nullptr);
    std::map<std::string, int> visited;
    map.forEach(
        [&](Name name, int value) { EXPECT_TRUE(visited.emplace(name.text(), value).second); });
    EXPECT_EQ(visited.size(), std::size_t{many});
    EXPECT_EQ(visited.at("entry 77"), 77);
}

}  // namespace
