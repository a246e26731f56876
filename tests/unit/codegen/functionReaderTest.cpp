#include "codegen/functionReader.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "codegen/irText.hpp"
#include "shared/krelir-cfg/ir-function.hpp"
#include "tests/unit/codegen/lineMaker.hpp"

namespace krel {

namespace {

using Kind = Operand::Kind;
using Texts = std::vector<std::string>;

IRFunction functionOf(const Texts& lines) {
    IRFunction function{"f"};
    IRBasicBlock& block = function.addBlock(1);
    for (const std::string& line : lines) {
        block.addInstruction(line, false);
    }
    return function;
}

Texts groupTexts(const Instruction& instruction) {
    Texts texts;
    const std::size_t count = instruction.form == IRForm::None ? 1 : groupCountOf(instruction.form);
    for (std::size_t group = 0; group < count; ++group) {
        texts.emplace_back(instruction.groups[group].text());
    }
    return texts;
}

Texts namesOf(FunctionReader& reader) {
    Texts names;
    for (const NamedValue* value : reader.words().inOrder()) {
        names.emplace_back(value->name);
    }
    return names;
}

/// For each group of a form, whether it is an operand; the others are words, numbers or operators.
std::vector<bool> operandGroups(IRForm form) {
    switch (form) {
        case IRForm::IntegerParameter:
            return {false, true};
        case IRForm::Argument:
        case IRForm::DoubleParameter:
        case IRForm::ReturnValue:
            return {true};
        case IRForm::CallWithResult:
            return {true, false, false};
        case IRForm::Call:
            return {false, false};
        case IRForm::Branch:
            return {true, false};
        case IRForm::Jump:
            return {false};
        case IRForm::Return:
        case IRForm::None:
            return {};
        case IRForm::Conversion:
        case IRForm::UnaryOperation:
            return {true, false, true};
        case IRForm::IntToDouble:
        case IRForm::DoubleToString:
        case IRForm::ElementStore:
        case IRForm::Copy:
            return {true, true};
        case IRForm::BinaryOperation:
            return {true, true, false, true};
    }
    return {};
}

struct Expected {
    std::string line;
    IRForm form;
    Texts operands;
};

TEST(FunctionReaderTest, ReadsEveryForm) {
    const std::vector<Expected> cases = {
        {"param string s", IRForm::IntegerParameter, {"string", "s"}},
        {"param double d", IRForm::DoubleParameter, {"d"}},
        {"arg x", IRForm::Argument, {"x"}},
        {"arg \"a + b\"", IRForm::Argument, {"\"a + b\""}},
        {"_t0 = call f, 12", IRForm::CallWithResult, {"_t0", "f", "12"}},
        {"call print, 1", IRForm::Call, {"print", "1"}},
        {"call B1, 0", IRForm::Call, {"B1", "0"}},
        {"if _t0 goto B12", IRForm::Branch, {"_t0", "12"}},
        {"goto B3", IRForm::Jump, {"3"}},
        {"return", IRForm::Return, {}},
        {"return 1.5", IRForm::ReturnValue, {"1.5"}},
        {"x = inttostring 7", IRForm::Conversion, {"x", "inttostring", "7"}},
        {"x = inttodouble y", IRForm::IntToDouble, {"x", "y"}},
        {"x = doubletostring a[i]", IRForm::DoubleToString, {"x", "a[i]"}},
        {"x = a[10] <= true", IRForm::BinaryOperation, {"x", "a[10]", "<=", "true"}},
        {"x = \"sum: \" + y", IRForm::BinaryOperation, {"x", "\"sum: \"", "+", "y"}},
        {"x = - y", IRForm::UnaryOperation, {"x", "-", "y"}},
        {"x = !y", IRForm::UnaryOperation, {"x", "!", "y"}},
        {"a[i] = 'c'", IRForm::ElementStore, {"a[i]", "'c'"}},
        {"x = \"a\\n\"", IRForm::Copy, {"x", "\"a\\n\""}},
        {"\tx = y ", IRForm::Copy, {"x", "y"}},
        {"x y z", IRForm::None, {"x y z"}},
        {"", IRForm::None, {""}},
    };
    for (const Expected& expected : cases) {
        const IRFunction function = functionOf({expected.line});
        FunctionReader reader;
        reader.read(function);
        ASSERT_EQ(reader.size(), 1U);
        EXPECT_EQ(reader[0].form, expected.form) << expected.line;
        EXPECT_EQ(groupTexts(reader[0]), expected.operands) << expected.line;
    }
}

TEST(FunctionReaderTest, FindsWhatOperandsStandFor) {
    const IRFunction function = functionOf({"x = true", "x = 7", "x = 7.", "x = \"x\"", "x = 'x'",
                                            "x = a[i]", "x = y", "x = B7", "x = a [ i ]", "x = ?"});
    FunctionReader reader;
    reader.read(function);
    const std::vector<Kind> expected = {Kind::Boolean,   Kind::Integer, Kind::Double, Kind::String,
                                        Kind::Character, Kind::Element, Kind::Named,  Kind::Named,
                                        Kind::Element,   Kind::Unknown};
    ASSERT_EQ(reader.size(), expected.size());
    for (std::size_t line = 0; line < expected.size(); ++line) {
        EXPECT_EQ(reader[line].groups[0].kind(), Kind::Named);
        EXPECT_EQ(reader.words().find(reader[line].groups[0].valueNumber()),
                  reader.words().find("x"));
        EXPECT_EQ(reader[line].groups[1].kind(), expected[line]) << line;
    }
    EXPECT_EQ(reader.words().find(reader[5].groups[1].valueNumber()), reader.words().find("a"));
    EXPECT_EQ(reader.words().find(reader[6].groups[1].valueNumber()), reader.words().find("y"));
    EXPECT_EQ(reader.words().find(reader[7].groups[1].valueNumber()), nullptr);
}

TEST(FunctionReaderTest, AddsTheWordsOutsideOfStrings) {
    const IRFunction function =
        functionOf({"a[i] = \"string one\"", "_t0 = call callee, 0", "if _t0 goto B2", "c = 'd'",
                    "e = '\\n' + \"\\\"f\" g", "5h =", "param int p"});
    FunctionReader reader;
    reader.read(function);
    EXPECT_EQ(namesOf(reader),
              (Texts{"_t0", "a", "c", "callee", "d", "e", "g", "h", "i", "n", "p"}));
}

TEST(FunctionReaderTest, ForgetsTheLastFunction) {
    const IRFunction first = functionOf({"a = 1", "b = 2"});
    const IRFunction second = functionOf({"c = a"});
    FunctionReader reader;
    reader.read(first);
    reader.read(second);
    EXPECT_EQ(reader.size(), 1U);
    EXPECT_EQ(namesOf(reader), (Texts{"a", "c"}));
}

TEST(FunctionReaderTest, ReadsAllBlocksInOrder) {
    IRFunction function{"f"};
    function.addBlock(1).addInstruction("a = 1", false);
    function.addBlock(3);
    function.addBlock(2).addInstruction("b = 2", true);
    FunctionReader reader;
    reader.read(function);
    ASSERT_EQ(reader.size(), 2U);
    EXPECT_EQ(groupTexts(reader[0]), (Texts{"a", "1"}));
    EXPECT_EQ(groupTexts(reader[1]), (Texts{"b", "2"}));
}

/// The names of all words of a line, ordered, by the rules for them: outside of strings, no
/// keywords and no names of blocks.
Texts wordsOf(std::string line) {
    static const std::regex string{R"("(\\[^]|[^"\\])*("|$))"};
    static const std::regex word{"[A-Za-z_][A-Za-z_0-9]*"};
    static const std::regex noName{
        "arg|boolean|call|character|double|false|goto|if|int|param|return|string|true|void|"
        "inttodouble|inttochar|chartoint|inttostring|doubletostring|booltostring|chartostring|"
        "B[0-9]+"};
    line = std::regex_replace(line, string, " ");
    std::set<std::string> words;
    for (auto at = std::sregex_iterator{line.begin(), line.end(), word};
         at != std::sregex_iterator{}; ++at) {
        if (!std::regex_match(at->str(), noName)) {
            words.insert(at->str());
        }
    }
    return {words.begin(), words.end()};
}

/// Holds what the reader finds in a line against what it has to find: the recogniser's form and
/// groups, each operand as its text is read by itself, and the words.
void compare(const std::string& line, std::size_t& differences) {
    const IRFunction function = functionOf({line});
    FunctionReader reader;
    reader.read(function);
    const IRLine expected = recognise(trim(line));
    const Instruction found = reader[0];
    bool isSame = found.form == expected.form && namesOf(reader) == wordsOf(line);
    const std::vector<bool> isOperand = operandGroups(expected.form);
    for (std::size_t group = 0; isSame && group < isOperand.size(); ++group) {
        const Operand& operand = found.groups[group];
        isSame = operand.text() == trim(expected.groups[group]);
        if (isSame && isOperand[group]) {
            const Operand alone = reader.operandOf(operand.text());
            isSame = operand.kind() == alone.kind() && operand.valueNumber() == alone.valueNumber();
        }
    }
    if (!isSame && ++differences <= 10) {
        ADD_FAILURE() << "read differently: " << line;
    }
}

TEST(FunctionReaderTest, AgreesWithTheRecogniserOnRandomLines) {
    LineMaker maker{20240608};
    std::size_t differences = 0;
    for (int count = 0; count < 30000; ++count) {
        compare(maker.line(), differences);
    }
    EXPECT_EQ(differences, 0U);
}

/// All lines of so many parts with one blank between two.
Texts linesOf(std::size_t size, const Texts& parts) {
    Texts lines = {""};
    for (std::size_t part = 0; part < size; ++part) {
        Texts longer;
        for (const std::string& line : lines) {
            for (const std::string& next : parts) {
                longer.push_back(line.empty() ? next : line + " " + next);
            }
        }
        lines = std::move(longer);
    }
    return lines;
}

// Plain lines have up to five parts, and those of five are assignments.
TEST(FunctionReaderTest, AgreesWithTheRecogniserOnAllShortPlainLines) {
    const Texts parts = {"x",       "a[i]",        "a[0]",        "7",    "1.5",  "true",
                         "B1",      "f,",          "=",           "+",    "!",    "\"s t\"",
                         "\"]=s\"", "inttostring", "inttodouble", "call", "goto", "if",
                         "arg",     "return",      "param",       "int"};
    std::size_t differences = 0;
    for (std::size_t size = 1; size <= 3; ++size) {
        for (const std::string& line : linesOf(size, parts)) {
            compare(line, differences);
            compare("x = " + line, differences);
            compare("a[i] = " + line, differences);
            compare("if " + line + " goto B2", differences);
        }
    }
    EXPECT_EQ(differences, 0U);
}

/// All texts of up to so many pieces.
Texts textsOf(std::size_t size, const Texts& pieces) {
    Texts texts = {""};
    for (std::size_t done = 0, piece = 0; piece < size; ++piece) {
        const std::size_t all = texts.size();
        for (; done < all; ++done) {
            for (const std::string& next : pieces) {
                texts.push_back(texts[done] + next);
            }
        }
    }
    return texts;
}

// What a string holds decides whether a line is plain: escapes, operators behind blanks, brackets
// before equals signs, line breaks.
TEST(FunctionReaderTest, AgreesWithTheRecogniserOnStrings) {
    std::size_t differences = 0;
    for (const std::string& text : textsOf(4, {"a", " ", "+", "]", "=", R"(\")", R"(\\)", "\n"})) {
        const std::string string = "\"" + text + "\"";
        compare("x = " + string, differences);
        compare("a[i] = " + string, differences);
        compare("x = " + string + " - y", differences);
        compare("x = y == " + string, differences);
        compare("x = ! " + string, differences);
        compare("x = inttostring " + string, differences);
        compare("arg " + string, differences);
        compare("return " + string, differences);
        compare("if " + string + " goto B2", differences);
    }
    EXPECT_EQ(differences, 0U);
}

TEST(FunctionReaderTest, StringsEndAtTheirFirstUnescapedQuote) {
    const IRFunction function =
        functionOf({R"(x = "a\"b\\" + "\\\"\n")", R"(arg "] = \" + ")", R"(x = "\")"});
    FunctionReader reader;
    reader.read(function);
    EXPECT_EQ(groupTexts(reader[0]), (Texts{"x", R"("a\"b\\")", "+", R"("\\\"\n")"}));
    EXPECT_EQ(groupTexts(reader[1]), (Texts{R"("] = \" + ")"}));
    EXPECT_EQ(groupTexts(reader[2]), (Texts{"x", R"("\")"}));
}

}  // namespace

}  // namespace krel
