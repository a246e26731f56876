// Holds the recogniser of lines against the patterns that define it, which the standard library's
// regular expressions match here: the same form and the same groups for every line. The lines are
// made of the forms, of random words, of mutations of both, and of all short texts over a few
// characters; the seed is fixed.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <regex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "codegen/irForms.hpp"

namespace {

using Words = std::vector<std::string>;

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
        for (const IRFormPattern& form : irFormPatterns()) {
            compiled.emplace_back(form.form, std::regex{form.pattern, std::regex::ECMAScript});
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

/// Writes random lines. The same seed gives the same lines everywhere.
class LineMaker {
public:
    explicit LineMaker(unsigned seed) : random(seed) {}

    std::size_t below(std::size_t limit) { return random() % limit; }

    std::string line() {
        std::string made = below(3) == 0 ? words() : form();
        for (std::size_t mutations = below(4); mutations > 1; --mutations) {
            mutate(made);
        }
        return made;
    }

private:
    const std::string& oneOf(const Words& choices) { return choices[below(choices.size())]; }

    /// Blanks between two parts of a form: mostly one, sometimes none or others.
    std::string blanks() {
        static const Words others = {"",   "",     "  ",  "\t",   "\v",   "\f",    "\r",
                                     "\n", " \t ", "\f ", "\r\n", "\v\v", " \xa0", "   "};
        return below(4) != 0 ? " " : oneOf(others);
    }

    std::string name() {
        static const Words names = {"x",    "_t0",  "_t17", "a",      "B7",        "main",
                                    "arg",  "call", "goto", "if",     "param",     "return",
                                    "true", "int",  "_",    "double", "inttochar", "inttodouble"};
        return oneOf(names);
    }

    std::string op() {
        static const Words operators = {"||", "&&", "==", "!=", "<=", ">=", "<", ">",  "+",
                                        "-",  "*",  "/",  "!",  "=",  "%",  "&", "|-", "=="};
        return oneOf(operators);
    }

    std::string value() {
        static const Words literals = {
            "5",         "-5",       "+7",           "1.5",          "-.5",     "true",
            "false",     "\"\"",     "\"text\"",     "\" \"",        "\" - \"", "\"-\"",
            "\"a + b\"", "\"\\\"\"", "\"[1] = \"",   "\" goto B3\"", "'c'",     "' '",
            "'\"'",      "'\\n'",    "\"\xc3\xa9\"", "\"a\xff\"",    "",        "-",
            "!",         "'",        "\"",           "a\nb"};
        switch (below(6)) {
            case 0:
            case 1:
                return name();
            case 2:
                return name() + (below(4) == 0 ? blanks() : "") + "[" + name() + "]";
            case 3:
                return name() + "[" + oneOf(literals) + "]";
            default:
                return oneOf(literals);
        }
    }

    std::string digits() {
        static const Words numbers = {"0", "1", "42", "007", "", "x", "1x"};
        return oneOf(numbers);
    }

    std::string form() {
        static const Words conversions = {"inttostring",    "chartostring", "booltostring",
                                          "inttochar",      "chartoint",    "inttodouble",
                                          "doubletostring", "chartodouble"};
        static const Words types = {"int", "double", "boolean", "character", "string", "void"};
        const std::string target = name() + blanks() + "=" + blanks();
        switch (below(11)) {
            case 0:
                return "param" + blanks() + oneOf(types) + blanks() + name();
            case 1:
                return "arg" + blanks() + value();
            case 2:
                return target + "call" + blanks() + name() + "," + blanks() + digits();
            case 3:
                return "call" + blanks() + name() + "," + blanks() + digits();
            case 4:
                return "if" + blanks() + value() + blanks() + "goto" + blanks() + "B" + digits();
            case 5:
                return below(2) == 0 ? "goto" + blanks() + "B" + digits()
                                     : "return" + (below(4) == 0 ? "" : blanks() + value());
            case 6:
                return target + oneOf(conversions) + blanks() + value();
            case 7:
                return target + value() + blanks() + op() + blanks() + value();
            case 8:
                return target + op() + blanks() + value();
            case 9:
                return value() + blanks() + "=" + blanks() + value();
            default:
                return target + value();
        }
    }

    std::string words() {
        std::string made;
        for (std::size_t count = 1 + below(9); count > 0; --count) {
            switch (below(5)) {
                case 0:
                    made += name();
                    break;
                case 1:
                    made += op();
                    break;
                case 2:
                    made += value();
                    break;
                case 3:
                    made += "=";
                    break;
                default:
                    made += below(2) == 0 ? "goto B1" : "]";
            }
            made += below(3) == 0 ? "" : blanks();
        }
        return made;
    }

    /// Takes out, puts in, replaces or doubles a few characters.
    void mutate(std::string& text) {
        static const std::string characters =
            std::string{" \t\n\v\f\r\"'\\[]=+-*/<>!&|,._aB09"} + '\0' + '\x80' + '\xff';
        const std::size_t at = below(text.size() + 1);
        const std::size_t size = below(4);
        switch (below(4)) {
            case 0:
                text.erase(at, size);
                break;
            case 1:
                text.insert(at, 1, characters[below(characters.size())]);
                break;
            case 2:
                text.replace(at, std::min(size, text.size() - at), 1,
                             characters[below(characters.size())]);
                break;
            default:
                text.insert(at, text.substr(below(text.size() + 1), size * 3));
        }
    }

    std::mt19937 random;
};

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
    EXPECT_EQ(comparison.forms.size(), irFormPatterns().size() + 1);
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
