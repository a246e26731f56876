#include "tools/debug/lineMap.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace krel::Debug {
namespace {

std::unique_ptr<FrontEnd::Compilation> compiled(const std::string& text) {
    FrontEnd::Request request;
    request.sources = true;
    auto made = FrontEnd::compile(text, "program.krl", request);
    EXPECT_EQ(made->outcome(), FrontEnd::Outcome::Complete);
    return made;
}

/// The lines where steps end, in the order of the intermediate code.
std::vector<int> beginnings(const std::string& text) {
    const auto compilation = compiled(text);
    const LineMap map{*compilation};
    std::vector<int> lines;
    for (std::size_t irLine = 0; irLine < compilation->irLines().size(); ++irLine) {
        if (map.begins(irLine)) {
            lines.push_back(map.lineOf(irLine));
        }
    }
    return lines;
}

using Lines = std::vector<int>;

TEST(DebugLineMapTest, EachStatementBegins) {
    EXPECT_EQ(beginnings("void main() {\n"
                         "    int a = 1 + 2;\n"
                         "    a = a * 2; a++;\n"
                         "    print(a);\n"
                         "}\n"),
              (Lines{2, 3, 4, 5}));
}

TEST(DebugLineMapTest, StatementOfSeveralLinesIsOnePlace) {
    EXPECT_EQ(beginnings("void main() {\n"
                         "    double d = 0.5;\n"
                         "    print(\"a\",\n"
                         "          d,\n"
                         "          1 + 2\n"
                         "    );\n"
                         "}\n"),
              (Lines{2, 3, 7}));
}

TEST(DebugLineMapTest, ParametersAreNoPlaces) {
    EXPECT_EQ(beginnings("int f(int a,\n"
                         "      double b) {\n"
                         "    return a;\n"
                         "}\n"
                         "void main() { }\n"),
              (Lines{3, 5}));
}

TEST(DebugLineMapTest, JumpsThatNobodyHasWrittenAreNoPlaces) {
    // In the order of the intermediate code, which puts the join behind all branches.
    EXPECT_EQ(beginnings("void main() {\n"
                         "    int a = 1;\n"
                         "    while (a < 9) {\n"
                         "        if (a == 5) {\n"
                         "            break;\n"
                         "        } elseif (a == 6) {\n"
                         "            continue;\n"
                         "        } else {\n"
                         "            a++;\n"
                         "        }\n"
                         "    }\n"
                         "}\n"),
              (Lines{2, 3, 4, 5, 6, 7, 9, 12}));
}

TEST(DebugLineMapTest, ForHeaderBeginsTwice) {
    EXPECT_EQ(beginnings("void main() {\n"
                         "    for (int i = 0; i < 3; i++) {\n"
                         "        print(i);\n"
                         "    }\n"
                         "}\n"),
              (Lines{2, 3, 2, 5}));
}

TEST(DebugLineMapTest, LoopOnOneLineIsOneStep) {
    EXPECT_EQ(beginnings("void main() {\n"
                         "    int x = 0;\n"
                         "    for (int i = 0; i < 3; i++) { if (i == 1) { x++; } }\n"
                         "    print(x);\n"
                         "}\n"),
              (Lines{2, 3, 4, 5}));
}

TEST(DebugLineMapTest, ElseOnTheLineOfTheBranchBefore) {
    // The else branch is reached from line 3, although the line before it is of line 4, too.
    EXPECT_EQ(beginnings("void main() {\n"
                         "    int x = 0;\n"
                         "    if (x == 1) {\n"
                         "        x = 2; } else { x = 3; }\n"
                         "}\n"),
              (Lines{2, 3, 4, 4, 5}));
}

TEST(DebugLineMapTest, WholeProgramOnOneLine) {
    EXPECT_EQ(beginnings("int f() { return 1; } void main() { int a = f(); print(a); }"),
              (Lines{1, 1}));
}

TEST(DebugLineMapTest, PlacesOfALineAreOneForEachFunction) {
    const auto compilation = compiled(
        "int f() { return 1; } void main() {\n"
        "    for (int i = 0; i < 3; i++) {\n"
        "        print(i);\n"
        "    }\n"
        "}\n");
    const LineMap map{*compilation};
    EXPECT_EQ(map.placesOf(1).size(), 1U);
    ASSERT_EQ(map.placesOf(2).size(), 1U);
    EXPECT_EQ(compilation->textOf(map.partOf(map.placesOf(2)[0])), "int i = 0");
    EXPECT_TRUE(map.placesOf(4).empty());
    const auto both = compiled("int f() { return 1; } void main() { int a = f(); }");
    EXPECT_EQ(LineMap{*both}.placesOf(1).size(), 2U);
}

TEST(DebugLineMapTest, NextLineWithCode) {
    const auto compilation = compiled("\nvoid main() {\n\n    int a = 1;\n    # Nothing.\n}\n\n");
    const LineMap map{*compilation};
    EXPECT_EQ(map.lineWithCodeFrom(-5), 4);
    EXPECT_EQ(map.lineWithCodeFrom(4), 4);
    EXPECT_EQ(map.lineWithCodeFrom(5), 6);
    EXPECT_EQ(map.lineWithCodeFrom(7), 0);
}

TEST(DebugLineMapTest, DeepNesting) {
    std::string text = "void main() {\n";
    constexpr int depth = 1000;
    for (int level = 0; level < depth; ++level) {
        text += "if (true) {\n";
    }
    for (int level = 0; level < depth; ++level) {
        text += "}\n";
    }
    EXPECT_EQ(beginnings(text + "}\n").size(), depth + 1U);
}

}  // namespace
}  // namespace krel::Debug
