#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The forms that a line of the intermediate representation can have.
enum class IRForm : std::uint8_t {
    IntegerParameter,
    DoubleParameter,
    Argument,
    CallWithResult,
    Call,
    Branch,
    Jump,
    Return,
    ReturnValue,
    Conversion,
    IntToDouble,
    DoubleToString,
    BinaryOperation,
    UnaryOperation,
    ElementStore,
    Copy,
    None
};

/// A recognised line: its form, and the groups of the form's pattern in order, empty where the
/// pattern has no more. The groups point into the line and are not trimmed.
struct IRLine {
    IRForm form = IRForm::None;
    std::array<std::string_view, 4> groups;
};

/// A form and the ECMAScript pattern that defines it, for a match of the whole line.
struct IRFormPattern {
    IRForm form;
    const char* pattern;
};

/// All forms in the order in which they are tried. The order is part of the language: the first
/// form that matches decides.
const std::array<IRFormPattern, 16>& irFormPatterns();

/// Finds the form of a trimmed line: gives exactly what the patterns would, tried in their order,
/// in time linear in the line. `None` when no pattern matches.
IRLine recognise(std::string_view line);
