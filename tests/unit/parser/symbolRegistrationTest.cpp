#include <gtest/gtest.h>

#include <string>

#include "parse.hpp"
#include "tests/unit/support/lines.hpp"

namespace krel {

namespace {

const std::string separator = "--------------------------";

/// The print of a scalar symbol whose value line is `value`.
std::string scalar(const std::string& name, const std::string& type, const std::string& value,
                   int line) {
    return joinLines({"name: " + name, "type: " + type, value,
                      "source line: " + std::to_string(line), separator});
}

std::string integer(const std::string& name, int value, int line) {
    return scalar(name, "int", "integer value: " + std::to_string(value), line);
}

/// The print of a function of type void; `parameters` as the print lists them.
std::string function(const std::string& name, const std::string& parameters, int line) {
    return joinLines({"name: " + name, "type: void", "void type",
                      "function parameters: " + parameters, "source line: " + std::to_string(line),
                      separator});
}

/// The print of an array; `size` is its size line with a line feed, or empty.
std::string array(const std::string& name, const std::string& size, int line) {
    return joinLines({"name: " + name, "type: int"}) + size +
           joinLines({"source line: " + std::to_string(line), separator});
}

const std::string title = joinLines({"", "Symbol Table:"});

TEST(SymbolRegistrationTest, FunctionThenParametersThenVariables) {
    const Parsed parsed = parse("void f(int a,\ndouble b) {\nint x = 7;\nint y = 8; }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.queued, 0U);
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "a (int), b (double), ", 1) +
                                integer("a", 0, 1) + scalar("b", "double", "double value: 0", 2) +
                                integer("x", 7, 3) + integer("y", 8, 4));
}

TEST(SymbolRegistrationTest, AllDeclaratorsOfAListAndOfNestedBlocks) {
    const Parsed parsed = parse(
        "void f() { int a = 1, b = 2; { int c = 3; while (a) { int d = 4; } }\n"
        "for (int e = 5; ; ) { int g = 6; } }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "", 1) + integer("a", 1, 1) +
                                integer("b", 2, 1) + integer("c", 3, 1) + integer("d", 4, 1) +
                                integer("e", 5, 2) + integer("g", 6, 2));
}

TEST(SymbolRegistrationTest, EachFunctionHasItsScope) {
    const Parsed parsed = parse("void g() { int x = 1; } void f() { int x = 2; }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "", 1) + integer("x", 2, 1) +
                                "Scope: g\n" + function("g", "", 1) + integer("x", 1, 1));
}

TEST(SymbolRegistrationTest, EverySymbolHasTheScopeOfItsFunction) {
    const Parsed parsed = parse(
        "void f(int a, double b) { int x = 1, y = 2; int list[3]; int sized[x]; }\n"
        "int g() { }\n"
        "void h(string a) { string x = \"\"; double list[2] = {1.5, 2.5}; }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.scopes,
              "f: f@f a@f b@f x@f y@f list@f sized@f\n"
              "g: g@g\n"
              "h: h@h a@h x@h list@h\n");
}

TEST(SymbolRegistrationTest, InnerDeclarationsHaveTheScopeOfTheFunction) {
    const Parsed parsed = parse(
        "void f() { { int a = 1; { int b[2]; } } while (a) { int c = 3; }\n"
        "for (int d = 4; ; ) { int e = 5; } for (int g[2]; ; ) { }\n"
        "if (a) { int h = 6; } elseif (a) { int i = 7; } else { int j = 8; } }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.scopes, "f: f@f a@f b@f c@f d@f e@f g@f h@f i@f j@f\n");
}

TEST(SymbolRegistrationTest, DeclarationsOutsideOfFunctionsHaveTheScopeOfTheNextOne) {
    const Parsed parsed = parse("int early = 1; int row[2]; void f() { } void g() { }");
    EXPECT_EQ(parsed.scopes,
              "f: f@f early@f row@f\n"
              "g: g@g\n");
}

TEST(SymbolRegistrationTest, DuplicatesAreReportedInOrderAndDropped) {
    const Parsed parsed =
        parse("void f(int p,\nint p,\nint f) {\nint x = 1;\nint x = 2;\nint p = 3;\nint f = 4; }");
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.errors,
              "Semantic error at line 2: Symbol 'p' already exists in scope 'f'.\n"
              "Semantic error at line 3: Symbol 'f' already exists in scope 'f'.\n"
              "Semantic error at line 5: Symbol 'x' already exists in scope 'f'.\n"
              "Semantic error at line 6: Symbol 'p' already exists in scope 'f'.\n"
              "Semantic error at line 7: Symbol 'f' already exists in scope 'f'.\n");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "p (int), p (int), f (int), ", 1) +
                                integer("p", 0, 1) + integer("x", 1, 4));
}

