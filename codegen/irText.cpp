#include "codegen/irText.hpp"

#include <algorithm>

#include "shared/ast/textRuns.hpp"

namespace krel {

namespace {

bool isLineBreak(char character) {
    return character == '\n' || character == '\r';
}

bool areDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char character) { return isDigit(character); });
}

std::string_view withoutSign(std::string_view text) {
    const bool isSigned = !text.empty() && (text.front() == '+' || text.front() == '-');
    return text.substr(isSigned ? 1 : 0);
}

}  // namespace

bool isIntegerLiteral(std::string_view text) {
    const std::string_view digits = withoutSign(text);
    return !digits.empty() && areDigits(digits);
}

bool isDoubleLiteral(std::string_view text) {
    const std::string_view digits = withoutSign(text);
    const std::size_t point = digits.find('.');
    if (point == std::string_view::npos || digits.size() < 2) {
        return false;
    }
    return areDigits(digits.substr(0, point)) && areDigits(digits.substr(point + 1));
}

bool isStringLiteral(std::string_view text) {
    return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

bool isCharacterLiteral(std::string_view text) {
    return text.size() > 1 && text.front() == '\'' && text.back() == '\'';
}

bool isIdentifier(std::string_view text) {
    return !text.empty() && beginsName(text.front()) &&
           std::all_of(text.begin(), text.end(),
                       [](char character) { return isNameCharacter(character); });
}

bool isBlockName(std::string_view text) {
    return text.size() >= 2 && text.front() == 'B' && areDigits(text.substr(1));
}

bool parseArrayAccess(std::string_view text, std::string_view& name, std::string_view& index,
                      LineBreaks lineBreaks) {
    if (text.empty() || text.back() != ']' || !beginsName(text.front())) {
        return false;
    }
    std::size_t nameEnd = 1;
    while (isNameCharacter(text[nameEnd])) {  // ends at the bracket at the latest
        ++nameEnd;
    }
    std::size_t open = nameEnd;
    while (isSpace(text[open])) {
        ++open;
    }
    if (text[open] != '[') {
        return false;
    }
    // The index spans all but the blanks around it, which may hold line breaks; it may not.
    const std::string_view inside = text.substr(open + 1, text.size() - open - 2);
    std::size_t begin = 0;
    while (begin < inside.size() && isSpace(inside[begin])) {
        ++begin;
    }
    const bool isBlank = begin == inside.size();
    while (isBlank && begin > 0 && isLineBreak(inside[begin - 1])) {
        --begin;
    }
    if (isBlank) {
        if (begin == 0) {
            return false;
        }
        --begin;  // one blank has to be the index
    }
    const std::string_view candidate = inside.substr(begin);
    const auto lineBreak = lineBreaks == LineBreaks::Possible
                               ? std::find_if(candidate.begin(), candidate.end(), isLineBreak)
                               : candidate.end();
    if (!std::all_of(lineBreak, candidate.end(), isSpace)) {
        return false;
    }
    name = text.substr(0, nameEnd);
    index = trim(std::string_view{candidate.begin(), lineBreak});
    return true;
}

std::size_t stringLiteralEnd(std::string_view text, std::size_t begin) {
    std::size_t at = begin + 1;
    while (at < text.size()) {
        at += plainRun(text, at, isQuoteOrBackslash).size();
        if (at < text.size() && text[at] == '"') {
            return at + 1;
        }
        at += 2;
    }
    return std::string_view::npos;
}

}  // namespace krel
