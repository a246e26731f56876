#include "shared/symboltable/symbolTable.hpp"

#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <string>
#include <type_traits>

#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"
#include "tests/unit/shared/symboltable/allocationCount.hpp"
#include "tests/unit/support/lines.hpp"
#include "tests/unit/support/streamCapture.hpp"

namespace krel {

namespace {

/// A table with symbols of its own; what it reports is collected.
class SymbolTableTest : public testing::Test {
protected:
    static std::unique_ptr<Symbol> functionSymbol(const char* name, int line = 1) {
        Node declaration{"FunctionDeclaration", Name{name}, new Node("Type", "int", line), line};
        declaration.addChild(new Node("ParameterList", line));
        return symbolOf("int", declaration);
    }

    static std::unique_ptr<Symbol> variableSymbol(const char* name, int line = 1) {
        Node declaration{"Declarator", Name{name},
                         new Node("Initializer", new Node("IntLiteral", 1, line), line), line};
        return symbolOf("int", declaration);
    }

    /// Files the symbol of a function; the table owns it from then on, if it takes it.
    bool openScope(const char* name, int line = 1) {
        return handOver(functionSymbol(name, line),
                        [&](Symbol* symbol) { return table.insertSymbol(name, line, symbol); });
    }

    bool file(const char* scope, const char* name, int line = 1) {
        return handOver(variableSymbol(name, line),
                        [&](Symbol* symbol) { return table.insertSymbol(scope, symbol); });
    }

    int lineOf(const char* scope, const char* name) const {
        const Symbol* symbol = table.lookup(scope, name, 0);
        return symbol == nullptr ? 0 : symbol->getLine();
    }

    SymbolTable table;
    StreamCapture err{std::cerr};

private:
    void SetUp() override { Error::setSourceFile(""); }

    static std::unique_ptr<Symbol> symbolOf(const char* type, Node& declaration) {
        Node typeNode{"Type", type, 1};
        return std::make_unique<Symbol>(&typeNode, &declaration);
    }

