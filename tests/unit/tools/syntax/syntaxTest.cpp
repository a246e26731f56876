// The tolerant reading: what people write in other languages, what is missing, and what is large.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/syntax/syntaxTree.hpp"

namespace krel::Syntax {

namespace {

const std::map<Kind, std::string> names = {
    {Kind::Program, "program"},
    {Kind::Function, "function"},
    {Kind::Parameter, "parameter"},
    {Kind::Type, "type"},
    {Kind::Block, "block"},
    {Kind::Declaration, "declare"},
    {Kind::Declarator, "declarator"},
    {Kind::ArrayBound, "bound"},
    {Kind::If, "if"},
    {Kind::Arm, "arm"},
    {Kind::ElseArm, "else"},
    {Kind::Condition, "condition"},
    {Kind::While, "while"},
    {Kind::DoWhile, "do"},
    {Kind::For, "for"},
    {Kind::ForPart, "part"},
    {Kind::Return, "return"},
    {Kind::Break, "break"},
    {Kind::Continue, "continue"},
    {Kind::Empty, "empty"},
    {Kind::ExpressionStatement, "do-it"},
    {Kind::Skipped, "skipped"},
    {Kind::Prototype, "prototype"},
    {Kind::Wrapper, "wrapper"},
    {Kind::ForEach, "for-each"},
    {Kind::Switch, "switch"},
    {Kind::Case, "case"},
    {Kind::Foreign, "foreign"},
    {Kind::Conditional, "choose"},
    {Kind::Index, "index"},
    {Kind::Cast, "cast"},
    {Kind::Parentheses, "paren"},
    {Kind::List, "list"},
    {Kind::Missing, "missing"},
};

/// The tree as nested lists; names, literals and operators as they are written.
std::string shown(const Tree& tree, NodeId id) {
    const Node& node = tree[id];
    std::string text;
    const auto entry = names.find(node.kind);
    if (entry != names.end()) {
        text = entry->second;
    }
    if (node.kind == Kind::Type) {
        return std::string{tree.textOf(id)} + (node.foreign ? "?" : "");
    }
    const std::string word{tree.wordOf(id)};
    if (!word.empty() && (entry == names.end() || node.kind == Kind::Function ||
                          node.kind == Kind::Parameter || node.kind == Kind::Declarator)) {
        text += (text.empty() ? "" : " ") + word;
    }
    if (node.kind == Kind::Call) {
        text = "call " + word;
    }
    const std::vector<NodeId> children = tree.children(id);
    for (const NodeId child : children) {
        text += " " + shown(tree, child);
    }
    return children.empty() && node.kind != Kind::Call ? text : "(" + text + ")";
}

/// The statements of `void f() { ... }`.
std::string statements(const std::string& text) {
    const std::string program = "void f() { " + text + " }";
    const Tree tree = read(program);
    std::string all;
    const NodeId block = tree.lastChild(tree.child(tree.root(), 0));
    for (const NodeId statement : tree.children(block)) {
        all += (all.empty() ? "" : " ") + shown(tree, statement);
    }
    return all;
}

std::vector<Gap::Kind> gapsOf(const std::string& text) {
    std::vector<Gap::Kind> kinds;
    for (const Gap& gap : read(text).gaps) {
        kinds.push_back(gap.kind);
    }
    return kinds;
}

TEST(SyntaxTest, ReadsKrel) {
    const std::string text =
        "int f(int a, double b) { return a; }\nvoid main() { int x = f(1, 0.5); }";
    const Tree tree = read(text);
    EXPECT_EQ(shown(tree, tree.root()),
              "(program (function f int (parameter a int) (parameter b double) (block (return a)))"
              " (function main void (block (declare int (declarator x (call f 1 0.5))))))");
    EXPECT_TRUE(tree.gaps.empty());
}

TEST(SyntaxTest, ReadsExpressions) {
    using Row = std::pair<std::string, std::string>;
    for (const auto& [text, expected] : std::vector<Row>{
             {"x = a + b * c;", "(do-it (= x (+ a (* b c))))"},
             {"x = a - b - c;", "(do-it (= x (- (- a b) c)))"},
             {"x = a || b && c == d;", "(do-it (= x (|| a (&& b (== c d)))))"},
             {"x = -a[i + 1];", "(do-it (= x (- (index a (+ i 1)))))"},
             {"x = a[i][j];", "(do-it (= x (index (index a i) j)))"},
             {"x = (double) i / n;", "(do-it (= x (/ (cast double i) n)))"},
             {"x = (x) + 1;", "(do-it (= x (+ (paren x) 1)))"},
             {"x = double(i);", "(do-it (= x (cast double i)))"},
             {"x = a > b ? a : b;", "(do-it (= x (choose (> a b) a b)))"},
             {"x *= y % 2;", "(do-it (*= x (% y 2)))"},
             {"a = b = c;", "(do-it (= a (= b c)))"},
             {"x = i++ + --j;", "(do-it (= x (+ (++ i) (-- j))))"},
             {"x = 1e-12 + .5 + 1. + 1.5e3 + 10L;",
              "(do-it (= x (+ (+ (+ (+ 1e-12 .5) 1.) 1.5e3) 10L)))"},
             {"s = 'text';", "(do-it (= s 'text'))"},
             {"x = not a and b;", "(do-it (= x (and (not a) b)))"},
             {"n = s.length();", "(do-it (= n (length s)))"},
             {"print(1, f());", "(do-it (call print 1 (call f)))"},
         }) {
        EXPECT_EQ(statements(text), expected) << text;
    }
}

TEST(SyntaxTest, ReadsStatements) {
    using Row = std::pair<std::string, std::string>;
    for (const auto& [text, expected] : std::vector<Row>{
             {"if (a) x = 1; else if (b) { } else y = 2;",
              "(if (arm (condition a) (do-it (= x 1))) (arm (condition b) block)"
              " (else (do-it (= y 2))))"},
             {"if (a) { } elseif (b) { }",
              "(if (arm (condition a) block) (arm (condition b) block))"},
             {"while (x < 3) x++;", "(while (condition (< x 3)) (do-it (++ x)))"},
             {"do { x++; } while (x < 3);", "(do (block (do-it (++ x))) (condition (< x 3)))"},
             {"for (int i = 0, j = 1; ; i++, j--) { }",
              "(for (part (declare int (declarator i 0) (declarator j 1))) part"
              " (part (++ i) (-- j)) block)"},
             {"int x;", "(declare int declarator x)"},
             {"int a[] = {1, 2}, n;", "(declare int (declarator a bound (list 1 2)) declarator n)"},
             {"int g[2][3];", "(declare int (declarator g (bound 2) (bound 3)))"},
             {"char c = 'x';", "(declare char? (declarator c 'x'))"},
             {"const int n = 3;", "(declare const int? (declarator n 3))"},
             {"int float = 3;", "(declare int (declarator float 3))"},
             {"int char[2];", "(declare int (declarator char (bound 2)))"},
             {"unsigned long n = 3;", "(declare unsigned long? (declarator n 3))"},
             {"x = 1;;", "(do-it (= x 1)) empty"},
             {"{ break; } continue;", "(block break) continue"},
             {"switch (x) { case 1: case 2: y = 1; break; default: { } }",
              "(switch (condition x) (case 1 2 (do-it (= y 1)) break) (case block))"},
             {"switch = 1; switch(x);", "(do-it (= switch 1)) (do-it (call switch x))"},
             {"for (int x : a) { }", "(for-each (declare int declarator x) a block)"},
             {"for (x in a) { }", "(for-each (declare ? declarator x) a block)"},
             {"int g(int x);", "(prototype int (parameter x int))"},
             {"goto end; end: x = 1;", "foreign foreign (do-it (= x 1))"},
             {"struct P { int x; }; x = 1;", "foreign (do-it (= x 1))"},
             {"try { x = 1; } catch (E e) { y = 1; }", "foreign (block (do-it (= x 1))) foreign"},
             {"import = 1; new = 2;", "(do-it (= import 1)) (do-it (= new 2))"},
             {"std::cout << x;", "(do-it (<< cout x))"},
             {"x = a === b;", "(do-it (= x (=== a b)))"},
             {"x <<= 2 ** y;", "(do-it (<<= x (** 2 y)))"},
         }) {
        EXPECT_EQ(statements(text), expected) << text;
    }
}

TEST(SyntaxTest, GoesOnAfterWhatIsMissing) {
    EXPECT_EQ(statements("int x = 1\n int y = 2;"),
              "(declare int (declarator x 1)) (declare int (declarator y 2))");
    EXPECT_EQ(statements("x = f(1;\n y = 2;"), "(do-it (= x (call f 1))) (do-it (= y 2))");
    EXPECT_EQ(statements("x = a[1;\n y = 2;"), "(do-it (= x (index a 1))) (do-it (= y 2))");
    EXPECT_EQ(statements("x = ;\n y = 2;"), "(do-it (= x missing)) (do-it (= y 2))");
    EXPECT_EQ(statements("x y z; a = 1;"), "(declare x? declarator y) (do-it (= a 1))");
    EXPECT_EQ(statements(") = 3; a = 1;"), "skipped (do-it (= missing 3)) (do-it (= a 1))");
}

TEST(SyntaxTest, SaysWhatIsMissing) {
    using Kinds = std::vector<Gap::Kind>;
    EXPECT_EQ(gapsOf("void f() { int x = 1\n}"), Kinds{Gap::Kind::Semicolon});
    EXPECT_EQ(gapsOf("void f() { g(1; }"), Kinds{Gap::Kind::Parenthesis});
    EXPECT_EQ(gapsOf("void f() { a[1 = 2; }"), Kinds{Gap::Kind::Bracket});
    EXPECT_EQ(gapsOf("void f() { if (a) { x = 1;"), (Kinds{Gap::Kind::Brace, Gap::Kind::Brace}));
    EXPECT_EQ(gapsOf("void f() {\nx = 1;\nvoid g() { }"), Kinds{Gap::Kind::Brace});
    EXPECT_EQ(gapsOf("void f() { x = 1 ] ; }"), Kinds{Gap::Kind::Unexpected});
    const Tree tree = read("void f() { x = 1\n y = 2; }");
    ASSERT_EQ(tree.gaps.size(), 1U);
    EXPECT_EQ(tree.gaps[0].at, 16U);
    EXPECT_EQ(tree.gaps[0].range, (SourceRange{15, 19}));
}

TEST(SyntaxTest, KnowsCommentsOfOtherLanguages) {
    const Tree tree = read("// it's \"one\n/* two\n*/ void f() { } # three\n/* open");
    ASSERT_EQ(tree.tokens.foreignComments.size(), 3U);
    EXPECT_EQ(tree.textOf(tree.tokens.foreignComments[0]), "// it's \"one");
    EXPECT_EQ(tree.textOf(tree.tokens.foreignComments[1]), "/* two\n*/");
    EXPECT_EQ(tree.textOf(tree.tokens.foreignComments[2]), "/* open");
    ASSERT_EQ(tree.tokens.comments.size(), 1U);
    EXPECT_EQ(shown(tree, tree.root()), "(program (function f void block))");
    EXPECT_TRUE(tree.gaps.empty());
}

std::string repeated(const std::string& piece, std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += piece;
    }
    return text;
}

/// Children come before their parents and in order, and nothing reaches out of its parent.
void expectSound(const Tree& tree) {
    for (NodeId id = 0; id < tree.nodes.size(); ++id) {
        const Node& node = tree[id];
        ASSERT_LE(node.range.begin, node.range.end);
        ASSERT_LE(node.range.end, tree.text.size());
        ASSERT_EQ(node.parent == noNode, id == tree.root());
        if (node.parent != noNode) {
            ASSERT_GT(node.parent, id);
            ASSERT_LE(tree[node.parent].range.begin, node.range.begin);
            ASSERT_LE(node.range.end, tree[node.parent].range.end);
        }
        if (node.next != noNode) {
            ASSERT_LT(id, node.next);
            ASSERT_LE(node.range.end, tree[node.next].range.begin);
        }
    }
}

TEST(SyntaxTest, StandsDeepAndLongTexts) {
    const std::size_t many = 100000;
    for (const char* const piece :
         {"(",  "{",       "[",   "!",    "a[",    "f(",   "if (",   "if (a) ", "a = ",   "a ? ",
          "- ", "((int) ", "a.b", "a + ", "for (", "do ",  "int a[", "{ {",     "else ",  ") ",
          "} ", "] ",      "'",   "\"",   "/*",    "//",   "#{",     "const\n", "int f(", "a\n",
          "= ", "; ",      ", ",  "x y ", "1e",    "\xff", "a[1] ",  "a()"}) {
        const std::string text = "void main() { " + repeated(piece, many) + "; }";
        expectSound(read(text));
    }
}

TEST(SyntaxTest, StandsAnyOrderOfTokens) {
    const std::vector<std::string> tokens = {
        "int ",   "x ",      "( ",     ") ", "{ ",  "} ",      "[ ",   "] ",
        "; ",     ", ",      "= ",     "+ ", "if ", "do ",     "for ", "while ",
        "else ",  "1 ",      "? ",     ": ", "++ ", "! ",      "'a' ", "\"s\" ",
        "print ", "return ", "const ", "\n", "% ",  "elseif ", ". ",   "& "};
    unsigned state = 1;
    for (int round = 0; round < 3000; ++round) {
        std::string text = "void main() { ";
        for (int count = 0; count < 40; ++count) {
            state = state * 1664525U + 1013904223U;
            text += tokens[(state >> 8U) % tokens.size()];
        }
        expectSound(read(text));
    }
}

}  // namespace

}  // namespace krel::Syntax
