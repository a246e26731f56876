// What the repairs write. Each row is a piece of `main`, and what becomes of it.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "frontend/frontEnd.hpp"
#include "tools/check/model.hpp"
#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

std::string repaired(const std::string& text) {
    const Tree tree = Syntax::read(text);
    const Model model{tree};
    const std::unordered_set<NodeId> nothing;
    return Repairer{model, nothing}.repair().textOver(text);
}

constexpr std::string_view begin =
    "int f(int x) { return x; } boolean h(int x) { return true; } double half() { return 0.5; }"
    " void main() { int i = 1; int n = 2; double d = 0.5; boolean b = true; string s = \"\";"
    " character c = 'c'; int a[3]; ";
constexpr std::string_view end = " }";

struct Row {
    std::string text;
    std::string expected;
};

/// The frame stays as it is, but for constants at the beginning of `main`; the result is accepted.
void expectRepairs(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const std::string program = std::string{begin} + row.text + std::string{end};
        const std::string made = repaired(program);
        const std::size_t from = made.find("int a[3]; ");
        ASSERT_NE(from, made.npos);
        std::string constants = made.substr(0, from);
        const std::size_t open = constants.find("main() {") + 8;
        const std::size_t close = constants.find(" int i = 1;", open);
        constants = constants.substr(open, close - open);
        std::string body = made.substr(from + 10, made.size() - from - 10 - end.size());
        EXPECT_EQ(constants.empty() ? body : constants.substr(1) + " | " + body, row.expected)
            << row.text;
        const auto compiled = FrontEnd::compile(made, "p.krl");
        EXPECT_EQ(compiled->outcome(), FrontEnd::Outcome::Complete) << made << "\n"
                                                                    << compiled->failure();
    }
}

TEST(RepairTest, LeavesKrelAsItIs) {
    for (const char* const text :
         {"int x = 1, y = 2; x = y + 1;", "a[i] = a[0] * 2;", "if (i < n && d < 0.25) { i++; }",
          "int k = (int) c; string t = (string) k;", "int less = i < n; boolean off = b == false;",
          "for (int k = 0; k < 3; k++) { n += k; } print(k, \" + \" + s);",
          "while (n > 0) { n--; } print(f(1), -(f(2)), \"a - b\");", "s = s + s; s += \"x\";"}) {
        const std::string program = std::string{begin} + text + std::string{end};
        if (std::string{text}.find("\" + \"") == std::string::npos) {
            EXPECT_EQ(repaired(program).find(text) != std::string::npos,
                      std::string{text}.find("\"a - b\"") == std::string::npos)
                << text;
        }
    }
}

TEST(RepairTest, MovesIndexes) {
    expectRepairs({
        {"a[i + 1] = 0;", "int aIndex = i + 1; a[aIndex] = 0;"},
        {"n = a[a[0]];", "int aIndex = a[0]; n = a[aIndex];"},
        {"n = a[-1];", "int aIndex = -1; n = a[aIndex];"},
        {"a[f(1)] = f(2);", "int aIndex = f(1); a[aIndex] = f(2);"},
        {"n = f(1) + a[f(2)];", "int fResult = f(1); int aIndex = f(2); n = fResult + a[aIndex];"},
        {"int g[2][3]; g[1][i] = 4;", "int g[6]; int gIndex = 1 * 3 + i; g[gIndex] = 4;"},
    });
}

