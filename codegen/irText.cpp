#include "codegen/irText.hpp"

#include <algorithm>

#include "shared/ast/textRuns.hpp"

namespace krel {

namespace {

bool areDigits(std::string_view text) {
    return endOfRun(text, 0, CharacterClass::digit) == text.size();
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

bool isQuoted(std::string_view text, char quote) {
    return text.size() >= 2 && text.front() == quote && text.back() == quote;
}

bool isIdentifier(std::string_view text) {
    return !text.empty() && beginsName(text.front()) &&
           endOfRun(text, 1, CharacterClass::inName) == text.size();
}

bool isBlockName(std::string_view text) {
    return text.size() >= 2 && text.starts_with(Keyword::Block) && areDigits(text.substr(1));
}

bool parseArrayAccess(std::string_view text, std::string_view& name, std::string_view& index,
                      LineBreaks lineBreaks) {
    if (text.empty() || text.back() != ']' || !beginsName(text.front())) {
        return false;
    }
    const std::size_t nameEnd = endOfRun(text, 1, CharacterClass::inName);
    const std::size_t open = endOfRun(text, nameEnd, CharacterClass::space);
    if (text[open] != '[') {
        return false;
    }
    // The index spans all but the blanks around it, which may hold line breaks; it may not. If
    // there are only blanks, the last one that is no line break has to be it.
    const std::string_view inside = text.substr(open + 1, text.size() - open - 2);
    std::size_t begin = endOfRun(inside, 0, CharacterClass::space);
    if (begin == inside.size()) {
        begin = inside.find_last_not_of("\n\r");
    }
    if (begin == std::string_view::npos) {
        return false;
    }
    std::size_t end = inside.size();
    if (lineBreaks == LineBreaks::Possible) {
        end = std::min(end, inside.find_first_of("\n\r", begin));
    }
    if (endOfRun(inside, end, CharacterClass::space) != inside.size()) {
        return false;
    }
    name = text.substr(0, nameEnd);
    index = trim(inside.substr(begin, end - begin));
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
