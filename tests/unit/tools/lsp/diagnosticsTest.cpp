// What an editor is told of findings.

#include <gtest/gtest.h>

#include "tools/lsp/features.hpp"

namespace krel::Lsp {

namespace {

TEST(DiagnosticsTest, UnderlineThePlaceWhereSomethingIsMissing) {
    Document document{"file:///p.krl", 1, "void main() {\n    int n = 1\n\n    print(n);\n}\n",
                      Encoding::Utf8};
    const Json diagnostics = diagnosticsOf(document).at("diagnostics");
    ASSERT_EQ(diagnostics.size(), 1U);
    EXPECT_EQ(diagnostics[0].at("code"), "missing-token");
    const Json place = {{"line", 1}, {"character", 13}};
    EXPECT_EQ(diagnostics[0].at("range"), (Json{{"start", place}, {"end", place}}));
}

}  // namespace

}  // namespace krel::Lsp
