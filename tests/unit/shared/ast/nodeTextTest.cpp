#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <streambuf>
#include <string>

#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"
#include "tests/unit/support/streamCapture.hpp"

namespace krel {

namespace {

using namespace std::string_literals;

std::string valueOf(const Node& node) {
    return node.valueAsString();
}

TEST(NodeValueTextTest, NoneIsEmpty) {
    EXPECT_EQ(valueOf(Node{"Block", 1}), "");
}

TEST(NodeValueTextTest, StringIsUnchanged) {
    EXPECT_EQ(valueOf(Node{"StringLiteral", "a\"\\\n", 1}), "a\"\\\n");
}

TEST(NodeValueTextTest, IntIsDecimal) {
    EXPECT_EQ(valueOf(Node{"IntLiteral", -5, 1}), "-5");
    EXPECT_EQ(valueOf(Node{"IntLiteral", 0, 1}), "0");
    EXPECT_EQ(valueOf(Node{"IntLiteral", std::numeric_limits<int>::min(), 1}), "-2147483648");
}

TEST(NodeValueTextTest, CharIsOneCharacter) {
    EXPECT_EQ(valueOf(Node{"CharacterLiteral", 'a', 1}), "a");
    EXPECT_EQ(valueOf(Node{"CharacterLiteral", '\0', 1}), std::string(1, '\0'));
    EXPECT_EQ(valueOf(Node{"CharacterLiteral", '\n', 1}), "\n");
}

TEST(NodeValueTextTest, BoolIsAWord) {
    EXPECT_EQ(valueOf(Node{"BooleanLiteral", true, 1}), "true");
    EXPECT_EQ(valueOf(Node{"BooleanLiteral", false, 1}), "false");
}

std::string doubleText(double value) {
    return valueOf(Node{"DecimalLiteral", value, 1});
}

TEST(NodeValueTextTest, DoubleDropsTrailingZeros) {
    EXPECT_EQ(doubleText(2.0), "2");
    EXPECT_EQ(doubleText(0.1), "0.1");
    EXPECT_EQ(doubleText(2.5), "2.5");
    EXPECT_EQ(doubleText(100.0), "100");
    EXPECT_EQ(doubleText(0.0), "0");
    EXPECT_EQ(doubleText(-0.0), "-0");
}

TEST(NodeValueTextTest, DoubleHasFifteenSignificantDigits) {
    EXPECT_EQ(doubleText(3.141592653589793), "3.14159265358979");
    EXPECT_EQ(doubleText(0.1 + 0.2), "0.3");
    EXPECT_EQ(doubleText(123456789012345.0), "123456789012345");
    EXPECT_EQ(doubleText(2.0 / 3.0), "0.666666666666667");
}

TEST(NodeValueTextTest, DoubleUsesExponentsOutsideTheUsualRange) {
    EXPECT_EQ(doubleText(1e20), "1e+20");
    EXPECT_EQ(doubleText(1e15), "1e+15");
    EXPECT_EQ(doubleText(1234567890123456.0), "1.23456789012346e+15");
    EXPECT_EQ(doubleText(0.0001), "0.0001");
    EXPECT_EQ(doubleText(0.00001), "1e-05");
    EXPECT_EQ(doubleText(-1.5e300), "-1.5e+300");
    EXPECT_EQ(doubleText(HUGE_VAL), "inf");
}

TEST(NodeValueTextTest, DoubleIsWhatAStreamOfPrecision15Writes) {
    std::mt19937_64 random{20240501};
    std::uniform_real_distribution<double> mantissa{-10.0, 10.0};
    std::uniform_int_distribution<int> exponent{-320, 308};
    for (int round = 0; round < 50000; ++round) {
        const double value = mantissa(random) * std::pow(10.0, exponent(random));
        std::ostringstream stream;
        stream.precision(15);
        stream << value;
        ASSERT_EQ(doubleText(value), stream.str());
    }
}

TEST(NodeTypeTextTest, NamesTheValueTypes) {
    EXPECT_EQ((Node{"Block", 1}.typeAsString()), "");
    EXPECT_EQ((Node{"Identifier", "x", 1}.typeAsString()), "string");
    EXPECT_EQ((Node{"IntLiteral", 1, 1}.typeAsString()), "integer");
    EXPECT_EQ((Node{"DecimalLiteral", 1.5, 1}.typeAsString()), "double");
    EXPECT_EQ((Node{"CharacterLiteral", 'c', 1}.typeAsString()), "character");
    EXPECT_EQ((Node{"BooleanLiteral", true, 1}.typeAsString()), "boolean");
}

std::string json(const Node& node) {
    return node.toJSON(0);
}

TEST(NodeJsonTest, LeafWithoutValue) {
    EXPECT_EQ(json(Node{"BreakStatement", 12}),
              "{\n"
              "  \"kind\": \"BreakStatement\",\n"
              "  \"sourceLine\": \"12\"\n"
              "}");
}

TEST(NodeJsonTest, WholeProgram) {
    Error::setSourceFile("p.krl");
    const Node root{"Program", new Node("ExternalList", 0, 1), 1};
    root.getChildren()[0]->addChild(new Node("FunctionDeclaration", "main", 1));
    EXPECT_EQ(json(root),
              "{\n"
              "  \"kind\": \"Program\",\n"
              "  \"sourceFile\": \"p.krl\",\n"
              "  \"children\": [\n"
              "    {\n"
              "      \"kind\": \"ExternalList\",\n"
              "      \"sourceLine\": \"1\",\n"
              "      \"value\": 0,\n"
              "      \"children\": [\n"
              "        {\n"
              "          \"kind\": \"FunctionDeclaration\",\n"
              "          \"sourceLine\": \"1\",\n"
              "          \"name\": \"main\"\n"
              "        }\n"
              "      ]\n"
              "    }\n"
              "  ]\n"
              "}");
}

TEST(NodeJsonTest, SourceFileIsEscapedAndMayBeMissing) {
    Error::setSourceFile("a\"b.krl");
    EXPECT_EQ(json(Node{"Program", 3}),
              "{\n"
              "  \"kind\": \"Program\",\n"
              "  \"sourceFile\": \"a\\\"b.krl\"\n"
              "}");
    Error::setSourceFile("");
    EXPECT_EQ(json(Node{"Program", 3}),
              "{\n"
              "  \"kind\": \"Program\",\n"
              "  \"sourceFile\": \"\"\n"
              "}");
}

TEST(NodeJsonTest, ValueTypeAndChildrenInThisOrder) {
    Node sum{"BinaryOp", Name{"+"}, new Node("IntLiteral", 1, 2), 2};
    sum.addChild(new Node("IntLiteral", -2, 3));
    sum.setSemanticType("int");
    EXPECT_EQ(json(sum),
              "{\n"
              "  \"kind\": \"BinaryOp\",\n"
              "  \"sourceLine\": \"2\",\n"
              "  \"value\": \"+\",\n"
              "  \"type\": \"int\",\n"
              "  \"children\": [\n"
              "    {\n"
              "      \"kind\": \"IntLiteral\",\n"
              "      \"sourceLine\": \"2\",\n"
              "      \"value\": 1\n"
              "    },\n"
              "    {\n"
              "      \"kind\": \"IntLiteral\",\n"
              "      \"sourceLine\": \"3\",\n"
              "      \"value\": -2\n"
              "    }\n"
              "  ]\n"
              "}");
}

TEST(NodeJsonTest, LevelIndentsEveryLine) {
    const Node list{"ArgumentList", new Node("Identifier", "x", 1), 1};
    EXPECT_EQ(list.toJSON(1),
              "  {\n"
              "    \"kind\": \"ArgumentList\",\n"
              "    \"sourceLine\": \"1\",\n"
              "    \"children\": [\n"
              "      {\n"
              "        \"kind\": \"Identifier\",\n"
              "        \"sourceLine\": \"1\",\n"
              "        \"name\": \"x\"\n"
              "      }\n"
              "    ]\n"
              "  }");
}

/// The line that shows a node's value.
std::string valueLine(const Node& node) {
    std::istringstream lines{json(node)};
    std::string line;
    for (int number = 0; number < 4; ++number) {
        std::getline(lines, line);
    }
    return line;
}

TEST(NodeJsonTest, KindsThatCarryANameShowItAsOne) {
    for (const char* kind :
         {"Declarator", "ArrayDeclarator", "FunctionDeclaration", "Identifier", "Parameter"}) {
        EXPECT_EQ(valueLine(Node{kind, "x", 1}), "  \"name\": \"x\"") << kind;
    }
}

TEST(NodeJsonTest, EveryOtherKindShowsAValue) {
    for (const char* kind : {"Type", "StringLiteral", "BinaryOp", "UnaryOp", "CompoundAssignment",
                             "PreIncrement", "PostDecrement", "Declaration", "identifier"}) {
        EXPECT_EQ(valueLine(Node{kind, "x", 1}), "  \"value\": \"x\"") << kind;
    }
}

TEST(NodeJsonTest, NameNeedNotBeAString) {
    EXPECT_EQ(valueLine(Node{"Identifier", 4, 1}), "  \"name\": 4");
}

TEST(NodeJsonTest, ValuesOfEachType) {
    EXPECT_EQ(valueLine(Node{"DecimalLiteral", 2.0, 1}), "  \"value\": 2");
    EXPECT_EQ(valueLine(Node{"DecimalLiteral", 0.1, 1}), "  \"value\": 0.1");
    EXPECT_EQ(valueLine(Node{"DecimalLiteral", 3.141592653589793, 1}),
              "  \"value\": 3.14159265358979");
    EXPECT_EQ(valueLine(Node{"BooleanLiteral", true, 1}), "  \"value\": true");
    EXPECT_EQ(valueLine(Node{"BooleanLiteral", false, 1}), "  \"value\": false");
    EXPECT_EQ(valueLine(Node{"CharacterLiteral", 'c', 1}), "  \"value\": \"c\"");
    EXPECT_EQ(valueLine(Node{"CharacterLiteral", '\t', 1}), "  \"value\": \"\\t\"");
    EXPECT_EQ(valueLine(Node{"CharacterLiteral", '\0', 1}), "  \"value\": \"\\u0000\"");
    EXPECT_EQ(valueLine(Node{"StringLiteral", "", 1}), "  \"value\": \"\"");
}

TEST(NodeJsonTest, EscapesExactlyTheseBytes) {
    for (int code = 0; code < 256; ++code) {
        const std::string raw(1, static_cast<char>(code));
        std::string written = raw;
        switch (code) {
            case 34:
                written = "\\\"";
                break;
            case 92:
                written = "\\\\";
                break;
            case 10:
                written = "\\n";
                break;
            case 9:
                written = "\\t";
                break;
            case 13:
                written = "\\r";
                break;
            case 8:
                written = "\\b";
                break;
            case 12:
                written = "\\f";
                break;
            case 0:
                written = "\\u0000";
                break;
            default:
                break;
        }
        EXPECT_EQ(json(Node{"StringLiteral", Name{"<" + raw + ">"}, 1}),
                  "{\n"
                  "  \"kind\": \"StringLiteral\",\n"
                  "  \"sourceLine\": \"1\",\n"
                  "  \"value\": \"<" +
                      written +
                      ">\"\n"
                      "}")
            << "byte " << code;
    }
}

TEST(NodeJsonTest, EscapesRunsOfBytes) {
    EXPECT_EQ(valueLine(Node{"StringLiteral", "a\"\\\nb\x01/", 1}),
              "  \"value\": \"a\\\"\\\\\\nb\x01/\"");
}

TEST(NodeJsonTest, EscapesKindAndSemanticType) {
    Node node{"a\"b", 1};
    node.setSemanticType("c\\d");
    EXPECT_EQ(json(node),
              "{\n"
              "  \"kind\": \"a\\\"b\",\n"
              "  \"sourceLine\": \"1\",\n"
              "  \"type\": \"c\\\\d\"\n"
              "}");
}

TEST(NodeJsonTest, NegativeLineIsWrittenAsItIs) {
    EXPECT_EQ(json(Node{"Block", -3}),
              "{\n"
              "  \"kind\": \"Block\",\n"
              "  \"sourceLine\": \"-3\"\n"
              "}");
}

/// A tree whose document is far longer than any buffer.
std::unique_ptr<Node> largeTree() {
    auto root = std::make_unique<Node>("StatementList", 1);
    for (int index = 0; index < 5000; ++index) {
        root->addChild(new Node("Assignment", new Node("Identifier", "x", index),
                                new Node("IntLiteral", index, index), index));
    }
    return root;
}

TEST(NodeJsonTest, PrintWritesTheDocumentAndALineFeed) {
    const auto root = largeTree();
    std::ostringstream out;
    root->printJSON(out, 3);
    EXPECT_EQ(out.str(), root->toJSON(3) + "\n");
}

TEST(NodeJsonTest, PrintWithoutStreamUsesStandardOutputAtLevelZero) {
    const Node node{"Block", 1};
    const StreamCapture out{std::cout};
    node.printJSON();
    EXPECT_EQ(out.str(), json(node) + "\n");
}

/// Takes a number of bytes and refuses the rest; counts how often it is flushed.
class LimitedBuffer : public std::streambuf {
public:
    explicit LimitedBuffer(std::streamsize capacity) : left(capacity) {}

