// What each form takes from a line, by example. That the recogniser agrees with the patterns on any
// line is the subject of irFormsEquivalenceTest.cpp.

#include "codegen/irForms.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace krel {

namespace {

/// The groups of a line, as many as there are, with a bar behind each; "another form" when the
/// line is of another form than expected.
std::string groupsOf(IRForm form, std::string_view line) {
    const IRLine found = recognise(line);
    if (found.form != form) {
        return "another form";
    }
    std::string groups;
    for (const std::string_view group : found.groups) {
        groups += group.data() == nullptr ? "" : std::string{group} + "|";
    }
    return groups;
}

}  // namespace

TEST(IRFormsTest, Parameters) {
    EXPECT_EQ(groupsOf(IRForm::IntegerParameter, "param int x"), "int|x|");
    EXPECT_EQ(groupsOf(IRForm::IntegerParameter, "param\t boolean \v_9"), "boolean|_9|");
    EXPECT_EQ(groupsOf(IRForm::IntegerParameter, "param character c"), "character|c|");
    EXPECT_EQ(groupsOf(IRForm::IntegerParameter, "param string double"), "string|double|");
    EXPECT_EQ(groupsOf(IRForm::DoubleParameter, "param double x"), "x|");
    for (const char* line : {"param void x", "param int", "param intx", "param int x y",
                             "paramint x", "param int 9", "param double 9"}) {
        EXPECT_EQ(groupsOf(IRForm::None, line), "") << line;
    }
}

TEST(IRFormsTest, Arguments) {
    EXPECT_EQ(groupsOf(IRForm::Argument, "arg x"), "x|");
    EXPECT_EQ(groupsOf(IRForm::Argument, "arg = 5"), "= 5|");
    EXPECT_EQ(groupsOf(IRForm::Argument, "arg \"a - b\""), "\"a - b\"|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "arg\t= 5"), "arg|5|");
    EXPECT_EQ(groupsOf(IRForm::None, "args x"), "");
    EXPECT_EQ(groupsOf(IRForm::None, "arg"), "");
}

TEST(IRFormsTest, Calls) {
    EXPECT_EQ(groupsOf(IRForm::CallWithResult, "x = call f, 2"), "x|f|2|");
    EXPECT_EQ(groupsOf(IRForm::CallWithResult, "x=call\tf,007"), "x|f|007|");
    EXPECT_EQ(groupsOf(IRForm::Call, "call print, 1"), "print|1|");
    EXPECT_EQ(groupsOf(IRForm::Call, "call  f,\t1"), "f|1|");
    EXPECT_EQ(groupsOf(IRForm::None, "call f 1"), "");
    EXPECT_EQ(groupsOf(IRForm::None, "call f ,1"), "");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = call f, x"), "x|call f, x|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = call f, -1"), "x|call f, -1|");
}

TEST(IRFormsTest, BranchesAndJumps) {
    EXPECT_EQ(groupsOf(IRForm::Branch, "if x goto B4"), "x|4|");
    EXPECT_EQ(groupsOf(IRForm::Branch, "if \"x goto B9\" goto B4"), "\"x goto B9\"|4|");
    EXPECT_EQ(groupsOf(IRForm::Branch, "if  a + b\t goto  B04"), "a + b\t|04|");
    EXPECT_EQ(groupsOf(IRForm::Jump, "goto B4"), "4|");
    for (const char* line : {"if goto B4", "ifx goto B4", "if x gotoB4", "if x goto B", "goto B",
                             "goto B4x", "gotoB4", "goto 4"}) {
        EXPECT_EQ(groupsOf(IRForm::None, line), "") << line;
    }
}

TEST(IRFormsTest, Returns) {
    EXPECT_EQ(groupsOf(IRForm::Return, "return"), "");
    EXPECT_EQ(groupsOf(IRForm::ReturnValue, "return x"), "x|");
    EXPECT_EQ(groupsOf(IRForm::ReturnValue, "return = 5"), "= 5|");
    EXPECT_EQ(groupsOf(IRForm::None, "return\tx"), "");
    EXPECT_EQ(groupsOf(IRForm::Copy, "returned = 5"), "returned|5|");
}

TEST(IRFormsTest, Conversions) {
    for (const char* word :
         {"inttostring", "chartostring", "booltostring", "inttochar", "chartoint"}) {
        const std::string text = word;
        EXPECT_EQ(groupsOf(IRForm::Conversion, "x = " + text + " y"), "x|" + text + "|y|");
    }
    EXPECT_EQ(groupsOf(IRForm::Conversion, "x = inttochar + 1"), "x|inttochar|+ 1|");
    EXPECT_EQ(groupsOf(IRForm::IntToDouble, "x = inttodouble  y"), "x|y|");
    EXPECT_EQ(groupsOf(IRForm::DoubleToString, "x=doubletostring\ty"), "x|y|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = inttochar"), "x|inttochar|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = inttochary"), "x|inttochary|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = chartodouble y"), "x|chartodouble y|");
}

TEST(IRFormsTest, BinaryOperations) {
    for (const char* op : {"||", "&&", "==", "!=", "<=", ">=", "<", ">", "+", "-", "*", "/"}) {
        const std::string text = op;
        EXPECT_EQ(groupsOf(IRForm::BinaryOperation, "x = a " + text + " b"), "x|a|" + text + "|b|");
    }
    EXPECT_EQ(groupsOf(IRForm::BinaryOperation, "x = a - b + c"), "x|a - b|+|c|");
    EXPECT_EQ(groupsOf(IRForm::BinaryOperation, "x = a - -b"), "x|a|-|-b|");
    EXPECT_EQ(groupsOf(IRForm::BinaryOperation, "x = a - - b"), "x|a -|-|b|");
    EXPECT_EQ(groupsOf(IRForm::BinaryOperation, "x =  != 0"), "x| |!=|0|");
    EXPECT_EQ(groupsOf(IRForm::BinaryOperation, "x = \"a\" + \" - \""), "x|\"a\" + \"|-|\"|");
    EXPECT_EQ(groupsOf(IRForm::BinaryOperation, "x = a\v+\fb"), "x|a|+|b|");
    for (const char* line : {"x = a-b", "x = a -b", "x = a- b", "x = a % b", "x = a = b", "x = a -",
                             "x = a << b", "x = a &&& b"}) {
        EXPECT_EQ(recognise(line).form, IRForm::Copy) << line;
    }
}

