#include "shared/error/diagnostics.hpp"

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "shared/error/error.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/streamCapture.hpp"

namespace krel {

namespace {

TEST(DiagnosticsTest, HandsEachFaultToItsSink) {
    std::vector<Diagnostic> found;
    std::vector<std::string> messages;
    Diagnostics diagnostics{[&](const Diagnostic& diagnostic) {
        found.push_back(diagnostic);
        messages.emplace_back(diagnostic.message);
    }};
    {
        const Diagnostics::Use use{diagnostics};
        EXPECT_FALSE(Error::hasErrors());
        Error::lexer("bad byte", {3, {5, 6}});
        Error::parser("syntax error", 4);
        Error::semantic("no such name", {7, {10, 14}});
        EXPECT_TRUE(Error::hasErrors());
    }
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].kind, DiagnosticKind::Lexer);
    EXPECT_EQ(found[0].place, (Place{3, {5, 6}}));
    EXPECT_EQ(found[1].kind, DiagnosticKind::Syntax);
    EXPECT_EQ(found[1].place, Place{4});
    EXPECT_EQ(found[2].kind, DiagnosticKind::Semantic);
    EXPECT_EQ(messages, (std::vector<std::string>{"bad byte", "", "no such name"}));
}

TEST(DiagnosticsTest, UsesNest) {
    int outerFaults = 0;
    int innerFaults = 0;
    Diagnostics outer{[&](const Diagnostic&) { ++outerFaults; }};
    Diagnostics inner{[&](const Diagnostic&) { ++innerFaults; }};
    const Diagnostics::Use useOuter{outer};
    {
        const Diagnostics::Use useInner{inner};
        Error::setSourceFile("dir/inner.krl");
        Error::semantic("m", 1);
        EXPECT_EQ(Error::getSourceFile(), "inner.krl");
    }
    EXPECT_EQ(Error::getSourceFile(), "");
    EXPECT_FALSE(Error::hasErrors());
    Error::semantic("m", 1);
    EXPECT_EQ(outerFaults, 1);
    EXPECT_EQ(innerFaults, 1);
    EXPECT_EQ(&Diagnostics::current(), &outer);
}

TEST(DiagnosticsTest, DefaultSinkWritesLines) {
    const StreamCapture err{std::cerr};
    Diagnostics diagnostics;
    diagnostics.setSourceFile("a/p.krl");
    diagnostics.report({DiagnosticKind::Lexer, 2, "m"});
    diagnostics.report({DiagnosticKind::Syntax, 0, ""});
    EXPECT_EQ(err.str(),
              "Lexer error in p.krl at line 2: m\n"
              "Syntax error in p.krl\n");
    EXPECT_EQ(diagnostics.lineOf({DiagnosticKind::Semantic, 3, "n"}),
              "Semantic error in p.krl at line 3: n\n");
}

}  // namespace

}  // namespace krel
