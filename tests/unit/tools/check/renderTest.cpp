// How findings are written.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tools/check/render.hpp"

namespace krel::Check {

namespace {

CheckedFile fileOf(const std::string& text) {
    return {"dir/p.krl", text, check(text, "p.krl")};
}

const std::string program = "void main() {\n\tint x;\n\tprint(x);\n}\n";

TEST(RenderTest, ShowsLineRangeAndHelp) {
    EXPECT_EQ(textOf(fileOf(program), false),
              "dir/p.krl:2:6: error: `x` has no initial value [initial-value]\n"
              " 2 | \tint x;\n"
              "   | \t    ^\n"
              "   help: write `x = 0`\n");
    EXPECT_EQ(textOf(fileOf("void main() { }\n"), false), "");
}

TEST(RenderTest, ColoursAreOnlyAroundTheText) {
    const std::string coloured = textOf(fileOf(program), true);
    EXPECT_NE(coloured.find("\x1b[1;31merror\x1b[0m"), coloured.npos);
    std::string plain;
    for (std::size_t at = 0; at < coloured.size(); ++at) {
        if (coloured[at] == '\x1b') {
            at = coloured.find('m', at);
        } else {
            plain += coloured[at];
        }
    }
    EXPECT_EQ(plain, textOf(fileOf(program), false));
}

TEST(RenderTest, ControlCharactersAreNotWritten) {
    const std::string text = textOf(fileOf("void main() {\n    int x = \x1b[31m;\n}\n"), false);
    EXPECT_EQ(text.find('\x1b'), text.npos);
    EXPECT_NE(text.find("int x = ?[31m;"), text.npos);
}

TEST(RenderTest, LongLinesAreCut) {
    const std::string text = textOf(fileOf("void main() {\n    " + std::string(5000, ' ') +
                                           "int x;" + std::string(5000, ' ') + "print(x);\n}\n"),
                                    false);
    EXPECT_LT(text.size(), 600U);
    EXPECT_NE(text.find("int x;"), text.npos);
}

TEST(RenderTest, ShowsDifferences) {
    EXPECT_EQ(differenceOf(fileOf("void main() {\n    int x;\n    print(x);\n}\n"), false),
              "--- dir/p.krl\n"
              "+++ dir/p.krl\n"
              "@@ -2,1 +2,1 @@\n"
              "-    int x;\n"
              "+    int x = 0;\n");
    EXPECT_EQ(differenceOf(fileOf("void main() { }\n"), false), "");
}

TEST(RenderTest, WritesJson) {
    const auto document = nlohmann::json::parse(jsonOf({fileOf(program)}));
    const auto& file = document.at("files").at(0);
    EXPECT_EQ(file.at("file"), "dir/p.krl");
    EXPECT_EQ(file.at("accepted"), false);
    const auto expected = nlohmann::json::parse(
        R"({"rule": "initial-value", "severity": "error", "line": 2, "column": 6, "endLine": 2,
            "endColumn": 7, "message": "`x` has no initial value", "help": "write `x = 0`",
            "edits": [0]})");
    EXPECT_EQ(file.at("findings"), nlohmann::json::array({expected}));
    EXPECT_EQ(file.at("edits").at(0).at("text"), " = 0");
}

TEST(RenderTest, WritesSarif) {
    const auto document = nlohmann::json::parse(sarifOf({fileOf(program)}));
    EXPECT_EQ(document.at("version"), "2.1.0");
    const auto& run = document.at("runs").at(0);
    const auto& result = run.at("results").at(0);
    EXPECT_EQ(result.at("ruleId"), "initial-value");
    EXPECT_EQ(result.at("level"), "error");
    const auto& place = result.at("locations").at(0).at("physicalLocation");
    EXPECT_EQ(place.at("artifactLocation").at("uri"), "dir/p.krl");
    EXPECT_EQ(place.at("region").at("startLine"), 2);
    const auto& rules = run.at("tool").at("driver").at("rules");
    EXPECT_EQ(rules.at(result.at("ruleIndex").get<std::size_t>()).at("id"), "initial-value");
}

TEST(RenderTest, SarifCountsCharacters) {
    const auto document = nlohmann::json::parse(
        sarifOf({fileOf("void main() {\n    print(\"\u00e9\", missing);\n}\n")}));
    const auto& run = document.at("runs").at(0);
    EXPECT_EQ(run.at("columnKind"), "unicodeCodePoints");
    const auto& region =
        run.at("results").at(0).at("locations").at(0).at("physicalLocation").at("region");
    EXPECT_EQ(region.at("startColumn"), 16);
    EXPECT_EQ(region.at("endColumn"), 23);
}

TEST(RenderTest, BytesThatAreNoTextDoNotBreakJson) {
    const auto document = nlohmann::json::parse(
        jsonOf({fileOf("void main() {\n    int x = \xff;\n    print(x);\n}\n")}));
    EXPECT_FALSE(document.at("files").at(0).at("findings").empty());
}

}  // namespace

}  // namespace krel::Check
