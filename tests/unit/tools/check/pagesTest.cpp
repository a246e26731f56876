// The pages of the rules: each example draws its rule, what is to be used instead does not, and is
// accepted.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>

#include "tools/check/check.hpp"
#include "tools/check/ruleBook.hpp"

namespace krel::Check {

namespace {

struct Example {
    std::string section;
    std::string program;
};

/// A fragment stands at the end of `main`.
std::string framed(const std::string& fragment) {
    return "int f() { return 1; }\n"
           "void g() { }\n"
           "void main() {\n"
           "    int i = 1; int n = 2; double d = 0.5; boolean b = true; string s = \"text\";\n"
           "    character c = 'c'; int a[3] = {10, 20, 30};\n" +
           fragment + "}\n";
}

std::vector<Example> examplesOf(std::string_view page) {
    std::vector<Example> examples;
    std::istringstream lines{std::string{page}};
    std::string section;
    std::string mark;
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("## ", 0) == 0) {
            section = line.substr(3);
        } else if (line.rfind("```", 0) == 0 && mark.empty()) {
            mark = line.substr(3);
            text.clear();
        } else if (line == "```") {
            const bool isFragment = mark.find("fragment") != mark.npos;
            examples.push_back({section, isFragment ? framed(text) : text});
            mark.clear();
        } else {
            text += line + "\n";
        }
    }
    return examples;
}

TEST(PagesTest, ExamplesDrawTheirRuleAndTheOthersDoNot) {
    std::size_t examples = 0;
    for (const RulePage& page : allRules()) {
        for (const Example& example : examplesOf(page.text)) {
            const Report report = check(example.program, "p.krl");
            const bool drawn =
                std::any_of(report.findings.begin(), report.findings.end(),
                            [&](const Finding& finding) { return finding.rule == page.name; });
            EXPECT_EQ(drawn, example.section == "Example") << page.name << "\n" << example.program;
            if (example.section == "Use instead") {
                EXPECT_TRUE(report.accepted) << page.name << "\n" << example.program;
            }
            ++examples;
        }
    }
    EXPECT_GT(examples, 100U);
}

TEST(PagesTest, AllPagesHaveTheSameHeadings) {
    for (const RulePage& page : allRules()) {
        std::size_t at = 0;
        const std::string title = "# " + std::string{page.name};
        for (const char* const line :
             {title.c_str(), "## What it finds", "## Why", "## Example", "## Use instead"}) {
            const std::string heading = line;
            at = page.text.find(heading + "\n", at);
            ASSERT_NE(at, page.text.npos) << page.name << ": " << heading;
        }
        EXPECT_FALSE(page.summary.empty()) << page.name;
    }
}

TEST(PagesTest, FindsPages) {
    ASSERT_NE(findRule("whole-double"), nullptr);
    EXPECT_EQ(findRule("whole-double")->name, "whole-double");
    EXPECT_EQ(findRule("no-such-rule"), nullptr);
    const auto ruleOf = [](std::string_view message) {
        const RulePage* const page = findRuleOfMessage(message);
        return page == nullptr ? std::string_view{"none"} : page->name;
    };
    EXPECT_EQ(ruleOf("Compilation error: unknown double IR value: 2"), "whole-double");
    EXPECT_EQ(ruleOf("unknown double IR value: 2"), "whole-double");
    EXPECT_EQ(ruleOf("Semantic error in p.krl at line 3: Undeclared identifier: 'x'."),
              "undeclared-name");
    EXPECT_EQ(ruleOf("Syntax error in p.krl at line 3: syntax error, unexpected T_IF"), "syntax");
    EXPECT_EQ(ruleOf("Internal error: break outside loop"), "outside-loop");
    EXPECT_EQ(ruleOf("hello"), "none");
}

}  // namespace

}  // namespace krel::Check