    int flushes = 0;

protected:
    std::streamsize xsputn(const char* /*text*/, std::streamsize size) override {
        const std::streamsize taken = std::min(size, left);
        left -= taken;
        return taken;
    }
    int overflow(int byte) override { return left-- > 0 ? byte : traits_type::eof(); }
    int sync() override {
        ++flushes;
        return 0;
    }

private:
    std::streamsize left;
};

TEST(NodeJsonTest, PrintFlushes) {
    LimitedBuffer buffer{1000};
    std::ostream out{&buffer};
    Node{"Block", 1}.printJSON(out, 0);
    EXPECT_TRUE(out.good());
    EXPECT_GE(buffer.flushes, 1);
}

TEST(NodeJsonTest, PrintLeavesAFailureInTheStream) {
    LimitedBuffer buffer{100};
    std::ostream out{&buffer};
    largeTree()->printJSON(out, 0);
    EXPECT_FALSE(out.good());
}

TEST(NodeJsonTest, DeepTreesNeedNoDeepCalls) {
    constexpr int depth = 3000;
    auto* chain = new Node("IntLiteral", 1, 1);
    for (int level = 0; level < depth; ++level) {
        chain = new Node("UnaryOp", Name{"-"}, chain, 1);
    }
    const std::unique_ptr<Node> owner{chain};
    const std::string document = json(*chain);
    const std::string innermost(std::size_t{depth} * 4, ' ');
    EXPECT_NE(document.find("\n" + innermost + "{\n" + innermost + "  \"kind\": \"IntLiteral\""),
              std::string::npos);
}

std::string printed(const Node& node) {
    const StreamCapture out{std::cout};
    node.printNode();
    return out.str();
}

TEST(NodePrintTest, ShowsAllFieldsWhateverTheValueType) {
    Node node{"IntLiteral", -7, 1};
    node.setSemanticType("int");
    EXPECT_EQ(printed(node),
              "kind: IntLiteral\n"
              "type: integer\n"
              "semantic type: int\n"
              "string value: \n"
              "integer value: -7\n"
              "double value: 0\n"
              "character value: \0\n"
              "boolean value: 0\n"
              "children:\n"s);
}

TEST(NodePrintTest, DoubleHasSixSignificantDigits) {
    EXPECT_NE(printed(Node{"DecimalLiteral", 3.14159265, 1}).find("\ndouble value: 3.14159\n"),
              std::string::npos);
}

TEST(NodePrintTest, BooleanIsADigit) {
    const std::string text = printed(Node{"BooleanLiteral", true, 1});
    EXPECT_NE(text.find("\ntype: boolean\n"), std::string::npos);
    EXPECT_NE(text.find("\nboolean value: 1\n"), std::string::npos);
}

TEST(NodePrintTest, ShowsDirectChildrenOnly) {
    Node node{"Declarator", Name{"x"}, new Node("CharacterLiteral", 'q', 2), 1};
    node.addChild(new Node("Initializer", new Node("IntLiteral", 9, 3), 3));
    EXPECT_EQ(printed(node),
              "kind: Declarator\n"
              "type: string\n"
              "semantic type: \n"
              "string value: x\n"
              "integer value: 0\n"
              "double value: 0\n"
              "character value: \0\n"
              "boolean value: 0\n"
              "children:\n"
              "  child 0\n"
              "      kind: CharacterLiteral\n"
              "      string value: \n"
              "      integer value: 0\n"
              "      double value: 0\n"
              "      character value: q\n"
              "      boolean value: 0\n"
              "  child 1\n"
              "      kind: Initializer\n"
              "      string value: \n"
              "      integer value: 0\n"
              "      double value: 0\n"
              "      character value: \0\n"
              "      boolean value: 0\n"s);
}

/// Takes nothing.
class FullBuffer : public std::streambuf {};

TEST(NodeJsonTest, FailuresOfTheStreamAreTheCallers) {
    FullBuffer buffer;
    std::ostream silent{&buffer};
    Node{"Block", 1}.printJSON(silent, 0);
    EXPECT_TRUE(silent.bad());
    std::ostream throwing{&buffer};
    throwing.exceptions(std::ios::badbit);
    EXPECT_THROW(Node("Block", 1).printJSON(throwing, 0), std::ios_base::failure);
}

}  // namespace

}  // namespace krel