TEST(RepairTest, MovesCalls) {
    expectRepairs({
        {"if (f(1) == 1) { n = 1; }", "int fResult = f(1); if (fResult == 1) { n = 1; }"},
        {"while (f(n) == 0) { n++; }",
         "while (true) { int fResult = f(n); if (!(fResult == 0)) { break; } n++; }"},
        {"for (i = 0; f(i) < 3; i++) { continue; }",
         "for (i = 0; ; i++) { int fResult = f(i); if (!(fResult < 3)) { break; } continue; }"},
        {"n += f(1);", "int fResult = f(1); n += fResult;"},
        {"b = !h(1);", "boolean hResult = h(1); b = !hResult;"},
        {"n = -f(1);", "int fResult = f(1); n = -fResult;"},
        {"f(1);", "int ignored = f(1);"},
        {"if (b) { } elseif (h(1)) { n = 1; } else { n = 2; }",
         "if (b) { } else {     boolean hResult = h(1);     if (hResult) { n = 1; } else { n = 2; }"
         " }"},
        {"if (i > 0 && h(i)) { n = 1; }",
         "boolean both = false; if (i > 0) { boolean hResult = h(i); if (hResult) { both = true; } "
         "}"
         " if (both) { n = 1; }"},
        {"if (i > 0 || h(i)) { n = 1; }",
         "boolean either = false; if (i > 0) { either = true; } else { boolean hResult = h(i);"
         " if (hResult) { either = true; } } if (either) { n = 1; }"},
    });
}

TEST(RepairTest, MovesCasts) {
    expectRepairs({
        {"d = (double) i / n;",
         "double iDouble = (double) i; double nDouble = (double) n; d = iDouble / nDouble;"},
        {"double e = (double) a[0];", "int operand = a[0]; double e = (double) operand;"},
        {"print((int) c);", "int cCode = (int) c; print(cCode);"},
        {"double e = (double) d;", "double e = d;"},
    });
}

TEST(RepairTest, WritesDoublesInAnotherWay) {
    expectRepairs({
        {"double e = 2.0;", "double e = (double) 2;"},
        {"double e = 1;", "double e = (double) 1;"},
        {"d = d * 2.0 + 2.0;", "double two = (double) 2; | d = d * two + two;"},
        {"d = -2.0;", "double two = (double) 2; | d = -two;"},
        {"if (d > 0) { }", "double zero = (double) 0; | if (d > zero) { }"},
        {"d++;", "double one = (double) 1; | d = d + one;"},
        {"d += 1;", "double one = (double) 1; | d += one;"},
        {"d = .5;", "d = 0.5;"},
        {"d = 1e-12;",
         "int units = 1000 * 1000000000; double scale = (double) units; double one = (double) 1;"
         " double small = one / scale; | d = small;"},
        {"d = 2.5e3;", "double value2500 = (double) 2500; | d = value2500;"},
        {"d = 2147483648.0;",
         "int units = 2 * 1000000000 + 147483648; double value2147483648 = (double) units;"
         " | d = value2147483648;"},
        {"d = 6e22;",
         "int units = 1000000000 * 1000000000; double scale = (double) units;"
         " double value10000 = (double) 10000; double scale2 = scale * value10000;"
         " double six = (double) 6; double large = six * scale2; | d = large;"},
    });
}

TEST(RepairTest, ConvertsValues) {
    expectRepairs({
        {"d = d * n;", "double nDouble = (double) n; d = d * nDouble;"},
        {"s = s + n;", "string nText = (string) n; s = s + nText;"},
        {"s = \"n = \" + 5;", "s = \"n = \" + \"5\";"},
        {"n = c - 'a';", "character value = c - 'a'; int valueCode = (int) value; n = valueCode;"},
        {"c = \"x\";", "c = 'x';"},
        {"b = 1;", "b = true;"},
        {"n = true;", "n = 1;"},
    });
}

TEST(RepairTest, DecidesByIf) {
    expectRepairs({
        {"b = n > 1;", "if (n > 1) { b = true; } else { b = false; }"},
        {"b = b && n > 1;", "if (b && n > 1) { b = true; } else { b = false; }"},
        {"i = n > 1 ? n : 1;", "if (n > 1) { i = n; } else { i = 1; }"},
        {"print(n > 1 ? n : 1);",
         "int chosen = 0; if (n > 1) { chosen = n; } else { chosen = 1; } print(chosen);"},
        {"i = n > 2 ? 3 : n > 1 ? 2 : 1;",
         "if (n > 2) { i = 3; } elseif (n > 1) { i = 2; } else { i = 1; }"},
        {"boolean p = n > 1;", "boolean p = false; if (n > 1) { p = true; }"},
        {"print(h(i) && n > 1);",
         "boolean hResult = h(i); boolean holds = false;"
         " if (hResult && n > 1) { holds = true; } print(holds);"},
        {"if (n != 0 && 10 / n > 2) { }",
         "boolean both = false; if (n != 0) { if (10 / n > 2) { both = true; } } if (both) { }"},
        {"if (d) { }", "double zero = (double) 0; | if (d != zero) { }"},
    });
}