TEST(SymbolRegistrationTest, TwoLoopsOverOneNameClash) {
    EXPECT_EQ(errorsInBody("for (int i = 0; ; ) { }\nfor (int i = 0; ; ) { }"),
              "Semantic error at line 2: Symbol 'i' already exists in scope 'f'.\n");
}

TEST(SymbolRegistrationTest, SecondFunctionOfANameAddsItsVariablesToTheFirst) {
    const Parsed parsed = parse("void f(int a) { }\n\nvoid f(int b) {\nint a = 1;\nint c = 2; }");
    EXPECT_EQ(parsed.errors,
              "Semantic error at line 3: Function 'f' already exists.\n"
              "Semantic error at line 4: Symbol 'a' already exists in scope 'f'.\n");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "a (int), ", 1) +
                                integer("a", 0, 1) + integer("b", 0, 3) + integer("c", 2, 5));
}

TEST(SymbolRegistrationTest, DeclarationsOutsideOfFunctionsGoToTheNextOne) {
    const Parsed parsed = parse("int early = 1;\nvoid f() { int x = 2; }\nint late = 3;");
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "", 2) + integer("early", 1, 1) +
                                integer("x", 2, 2));
    EXPECT_EQ(parsed.queued, 1U);
}

TEST(SymbolRegistrationTest, DeclarationsWithoutAnyFunctionStayQueued) {
    const Parsed parsed = parse("int a = 1, b = 2;");
    EXPECT_EQ(parsed.table, title);
    EXPECT_EQ(parsed.queued, 2U);
}

TEST(SymbolRegistrationTest, ArraysOfLiteralSize) {
    const Parsed parsed = parse("void f() { int a[3];\nint b[2] = {7, 8}; }");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "", 1) +
                                array("a", "array size: 3\n", 1) +
                                array("b", "array size: 2\n", 2));
}

TEST(SymbolRegistrationTest, ArraySizeIsTheVariableDeclaredBefore) {
    const Parsed parsed = parse("void f(int p) { int n = 4; int a[n]; int b[p]; }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "p (int), ", 1) +
                                integer("p", 0, 1) + integer("n", 4, 1) +
                                array("a", "array size symbol: n\n", 1) +
                                array("b", "array size symbol: p\n", 1));
}

TEST(SymbolRegistrationTest, ArraySizeDeclaredLaterIsNotFound) {
    const Parsed parsed = parse("void f() { int a[n]; int n = 4; }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.table,
              title + "Scope: f\n" + function("f", "", 1) + array("a", "", 1) + integer("n", 4, 1));
}

TEST(SymbolRegistrationTest, ArraySizeOfAnotherScopeIsNotFound) {
    const Parsed parsed = parse("void g() { int n = 4; } void f() { int a[n]; }");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "", 1) + array("a", "", 1) +
                                "Scope: g\n" + function("g", "", 1) + integer("n", 4, 1));
}

TEST(SymbolRegistrationTest, DeclaratorsBehindAnArrayGetNoSymbols) {
    const Parsed parsed = parse("void f() { int a[3], n = 5; int m = 6; }");
    EXPECT_EQ(parsed.errors, "");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "", 1) +
                                array("a", "array size: 3\n", 1) + integer("m", 6, 1));
}

TEST(SymbolRegistrationTest, InitialValuesFollowTheNode) {
    const Parsed parsed = parse(
        "void f() { string s = other; string t = a + b; double d = 2.5; boolean o = true; "
        "character c = 'q'; int m = -1; double k = (double) 3; string u = \"text\"; }");
    EXPECT_EQ(parsed.table, title + "Scope: f\n" + function("f", "", 1) +
                                scalar("s", "string", "string value: other", 1) +
                                scalar("t", "string", "string value: +", 1) +
                                scalar("d", "double", "double value: 2.5", 1) +
                                scalar("o", "boolean", "boolean value: true", 1) +
                                scalar("c", "character", "character value: q", 1) +
                                integer("m", 0, 1) + scalar("k", "double", "double value: 0", 1) +
                                scalar("u", "string", "string value: text", 1));
}

TEST(SymbolRegistrationTest, FunctionIsFiledWhenItsBodyIsComplete) {
    const Parsed parsed = parse("void f() { int x = 1; x = ; }");
    EXPECT_EQ(parsed.status, 1);
    EXPECT_FALSE(parsed.hasTree);
    EXPECT_EQ(parsed.table, title);
    EXPECT_EQ(parsed.queued, 1U);
}

}  // namespace

}  // namespace krel
