#include "shared/symboltable/symbol.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <memory>
#include <string>
#include <type_traits>

#include "shared/ast/node.hpp"
#include "tests/unit/support/internalErrors.hpp"
#include "tests/unit/support/streamCapture.hpp"

namespace krel {

namespace {

using NodePointer = std::unique_ptr<Node>;

const std::string separator = "--------------------------\n";

Node* typeNode(const char* type) {
    return new Node("Type", type, 1);
}

/// "name = value" with the value's node as the initialiser's child.
NodePointer declarator(const char* name, Node* value, int line = 1) {
    return std::make_unique<Node>("Declarator", Name{name}, new Node("Initializer", value, line),
                                  line);
}

NodePointer arrayDeclarator(const char* name, Node* size, int line = 1) {
    return std::make_unique<Node>("ArrayDeclarator", Name{name}, size, line);
}

Node* parameter(const char* type, const char* name, int line) {
    return new Node("Parameter", Name{name}, typeNode(type), line);
}

NodePointer function(const char* name, Node* parameters, int line = 1) {
    auto declaration =
        std::make_unique<Node>("FunctionDeclaration", Name{name}, typeNode("int"), line);
    declaration->addChild(parameters);
    return declaration;
}

/// A symbol of the declaration, which the symbol reads but does not keep.
std::unique_ptr<Symbol> symbolOf(const char* type, const NodePointer& declaration) {
    const NodePointer node{typeNode(type)};
    return std::make_unique<Symbol>(node.get(), declaration.get());
}

std::string printed(const Symbol& symbol) {
    const StreamCapture out{std::cout};
    symbol.printSymbol();
    return out.str();
}

/// The third line of the print, which shows the value or the size.
std::string valueLine(const char* type, Node* value) {
    const std::string text = printed(*symbolOf(type, declarator("x", value)));
    const std::size_t begin = text.find('\n', text.find('\n') + 1) + 1;
    return text.substr(begin, text.find('\n', begin) - begin);
}

TEST(SymbolTest, ScalarOfAnIntLiteral) {
    const auto symbol = symbolOf("int", declarator("count", new Node("IntLiteral", 42, 7), 7));
    EXPECT_EQ(symbol->getName(), "count");
    EXPECT_EQ(symbol->getType(), "int");
    EXPECT_EQ(symbol->getScope(), "");
    EXPECT_EQ(symbol->getIntValue(), 42);
    EXPECT_EQ(symbol->getLine(), 7);
    EXPECT_FALSE(symbol->isArraySymbol());
    EXPECT_EQ(symbol->getArraySize(), 0);
    EXPECT_EQ(symbol->getArraySizeSymbolName(), "");
    EXPECT_TRUE(symbol->getParameters().empty());
    EXPECT_EQ(symbol->symbolName(), Name{"count"});
    EXPECT_EQ(symbol->typeName(), TypeName::Int);
}

TEST(SymbolTest, InitialValuesOfEachType) {
    EXPECT_EQ(valueLine("int", new Node("IntLiteral", -3, 1)), "integer value: -3");
    EXPECT_EQ(valueLine("double", new Node("DecimalLiteral", 2.5, 1)), "double value: 2.5");
    EXPECT_EQ(valueLine("double", new Node("DecimalLiteral", 3.14159265, 1)),
              "double value: 3.14159");
    EXPECT_EQ(valueLine("character", new Node("CharacterLiteral", 'q', 1)), "character value: q");
    EXPECT_EQ(valueLine("character", new Node("CharacterLiteral", '\0', 1)),
              std::string("character value: \0", 18));
    EXPECT_EQ(valueLine("boolean", new Node("BooleanLiteral", true, 1)), "boolean value: true");
    EXPECT_EQ(valueLine("boolean", new Node("BooleanLiteral", false, 1)), "boolean value: false");
    EXPECT_EQ(valueLine("string", new Node("StringLiteral", "text", 1)), "string value: text");
}

TEST(SymbolTest, ValuesOfAnotherTypeThanTheDeclaredOneAreZero) {
    EXPECT_EQ(valueLine("int", new Node("DecimalLiteral", 2.5, 1)), "integer value: 0");
    EXPECT_EQ(valueLine("double", new Node("IntLiteral", 7, 1)), "double value: 0");
    EXPECT_EQ(valueLine("boolean", new Node("IntLiteral", 1, 1)), "boolean value: false");
    EXPECT_EQ(valueLine("string", new Node("IntLiteral", 1, 1)), "string value: ");
}

TEST(SymbolTest, InitialValueFollowsTheNodesValueTypeWhateverItsKind) {
    EXPECT_EQ(valueLine("string", new Node("Identifier", "other", 1)), "string value: other");
    EXPECT_EQ(valueLine("string", new Node("BinaryOp", "+", 1)), "string value: +");
    EXPECT_EQ(valueLine("int", new Node("Whatever", 5, 1)), "integer value: 5");
    EXPECT_EQ(valueLine("int", new Node("CallStatement", 1)), "integer value: 0");
}

TEST(SymbolTest, NegatedLiteralIsNoInitialValue) {
    auto* negation = new Node("UnaryOp", Name{"-"}, new Node("IntLiteral", 5, 1), 1);
    EXPECT_EQ(symbolOf("int", declarator("x", negation))->getIntValue(), 0);
}

TEST(SymbolTest, MissingInitialiserLeavesTheValuesZero) {
    const NodePointer bare = std::make_unique<Node>("Declarator", "x", 3);
    EXPECT_EQ(printed(*symbolOf("int", bare)),
              "name: x\n"
              "type: int\n"
              "integer value: 0\n"
              "source line: 3\n" +
                  separator);
    const NodePointer empty = declarator("x", nullptr);
    EXPECT_EQ(symbolOf("int", empty)->getIntValue(), 0);
}

TEST(SymbolTest, TypesWithoutValueLine) {
    EXPECT_EQ(valueLine("void", new Node("IntLiteral", 1, 1)), "void type");
    EXPECT_EQ(valueLine("float", new Node("IntLiteral", 1, 1)), "value: <unknown type>");
}

TEST(SymbolTest, ArrayOfLiteralSize) {
    const auto symbol =
        symbolOf("double", arrayDeclarator("cells", new Node("IntLiteral", 10, 4), 4));
    EXPECT_TRUE(symbol->isArraySymbol());
    EXPECT_EQ(symbol->getArraySize(), 10);
    EXPECT_EQ(symbol->getArraySizeSymbolName(), "");
    EXPECT_EQ(symbol->getType(), "double");
    EXPECT_EQ(symbol->getIntValue(), 0);
    EXPECT_EQ(printed(*symbol),
              "name: cells\n"
              "type: double\n"
              "array size: 10\n"
              "source line: 4\n" +
                  separator);
}

TEST(SymbolTest, ArrayOfVariableSize) {
    const auto size = symbolOf("int", declarator("n", new Node("IntLiteral", 8, 1)));
    const auto array = symbolOf("int", arrayDeclarator("a", new Node("Identifier", "n", 2), 2));
    EXPECT_TRUE(array->isArraySymbol());
    EXPECT_EQ(array->getArraySizeSymbolName(), "n");
    EXPECT_EQ(array->sizeSymbolName(), Name{"n"});
    EXPECT_EQ(array->getArraySize(), 0);
    EXPECT_EQ(printed(*array),
              "name: a\n"
              "type: int\n"
              "source line: 2\n" +
                  separator);
    array->updateArraySizeSymbol(size.get());
    EXPECT_EQ(array->getArraySize(), 8);
    EXPECT_EQ(printed(*array),
              "name: a\n"
              "type: int\n"
              "array size symbol: n\n"
              "source line: 2\n" +
                  separator);
    array->updateArraySizeSymbol(nullptr);
    EXPECT_EQ(array->getArraySize(), 0);
}

TEST(SymbolTest, SizeSymbolGoesBeforeTheLiteral) {
    const auto size = symbolOf("int", declarator("n", new Node("IntLiteral", 8, 1)));
    const auto array = symbolOf("int", arrayDeclarator("a", new Node("IntLiteral", 3, 1)));
    array->updateArraySizeSymbol(size.get());
    EXPECT_EQ(array->getArraySize(), 8);
    EXPECT_EQ(printed(*array),
              "name: a\n"
              "type: int\n"
              "array size: 3\n"
              "source line: 1\n" +
                  separator);
}

TEST(SymbolTest, ArrayOfSizeZeroOrLessPrintsNoSize) {
    const auto zero = symbolOf("int", arrayDeclarator("a", new Node("IntLiteral", 0, 1)));
    EXPECT_EQ(printed(*zero),
              "name: a\n"
              "type: int\n"
              "source line: 1\n" +
                  separator);
    const auto negative = symbolOf("int", arrayDeclarator("a", new Node("IntLiteral", -1, 1)));
    EXPECT_EQ(negative->getArraySize(), -1);
    EXPECT_EQ(printed(*negative),
              "name: a\n"
              "type: int\n"
              "source line: 1\n" +
                  separator);
}

TEST(SymbolTest, ArrayInitialisersAreNotRead) {
    const NodePointer array = arrayDeclarator("a", new Node("IntLiteral", 2, 1));
    array->addChild(new Node("InitializationList", new Node("IntLiteral", 77, 1), 1));
    EXPECT_EQ(symbolOf("int", array)->getIntValue(), 0);
}

TEST(SymbolTest, Parameter) {
    const NodePointer declaration{parameter("string", "text", 9)};
    const auto symbol = symbolOf("string", declaration);
    EXPECT_EQ(printed(*symbol),
              "name: text\n"
              "type: string\n"
              "string value: \n"
              "source line: 9\n" +
                  separator);
    EXPECT_FALSE(symbol->isArraySymbol());
    EXPECT_EQ(symbol->getScope(), "");
}

TEST(SymbolTest, FunctionMakesASymbolOfEachParameter) {
    auto* list = new Node("ParameterList", parameter("int", "a", 2), 2);
    list->addChild(parameter("double", "b", 3));
    const auto symbol = symbolOf("void", function("f", list, 2));
    EXPECT_EQ(symbol->getName(), "f");
    EXPECT_EQ(symbol->getType(), "void");
    EXPECT_EQ(symbol->getScope(), "f");
    EXPECT_EQ(symbol->getLine(), 2);
    EXPECT_FALSE(symbol->isArraySymbol());
    const std::vector<Symbol*> parameters = symbol->getParameters();
    ASSERT_EQ(parameters.size(), 2U);
    const std::unique_ptr<Symbol> first{parameters[0]};
    const std::unique_ptr<Symbol> second{parameters[1]};
    EXPECT_EQ(first->getName(), "a");
    EXPECT_EQ(first->getType(), "int");
    EXPECT_EQ(first->getLine(), 2);
    EXPECT_EQ(first->getScope(), "");
    EXPECT_EQ(second->getName(), "b");
    EXPECT_EQ(second->getType(), "double");
    EXPECT_EQ(second->getLine(), 3);
    EXPECT_EQ(printed(*symbol),
              "name: f\n"
              "type: void\n"
              "void type\n"
              "function parameters: a (int), b (double), \n"
              "source line: 2\n" +
                  separator);
}

TEST(SymbolTest, FunctionWithoutParameters) {
    const auto symbol = symbolOf("boolean", function("g", new Node("ParameterList", 1)));
    EXPECT_TRUE(symbol->getParameters().empty());
    EXPECT_EQ(printed(*symbol),
              "name: g\n"
              "type: boolean\n"
              "boolean value: false\n"
              "function parameters: \n"
              "source line: 1\n" +
                  separator);
}

TEST(SymbolTest, FunctionSkipsWhatIsNoParameter) {
    auto* list = new Node("ParameterList", new Node("Declarator", "x", 1), 1);
    list->addChild(parameter("int", "a", 1));
    const auto symbol = symbolOf("int", function("f", list));
    const std::vector<Symbol*> parameters = symbol->getParameters();
    ASSERT_EQ(parameters.size(), 1U);
    const std::unique_ptr<Symbol> only{parameters[0]};
    EXPECT_EQ(only->getName(), "a");
}

TEST(SymbolTest, ScopeIsUpdated) {
    const auto symbol = symbolOf("int", declarator("x", new Node("IntLiteral", 1, 1)));
    symbol->updateScope("f");
    EXPECT_EQ(symbol->getScope(), "f");
}

TEST(SymbolTest, SymbolsOfTheScopeGlobalPrintNoValue) {
    const auto symbol = symbolOf("int", declarator("x", new Node("IntLiteral", 1, 1)));
    symbol->updateScope("global");
    EXPECT_EQ(printed(*symbol),
              "name: x\n"
              "type: int\n"
              "source line: 1\n" +
                  separator);
    const auto array = symbolOf("int", arrayDeclarator("a", new Node("IntLiteral", 3, 1)));
    array->updateScope("global");
    EXPECT_EQ(printed(*array),
              "name: a\n"
              "type: int\n"
              "array size: 3\n"
              "source line: 1\n" +
                  separator);
}

TEST(SymbolTest, FunctionCalledGlobalPrintsNoValue) {
    const auto symbol = symbolOf("int", function("global", new Node("ParameterList", 1)));
    EXPECT_EQ(printed(*symbol),
              "name: global\n"
              "type: int\n"
              "function parameters: \n"
              "source line: 1\n" +
                  separator);
}

TEST(SymbolTest, IsNotCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Symbol>);
    EXPECT_FALSE(std::is_copy_assignable_v<Symbol>);
}

/// That making a symbol writes exactly `message` and aborts.
std::string errorOf(const char* type, const NodePointer& declaration) {
    return internalErrorOf([&] { symbolOf(type, declaration); });
}

TEST(SymbolTest, RefusesAnotherKindOfDeclaration) {
    for (const char* kind : {"Assignment", "DeclaratorList", "Identifier", ""}) {
        EXPECT_EQ(errorOf("int", std::make_unique<Node>(kind, 1)),
                  "Symbol constructed from invalid node kind: " + std::string{kind});
    }
}

TEST(SymbolTest, RefusesANullDeclaration) {
    EXPECT_EQ(errorOf("int", nullptr), "Symbol constructed from invalid node kind: <null>");
}

TEST(SymbolTest, KindIsCheckedBeforeTheType) {
    const NodePointer type = std::make_unique<Node>("Block", 1);
    const NodePointer declaration = std::make_unique<Node>("Block", 1);
    EXPECT_EQ(internalErrorOf([&] { Symbol(type.get(), declaration.get()); }),
              "Symbol constructed from invalid node kind: Block");
}

TEST(SymbolDeathTest, AssertsThatTheTypeIsOne) {
    const NodePointer type = std::make_unique<Node>("Identifier", "int", 1);
    const NodePointer declaration{parameter("int", "x", 1)};
    EXPECT_EXIT(
        Symbol(type.get(), declaration.get()), testing::KilledBySignal(SIGABRT),
        testing::MatchesRegex("krel_symboltable_test: shared/symboltable/symbol\\.cpp:[0-9]+: "
                              "Symbol::Symbol\\(Node\\*, Node\\*\\): "
                              "Assertion `type->getKind\\(\\) == \"Type\"' failed\\.\n"));
}

TEST(SymbolTest, RefusesAFunctionWithoutParameterList) {
    const std::string message = "FunctionDeclaration node has no ParameterList child.";
    EXPECT_EQ(errorOf("int", std::make_unique<Node>("FunctionDeclaration", "f", 1)), message);
    EXPECT_EQ(errorOf("int", function("f", nullptr)), message);
    EXPECT_EQ(errorOf("int", function("f", new Node("Block", 1))), message);
}

}  // namespace

}  // namespace krel