TEST(RepairTest, WritesOperatorsThatThereAre) {
    expectRepairs({
        {"i *= 2;", "i = i * 2;"},
        {"i /= n + 1;", "i = i / (n + 1);"},
        {"i %= 3;", "i = i - i / 3 * 3;"},
        {"i = n % 3000000000;", "int divisor = 3 * 1000000000; i = n - n / divisor * divisor;"},
        {"i = n % 2;", "i = n - n / 2 * 2;"},
        {"i = (n + 1) % a[0];", "int dividend = n + 1; i = dividend - dividend / a[0] * a[0];"},
        {"i = n++;", "int before = n; n++; i = before;"},
        {"i = ++n;", "n++; i = n;"},
        {"i = n = 1;", "n = 1; i = n;"},
        {"if (i = 1) { }", "if (i == 1) { }"},
        {"(i)++;", "i++;"},
    });
}

TEST(RepairTest, WritesStatementsThatThereAre) {
    expectRepairs({
        {"if (b) i = 1; else i = 2;", "if (b) { i = 1; } else { i = 2; }"},
        {"if (b) { } else if (i == 1) { }", "if (b) { } elseif (i == 1) { }"},
        {"do { i++; } while (!b);", "while (true) { i++; if (b) { break; } }"},
        {"do { i++; } while (i < n);", "while (true) { i++; if (!(i < n)) { break; } }"},
        {"do { i++; } while (n > f(i));",
         "while (true) { i++; int fResult = f(i); if (!(n > fResult)) { break; } }"},
        {"do { continue; } while (i < n);",
         "boolean again = false; while (true) { if (again) { if (!(i < n)) { break; } }"
         " again = true; continue; }"},
        {"for (i = 0; i < n; i++, n--) { }", "for (i = 0; i < n; ) { i++; n--; }"},
        {"for (i = 0; i < n; i++, n--) { continue; }",
         "boolean again = false; for (i = 0; ; ) { if (again) { i++; n--; } again = true;"
         " if (!(i < n)) { break; } continue; }"},
        {"while (b) ;", "while (b) {  }"},
        {"i = 1;;", "i = 1;"},
        {"i = 1 }  void k() { ", "i = 1; }  void k() { "},
    });
}

TEST(RepairTest, Declares) {
    expectRepairs({
        {"int x;", "int x = 0;"},
        {"double x, y = 1;", "double x = (double) 0, y = (double) 1;"},
        {"int t[3], u[3];", "int t[3]; int u[3];"},
        {"int x = 0, t[3];", "int x = 0; int t[3];"},
        {"int t[] = {1, 2};", "int t[2] = {1, 2};"},
        {"int t[2 * 3];", "int t[6];"},
        {"int m = 4; int t[m + 1];", "int m = 4; int t[5];"},
        {"int m = 2 * 4; int t[m];", "int m = 2 * 4; int t[8];"},
        {"int k = 3.7; int j = (int) 2.5;", "int k = 3; int j = 2;"},
        {"int[] t = {1, 2};", "int t[2] = {1, 2};"},
        {"char k = 'x'; bool p = true; long q = 1; float r = 0.5;",
         "character k = 'x'; boolean p = true; int q = 1; double r = 0.5;"},
        {"const int m = 3; int t[m];", "int m = 3; int t[m];"},
        {"for (int k = 0; k < 3; k++) { } for (int k = 0; k < 2; k++) { }",
         "for (int k = 0; k < 3; k++) { } for (k = 0; k < 2; k++) { }"},
        {"{ int k = 1; } { double k = 0.5; d = k; }",
         "{ int k = 1; } { double k2 = 0.5; d = k2; }"},
        {"int k = 1; { int k = 2; n = k; } n = k;", "int k = 1; { int k2 = 2; n = k2; } n = k;"},
        {"int arg = 5; print(arg);", "int argument = 5; print(argument);"},
        {"int main = 5; print(main);", "int mainValue = 5; print(mainValue);"},
    });
}