TEST(IRFormsTest, UnaryOperations) {
    EXPECT_EQ(groupsOf(IRForm::UnaryOperation, "x = !y"), "x|!|y|");
    EXPECT_EQ(groupsOf(IRForm::UnaryOperation, "x = - y"), "x|-|y|");
    EXPECT_EQ(groupsOf(IRForm::UnaryOperation, "x =+\t\ty"), "x|+|y|");
    EXPECT_EQ(groupsOf(IRForm::UnaryOperation, "x = -5"), "x|-|5|");
    EXPECT_EQ(groupsOf(IRForm::UnaryOperation, "x = --y"), "x|-|-y|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = !"), "x|!|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = *y"), "x|*y|");
}

TEST(IRFormsTest, AssignmentsNeedAnEqualsSign) {
    for (const char* line : {"x call f, 1", "inttostring y", "x inttostring y", "x inttodouble y",
                             "x doubletostring y", "a + b", "x a + b", "!y", "x !y", "- y"}) {
        EXPECT_EQ(groupsOf(IRForm::None, line), "") << line;
    }
}

TEST(IRFormsTest, GroupsAreAsManyAsThoseOfThePattern) {
    for (std::size_t row = 0; row < irFormCount; ++row) {
        const auto form = static_cast<IRForm>(row);
        const std::regex pattern{irPatternOf(form), std::regex::ECMAScript};
        EXPECT_EQ(groupCountOf(form), pattern.mark_count()) << irPatternOf(form);
    }
}

TEST(IRFormsTest, ElementStores) {
    EXPECT_EQ(groupsOf(IRForm::ElementStore, "a[0] = 5"), "a[0]|5|");
    EXPECT_EQ(groupsOf(IRForm::ElementStore, "a [ i ]=x[1]"), "a [ i ]|x[1]|");
    EXPECT_EQ(groupsOf(IRForm::ElementStore, "a[0] = b[1] = c"), "a[0] = b[1]|c|");
    EXPECT_EQ(groupsOf(IRForm::ElementStore, "a[0] = 1 - 2"), "a[0]|1 - 2|");
    EXPECT_EQ(groupsOf(IRForm::None, "a[] = 5"), "");
    EXPECT_EQ(groupsOf(IRForm::None, "a[0] ="), "");
    EXPECT_EQ(groupsOf(IRForm::None, "a[0]"), "");
}

TEST(IRFormsTest, Copies) {
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = y"), "x|y|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x=  \"a-b\""), "x|\"a-b\"|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "goto = 5"), "goto|5|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x = = y"), "x|= y|");
    EXPECT_EQ(groupsOf(IRForm::Copy, "x == y"), "x|= y|");
    for (const char* line : {"", "x", "x =", "= y", "9 = y", "x y = z", "x-y = z", "\xe9 = y"}) {
        EXPECT_EQ(groupsOf(IRForm::None, line), "") << line;
    }
}

// One long string literal is a line that a source text can give; the others are the worst for a
// scan that goes back.
TEST(IRFormsTest, HugeLinesAreRecognised) {
    EXPECT_EQ(recognise("x = \"" + std::string(10U << 20U, 'a') + "\"").form, IRForm::Copy);
    constexpr std::size_t megabyte = 1U << 20U;
    const std::string letters(megabyte, 'a');
    const std::string blanks(megabyte, ' ');
    EXPECT_EQ(recognise("x = \"" + blanks + "\"").form, IRForm::Copy);
    EXPECT_EQ(recognise("x =" + blanks + "y").groups[1], "y");
    EXPECT_EQ(recognise(letters + "=" + letters).groups[1].size(), megabyte);
    EXPECT_EQ(recognise("arg \"" + letters + "\"").form, IRForm::Argument);
    EXPECT_EQ(recognise("if " + letters + " goto B1").groups[0].size(), megabyte);
    EXPECT_EQ(recognise(letters).form, IRForm::None);
}

TEST(IRFormsTest, LinesOfManyOperatorsAndBracketsAreRecognised) {
    std::string operators;
    std::string brackets;
    while (operators.size() < 1U << 20U) {
        operators += "a + ";
        brackets += "a] ";
    }
    EXPECT_EQ(recognise("x = " + operators + "b").groups[1].size(), operators.size() - 3);
    EXPECT_EQ(recognise("x = " + operators + "= ").form, IRForm::BinaryOperation);
    EXPECT_EQ(recognise("x[" + brackets + "= y").groups[1], "y");
    EXPECT_EQ(recognise("x[" + brackets).form, IRForm::None);
    // A line break that no group may hold makes every operator and bracket a candidate in vain.
    EXPECT_EQ(recognise("x = " + operators + "b\nc").form, IRForm::None);
    EXPECT_EQ(recognise("x = a\nb " + operators + "c").form, IRForm::None);
    EXPECT_EQ(recognise("x[" + brackets + "= y\nz").form, IRForm::None);
    EXPECT_EQ(recognise("x[\n" + brackets + "= y").form, IRForm::None);
}

}  // namespace krel
