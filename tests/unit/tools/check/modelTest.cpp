// Who is who, and which types expressions have.

#include <gtest/gtest.h>

#include <string>

#include "tools/check/model.hpp"

namespace krel::Check {

namespace {

/// A model of `void main() { ... }` behind some functions.
struct Sample {
    explicit Sample(const std::string& statements)
        : text("int f(int p, double q) { return p; }\nvoid main() { " + statements + " }"),
          tree(Syntax::read(text)),
          model(tree) {}

    /// The last node with that text.
    NodeId node(std::string_view wanted) const {
        NodeId found = noNode;
        for (NodeId id = 0; id < tree.nodes.size(); ++id) {
            found = tree.textOf(id) == wanted ? id : found;
        }
        return found;
    }
    std::string meant(std::string_view wanted) const {
        return std::string{nameOf(model.meant(node(wanted)))};
    }
    std::string krel(std::string_view wanted) const {
        return std::string{nameOf(model.krel(node(wanted)))};
    }

    std::string text;
    Tree tree;
    Model model;
};

TEST(ModelTest, TypesAreWhatPeopleMean) {
    const Sample sample{
        "int i = 1; double d = 0.5; boolean b = true; string s = \"\"; character c = 'c';"
        "int a[3]; print(i + d, i < 2, s + i, c - 'a', a[i] * 2, f(1, d), -d, !b, b && i < 3,"
        " b ? i : d, (double) i / 3);"};
    EXPECT_EQ(sample.meant("i + d"), "double");
    EXPECT_EQ(sample.meant("i < 2"), "boolean");
    EXPECT_EQ(sample.meant("s + i"), "string");
    EXPECT_EQ(sample.meant("c - 'a'"), "character");
    EXPECT_EQ(sample.meant("a[i] * 2"), "int");
    EXPECT_EQ(sample.meant("f(1, d)"), "int");
    EXPECT_EQ(sample.meant("-d"), "double");
    EXPECT_EQ(sample.meant("b && i < 3"), "boolean");
    EXPECT_EQ(sample.meant("b ? i : d"), "double");
    EXPECT_EQ(sample.meant("(double) i / 3"), "double");
}

TEST(ModelTest, TypesAreWhatTheCompilerSays) {
    const Sample sample{"int i = 1; double d = 0.5; print(i + d, i < 2, d < 0.5, !i, i + i);"};
    EXPECT_EQ(sample.krel("i + d"), "");
    EXPECT_EQ(sample.krel("i < 2"), "int");
    EXPECT_EQ(sample.krel("d < 0.5"), "double");
    EXPECT_EQ(sample.krel("!i"), "int");
    EXPECT_EQ(sample.krel("i + i"), "int");
}

TEST(ModelTest, NamesMeanTheInnermostDeclaration) {
    const Sample sample{
        "int x = 1; { double x = 0.5; print(x * 2); } print(x * 3);"
        "for (int k = 0; k < 1; k++) { } print(k * 4); print(later * 5); int later = 1;"
        "print(missing * 6);"};
    EXPECT_EQ(sample.meant("x * 2"), "double");
    EXPECT_EQ(sample.meant("x * 3"), "int");
    EXPECT_EQ(sample.meant("k * 4"), "int");
    EXPECT_EQ(sample.meant("missing * 6"), "");
    const NodeId later = sample.tree[sample.node("later * 5")].first;
    ASSERT_NE(sample.model.meaning(later), noVariable);
    EXPECT_EQ(sample.model.variables()[sample.model.meaning(later)].name, "later");
}

TEST(ModelTest, KnowsFunctions) {
    const Sample sample{"print(f(1, 0.5)); f(2, 0.5);"};
    ASSERT_EQ(sample.model.functions().size(), 2U);
    const Function& first = sample.model.functions()[0];
    EXPECT_EQ(first.name, "f");
    EXPECT_EQ(first.parameters.size(), 2U);
    EXPECT_EQ(first.calls.size(), 2U);
    EXPECT_EQ(sample.model.functionNamed("main"), 1U);
    EXPECT_EQ(sample.model.functionNamed("g"), noFunction);
    EXPECT_TRUE(sample.model.hasCall(sample.node("f(1, 0.5)")));
}

TEST(ModelTest, ReadsNumbers) {
    EXPECT_EQ(numberOf("42").whole, 42U);
    EXPECT_EQ(numberOf("0x1F").whole, 31U);
    EXPECT_EQ(numberOf("10L").whole, 10U);
    EXPECT_FALSE(numberOf("10L").isDouble);
    EXPECT_TRUE(numberOf("2.0").isDouble);
    EXPECT_EQ(numberOf("1.5f").real, 1.5);
    EXPECT_EQ(numberOf("1e-3").real, 0.001);
    EXPECT_TRUE(numberOf("1e5").isDouble);
    EXPECT_FALSE(numberOf("1abc").isKnown);
    EXPECT_FALSE(numberOf("99999999999999999999").isDouble);
    EXPECT_EQ(numberOf("99999999999999999999").whole, static_cast<std::uint64_t>(-1));
}

}  // namespace

}  // namespace krel::Check
