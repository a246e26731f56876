#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

/// The forms that a line of the intermediate representation can have, each with an example and its
/// groups: what the form takes out of a line, from left to right. A group is an operand or a text
/// that means something only to its form.
enum class IRForm : std::uint8_t {
    IntegerParameter,  // param int n             type, target
    DoubleParameter,   // param double d          target
    Argument,          // arg x                   value
    CallWithResult,    // _t0 = call f, 2         target, callee, count
    Call,              // call print, 1           callee, count
    Branch,            // if _t0 goto B4          condition, block
    Jump,              // goto B2                 block
    Return,            // return
    ReturnValue,       // return _t0              value
    Conversion,        // _t1 = inttostring x     target, conversion, value
    IntToDouble,       // _t1 = inttodouble x     target, value
    DoubleToString,    // _t1 = doubletostring d  target, value
    BinaryOperation,   // _t2 = a + b             target, left, operator, right
    UnaryOperation,    // _t3 = !a                target, operator, value
    ElementStore,      // a[i] = x                target, value
    Copy,              // x = 5                   target, value
    None               // any other line
};

/// How many forms there are, without `None`.
inline constexpr std::size_t irFormCount = static_cast<std::size_t>(IRForm::None);

inline constexpr std::size_t maxGroupCount = 4;

/// The form of a plain line, one of tokens with a blank between two: the classes that each token
/// may have. No class stands behind its end.
struct IRShape {
    IRForm form;
    std::array<std::uint32_t, 6> tokens;
};

/// The shape of every form, in the order of the forms.
inline constexpr std::array<IRShape, irFormCount> irShapes = [] {
    using namespace TokenClass;
    return std::array<IRShape, irFormCount>{{
        {IRForm::IntegerParameter, {param, integerType, value}},
        {IRForm::DoubleParameter, {param, doubleType, value}},
        {IRForm::Argument, {arg, anyOperand}},
        {IRForm::CallWithResult, {value, assign, call, callee, integer}},
        {IRForm::Call, {call, callee, integer}},
        {IRForm::Branch, {branch, anyOperand, jump, blockName}},
        {IRForm::Jump, {jump, blockName}},
        {IRForm::Return, {leave}},
        {IRForm::ReturnValue, {leave, anyOperand}},
        {IRForm::Conversion, {value, assign, conversion, anyOperand}},
        {IRForm::IntToDouble, {value, assign, intToDouble, anyOperand}},
        {IRForm::DoubleToString, {value, assign, doubleToString, anyOperand}},
        {IRForm::BinaryOperation, {value, assign, anyOperand, anyBinary, anyOperand}},
        {IRForm::UnaryOperation, {value, assign, anyUnary, anyOperand}},
        {IRForm::ElementStore, {element, assign, anyOperand}},
        {IRForm::Copy, {value, assign, anyOperand}},
    }};
}();

/// Whether a token is a group of its form: a mark only tells the form from others.
constexpr bool isGroup(std::uint32_t classes) {
    using namespace TokenClass;
    constexpr std::uint32_t marks = arg | call | jump | branch | param | leave | doubleType |
                                    intToDouble | doubleToString | assign;
    return classes != 0 && (classes & marks) == 0;
}

/// Whether a group is an operand. Where only an integer can stand, it is a number of arguments.
constexpr bool isOperand(std::uint32_t classes) {
    return (classes & TokenClass::anyOperand) != 0 && classes != TokenClass::integer;
}

/// Whether a table has a row for every form, in their order: then the number of a form is that of
/// its row.
template <typename Table>
constexpr bool hasRowForEachForm(const Table& table) {
    std::size_t row = 0;
    while (row < table.size() && table[row].form == static_cast<IRForm>(row)) {
        ++row;
    }
    return row == irFormCount && table.size() == irFormCount;
}

static_assert(hasRowForEachForm(irShapes));

constexpr const IRShape& shapeOf(IRForm form) {
    return irShapes[static_cast<std::size_t>(form)];
}

constexpr std::size_t groupCountOf(IRForm form) {
    const auto& tokens = shapeOf(form).tokens;
    return static_cast<std::size_t>(std::count_if(tokens.begin(), tokens.end(), isGroup));
}

/// A recognised line: its form, and the form's groups in order, empty where it has no more. They
/// point into the line and are not trimmed.
struct IRLine {
    IRForm form = IRForm::None;
    std::array<std::string_view, maxGroupCount> groups;
};

/// The ECMAScript pattern that defines a form, for a match of the whole line. The order of the
/// forms is part of the language: they are tried in it, and the first that matches decides.
const char* irPatternOf(IRForm form);

/// Finds the form of a trimmed line: gives exactly what the patterns would, in time linear in the
/// line. `None` when no pattern matches.
IRLine recognise(std::string_view line);

}  // namespace krel
