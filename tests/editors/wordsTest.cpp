// Holds the editors' list of words and operators (editors/words.json) against the scanner: each of
// its texts is one token, and no token of the scanner is missing.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "frontend/frontEnd.hpp"
#include "parser/parser.hpp"
#include "tools/lsp/words.hpp"

namespace krel {

namespace {

using Groups = std::map<std::string, std::vector<std::string>>;

/// The code of a text that is one token with one spelling; 0 for any other text.
int codeOf(const std::string& text) {
    const FrontEnd::Compilation compilation{text, "text", {.parseOnly = true, .tokens = true}};
    if (compilation.tokens().size() != 1) {
        return 0;
    }
    const FrontEnd::Token token = compilation.tokens().front();
    const std::set<int> withManySpellings{T_ID, T_INT_LITERAL, T_DECIMAL_LITERAL, T_STRING_LITERAL,
                                          T_CHARACTER_LITERAL};
    return withManySpellings.contains(token.code) ? 0 : token.code;
}

class EditorWordsTest : public testing::Test {
protected:
    void SetUp() override {
        std::ifstream file{KREL_EDITOR_WORDS};
        groups = nlohmann::json::parse(file).get<Groups>();
        for (const auto& [name, texts] : groups) {
            all.insert(all.end(), texts.begin(), texts.end());
        }
    }

    std::set<std::string> in(const std::vector<std::string>& names) const {
        std::set<std::string> texts;
        for (const std::string& name : names) {
            texts.insert(groups.at(name).begin(), groups.at(name).end());
        }
        return texts;
    }

    Groups groups;
    std::vector<std::string> all;
};

TEST_F(EditorWordsTest, ListHasEveryTokenOnce) {
    std::multiset<int> listed;
    for (const std::string& text : all) {
        EXPECT_NE(codeOf(text), 0) << text;
        listed.insert(codeOf(text));
    }
    // The generator numbers the tokens in a row. The first five have many spellings, those from
    // UMINUS on are never scanned.
    std::multiset<int> ofTheScanner;
    for (int code = T_PLUS; code < UMINUS; ++code) {
        ofTheScanner.insert(code);
    }
    EXPECT_EQ(T_PLUS - T_INT_LITERAL, 5);
    EXPECT_EQ(listed, ofTheScanner);
}

TEST_F(EditorWordsTest, SignsAreAllThatTheScannerTakes) {
    const std::string signs = "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~";
    std::set<std::string> taken;
    for (const char first : signs) {
        taken.insert(std::string{first});
        for (const char second : signs) {
            taken.insert(std::string{first, second});
        }
    }
    std::erase_if(taken, [](const std::string& text) { return codeOf(text) == 0; });
    EXPECT_EQ(in({"operators", "punctuation"}), taken);
}

TEST_F(EditorWordsTest, WordsAreThoseOfTheLanguageServer) {
    std::set<std::string> reserved;
    std::set<std::string> types;
    for (const Lsp::ReservedWord& word : Lsp::reservedWords()) {
        reserved.emplace(word.text);
        if (Syntax::isTypeWord(word.word)) {
            types.emplace(word.text);
        }
    }
    EXPECT_EQ(in({"types", "control", "functions", "constants"}), reserved);
    EXPECT_EQ(in({"types"}), types);
}

}  // namespace

}  // namespace krel
