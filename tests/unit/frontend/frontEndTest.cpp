#include "frontend/frontEnd.hpp"

#include <gtest/gtest.h>
#include <malloc.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "parser/parser.hpp"
#include "shared/ast/node.hpp"

namespace krel {

namespace {

using FrontEnd::compile;
using FrontEnd::Outcome;
using FrontEnd::Token;

constexpr FrontEnd::Request everything{.tokens = true, .parsedTree = true, .sources = true};

using Lines = std::vector<std::string>;

Lines linesOf(const FrontEnd::Compilation& compilation) {
    Lines lines;
    for (const FrontEnd::Fault& fault : compilation.faults()) {
        lines.push_back(fault.line);
    }
    return lines;
}

TEST(FrontEndTest, CompilesAProgram) {
    const auto made = compile("void main() {\n    print(1);\n}\n", "dir/p.krl");
    EXPECT_EQ(made->outcome(), Outcome::Complete);
    EXPECT_EQ(made->name(), "p.krl");
    EXPECT_TRUE(made->faults().empty());
    EXPECT_EQ(made->failure(), "");
    EXPECT_EQ(made->ir().toString(),
              "main:\n"
              "B1:\n"
              "    _t0 = inttostring 1\n"
              "    arg _t0\n"
              "    call print, 1\n"
              "    return\n"
              "\n");
    EXPECT_EQ(made->assembly(),
              "\t.text\n"
              "\n"
              "\t.globl main\n"
              "\t.type main, @function\n"
              "main:\n"
              "\tpushq %rbp\n"
              "\tmovq %rsp, %rbp\n"
              "\tsubq $16, %rsp\n"
              ".Lmain_B1:\n"
              "\tmovq $1, %rdi\n"
              "\tcall krel_inttostring@PLT\n"
              "\tmovq %rax, -8(%rbp)\n"
              "\tmovq -8(%rbp), %rdi\n"
              "\tcall krel_print@PLT\n"
              "\txorl %eax, %eax\n"
              "\tjmp .Lmain_return\n"
              ".Lmain_return:\n"
              "\tleave\n"
              "\tret\n"
              "\t.size main, .-main\n"
              "\t.section .note.GNU-stack,\"\",@progbits\n");
    EXPECT_TRUE(made->tokens().empty());
    EXPECT_EQ(made->parsedTree(), nullptr);
    EXPECT_TRUE(made->irLineOfAssembly().empty());
}

TEST(FrontEndTest, GivesFaultsAsDataAndAsLines) {
    const auto parsed = compile("void main() {\n    @ x;\n    f(1;\n", "p.krl");
    EXPECT_EQ(parsed->outcome(), Outcome::SyntaxFaults);
    EXPECT_EQ(parsed->tree(), nullptr);
    EXPECT_EQ(linesOf(*parsed),
              (Lines{"Lexer error in p.krl at line 2: illegal character '@'",
                     "Syntax error in p.krl at line 2: Standalone variable or array access.",
                     "Syntax error in p.krl at line 3: syntax error, unexpected T_SEMICOLON, "
                     "expecting T_RPAREN"}));
    EXPECT_EQ(parsed->faults()[1].kind, DiagnosticKind::Syntax);
    EXPECT_EQ(parsed->faults()[1].message, "Standalone variable or array access.");
    EXPECT_EQ(parsed->textOf(parsed->faults()[1].place.range), "x");
    EXPECT_EQ(parsed->lines().positionOf(parsed->faults()[1].place.range.begin),
              (LineAndColumn{2, 7}));
    const auto analysed = compile("void main() { int x = 2.5; int y = z; }", "p.krl");
    EXPECT_EQ(analysed->outcome(), Outcome::SemanticFaults);
    EXPECT_EQ(linesOf(*analysed),
              (Lines{"Semantic error in p.krl at line 1: Cannot assign value of type 'double' to "
                     "type 'int'.",
                     "Semantic error in p.krl at line 1: Undeclared identifier: 'z'."}));
    EXPECT_EQ(analysed->textOf(analysed->faults()[1].place.range), "z");
    EXPECT_TRUE(analysed->ir().getFunctions().empty());
}

TEST(FrontEndTest, GivesWhatLaterPassesRefuse) {
    const auto refused = compile("void main() { double d = 2.0; }", "p.krl");
    EXPECT_EQ(refused->outcome(), Outcome::NotTranslated);
    EXPECT_EQ(refused->failure(), "unknown double IR value: 2");
    EXPECT_FALSE(refused->ir().getFunctions().empty());
    const auto impossible = compile("void main() { break; }", "p.krl");
    EXPECT_EQ(impossible->outcome(), Outcome::InternalError);
    EXPECT_EQ(impossible->failure(), "break outside loop");
    EXPECT_TRUE(impossible->faults().empty());
}

/// The pieces of a source, each as a mark of its kind and its text.
std::string piecesOf(const std::string& text) {
    const auto made = compile(text, "p.krl", everything);
    std::string pieces;
    std::uint32_t end = 0;
    for (const Token& token : made->tokens()) {
        EXPECT_EQ(token.range.begin, end);
        end = token.range.end;
        constexpr const char* marks = "w_#?";
        pieces += marks[static_cast<int>(token.kind)];
        pieces += "<" + std::string{made->textOf(token.range)} + ">";
        EXPECT_EQ(token.code != 0, token.kind == Token::Kind::Word);
    }
    EXPECT_EQ(end, text.size());
    return pieces;
}

TEST(FrontEndTest, CutsTheWholeSourceIntoPieces) {
    EXPECT_EQ(piecesOf(""), "");
    EXPECT_EQ(piecesOf(" \n"), "_< \n>");
    EXPECT_EQ(piecesOf("int  x;# c\n@y"), "w<int>_<  >w<x>w<;>#<# c>_<\n>?<@>w<y>");
    EXPECT_EQ(piecesOf("#{ a\n}#x \"s\" '"), "#<#{ a\n}#>w<x>_< >w<\"s\">_< >?<'>");
    EXPECT_EQ(piecesOf("void f( ; g # end"), "w<void>_< >w<f>w<(>_< >w<;>_< >w<g>_< >#<# end>");
}

TEST(FrontEndTest, TokensHaveTheParsersCodes) {
    const auto made = compile("int x", "p.krl", everything);
    ASSERT_EQ(made->tokens().size(), 3U);
    EXPECT_EQ(made->tokens()[0].code, T_INT);
    EXPECT_EQ(made->tokens()[2].code, T_ID);
    EXPECT_EQ(made->faults().size(), 1U);  // that of the parser alone
}

TEST(FrontEndTest, CutsATextThatIsNoProgram) {
    const std::string text = "if ] @\t# c";
    std::vector<std::string> pieces;
    for (const Token& token : FrontEnd::tokensOf(text)) {
        pieces.push_back(text.substr(token.range.begin, token.range.end - token.range.begin));
    }
    EXPECT_EQ(pieces, (Lines{"if", " ", "]", " ", "@", "\t", "# c"}));
    EXPECT_TRUE(FrontEnd::tokensOf("").empty());
    EXPECT_FALSE(Diagnostics::current().hasErrors());
}

TEST(FrontEndTest, StopsBehindTheParserOnRequest) {
    constexpr FrontEnd::Request request{.parseOnly = true, .parsedTree = true};
    const auto parsed = compile("void main() { int i = true; }", "p.krl", request);
    EXPECT_EQ(parsed->outcome(), Outcome::Complete);
    EXPECT_TRUE(parsed->faults().empty());
    EXPECT_NE(parsed->parsedTree(), nullptr);
    EXPECT_TRUE(parsed->assembly().empty());
    const auto refused = compile("void main() { int i; }", "p.krl", request);
    EXPECT_EQ(refused->outcome(), Outcome::SyntaxFaults);
}

TEST(FrontEndTest, KeepsTheTreeFromBeforeTheAnalysis) {
    const auto made = compile("void main() { int i = (int) 'c'; double d = 0.5; print(i); }",
                              "p.krl", everything);
    const std::string before = made->jsonOf(*made->parsedTree());
    const std::string after = made->jsonOf(*made->tree());
    EXPECT_NE(before.find("CastExpression"), before.npos);
    EXPECT_EQ(before.find("chartoint"), before.npos);
    EXPECT_EQ(before.find("\"type\""), before.npos);
    EXPECT_NE(before.find("\"value\": 0.5"), before.npos);
    EXPECT_EQ(after.find("CastExpression"), after.npos);
    EXPECT_NE(after.find("chartoint"), after.npos);
    EXPECT_NE(after.find("\"type\": \"int\""), after.npos);
    EXPECT_NE(after.find("\"sourceFile\": \"p.krl\""), after.npos);
    EXPECT_EQ(made->parsedTree()->getRange(), made->tree()->getRange());
}

TEST(FrontEndTest, ListsSymbols) {
    const auto made = compile(
        "int f(int a) { int b = 1; return b; } void main() { string s = \"\"; } int f() { }",
        "p.krl");
    EXPECT_EQ(made->outcome(), Outcome::SyntaxFaults);
    EXPECT_EQ(made->functions(), (Lines{"f", "main"}));
    const auto symbols = made->symbolsOf("f");
    ASSERT_EQ(symbols.size(), 3U);
    EXPECT_EQ(symbols[0]->getName(), "f");
    EXPECT_EQ(symbols[1]->getName(), "a");
    EXPECT_EQ(symbols[2]->getName(), "b");
    ASSERT_NE(made->symbol("main", "s"), nullptr);
    EXPECT_EQ(made->symbol("main", "s")->getType(), "string");
    EXPECT_EQ(made->textOf(made->symbol("main", "s")->getPlace().range), "s = \"\"");
    EXPECT_EQ(made->symbol("main", "b"), nullptr);
    EXPECT_EQ(made->symbol("nobody", "b"), nullptr);
    EXPECT_TRUE(made->symbolsOf("nobody").empty());
}

/// Each line of the intermediate code beside the source that it comes from.
Lines irSources(const FrontEnd::Compilation& made) {
    Lines lines;
    for (const FrontEnd::IRLine& line : made.irLines()) {
        const auto& block = made.ir().getFunctions()[line.function].getBlocks()[line.block];
        lines.push_back(block.getInstructions()[line.instruction].getText() + " | " +
                        std::string{made.textOf(line.source)});
    }
    return lines;
}

TEST(FrontEndTest, TellsWhichSourceEachLineComesFrom) {
    const auto made = compile(
        "int f(int a) { return a; }\n"
        "void main() {\n"
        "    int x = f(2) + 1;\n"
        "    while (x < 9) { x += 2; }\n"
        "    if (!(x == 3)) { print(x, \"!\"); }\n"
        "}\n",
        "p.krl", everything);
    ASSERT_EQ(made->outcome(), Outcome::Complete);
    EXPECT_EQ(irSources(*made), (Lines{"param int a | int a",
                                       "_t0 = a | return a",
                                       "return _t0 | return a",
                                       "arg 2 | f(2)",
                                       "_t0 = call f, 1 | f(2)",
                                       "_t1 = _t0 + 1 | f(2) + 1",
                                       "x = _t1 | int x = f(2) + 1",
                                       "_t2 = x >= 9 | x < 9",
                                       "if _t2 goto B4 | x < 9",
                                       "_t3 = x + 2 | x += 2",
                                       "x = _t3 | x += 2",
                                       "goto B2 | while (x < 9) { x += 2; }",
                                       "_t4 = x == 3 | x == 3",
                                       "if _t4 goto B5 | !(x == 3)",
                                       "_t5 = inttostring x | x",
                                       "_t6 = _t5 + \"!\" | print(x, \"!\")",
                                       "arg _t6 | print(x, \"!\")",
                                       "call print, 1 | print(x, \"!\")",
                                       "goto B5 | if (!(x == 3)) { print(x, \"!\"); }",
                                       "return | void main() {\n"
                                       "    int x = f(2) + 1;\n"
                                       "    while (x < 9) { x += 2; }\n"
                                       "    if (!(x == 3)) { print(x, \"!\"); }\n"
                                       "}"}));
}

TEST(FrontEndTest, TellsWhichLineOfCodeEachLineOfAssemblyComesFrom) {
    const auto made =
        compile("void f() { }\nvoid main() { int x = 1; print(\"s\"); }", "p.krl", everything);
    ASSERT_EQ(made->outcome(), Outcome::Complete);
    std::string described;
    std::size_t begin = 0;
    for (const std::size_t line : made->irLineOfAssembly()) {
        const std::size_t end = made->assembly().find('\n', begin);
        described += line == FrontEnd::Compilation::none ? "-" : std::to_string(line);
        described += made->assembly().substr(begin, end - begin) + "\n";
        begin = end + 1;
    }
    EXPECT_EQ(begin, made->assembly().size());
    EXPECT_EQ(described,
              "-\t.text\n"
              "-\n"
              "-\t.globl f\n"
              "-\t.type f, @function\n"
              "-f:\n"
              "-\tpushq %rbp\n"
              "-\tmovq %rsp, %rbp\n"
              "-.Lf_B1:\n"
              "0\tjmp .Lf_return\n"
              "-.Lf_return:\n"
              "-\tleave\n"
              "-\tret\n"
              "-\t.size f, .-f\n"
              "-\n"
              "-\t.globl main\n"
              "-\t.type main, @function\n"
              "-main:\n"
              "-\tpushq %rbp\n"
              "-\tmovq %rsp, %rbp\n"
              "-\tsubq $16, %rsp\n"
              "-.Lmain_B1:\n"
              "1\tmovq $1, %rax\n"
              "1\tmovq %rax, -16(%rbp)\n"
              "3\tleaq .LC0(%rip), %rdi\n"
              "3\tcall krel_print@PLT\n"
              "4\txorl %eax, %eax\n"
              "4\tjmp .Lmain_return\n"
              "-.Lmain_return:\n"
              "-\tleave\n"
              "-\tret\n"
              "-\t.size main, .-main\n"
              "-\n"
              "-\t.section .rodata\n"
              "-.LC0:\n"
              "-\t.string \"s\"\n"
              "-\t.section .note.GNU-stack,\"\",@progbits\n");
}

TEST(FrontEndTest, TellsWhichLineOfCodeIsRefused) {
    const auto refusal = [](const std::string& text) -> std::string {
        const auto made = compile(text, "p.krl", everything);
        return made->refusedIRLine() == FrontEnd::Compilation::none
                   ? "none"
                   : std::string{made->textOf(made->irLines()[made->refusedIRLine()].source)};
    };
    EXPECT_EQ(refusal("void main() { int i = 1; double d = 0.5; d = d * 2.0; i = 2; }"), "d * 2.0");
    EXPECT_EQ(refusal("void f() { int i = 1; } void main() { int call = 2; }"), "int call = 2");
    EXPECT_EQ(refusal("void main() { int t[300000000]; t[0] = 1; }"), "none");
    EXPECT_EQ(refusal("void main() { int i = 1; }"), "none");
}

TEST(FrontEndTest, CompilationsDoNotKnowOfEachOther) {
    const auto first = compile("void main() { int only = 1; }", "first.krl", everything);
    const auto second = compile("void main() { @ }", "second.krl", everything);
    EXPECT_EQ(first->outcome(), Outcome::Complete);
    EXPECT_EQ(second->outcome(), Outcome::SyntaxFaults);
    EXPECT_EQ(second->symbol("main", "only"), nullptr);
    EXPECT_NE(first->symbol("main", "only"), nullptr);
    EXPECT_FALSE(Diagnostics::current().hasErrors());
}

/// A program that no other number gives, with names, texts and doubles of its own, good or bad.
std::string programOf(int number) {
    const std::string n = std::to_string(number);
    const std::vector<std::string> bodies = {
        "double local_variable_" + n + " = 0." + n + "5; print(local_variable_" + n + ", \"text " +
            n + "\");",
        "int x" + n + " = 1; while (x" + n + " < 9) { x" + n + "++; }",
        "int x" + n + " = \"semantic " + n + "\";",
        "syntax" + n + " error(",
        "double refused" + n + " = 2.0;",
        "int i" + n + " = 1; break;",
        "print(\"open" + n + ");",
        "int a" + n + "[5] = {1, 2, 3, 4, 5}; int c = (int) 'c'; a" + n + "[0] = c;"};
    const std::string parameters = number % 7 == 0 ? "int a, int a" : "int a, int b";
    return "int f" + n + "(" + parameters + ") { return a; }\nvoid main() { " +
           bodies[static_cast<std::size_t>(number) % bodies.size()] + " }\n" +
           (number % 9 == 0 ? "int outside" + n + " = 1;" : "");
}

/// The sanitizer's allocator keeps no such figure: 0 then.
std::size_t bytesInUse() {
    const struct mallinfo2 figures = mallinfo2();
    return figures.uordblks + figures.hblkhd;
}

TEST(FrontEndTest, TenThousandCompilationsLeaveNothingBehind) {
    std::map<Outcome, int> outcomes;
    const auto compileFrom = [&](int first, int last) {
        for (int number = first; number < last; ++number) {
            ++outcomes[compile(programOf(number), "p.krl", everything)->outcome()];
        }
    };
    compileFrom(0, 1000);
    const std::size_t before = bytesInUse();
    compileFrom(1000, 11000);
    const std::size_t after = bytesInUse();
    constexpr std::size_t kept = 65536;  // by the allocator, for the next ones; a node has 40 bytes
    EXPECT_LT(after, before + kept);
    for (const Outcome outcome :
         {Outcome::SyntaxFaults, Outcome::SemanticFaults, Outcome::NotTranslated,
          Outcome::InternalError, Outcome::Complete}) {
        EXPECT_GT(outcomes[outcome], 1000) << static_cast<int>(outcome);
    }
}

}  // namespace

}  // namespace krel
