#pragma once

#include <cstddef>
#include <string_view>

/// Tests and small parsers of operand texts, as the lines of the intermediate representation spell
/// them. None of them fails or copies: what they return points into their argument.

/// The white space of line forms: blank, tab, line feed, vertical tab, form feed, carriage return.
bool isSpace(char character);
bool isDigit(char character);
/// Whether a name can begin with the character: a letter or '_'.
bool beginsName(char character);
/// Whether the character can stand in a name: a letter, a digit or '_'.
bool isNameCharacter(char character);

/// The text without blanks, tabs, carriage returns and line feeds at its ends.
std::string_view trim(std::string_view text);

/// An optional sign and one or more digits.
bool isIntegerLiteral(std::string_view text);
/// An optional sign, then digits and exactly one '.', with at least one digit.
bool isDoubleLiteral(std::string_view text);
/// At least two characters, with a double quote at both ends.
bool isStringLiteral(std::string_view text);
/// An apostrophe at both ends of more than one character. Whether there is anything in between is
/// up to the caller.
bool isCharacterLiteral(std::string_view text);
bool isIdentifier(std::string_view text);
/// "B" and one or more digits: a reference to a block.
bool isBlockName(std::string_view text);
/// The words that are never names of values.
bool isKeyword(std::string_view text);

/// An element, as `^([A-Za-z_]\w*)\s*\[\s*(.+)\s*\]$` matches it: sets the array's name and the
/// trimmed index. False, and both unchanged, for any other text.
bool parseArrayAccess(std::string_view text, std::string_view& name, std::string_view& index);

/// The end of the string literal that begins at `begin`: one past its closing quote, where a
/// backslash takes the character behind it along. npos when the text ends first.
std::size_t stringLiteralEnd(std::string_view text, std::size_t begin);