TEST(RepairTest, SplitsDeclarationsThatReadThemselves) {
    expectRepairs({
        {"int lo = 1, hi = 9, mid = (lo + hi) % 4;",
         "int lo = 1, hi = 9; int dividend = lo + hi;"
         " int mid = dividend - dividend / 4 * 4;"},
        {"int m = 0, k = m++, o = m;", "int m = 0; int before = m; m++; int k = before, o = m;"},
        {"int x = f(2), y = x > 1 ? f(1) : f(0);",
         "int x = f(2), y = 0; if (x > 1) { y = f(1); } else { y = f(0); }"},
        {"int x = 1, t[3], y = x++;", "int x = 1; int t[3]; int before = x; x++; int y = before;"},
        {"char k = 'x', l = k, m = n > 1 ? k : l;",
         "character k = 'x', l = k, m = ' '; if (n > 1) { m = k; } else { m = l; }"},
        {"int x = f(1) + -f(2), y = -f(3);",
         "int fResult = f(1); int fResult2 = f(2); int x = fResult + -fResult2;"
         " int fResult3 = f(3); int y = -fResult3;"},
        {"for (int k = 1, l = (k + 1) % 2; k < 3; k++) { }",
         "int k = 1; int dividend = k + 1; for (int l = dividend - dividend / 2 * 2; k < 3;"
         " k++) { }"},
    });
}

TEST(RepairTest, KeepsWhatIsReadBeforeItChanges) {
    expectRepairs({
        {"n = i + i++ + i;", "int before = i; int before2 = i; i++; n = before + before2 + i;"},
        {"n = i * 10 + (i = 5);", "int before = i; i = 5; n = before * 10 + (i);"},
        {"i += i++;", "int before = i; int before2 = i; i++; i = before + before2;"},
        {"a[i] = i++;", "int before = i; int before2 = i; i++; a[before] = before2;"},
        {"n = (a[i] = i++);",
         "int before = i; int before2 = i; i++; a[before] = before2; n = (a[before]);"},
        {"n = a[0] + a[0]++;",
         "int before = a[0]; int before2 = a[0]; a[0]++; n = before + before2;"},
        {"print(i, n++, i);", "int before = n; n++; print(i, before, i);"},
        {"print(n, n++, n);", "int before = n; int before2 = n; n++; print(before, before2, n);"},
        {"n = ++i + i++;", "i++; int before = i; int before2 = i; i++; n = before + before2;"},
        {"n = (i = 5) + ++i;", "i = 5; int before = i; i++; n = (before) + i;"},
        {"n = f(i) + i++;", "int before = i; int before2 = i; i++; n = f(before) + before2;"},
        {"i = (i = i + 1);", "i = i + 1; i = (i);"},
        {"while (i < n && i++ < 5) { }",
         "while (true) { boolean both = false; if (i < n) { int before = i; i++;"
         " if (before < 5) { both = true; } } if (!both) { break; } }"},
        {"n = i > 1 ? i++ : i;", "if (i > 1) { int before = i; i++; n = before; } else { n = i; }"},
    });
}