    template <typename Insert>
    static bool handOver(std::unique_ptr<Symbol> symbol, Insert insert) {
        if (!insert(symbol.get())) {
            return false;
        }
        static_cast<void>(symbol.release());  // the table owns it now
        return true;
    }
};

TEST_F(SymbolTableTest, HasNoScopeAtFirst) {
    EXPECT_EQ(table.lookup("f", "f", 0), nullptr);
    EXPECT_EQ(table.lookup("", "", 0), nullptr);
}

TEST_F(SymbolTableTest, FunctionOpensItsScopeAndIsFoundInIt) {
    EXPECT_TRUE(openScope("f", 3));
    ASSERT_NE(table.lookup("f", "f", 0), nullptr);
    EXPECT_EQ(table.lookup("f", "f", 0)->getName(), "f");
    EXPECT_EQ(lineOf("f", "f"), 3);
    EXPECT_EQ(err.str(), "");
}

TEST_F(SymbolTableTest, SecondFunctionOfANameIsReportedAtTheGivenLine) {
    ASSERT_TRUE(openScope("g", 1));
    ASSERT_TRUE(file("g", "x", 2));
    EXPECT_FALSE(openScope("g", 9));
    EXPECT_EQ(err.str(), "Semantic error at line 9: Function 'g' already exists.\n");
    EXPECT_EQ(lineOf("g", "g"), 1);
    EXPECT_EQ(lineOf("g", "x"), 2);
}

TEST_F(SymbolTableTest, LineOfAReportIsTheArgumentNotTheSymbols) {
    ASSERT_TRUE(openScope("g"));
    const auto second = functionSymbol("g", 5);
    EXPECT_FALSE(table.insertSymbol("g", 70, second.get()));
    EXPECT_EQ(err.str(), "Semantic error at line 70: Function 'g' already exists.\n");
}

TEST_F(SymbolTableTest, FindsVariablesOfAScope) {
    ASSERT_TRUE(openScope("f"));
    EXPECT_TRUE(file("f", "x", 2));
    EXPECT_TRUE(file("f", "y", 3));
    EXPECT_EQ(lineOf("f", "x"), 2);
    EXPECT_EQ(lineOf("f", "y"), 3);
    EXPECT_EQ(table.lookup("f", "z", 0), nullptr);
    EXPECT_EQ(err.str(), "");
}

TEST_F(SymbolTableTest, LineOfALookupIsNotUsed) {
    ASSERT_TRUE(openScope("f"));
    ASSERT_TRUE(file("f", "x", 2));
    EXPECT_EQ(table.lookup("f", "x", -1), table.lookup("f", "x", 1000));
}

TEST_F(SymbolTableTest, LookupStaysInOneScope) {
    ASSERT_TRUE(openScope("f"));
    ASSERT_TRUE(openScope("g"));
    ASSERT_TRUE(file("g", "y"));
    EXPECT_EQ(table.lookup("f", "y", 0), nullptr);
    EXPECT_EQ(table.lookup("f", "g", 0), nullptr);
    EXPECT_NE(table.lookup("g", "y", 0), nullptr);
}

TEST_F(SymbolTableTest, SameNameInTwoScopesIsNoDuplicate) {
    ASSERT_TRUE(openScope("f"));
    ASSERT_TRUE(openScope("g"));
    EXPECT_TRUE(file("f", "x", 2));
    EXPECT_TRUE(file("g", "x", 3));
    EXPECT_TRUE(file("g", "f", 4));
    EXPECT_EQ(lineOf("f", "x"), 2);
    EXPECT_EQ(lineOf("g", "x"), 3);
    EXPECT_EQ(err.str(), "");
}

TEST_F(SymbolTableTest, DuplicateIsReportedAtItsOwnLineAndDropped) {
    ASSERT_TRUE(openScope("f"));
    ASSERT_TRUE(file("f", "x", 2));
    EXPECT_FALSE(file("f", "x", 5));
    EXPECT_EQ(err.str(), "Semantic error at line 5: Symbol 'x' already exists in scope 'f'.\n");
    EXPECT_EQ(lineOf("f", "x"), 2);
}

TEST_F(SymbolTableTest, VariableNamedLikeItsFunctionIsADuplicate) {
    ASSERT_TRUE(openScope("f", 1));
    EXPECT_FALSE(file("f", "f", 4));
    EXPECT_EQ(err.str(), "Semantic error at line 4: Symbol 'f' already exists in scope 'f'.\n");
    EXPECT_EQ(lineOf("f", "f"), 1);
}

TEST_F(SymbolTableTest, VariableNeedsAnOpenScope) {
    EXPECT_FALSE(file("h", "x", 6));
    EXPECT_EQ(err.str(),
              "Semantic error at line 6: Function symbol 'h' does not exist for variable 'x'.\n");
    EXPECT_EQ(table.lookup("h", "x", 0), nullptr);
    EXPECT_TRUE(openScope("h", 7));
}

TEST_F(SymbolTableTest, FunctionMayBeFiledUnderAnotherScopeName) {
    const auto filed = functionSymbol("f", 2).release();
    EXPECT_TRUE(table.insertSymbol("other", 2, filed));
    EXPECT_EQ(table.lookup("other", "f", 0), filed);
    EXPECT_EQ(table.lookup("f", "f", 0), nullptr);
}

TEST_F(SymbolTableTest, EmptyNameIsANameLikeAnyOther) {
    EXPECT_EQ(table.lookup("", "", 0), nullptr);
    EXPECT_FALSE(file("", "x", 3));
    EXPECT_EQ(err.str(),
              "Semantic error at line 3: "
              "Function symbol '' does not exist for variable 'x'.\n");
    err.clear();
    EXPECT_TRUE(openScope("", 1));
    EXPECT_EQ(lineOf("", ""), 1);
    EXPECT_TRUE(file("", "x", 4));
    EXPECT_EQ(lineOf("", "x"), 4);
    EXPECT_EQ(table.symbolsOf("").size(), 2U);
    EXPECT_FALSE(openScope("", 5));
    EXPECT_FALSE(file("", "", 6));
    EXPECT_EQ(err.str(),
              "Semantic error at line 5: Function '' already exists.\n"
              "Semantic error at line 6: Symbol '' already exists in scope ''.\n");
    EXPECT_TRUE(openScope("f", 7));
    EXPECT_TRUE(file("f", "", 8));
    EXPECT_EQ(lineOf("f", ""), 8);
}

TEST_F(SymbolTableTest, ManySymbolsAreFound) {
    constexpr int many = 2000;
    ASSERT_TRUE(openScope("f"));
    for (int number = 1; number <= many; ++number) {
        ASSERT_TRUE(file("f", ("v" + std::to_string(number)).c_str(), number));
    }
    for (int number = 1; number <= many; ++number) {
        ASSERT_EQ(lineOf("f", ("v" + std::to_string(number)).c_str()), number);
    }
}

TEST_F(SymbolTableTest, ScopesOfEverySizeEndTheSearchForAMissingName) {
    constexpr int most = 130;
    ASSERT_TRUE(openScope("f", 1));
    for (int size = 1; size <= most; ++size) {
        // The scope holds the function and size - 1 variables.
        for (int missing = size; missing <= size + most; ++missing) {
            const std::string name = "v" + std::to_string(missing);
            ASSERT_EQ(table.lookup("f", Name{name}, 0), nullptr) << size << ' ' << name;
        }
        ASSERT_TRUE(file("f", ("v" + std::to_string(size)).c_str(), size));
    }
}

TEST_F(SymbolTableTest, AnyNumberOfScopesEndsTheSearchForAMissingOne) {
    constexpr int most = 130;
    for (int count = 0; count <= most; ++count) {
        for (int missing = count; missing <= count + most; ++missing) {
            const std::string scope = "scope" + std::to_string(missing);
            ASSERT_EQ(table.lookup(Name{scope}, "x", 0), nullptr) << count << ' ' << scope;
        }
        ASSERT_TRUE(openScope(("scope" + std::to_string(count)).c_str()));
    }
}

std::string printed(const SymbolTable& table) {
    const StreamCapture out{std::cout};
    table.printSymbolTable();
    return out.str();
}

TEST_F(SymbolTableTest, EmptyTablePrintsItsTitle) {
    EXPECT_EQ(printed(table),
              "\n"
              "Symbol Table:\n");
}

TEST_F(SymbolTableTest, PrintsScopesByNameAndSymbolsInOrder) {
    ASSERT_TRUE(openScope("b", 1));
    ASSERT_TRUE(file("b", "z", 2));
    ASSERT_TRUE(file("b", "a", 3));
    ASSERT_TRUE(openScope("a10", 4));
    ASSERT_TRUE(openScope("B", 5));
    ASSERT_TRUE(openScope("a2", 6));
    const std::string separator = "--------------------------";
    const auto function = [&](const std::string& name, const std::string& line) {
        return joinLines({"name: " + name, "type: int", "integer value: 0",
                          "function parameters: ", "source line: " + line, separator});
    };
    const auto variable = [&](const std::string& name, const std::string& line) {
        return joinLines(
            {"name: " + name, "type: int", "integer value: 1", "source line: " + line, separator});
    };
    EXPECT_EQ(printed(table), joinLines({"", "Symbol Table:", "Scope: B"}) + function("B", "5") +
                                  "Scope: a10\n" + function("a10", "4") + "Scope: a2\n" +
                                  function("a2", "6") + "Scope: b\n" + function("b", "1") +
                                  variable("z", "2") + variable("a", "3"));
}

TEST_F(SymbolTableTest, OwnsWhatIsFiledAndNothingElse) {
    const auto makeAndDestroy = [] {
        SymbolTable owner;
        Symbol* function = functionSymbol("owned f").release();
        Symbol* variable = variableSymbol("owned x").release();
        ASSERT_TRUE(owner.insertSymbol("owned f", 1, function));
        ASSERT_TRUE(owner.insertSymbol("owned f", variable));
        const auto duplicate = variableSymbol("owned x");
        ASSERT_FALSE(owner.insertSymbol("owned f", duplicate.get()));
    };
    makeAndDestroy();  // names stay for good
    const long before = liveObjects();
    err.clear();
    makeAndDestroy();
    err.clear();
    EXPECT_EQ(liveObjects(), before);
}

TEST_F(SymbolTableTest, IsNotCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<SymbolTable>);
    EXPECT_FALSE(std::is_copy_assignable_v<SymbolTable>);
}

}  // namespace

}  // namespace krel
