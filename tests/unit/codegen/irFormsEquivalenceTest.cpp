// Holds the recogniser of lines against the patterns that define it, which the standard library's
// regular expressions match here: the same form and the same groups for every line. The lines are
// made of the forms, of random words, of mutations of both, and of all short texts over a few
// characters; the seed is fixed.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "codegen/irForms.hpp"
#include "tests/unit/codegen/lineMaker.hpp"

namespace krel {

namespace {

/// A form with the ranges of its groups; the same type for both sides, to be compared as text.
std::string describe(IRForm form, const std::vector<std::pair<std::size_t, std::size_t>>& groups) {
    std::string text = "form " + std::to_string(static_cast<int>(form));
    for (const auto& [begin, size] : groups) {
        text += ", " + std::to_string(size) + " from " + std::to_string(begin);
    }
    return text;
}

std::string recognised(const std::string& line) {
    const IRLine found = recognise(line);
    std::vector<std::pair<std::size_t, std::size_t>> groups;
    for (const std::string_view group : found.groups) {
        if (group.data() != nullptr) {
            groups.emplace_back(group.data() - line.data(), group.size());
        }
    }
    return describe(found.form, groups);
}

std::string matched(const std::string& line) {
    static const std::vector<std::pair<IRForm, std::regex>> forms = [] {
        std::vector<std::pair<IRForm, std::regex>> compiled;
        for (std::size_t row = 0; row < irFormCount; ++row) {
            const auto form = static_cast<IRForm>(row);
            compiled.emplace_back(form, std::regex{irPatternOf(form), std::regex::ECMAScript});
        }
        return compiled;
    }();
    std::smatch match;
    for (const auto& [form, pattern] : forms) {
        if (std::regex_match(line, match, pattern)) {
            std::vector<std::pair<std::size_t, std::size_t>> groups;
            for (std::size_t group = 1; group < match.size(); ++group) {
                groups.emplace_back(match.position(group), match.length(group));
            }
            return describe(form, groups);
        }
    }
    return describe(IRForm::None, {});
}

std::string escaped(const std::string& line) {
    std::string text;
    for (const char character : line) {
        const bool isPlain = character >= ' ' && character <= '~' && character != '\\';
        char code[5];
        std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned char>(character));
        text += isPlain ? std::string(1, character) : code;
    }
    return text;
}

/// Counts lines and reports the first few that are taken apart differently.
class Comparison {
public:
    void add(const std::string& line) {
        ++lines;
        const std::string expected = matched(line);
        forms[expected.substr(0, expected.find(','))] += 1;
        if (recognised(line) != expected && ++differences <= 10) {
            ADD_FAILURE() << "\"" << escaped(line) << "\" is " << recognised(line)
                          << ", but the patterns say " << expected;
        }
    }

    std::size_t lines = 0;
    std::size_t differences = 0;
    std::map<std::string, std::size_t> forms;
};

}  // namespace

TEST(IRFormsEquivalenceTest, RandomLines) {
    Comparison comparison;
    LineMaker maker{20240607};
    for (int count = 0; count < 100000; ++count) {
        comparison.add(maker.line());
    }
    EXPECT_EQ(comparison.differences, 0U);
    // Every form, and none, has its share of the lines.
    EXPECT_EQ(comparison.forms.size(), irFormCount + 1);
    for (const auto& [form, count] : comparison.forms) {
        EXPECT_GE(count, 300U) << form;
    }
}

// All texts of up to six characters, for the cases in which several ways to match compete.
TEST(IRFormsEquivalenceTest, ShortLines) {
    Comparison comparison;
    const auto addAll = [&](const std::string& prefix, const std::string& characters,
                            std::size_t length, const std::string& suffix) {
        std::vector<std::size_t> digits(length, 0);
        std::size_t texts = 1;
        for (std::size_t size = 0; size < length; ++size) {
            texts *= characters.size();
        }
        for (std::size_t text = 0; text < texts; ++text) {
            std::string middle;
            for (std::size_t rest = text, size = 0; size < length; ++size) {
                middle += characters[rest % characters.size()];
                rest /= characters.size();
            }
            comparison.add(prefix + middle + suffix);
        }
    };
    for (std::size_t length = 0; length <= 6; ++length) {
        addAll("x=", " -\na", length, "");
        addAll("if", " a\n", length, "goto B1");
        addAll("x[", " ]=\n", length, "");
    }
    EXPECT_EQ(comparison.differences, 0U);
}

}  // namespace krel
