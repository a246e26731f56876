#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "shared/krelir-cfg/vocabulary.hpp"

namespace krel {

/// Tests and small parsers of operand texts, as the lines of the intermediate representation spell
/// them. None of them fails or copies: what they return points into their argument.

/// What a character can be in a line: bits that say so for each.
namespace CharacterClass {
inline constexpr std::uint8_t space = 1;
inline constexpr std::uint8_t trimmed = 2;
inline constexpr std::uint8_t digit = 4;
inline constexpr std::uint8_t letter = 8;      // or '_'
inline constexpr std::uint8_t operation = 16;  // that operators are made of
inline constexpr std::uint8_t inName = letter | digit;

constexpr std::array<std::uint8_t, 256> table() {
    std::array<std::uint8_t, 256> classes{};
    const auto put = [&classes](std::string_view characters, std::uint8_t characterClass) {
        for (const char character : characters) {
            classes[static_cast<unsigned char>(character)] = characterClass;
        }
    };
    put("\v\f", space);
    put(" \t\r\n", space | trimmed);
    put("0123456789", digit);
    put("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", letter);
    for (const VocabularyEntry& entry : lineOperators) {
        put(entry.text, operation);
    }
    return classes;
}

inline constexpr std::array<std::uint8_t, 256> classes = table();
}  // namespace CharacterClass

inline bool hasClass(char character, unsigned characterClasses) {
    return (CharacterClass::classes[static_cast<unsigned char>(character)] & characterClasses) != 0;
}

/// The white space of line forms: blank, tab, line feed, vertical tab, form feed, carriage return.
inline bool isSpace(char character) {
    return hasClass(character, CharacterClass::space);
}
inline bool isDigit(char character) {
    return hasClass(character, CharacterClass::digit);
}
/// Whether a name can begin with the character: a letter or '_'.
inline bool beginsName(char character) {
    return hasClass(character, CharacterClass::letter);
}
/// Whether the character can stand in a name: a letter, a digit or '_'.
inline bool isNameCharacter(char character) {
    return hasClass(character, CharacterClass::inName);
}

/// Where the run of characters of some classes that begins at `from` ends.
inline std::size_t endOfRun(std::string_view text, std::size_t from, unsigned characterClasses) {
    while (from < text.size() && hasClass(text[from], characterClasses)) {
        ++from;
    }
    return from;
}

/// Whether the character ends a run of those in a string that stand for themselves.
inline bool isQuoteOrBackslash(char character) {
    return character == '"' || character == '\\';
}

/// The text without blanks, tabs, carriage returns and line feeds at its ends.
inline std::string_view trim(std::string_view text) {
    while (!text.empty() && hasClass(text.front(), CharacterClass::trimmed)) {
        text.remove_prefix(1);
    }
    while (!text.empty() && hasClass(text.back(), CharacterClass::trimmed)) {
        text.remove_suffix(1);
    }
    return text;
}

/// An optional sign and one or more digits.
bool isIntegerLiteral(std::string_view text);
/// An optional sign, then digits and exactly one '.', with at least one digit.
bool isDoubleLiteral(std::string_view text);
/// At least two characters, with a quote of one sort at both ends. Whether there is anything in
/// between is up to the caller.
bool isQuoted(std::string_view text, char quote);
bool isIdentifier(std::string_view text);
/// "B" and one or more digits: a reference to a block.
bool isBlockName(std::string_view text);

/// Whether a text can hold line breaks. The index of an element cannot: it need not be searched for
/// them, and so the elements in it are found without reading on to its end.
enum class LineBreaks : bool { Impossible, Possible };

/// An element, as `^([A-Za-z_]\w*)\s*\[\s*(.+)\s*\]$` matches it: sets the array's name and the
/// trimmed index. False, and both unchanged, for any other text.
bool parseArrayAccess(std::string_view text, std::string_view& name, std::string_view& index,
                      LineBreaks lineBreaks = LineBreaks::Possible);

/// The end of the string literal that begins at `begin`: one past its closing quote, where a
/// backslash takes the character behind it along. npos when the text ends first.
std::size_t stringLiteralEnd(std::string_view text, std::size_t begin);

}  // namespace krel
