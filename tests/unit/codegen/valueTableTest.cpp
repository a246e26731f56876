#include "codegen/valueTable.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace krel {

namespace {

std::vector<std::string> namesInOrder(ValueTable& values) {
    std::vector<std::string> names;
    for (const NamedValue* value : values.inOrder()) {
        names.emplace_back(value->name);
    }
    return names;
}

TEST(ValueTableTest, FindsWhatWasAdded) {
    ValueTable values;
    for (const char* word : {"a", "bb", "ccc", "dddd", "eeeee", "ffffffff", "ggggggggg"}) {
        EXPECT_EQ(values.find(word), nullptr) << word;
        values.add(word);
        ASSERT_NE(values.find(word), nullptr) << word;
        EXPECT_EQ(values.find(word)->name, word);
    }
}

TEST(ValueTableTest, TellsSimilarWordsApart) {
    ValueTable values;
    const std::vector<std::string> words = {"abcd",
                                            "abcdabcd",
                                            "aabcd",
                                            "abbcd",
                                            "abcdefgh",
                                            "abcdefg",
                                            "abcdefghi",
                                            "xabcdefgh",
                                            "abcdefghij",
                                            "abcdefghijk",
                                            "xbcdefghij",
                                            "a_name_that_is_long_1",
                                            "a_name_that_is_long_2"};
    for (const std::string& word : words) {
        values.add(word);
    }
    EXPECT_EQ(values.inOrder().size(), words.size());
    for (const std::string& word : words) {
        EXPECT_EQ(values.find(word)->name, word);
    }
}

TEST(ValueTableTest, KeywordsAndBlockNamesHaveNoValue) {
    ValueTable values;
    for (const char* word : {"arg",
                             "boolean",
                             "call",
                             "character",
                             "double",
                             "false",
                             "goto",
                             "if",
                             "int",
                             "param",
                             "return",
                             "string",
                             "true",
                             "void",
                             "inttodouble",
                             "inttochar",
                             "chartoint",
                             "inttostring",
                             "doubletostring",
                             "booltostring",
                             "chartostring",
                             "B0",
                             "B12"}) {
        values.add(word);
        EXPECT_EQ(values.find(word), nullptr) << word;
    }
    EXPECT_TRUE(values.inOrder().empty());
    for (const char* word : {"print", "exit", "while", "for", "else", "main", "Int", "args",
                             "returned", "inttoint", "stringtoint", "_t0", "B", "b1"}) {
        values.add(word);
        EXPECT_NE(values.find(word), nullptr) << word;
    }
}

TEST(ValueTableTest, TellsWhatAWordIs) {
    ValueTable values;
    EXPECT_EQ(values.add("name").wordClass, TokenClass::value);
    EXPECT_EQ(values.add("B12").wordClass, TokenClass::blockName);
    EXPECT_EQ(values.add("true").wordClass, TokenClass::boolean);
    EXPECT_EQ(values.add("goto").wordClass, TokenClass::jump);
    EXPECT_EQ(values.add("character").wordClass, TokenClass::integerType);
    EXPECT_EQ(values.add("inttodouble").wordClass, TokenClass::intToDouble);
}

TEST(ValueTableTest, OrdersByteByByte) {
    ValueTable values;
    for (const char* word : {"b", "a", "_t10", "_t2", "_t1", "ab", "Z", "commonPrefixB",
                             "commonPrefixA", "commonPr", "commonPrefix", "commonPre"}) {
        values.add(word);
        values.add(word);
    }
    EXPECT_EQ(
        namesInOrder(values),
        (std::vector<std::string>{"Z", "_t1", "_t10", "_t2", "a", "ab", "b", "commonPr",
                                  "commonPre", "commonPrefix", "commonPrefixA", "commonPrefixB"}));
}

TEST(ValueTableTest, ForgetsAllButTheKeywords) {
    ValueTable values;
    std::vector<std::string> words;
    for (int number = 0; number < 1000; ++number) {
        words.push_back("local" + std::to_string(number));
    }
    for (int round = 0; round < 2; ++round) {
        for (const std::string& word : words) {
            EXPECT_EQ(values.find(word), nullptr);
            values.add(word);
        }
        EXPECT_EQ(values.inOrder().size(), words.size());
        EXPECT_EQ(values.find("if"), nullptr);
        values.clear();
    }
    EXPECT_TRUE(values.inOrder().empty());
}

}  // namespace

}  // namespace krel
