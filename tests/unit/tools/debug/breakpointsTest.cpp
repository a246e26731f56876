#include "tools/debug/breakpoints.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace krel::Debug {
namespace {

/// Which of the hits 1 to 6 a rule takes.
std::vector<int> hitsOf(const char* text) {
    const HitRule rule = hitRuleOf(text);
    std::vector<int> hits;
    for (int hit = 1; hit <= 6; ++hit) {
        if (rule.holds(static_cast<std::uint64_t>(hit))) {
            hits.push_back(hit);
        }
    }
    return hits;
}

using Hits = std::vector<int>;

TEST(DebugHitRuleTest, Rules) {
    EXPECT_EQ(hitsOf("3"), (Hits{3}));
    EXPECT_EQ(hitsOf(" == 3 "), (Hits{3}));
    EXPECT_EQ(hitsOf("=3"), (Hits{3}));
    EXPECT_EQ(hitsOf(">= 3"), (Hits{3, 4, 5, 6}));
    EXPECT_EQ(hitsOf(">3"), (Hits{4, 5, 6}));
    EXPECT_EQ(hitsOf("%2"), (Hits{2, 4, 6}));
    EXPECT_EQ(hitsOf("% 1"), (Hits{1, 2, 3, 4, 5, 6}));
}

TEST(DebugHitRuleTest, NoRules) {
    for (const char* text :
         {"", "x", "0", "% 0", "-1", "3 4", "3x", ">=", "99999999999999999999"}) {
        EXPECT_THROW(hitRuleOf(text), BadExpression) << text;
    }
}

TEST(DebugBreakpointTest, BracesInMessages) {
    const auto program = load("void main() {\n    int a = 1;\n    print(a);\n}\n", "program.krl");
    Wish wish;
    wish.place = 3;
    for (const char* message : {"{a}", "a {a} b {a + 1}", "{a} {", "}{a}"}) {
        wish.message = message;
        EXPECT_TRUE(Breakpoint(1, wish, *program, {}).hasPlace()) << message;
    }
    for (const char* message : {"{}", "{b}", "{a; a}"}) {
        wish.message = message;
        EXPECT_FALSE(Breakpoint(1, wish, *program, {}).hasPlace()) << message;
    }
}

TEST(DebugBreakpointTest, FunctionsStopBehindTheirParameters) {
    const auto program =
        load("int f(int a,\n      int b) {\n    return a;\n}\nvoid main() { }\n", "program.krl");
    Wish wish;
    wish.place = std::string{"f"};
    const Breakpoint point{7, wish, *program, {}};
    EXPECT_EQ(point.id(), 7);
    EXPECT_EQ(point.line(), 3);
    EXPECT_EQ(program->irText(point.places().front()), "_t0 = a");
}

TEST(DebugProgramTest, FaultyProgramsAreNone) {
    EXPECT_THROW(load("void main() {", "p.krl"), NotAProgram);
    EXPECT_THROW(load("void main() {\n    int a = b;\n}\n", "p.krl"), NotAProgram);
    EXPECT_THROW(load("void main() {\n    double d = 2.0;\n}\n", "p.krl"), NotAProgram);
    EXPECT_THROW(load("", "p.krl"), NotAProgram);
}

}  // namespace
}  // namespace krel::Debug
