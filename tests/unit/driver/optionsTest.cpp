#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "driver/compilerDriver.hpp"

namespace {

using CompilerDriver::Options;

/// What a command line sets; nothing for a usage error. The program's name is left out.
std::optional<Options> optionsOf(std::initializer_list<std::string> arguments) {
    std::vector<std::string> texts{"krelcc"};
    texts.insert(texts.end(), arguments);
    std::vector<char*> argv;
    for (std::string& text : texts) {
        argv.push_back(text.data());
    }
    argv.push_back(nullptr);
    Options options;
    const bool isValid =
        CompilerDriver::parseOptions(static_cast<int>(texts.size()), argv.data(), options);
    return isValid ? std::optional{options} : std::nullopt;
}

bool isUsageError(std::initializer_list<std::string> arguments) {
    return !optionsOf(arguments).has_value();
}

/// The path of the executable, as text.
std::string outputOf(std::initializer_list<std::string> arguments) {
    const auto options = optionsOf(arguments);
    return options ? options->output.string() : "<usage error>";
}

TEST(OptionsTest, DefaultsAreEmptyPathsAndNoDumps) {
    const Options options;
    EXPECT_TRUE(options.source.empty());
    EXPECT_TRUE(options.output.empty());
    EXPECT_FALSE(options.dumpParserAst);
    EXPECT_FALSE(options.dumpSemanticAst);
    EXPECT_FALSE(options.dumpIr);
    EXPECT_FALSE(options.dumpAssembly);
}

TEST(OptionsTest, SourceAlone) {
    const auto options = optionsOf({"src/prog.krl"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->source, "src/prog.krl");
    EXPECT_EQ(options->output, "src/prog");
    EXPECT_FALSE(options->dumpParserAst);
    EXPECT_FALSE(options->dumpSemanticAst);
    EXPECT_FALSE(options->dumpIr);
    EXPECT_FALSE(options->dumpAssembly);
}

TEST(OptionsTest, EachDumpOptionSetsItsFlag) {
    const auto parserAst = optionsOf({"p.krl", "--ast-dump"});
    ASSERT_TRUE(parserAst);
    EXPECT_TRUE(parserAst->dumpParserAst);
    EXPECT_FALSE(parserAst->dumpSemanticAst || parserAst->dumpIr || parserAst->dumpAssembly);
    const auto semanticAst = optionsOf({"--ast-semantic-dump", "p.krl"});
    ASSERT_TRUE(semanticAst);
    EXPECT_TRUE(semanticAst->dumpSemanticAst);
    EXPECT_FALSE(semanticAst->dumpParserAst || semanticAst->dumpIr || semanticAst->dumpAssembly);
    const auto ir = optionsOf({"p.krl", "--ir-dump"});
    ASSERT_TRUE(ir);
    EXPECT_TRUE(ir->dumpIr);
    EXPECT_FALSE(ir->dumpParserAst || ir->dumpSemanticAst || ir->dumpAssembly);
    const auto assembly = optionsOf({"p.krl", "--asm-dump"});
    ASSERT_TRUE(assembly);
    EXPECT_TRUE(assembly->dumpAssembly);
    EXPECT_FALSE(assembly->dumpParserAst || assembly->dumpSemanticAst || assembly->dumpIr);
}

TEST(OptionsTest, DumpOptionsMayBeRepeated) {
    const auto options = optionsOf({"--ir-dump", "p.krl", "--ir-dump", "--ast-dump"});
    ASSERT_TRUE(options);
    EXPECT_TRUE(options->dumpIr);
    EXPECT_TRUE(options->dumpParserAst);
}

TEST(OptionsTest, OutputBeforeOrBehindTheSource) {
    EXPECT_EQ(outputOf({"-o", "out", "p.krl"}), "out");
    EXPECT_EQ(outputOf({"p.krl", "-o", "out"}), "out");
    EXPECT_EQ(outputOf({"p.krl", "--ast-dump", "-o", "dir/out.bin"}), "dir/out.bin");
}

TEST(OptionsTest, OutputIsTheNextArgumentWhateverItIs) {
    EXPECT_EQ(outputOf({"-o", "--ast-dump", "p.krl"}), "--ast-dump");
    EXPECT_EQ(outputOf({"p.krl", "-o", "-o"}), "-o");
    EXPECT_EQ(outputOf({"-o", "q.krl", "p.krl"}), "q.krl");
    const auto options = optionsOf({"-o", "--ast-dump", "p.krl"});
    ASSERT_TRUE(options);
    EXPECT_FALSE(options->dumpParserAst);
}

TEST(OptionsTest, DefaultOutputIsTheSourceWithoutItsExtension) {
    EXPECT_EQ(outputOf({"a.b.krl"}), "a.b");
    EXPECT_EQ(outputOf({"/dir.krl/p.krl"}), "/dir.krl/p");
    EXPECT_EQ(outputOf({"./p.krl"}), "./p");
    EXPECT_EQ(outputOf({"..krl"}), ".");
}

TEST(OptionsTest, OutputOptionNeedsAValue) {
    EXPECT_TRUE(isUsageError({"p.krl", "-o"}));
    EXPECT_TRUE(isUsageError({"-o"}));
    EXPECT_TRUE(isUsageError({"p.krl", "-o", ""}));
    EXPECT_TRUE(isUsageError({"p.krl", "-o", "a", "-o"}));
}

TEST(OptionsTest, SecondOutputIsAUsageError) {
    EXPECT_TRUE(isUsageError({"p.krl", "-o", "a", "-o", "b"}));
    EXPECT_TRUE(isUsageError({"p.krl", "-o", "", "-o", "b"}));
}

TEST(OptionsTest, SourceIsNeededAndThereIsOne) {
    EXPECT_TRUE(isUsageError({}));
    EXPECT_TRUE(isUsageError({"-o", "out"}));
    EXPECT_TRUE(isUsageError({"--ast-dump"}));
    EXPECT_TRUE(isUsageError({"prog.krl", "extra.krl"}));
    EXPECT_TRUE(isUsageError({"prog.krl", ""}));
    EXPECT_TRUE(isUsageError({"", "prog.krl"}));
}

TEST(OptionsTest, SourceHasExactlyTheExtension) {
    EXPECT_TRUE(isUsageError({"prog.txt"}));
    EXPECT_TRUE(isUsageError({"prog"}));
    EXPECT_TRUE(isUsageError({"prog.KRL"}));
    EXPECT_TRUE(isUsageError({"prog.krl.txt"}));
    EXPECT_TRUE(isUsageError({"prog.krl "}));
    EXPECT_TRUE(isUsageError({".krl"}));
    EXPECT_TRUE(isUsageError({"dir/.krl"}));
    EXPECT_TRUE(isUsageError({""}));
}

TEST(OptionsTest, UnknownOptionsAreUsageErrors) {
    for (const char* option : {"-x", "-", "--", "--ast", "--ast-dump=1", "-oout", "-p.krl"}) {
        EXPECT_TRUE(isUsageError({"p.krl", option})) << option;
    }
}

TEST(UsageTest, ShowsTheProgramAsGiven) {
    std::ostringstream out;
    CompilerDriver::printUsage("./bin/krelcc", out);
    EXPECT_EQ(out.str(),
              "Usage: ./bin/krelcc <source.krl> [-o output] [dump-options]\n"
              "Dump options:\n"
              "  --ast-dump           Write <source>.ast.json\n"
              "  --ast-semantic-dump  Write <source>.semantic.json\n"
              "  --ir-dump            Write <source>.ir\n"
              "  --asm-dump           Write <source>.s\n");
}

}  // namespace
