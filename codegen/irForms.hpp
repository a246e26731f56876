#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

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

/// What a group is; absent ones follow the last one of a form.
enum class IRGroup : std::uint8_t { Absent, Operand, Text };

struct IRFormGroups {
    IRForm form;
    std::array<IRGroup, maxGroupCount> groups;
};

/// The groups of every form, in the order of the forms.
inline constexpr std::array<IRFormGroups, irFormCount> irFormGroups = [] {
    using enum IRGroup;
    return std::array<IRFormGroups, irFormCount>{{
        {IRForm::IntegerParameter, {Text, Operand}},
        {IRForm::DoubleParameter, {Operand}},
        {IRForm::Argument, {Operand}},
        {IRForm::CallWithResult, {Operand, Text, Text}},
        {IRForm::Call, {Text, Text}},
        {IRForm::Branch, {Operand, Text}},
        {IRForm::Jump, {Text}},
        {IRForm::Return, {}},
        {IRForm::ReturnValue, {Operand}},
        {IRForm::Conversion, {Operand, Text, Operand}},
        {IRForm::IntToDouble, {Operand, Operand}},
        {IRForm::DoubleToString, {Operand, Operand}},
        {IRForm::BinaryOperation, {Operand, Operand, Text, Operand}},
        {IRForm::UnaryOperation, {Operand, Text, Operand}},
        {IRForm::ElementStore, {Operand, Operand}},
        {IRForm::Copy, {Operand, Operand}},
    }};
}();

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

static_assert(hasRowForEachForm(irFormGroups));

constexpr std::size_t groupCountOf(IRForm form) {
    const auto& groups = irFormGroups[static_cast<std::size_t>(form)].groups;
    std::size_t count = 0;
    while (count < groups.size() && groups[count] != IRGroup::Absent) {
        ++count;
    }
    return count;
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
