#include "shared/ast/name.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace krel {

namespace {

TEST(NameTest, DefaultIsTheEmptyName) {
    const Name name;
    EXPECT_TRUE(name.empty());
    EXPECT_EQ(name.index(), 0U);
    EXPECT_EQ(name.text(), "");
}

TEST(NameTest, EmptyTextsGiveTheEmptyName) {
    EXPECT_EQ(Name{""}, Name{});
    EXPECT_EQ(Name{std::string{}}, Name{});
    EXPECT_EQ(Name{std::string_view{}}, Name{});
    EXPECT_EQ(Name{static_cast<const char*>(nullptr)}, Name{});
}

TEST(NameTest, KeepsItsText) {
    const Name name{"counter"};
    EXPECT_EQ(name.text(), "counter");
    EXPECT_FALSE(name.empty());
    EXPECT_NE(name.index(), 0U);
}

TEST(NameTest, SameTextGivesTheSameNameWhateverItIsMadeFrom) {
    const Name name{"index"};
    EXPECT_EQ(Name{std::string{"index"}}, name);
    EXPECT_EQ(Name{std::string_view{"indexed"}.substr(0, 5)}, name);
    EXPECT_EQ(Name{"index"}.index(), name.index());
    EXPECT_EQ(&Name{"index"}.text(), &name.text());
}

TEST(NameTest, DifferentTextsGiveDifferentNames) {
    EXPECT_NE(Name{"a"}, Name{"A"});
    EXPECT_NE(Name{"a"}, Name{"a "});
    EXPECT_NE(Name{"a"}, Name{});
}

TEST(NameTest, TextsMayHoldAnyBytes) {
    const std::string withNul{"a\0b", 3};
    EXPECT_EQ(Name{withNul}.text(), withNul);
    EXPECT_NE(Name{withNul}, Name{"a"});
    EXPECT_EQ(Name{"\xff"}.text(), "\xff");
}

TEST(NameTest, TextDoesNotDependOnItsSource) {
    std::string source = "source";
    const Name name{source};
    source = "changed";
    EXPECT_EQ(name.text(), "source");
}

TEST(NameTest, TextsStayInPlaceWhenManyFollow) {
    const Name name{"first of many"};
    const std::string* text = &name.text();
    for (int number = 0; number < 20000; ++number) {
        const Name other{"many" + std::to_string(number)};
        ASSERT_EQ(other.text(), "many" + std::to_string(number));
    }
    EXPECT_EQ(&name.text(), text);
    EXPECT_EQ(*text, "first of many");
    EXPECT_EQ(Name{"first of many"}, name);
}

TEST(NameTest, KnownFindsAnExistingName) {
    const Name name{"known before"};
    EXPECT_EQ(Name::known("known before"), name);
    EXPECT_EQ(Name::known(""), Name{});
}

TEST(NameTest, KnownKeepsNothing) {
    EXPECT_TRUE(Name::known("never seen").empty());
    EXPECT_TRUE(Name::known("never seen").empty());
    const Name first{"seen 1"};
    EXPECT_TRUE(Name::known("still not seen").empty());
    const Name second{"seen 2"};
    EXPECT_EQ(second.index(), first.index() + 1);
}

TEST(NameTest, CanBeUsedAsTheTextThatItIs) {
    const Name name{"usable"};
    const std::string& text = name;
    EXPECT_EQ(text, "usable");
    EXPECT_EQ(&text, &name.text());
    std::string copy = name;
    copy = name;
    EXPECT_EQ(copy, "usable");
    std::ostringstream out;
    out << "<" << name << ">";
    EXPECT_EQ(out.str(), "<usable>");
}

TEST(NameTest, IsConcatenatedLikeAText) {
    const Name name{"mid"};
    EXPECT_EQ(name + "dle", "middle");
    EXPECT_EQ("a" + name, "amid");
    EXPECT_EQ(name + std::string{"way"}, "midway");
    EXPECT_EQ(std::string{"a"} + name, "amid");
    EXPECT_EQ(name + name, "midmid");
    EXPECT_EQ("'" + name + "'.", "'mid'.");
}

TEST(NameTest, IsMadeFromItsIndex) {
    const Name name{"by index"};
    EXPECT_EQ(Name::fromIndex(name.index()), name);
    EXPECT_EQ(Name::fromIndex(0), Name{});
}

int one() {
    return 1;
}

TEST(NameTableTest, FindsTheActionOfAName) {
    const NameTable<int (*)()> table = {{Name{"table one"}, one}};
    ASSERT_NE(table.find(Name{"table one"}), nullptr);
    EXPECT_EQ(table.find(Name{"table one"})(), 1);
}

TEST(NameTableTest, GivesNothingForOtherNames) {
    const Name before{"before the table"};
    const NameTable<int> table = {{Name{"in the table"}, 7}};
    EXPECT_EQ(table.find(before), 0);
    EXPECT_EQ(table.find(Name{}), 0);
    EXPECT_EQ(table.find(Name{"later than the table"}), 0);
    EXPECT_EQ(table.find(Name{"in the table"}), 7);
}

TEST(NameTableTest, MayMapTheEmptyName) {
    const NameTable<int> table = {{Name{}, 3}};
    EXPECT_EQ(table.find(Name{}), 3);
}

TEST(NameTableTest, EmptyTableGivesNothing) {
    const NameTable<int> table = {};
    EXPECT_EQ(table.find(Name{}), 0);
    EXPECT_EQ(table.find(Name{"anything"}), 0);
}

}  // namespace

}  // namespace krel