TEST(RepairTest, MovesGlobalsWithWhatTheyAreMadeOf) {
    const std::vector<Row> rows = {
        {"const double THIRD = 1.0 / 3.0; void main() { print(THIRD); }",
         " void main() { double one = (double) 1; double three = (double) 3;"
         " double THIRD = one / three; print(THIRD); }"},
        {"const int W = 3; const int SIZE = W * W; void main() { print(SIZE); }",
         "  void main() { int W = 3; int SIZE = W * W; print(SIZE); }"},
        {"const int W = 3; const int SIZE = W * W; void main() { int g[SIZE]; print(g[0]); }",
         "  void main() { int W = 3; int SIZE = W * W; int g[9]; print(g[0]); }"},
        {"const int A = 2; const int B = A + 1; const int C = B * A;"
         " int f() { return C; } void main() { print(f()); }",
         "   int f() { int A = 2; int B = A + 1; int C = B * A; return C; }"
         " void main() { print(f()); }"},
        {"int f() { return K2 * K2; } const int K = 2; const int K2 = K + 1;"
         " void main() { int K = 9; print(f(), K); }",
         "int f() { int K = 2; int K2 = K + 1; return K2 * K2; }  "
         " void main() { int K = 9; print(f(), K); }"},
        {"const int A = 2; int f() { return A; } const int B = A * 2; void main() { print(f(), B); "
         "}",
         " int f() { int A = 2; return A; }  void main() { int A = 2; int B = A * 2;"
         " print(f(), B); }"},
        {"int x = 3\nvoid main() { print(x); }", "\nvoid main() { int x = 3; print(x); }"},
        {"const int H = 4; const double HALF = H * 0.5; void main() { print(HALF); }",
         "  void main() { int H = 4; double HDouble = (double) H; double HALF = HDouble * 0.5;"
         " print(HALF); }"},
        {"const int W = 3; const int SIZE = W * 2; void main() { int W = 5; print(SIZE, W); }",
         "  void main() { int W2 = 3; int SIZE = W2 * 2; int W = 5; print(SIZE, W); }"},
        {"const int N = 4; int board[N]; void g() { board[1] = 7; } void main() { g();"
         " print(board[1]); }",
         "   void main() { int N = 4; int board[N]; for (int boardIndex = 0; boardIndex < 4;"
         " boardIndex++) { board[boardIndex] = 0; } { board[1] = 7; } print(board[1]); }"},
        {"const int W = 3; int first(int t[]) { return t[0] * W; }"
         " void main() { int a[2] = {5, 6}; print(first(a)); }",
         "  void main() { int W = 3; int a[2] = {5, 6}; int firstResult = 0;"
         " { firstResult = a[0] * W; } print(firstResult); }"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(repaired(row.text), row.expected);
    }
}

TEST(RepairTest, FillsListsUp) {
    expectRepairs({
        {"int t[3] = {7};", "int t[3] = {7, 0, 0};"},
        {"boolean t[3] = {true, true};", "boolean t[3] = {true, true, false};"},
        {"string t[2] = {\"x\"};", "string t[2] = {\"x\", \"\"};"},
        {"double t[2] = {0.5};", "double zero = (double) 0; | double t[2] = {0.5, zero};"},
        {"int t[1000] = {0};",
         "int t[1000] = {0}; for (int tIndex = 1; tIndex < 1000; tIndex++) { t[tIndex] = 0; }"},
        {"int m = 40; int t[m] = {0};",
         "int m = 40; int t[m] = {0}; for (int tIndex = 1; tIndex < 40; tIndex++)"
         " { t[tIndex] = 0; }"},
        {"int t[3] = {7}; t[1] = 2;", "int t[3] = {7, 0, 0}; t[1] = 2;"},
        {"int t[3] = {7}; t[i] = 2;", "int t[3] = {7}; t[i] = 2;"},
        {"int t[3] = {7}; t[0] = n; t[i] = 2;", "int t[3] = {7}; t[0] = n; t[i] = 2;"},
        {"int t[3] = {7}; n = t[i]; t[i] = 2;", "int t[3] = {7, 0, 0}; n = t[i]; t[i] = 2;"},
        {"int t[2] = {7, 8};", "int t[2] = {7, 8};"},
        {"int t[2] = {f(1};", "int t[2] = {f(1), 0};"},
        {"int t[2] = {}; n = t[1];",
         "int t[2]; for (int tIndex = 0; tIndex < 2; tIndex++) { t[tIndex] = 0; } n = t[1];"},
        {"var t[] = {0.5, 1.5};", "double t[2] = {0.5, 1.5};"},
    });
}

TEST(RepairTest, WritesTexts) {
    expectRepairs({
        {"s = \"a - b\";", "s = \"a -\" + \" b\";"},
        {"print(i, \" + \", n);", "print(i, \" +\", \" \", n);"},
        {"print(\"a - b\");", "print(\"a - b\");"},
        {"c = '\"';", "character quote = (character) 34; | c = quote;"},
        {"print('\"');", "print(\"\\\"\");"},
        {"c = '\\t';", "character tab = (character) 9; | c = tab;"},
        {"s = 'two';", "s = \"two\";"},
    });
}

TEST(RepairTest, ComputesBigLiterals) {
    expectRepairs({
        {"i = 3000000000;", "i = 3 * 1000000000;"},
        {"i = n * 2147483648;", "i = n * (2 * 1000000000 + 147483648);"},
        {"i = 9223372036854775807;", "i = (9 * 1000000000 + 223372036) * 1000000000 + 854775807;"},
        {"i = 2147483647;", "i = 2147483647;"},
    });
}

TEST(RepairTest, JoinsLiteralsThatAreCompared) {
    expectRepairs({
        {"string t = \"y\" + \"es\"; if (t == \"yes\") { }",
         "string t = \"yes\"; if (t == \"yes\") { }"},
        {"if (s == \"a\" + \"b\" + \"c\") { }", "if (s == \"abc\") { }"},
        {"string t = \"y\" + \"es\"; print(t);", "string t = \"y\" + \"es\"; print(t);"},
        {"string t = \"a -\" + \" b\"; if (t == s) { }",
         "string t = \"a -\" + \" b\"; if (t == s) { }"},
    });
}

TEST(RepairTest, WritesBitOperatorsAsArithmetic) {
    expectRepairs({
        {"i = n << 3;", "i = n * 8;"},
        {"i = i + n << 1;", "i = (i + n) * 2;"},
        {"i >>= 1;", "i = i / 2;"},
        {"if ((n & 1) == 0) { }", "if ((n - n / 2 * 2) == 0) { }"},
        {"i = ~n;", "i = -1 - n;"},
        {"b = b & true;", "b = b && true;"},
    });
}

/// What the helper functions print, for values of both signs.
TEST(RepairTest, AddsFunctionsForOtherOperators) {
    const std::string made = repaired(
        "void main() { int a = 12; int b = -7; print(a & b, a | b, a ^ b, b >> a, a << a, a ** 2);"
        " if (a & b) { } a |= b; }");
    const char* const calls =
        "print(bitsInBoth(a, b), bitsInAny(a, b), bitsInOne(a, b), shiftedRight(b, a),"
        " shiftedLeft(a, a), power(a, 2));";
    for (const char* const part :
         {calls, "int bits = bitsInBoth(a, b); if (bits) { }", "a = bitsInAny(a, b);",
          "\nint bitsInBoth(int left, int right) {", "if (leftBit + rightBit == 2)",
          "\nint power(int base, int exponent) {"}) {
        EXPECT_NE(made.find(part), made.npos) << part << "\n" << made;
    }
    EXPECT_EQ(FrontEnd::compile(made, "p.krl")->outcome(), FrontEnd::Outcome::Complete) << made;
}

TEST(RepairTest, WritesSwitchAsIf) {
    expectRepairs({
        {"switch (n) { case 1: i = 1; break; case 2: case 3: i = 2; break; default: i = 3; }",
         "if (n == 1) { i = 1;  } elseif (n == 2 || n == 3) { i = 2;  } else { i = 3; }"},
        {"switch (f(1)) { case 1: i = 1; }", "int selected = f(1); if (selected == 1) { i = 1; }"},
        {"switch (c) { case 'a': { i = 1; break; } case 'b': if (b) break; i = 2; break; }",
         "while (true) { if (c == 'a') { { i = 1;  } } elseif (c == 'b') { if (b) { break; } i = 2;"
         "  } break; }"},
        {"switch (n) { default: i = 3; }", "{ i = 3; }"},
        {"while (b) { switch (n) { case 1: continue; case 2: break; } }",
         "while (b) { if (n == 1) { continue; } elseif (n == 2) {  } }"},
    });
}

TEST(RepairTest, NumbersNamesInEachFunction) {
    EXPECT_EQ(repaired("int f(int n) { return n % 3; }\nint g(int n) { return (n + 1) % 3 + (n + 2)"
                       " % 3; }\nint h(int n) { return (n + 1) % 3; }\n"),
              "int f(int n) { return n - n / 3 * 3; }\n"
              "int g(int n) { int dividend = n + 1; int dividend2 = n + 2;"
              " return (dividend - dividend / 3 * 3) + (dividend2 - dividend2 / 3 * 3); }\n"
              "int h(int n) { int dividend = n + 1; return dividend - dividend / 3 * 3; }\n");
}

TEST(RepairTest, WritesFunctionsThatTakeArraysWhereTheyAreCalled) {
    const std::string body =
        "int first(int t[], int n) { for (int k = 0; k < n; k++) { if (t[k] > 1) { return k; } }"
        " return -1; }\n";
    EXPECT_EQ(repaired(body + "void main() { int a[2] = {1, 2}; print(first(a, 1 + 1)); }\n"),
              "\nvoid main() { int a[2] = {1, 2}; int n = 1 + 1; int firstResult = 0;"
              " boolean firstDone = false; while (true) { for (int k = 0; k < n; k++)"
              " { if (a[k] > 1) { firstResult = k; firstDone = true; break; } }"
              " if (firstDone) { break; } firstResult = -1; break; } print(firstResult); }\n");
    EXPECT_EQ(repaired("void fill(int* t) { t[0] = 1; }\nvoid main() { int a[2]; int b[2];"
                       " fill(a); fill(b); print(a[0], b[0]); }\n"),
              "\nvoid main() { int a[2]; int b[2]; { a[0] = 1; } { b[0] = 1; }"
              " print(a[0], b[0]); }\n");
    EXPECT_EQ(repaired("int last(int t[], int n) { n--; return t[n]; }\nint sum(int t[], int n)"
                       " { return last(t, n) + n; }\nvoid main() { int a[2] = {1, 2}; int n = 2;"
                       " while (sum(a, n) > 2) { n--; } }\n"),
              "\n\nvoid main() { int a[2] = {1, 2}; int n = 2; while (true) { int sumResult = 0;"
              " { int n2 = n; int lastResult = 0; { n2--; lastResult = a[n2]; }"
              " sumResult = lastResult + n; } if (!(sumResult > 2)) { break; } n--; } }\n");
}

TEST(RepairTest, WritesFunctionsThatShareVariablesWhereTheyAreCalled) {
    EXPECT_EQ(repaired("int count = 0;\nint t[2];\nint next() { count++; return count; }\n"
                       "void main() { t[0] = next(); int x = next() + t[0]; print(x, count); }\n"),
              "\n\n\nvoid main() { int count = 0; int t[2]; for (int tIndex = 0; tIndex < 2;"
              " tIndex++) { t[tIndex] = 0; } int nextResult = 0; { count++; nextResult = count; }"
              " t[0] = nextResult; int nextResult2 = 0; { count++; nextResult2 = count; }"
              " int x = nextResult2 + t[0]; print(x, count); }\n");
}

TEST(RepairTest, LeavesFunctionsThatCannotBeCopied) {
    for (const char* const text :
         {"int f(int t[], int n) { if (n == 0) { return t[0]; } return f(t, n - 1); }\n"
          "void main() { int a[2] = {1, 2}; print(f(a, 1)); }\n",
          "int n = 0;\nvoid f() { n++; }\nvoid main() { int n = 1; f(); print(n); }\n",
          "int f(int t[]) { return t[0]; }\nvoid main() { print(f(1)); }\n"}) {
        const Tree tree = Syntax::read(text);
        const Model model{tree};
        const std::unordered_set<NodeId> nothing;
        Repairer repairer{model, nothing, Repairer::Purpose::Write};
        EXPECT_EQ(repairer.repair().textOver(text), text);
        EXPECT_TRUE(repairer.hasStayed());
    }
}

TEST(RepairTest, CountsThroughArrays) {
    expectRepairs({
        {"for (int x : a) { n += x; }",
         "for (int xIndex = 0; xIndex < 3; xIndex++) { int x = a[xIndex]; n += x; }"},
        {"for (auto x : a) n += x;",
         "for (int xIndex = 0; xIndex < 3; xIndex++) { int x = a[xIndex]; n += x; }"},
    });
}

TEST(RepairTest, PrintsInKrel) {
    expectRepairs({
        {"printf(\"i = %d, %5.2f%%\\n\", i, d);", "print(\"i = \", i, \", \", d, \"%\\n\");"},
        {"printf(\"%d + %d\", i, n);", "print(i, \" +\", \" \", n);"},
        {"printf(s);", "print(s);"},
        {"System.out.println(\"n = \" + n);",
         "string nText = (string) n; print(\"n = \" + nText, \"\\n\");"},
        {"System.out.print(i);", "print(i);"},
        {"console.log(i, n);", "print(i, \" \", n, \"\\n\");"},
        {"std::cout << \"i = \" << i << std::endl;", "print(\"i = \", i, \"\\n\");"},
        {"cout << 'x' << \" - \" << f(1);", "print('x', \" -\", \" \", f(1));"},
        {"println();", "print(\"\\n\");"},
    });
}

TEST(RepairTest, WritesForeignWords) {
    EXPECT_EQ(repaired("#define N 3\n#define HALF 0.5\nvoid main() {\n    int a[N];\n"
                       "    double d = HALF * N;\n    print(a[0], d, N);\n}\n"),
              "#define N 3\n#define HALF 0.5\nvoid main() {\n    double three = (double) 3;\n"
              "    int a[3];\n    double d = 0.5 * three;\n    print(a[0], d, 3);\n}\n");
    EXPECT_EQ(repaired("enum Light { RED, GREEN = 4, BLUE };\nvoid main() {\n"
                       "    Light x = BLUE;\n    print(x == RED);\n}\n")
                  .find("\nvoid main() {\n    int x = 5;"),
              0U);
    EXPECT_EQ(repaired("int f(int x);\nint f(int x) { return x; }\n"),
              "\nint f(int x) { return x; }\n");
    EXPECT_EQ(repaired("public class Main {\nstatic void g() { }\n}\n"), "\nvoid g() { }\n\n");
    EXPECT_EQ(repaired("int main(int argc, char* argv[]) { return 0; }\n"),
              "void main() { return; }\n");
    EXPECT_EQ(repaired("import a.b;\nvoid main() { try { } catch (E e) { } }\n"),
              "\nvoid main() {  { }  }\n");
    EXPECT_EQ(repaired("// one\nint main(void) {\n    /* two */\n    return 0;\n}\n"),
              "# one\nvoid main() {\n    # two \n    return;\n}\n");
    EXPECT_EQ(
        repaired("void main() {\n    int a[2] = {1, /* two */ 2};\n    if (a[0 + 1] /* x */ > 1)"
                 " a[0] = 1 /* y */; // z\n    print(a[0]);\n}\n"),
        "void main() {\n    int a[2] = {1, 2};  # two\n    int aIndex = 0 + 1;\n"
        "    if (a[aIndex] > 1) { a[0] = 1 ; } # z  # x  # y\n    print(a[0]);\n}\n");
    EXPECT_EQ(repaired("void main() {\r\n}\r\n"), "void main() {\n}\n");
    EXPECT_EQ(repaired("const int n = 3;\nvoid main() {\n    print(n);\n}\n"),
              "\nvoid main() {\n    int n = 3;\n    print(n);\n}\n");
    EXPECT_EQ(repaired("boolean h(int x) { return x == 1; }"),
              "boolean h(int x) { if (x == 1) { return true; } return false; }");
}

}  // namespace

}  // namespace krel::Check
