#pragma once

#include <array>
#include <string>

namespace krel {

/// The names of the tokens in the order of their codes, which begin at 258.
inline constexpr int firstTokenCode = 258;
inline constexpr std::array<const char*, 51> tokenNames = {"T_INT_LITERAL",
                                                           "T_ID",
                                                           "T_STRING_LITERAL",
                                                           "T_CHARACTER_LITERAL",
                                                           "T_DECIMAL_LITERAL",
                                                           "T_PLUS",
                                                           "T_MINUS",
                                                           "T_TIMES",
                                                           "T_DIVIDE",
                                                           "T_LPAREN",
                                                           "T_RPAREN",
                                                           "T_LBRACE",
                                                           "T_RBRACE",
                                                           "T_LBRACKET",
                                                           "T_RBRACKET",
                                                           "T_SEMICOLON",
                                                           "T_COMMA",
                                                           "T_ASSIGN",
                                                           "T_PLUS_ASSIGN",
                                                           "T_MINUS_ASSIGN",
                                                           "T_INCREMENT",
                                                           "T_DECREMENT",
                                                           "T_LESS",
                                                           "T_GREATER",
                                                           "T_LESS_EQUAL",
                                                           "T_GREATER_EQUAL",
                                                           "T_EQUAL",
                                                           "T_NOT_EQUAL",
                                                           "T_NOT",
                                                           "T_AND",
                                                           "T_OR",
                                                           "T_INT",
                                                           "T_DOUBLE",
                                                           "T_BOOLEAN",
                                                           "T_CHARACTER",
                                                           "T_VOID",
                                                           "T_STRING",
                                                           "T_IF",
                                                           "T_ELSE",
                                                           "T_ELSEIF",
                                                           "T_EXIT",
                                                           "T_PRINT",
                                                           "T_TRUE",
                                                           "T_FALSE",
                                                           "T_FOR",
                                                           "T_WHILE",
                                                           "T_CONTINUE",
                                                           "T_BREAK",
                                                           "T_RETURN",
                                                           "UMINUS",
                                                           "UPLUS"};

/// Scans a text in a process of its own. Gives a line for each token, "<line> <name>" and a blank
/// and the value where it has one, and in between the diagnostics as they were written.
std::string scan(const std::string& text);

/// The same without line numbers and with blanks instead of line feeds.
std::string tokensOf(const std::string& text);

}  // namespace krel
