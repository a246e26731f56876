// The vocabulary of the lines of the intermediate representation: every word and operator that
// means something by itself, and what it is. Lowering writes lines with it, and the code generator
// reads them with it. Comes in: a text. Goes out: its class.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "shared/ast/spelling.hpp"

namespace krel {

/// The words that only lines have.
namespace Keyword {
inline constexpr char Arg[] = "arg";
inline constexpr char Block[] = "B";  // with a number behind it
inline constexpr char Call[] = "call";
inline constexpr char False[] = "false";
inline constexpr char Goto[] = "goto";
inline constexpr char If[] = "if";
inline constexpr char Param[] = "param";
inline constexpr char Return[] = "return";
inline constexpr char True[] = "true";
}  // namespace Keyword

/// The functions that a call line gives a special meaning.
namespace Callee {
inline constexpr char Exit[] = "exit";
inline constexpr char Print[] = "print";
}  // namespace Callee

/// What a token of a line - a word, a literal, an element or an operator - can be: one bit each, so
/// that sets of classes can be tested at once.
namespace TokenClass {
// Words.
inline constexpr std::uint32_t value = 1U << 0;  // the name of one
inline constexpr std::uint32_t blockName = 1U << 1;
inline constexpr std::uint32_t boolean = 1U << 2;
inline constexpr std::uint32_t arg = 1U << 3;
inline constexpr std::uint32_t call = 1U << 4;
inline constexpr std::uint32_t jump = 1U << 5;
inline constexpr std::uint32_t branch = 1U << 6;
inline constexpr std::uint32_t param = 1U << 7;
inline constexpr std::uint32_t leave = 1U << 8;
inline constexpr std::uint32_t integerType = 1U << 9;  // of whatever is passed as an integer
inline constexpr std::uint32_t doubleType = 1U << 10;
inline constexpr std::uint32_t voidType = 1U << 11;    // stands in no line
inline constexpr std::uint32_t conversion = 1U << 12;  // between values in integer registers
inline constexpr std::uint32_t intToDouble = 1U << 13;
inline constexpr std::uint32_t doubleToString = 1U << 14;
// Operators.
inline constexpr std::uint32_t assign = 1U << 15;
inline constexpr std::uint32_t unary = 1U << 16;   // of one operand only
inline constexpr std::uint32_t sign = 1U << 17;    // of one or two
inline constexpr std::uint32_t binary = 1U << 18;  // of two only
// What is in no table.
inline constexpr std::uint32_t integer = 1U << 19;  // digits
inline constexpr std::uint32_t real = 1U << 20;     // digits '.' digits
inline constexpr std::uint32_t string = 1U << 21;
inline constexpr std::uint32_t element = 1U << 22;
inline constexpr std::uint32_t callee = 1U << 23;  // a word and ','

inline constexpr std::uint32_t anyUnary = unary | sign;
inline constexpr std::uint32_t anyBinary = binary | sign;
inline constexpr std::uint32_t anyOperand = value | boolean | integer | real | string | element;
}  // namespace TokenClass

struct VocabularyEntry {
    std::string_view text;
    std::uint32_t tokenClass;
};

/// The words that are never names of values.
inline constexpr std::array<VocabularyEntry, 21> reservedWords = {{
    {Keyword::Arg, TokenClass::arg},
    {Keyword::Call, TokenClass::call},
    {Keyword::False, TokenClass::boolean},
    {Keyword::Goto, TokenClass::jump},
    {Keyword::If, TokenClass::branch},
    {Keyword::Param, TokenClass::param},
    {Keyword::Return, TokenClass::leave},
    {Keyword::True, TokenClass::boolean},
    {Spelling::Boolean, TokenClass::integerType},
    {Spelling::Character, TokenClass::integerType},
    {Spelling::Double, TokenClass::doubleType},
    {Spelling::Int, TokenClass::integerType},
    {Spelling::String, TokenClass::integerType},
    {Spelling::Void, TokenClass::voidType},
    {Spelling::IntToDouble, TokenClass::intToDouble},
    {Spelling::IntToChar, TokenClass::conversion},
    {Spelling::CharToInt, TokenClass::conversion},
    {Spelling::IntToString, TokenClass::conversion},
    {Spelling::DoubleToString, TokenClass::doubleToString},
    {Spelling::BoolToString, TokenClass::conversion},
    {Spelling::CharToString, TokenClass::conversion},
}};

inline constexpr std::array<VocabularyEntry, 14> lineOperators = {{
    {"=", TokenClass::assign},
    {Spelling::Plus, TokenClass::sign},
    {Spelling::Minus, TokenClass::sign},
    {Spelling::Times, TokenClass::binary},
    {Spelling::Divide, TokenClass::binary},
    {Spelling::Equal, TokenClass::binary},
    {Spelling::NotEqual, TokenClass::binary},
    {Spelling::Less, TokenClass::binary},
    {Spelling::Greater, TokenClass::binary},
    {Spelling::LessEqual, TokenClass::binary},
    {Spelling::GreaterEqual, TokenClass::binary},
    {Spelling::And, TokenClass::binary},
    {Spelling::Or, TokenClass::binary},
    {Spelling::Not, TokenClass::unary},
}};

/// The class of a word in the table; 0 when it is a name.
constexpr std::uint32_t reservedWordClass(std::string_view word) {
    for (const VocabularyEntry& entry : reservedWords) {
        if (entry.text == word) {
            return entry.tokenClass;
        }
    }
    return 0;
}

/// The class of an operator in the table, which has one character or two; 0 for any other text. The
/// text must not be empty.
constexpr std::uint32_t operatorClass(std::string_view text) {
    for (const VocabularyEntry& entry : lineOperators) {
        if (entry.text.size() == text.size() && entry.text.front() == text.front() &&
            entry.text.back() == text.back()) {
            return entry.tokenClass;
        }
    }
    return 0;
}

}  // namespace krel
