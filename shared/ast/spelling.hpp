#pragma once

namespace krel {

/// How types, operators and conversions are spelled, in the tree as in the lines of the
/// intermediate representation. They are constants, so that tables of them can be checked at
/// compile time.
namespace Spelling {

inline constexpr char Int[] = "int";
inline constexpr char Double[] = "double";
inline constexpr char Boolean[] = "boolean";
inline constexpr char Character[] = "character";
inline constexpr char String[] = "string";
inline constexpr char Void[] = "void";

inline constexpr char IntToDouble[] = "inttodouble";
inline constexpr char IntToChar[] = "inttochar";
inline constexpr char CharToInt[] = "chartoint";
inline constexpr char IntToString[] = "inttostring";
inline constexpr char DoubleToString[] = "doubletostring";
inline constexpr char BoolToString[] = "booltostring";
inline constexpr char CharToString[] = "chartostring";

inline constexpr char Or[] = "||";
inline constexpr char And[] = "&&";
inline constexpr char Equal[] = "==";
inline constexpr char NotEqual[] = "!=";
inline constexpr char Less[] = "<";
inline constexpr char Greater[] = ">";
inline constexpr char LessEqual[] = "<=";
inline constexpr char GreaterEqual[] = ">=";
inline constexpr char Plus[] = "+";
inline constexpr char Minus[] = "-";
inline constexpr char Times[] = "*";
inline constexpr char Divide[] = "/";
inline constexpr char Not[] = "!";

}  // namespace Spelling

}  // namespace krel
