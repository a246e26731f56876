#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "parse.hpp"

namespace krel {

namespace {

/// "a <op> b" as a tree.
std::string binary(const std::string& op, const std::string& left, const std::string& right) {
    return "BinaryOp'" + op + "'(" + left + " " + right + ")";
}

const std::string a = "Identifier'a'";
const std::string b = "Identifier'b'";
const std::string c = "Identifier'c'";

/// Operators by level, the loosest first.
const std::vector<std::vector<std::string>> levels = {
    {"||"}, {"&&"}, {"==", "!="}, {"<", ">", "<=", ">="}, {"+", "-"}, {"*", "/"},
};

/// Many expressions, each with the tree that it should give, parsed together.
class Expectations {
public:
    void add(const std::string& text, const std::string& tree) {
        const std::string blank = source.empty() ? "" : " ";
        source += blank + "x = " + text + ";";
        expected += blank + "Assignment(Identifier'x' " + tree + ")";
    }

    void verify() const { EXPECT_EQ(statements(source), expected); }

private:
    std::string source;
    std::string expected;
};

TEST(ParserExpressionTest, EveryBinaryOperator) {
    Expectations expectations;
    for (const auto& level : levels) {
        for (const std::string& op : level) {
            expectations.add("a " + op + " b", binary(op, a, b));
        }
    }
    expectations.verify();
}

TEST(ParserExpressionTest, OperatorsOfOneLevelGroupToTheLeft) {
    Expectations expectations;
    for (const auto& level : levels) {
        for (const std::string& first : level) {
            for (const std::string& second : level) {
                expectations.add("a " + first + " b " + second + " c",
                                 binary(second, binary(first, a, b), c));
            }
        }
    }
    expectations.verify();
}

/// Adds the expressions in which `outer` is looser than `inner`.
void addOrdered(Expectations& expectations, const std::string& outer, const std::string& inner) {
    expectations.add("a " + outer + " b " + inner + " c", binary(outer, a, binary(inner, b, c)));
    expectations.add("a " + inner + " b " + outer + " c", binary(outer, binary(inner, a, b), c));
}

TEST(ParserExpressionTest, TighterOperatorsGroupFirst) {
    Expectations expectations;
    for (std::size_t loose = 0; loose < levels.size(); ++loose) {
        for (std::size_t tight = loose + 1; tight < levels.size(); ++tight) {
            for (const std::string& outer : levels[loose]) {
                for (const std::string& inner : levels[tight]) {
                    addOrdered(expectations, outer, inner);
                }
            }
        }
    }
    expectations.verify();
}

TEST(ParserExpressionTest, ParenthesesGroupAndLeaveNoNode) {
    EXPECT_EQ(expression("a * (b + c)"), binary("*", a, binary("+", b, c)));
    EXPECT_EQ(expression("((a))"), a);
    EXPECT_EQ(expression("a - (b - c)"), binary("-", a, binary("-", b, c)));
}

TEST(ParserExpressionTest, UnaryOperatorsBindTightest) {
    EXPECT_EQ(expression("-a * b"), binary("*", "UnaryOp'-'(" + a + ")", b));
    EXPECT_EQ(expression("!a && b"), binary("&&", "UnaryOp'!'(" + a + ")", b));
    EXPECT_EQ(expression("!a < b"), binary("<", "UnaryOp'!'(" + a + ")", b));
    EXPECT_EQ(expression("a - +b"), binary("-", a, "UnaryOp'+'(" + b + ")"));
}

TEST(ParserExpressionTest, UnaryOperatorsNest) {
    EXPECT_EQ(expression("- - a"), "UnaryOp'-'(UnaryOp'-'(" + a + "))");
    EXPECT_EQ(expression("!-+a"), "UnaryOp'!'(UnaryOp'-'(UnaryOp'+'(" + a + ")))");
    EXPECT_EQ(expression("-(a + b)"), "UnaryOp'-'(" + binary("+", a, b) + ")");
}

TEST(ParserExpressionTest, Elements) {
    EXPECT_EQ(expression("a[b]"), "ArrayAccess(Identifier'a' Identifier'b')");
    EXPECT_EQ(expression("a[7]"), "ArrayAccess(Identifier'a' IntLiteral7)");
    EXPECT_EQ(expression("-a[b]"), "UnaryOp'-'(ArrayAccess(Identifier'a' Identifier'b'))");
}

TEST(ParserExpressionTest, Calls) {
    const std::string call = "CallStatement(Identifier'f' ArgumentList)";
    EXPECT_EQ(expression("f()"), call);
    EXPECT_EQ(expression("f() + 1"), binary("+", call, "IntLiteral1"));
    EXPECT_EQ(expression("1 + f()"), binary("+", "IntLiteral1", call));
    EXPECT_EQ(expression("g(f(), a)"),
              "CallStatement(Identifier'g' ArgumentList(" + call + " " + a + "))");
    EXPECT_EQ(expression("(f())"), call);
}

TEST(ParserExpressionTest, LinesAreThoseOfTheFirstToken) {
    EXPECT_EQ(statementsWithLines("x =\na\n+\nb\n*\n-\nc;"),
              "Assignment@2(Identifier'x'@2 BinaryOp'+'@3(Identifier'a'@3 "
              "BinaryOp'*'@5(Identifier'b'@5 UnaryOp'-'@7(Identifier'c'@8))))");
    EXPECT_EQ(statementsWithLines("x = (\na\n)\n+ b;"),
              "Assignment@2(Identifier'x'@2 BinaryOp'+'@2(Identifier'a'@3 Identifier'b'@5))");
    EXPECT_EQ(statementsWithLines("x = a[\n1];"),
              "Assignment@2(Identifier'x'@2 ArrayAccess@2(Identifier'a'@2 IntLiteral1@3))");
}

TEST(ParserExpressionTest, LongChainsAreParsed) {
    std::string text = "a";
    std::string tree = a;
    constexpr int terms = 2000;
    for (int term = 0; term < terms; ++term) {
        text += " + b";
        tree = binary("+", tree, b);
    }
    EXPECT_EQ(expression(text), tree);
}

}  // namespace

}  // namespace krel
