#include "scan.hpp"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "lexer/scanner.hpp"
#include "parser/parser.hpp"
#include "shared/ast/name.hpp"
#include "tests/unit/support/childProcess.hpp"

namespace krel {

namespace {

/// The value of the token just scanned, behind a blank; empty when its kind carries none.
std::string valueOf(int token, const KREL_STYPE& scanned) {
    std::ostringstream value;
    value.precision(17);
    switch (token) {
        case T_INT_LITERAL:
            value << ' ' << scanned.integer;
            break;
        case T_DECIMAL_LITERAL:
            value << ' ' << scanned.real;
            break;
        case T_ID:
            value << ' ' << Name::fromIndex(scanned.name).text();
            break;
        case T_STRING_LITERAL:
        case T_CHARACTER_LITERAL:
            value << ' ' << scanned.text;
            std::free(scanned.text);
            break;
        default:
            break;
    }
    return value.str();
}

bool isOneLineWithoutColumns(const TokenLocation& location) {
    return location.first_line == location.last_line && location.first_column == 0 &&
           location.last_column == 0;
}

int writeTokens(const std::string& text) {
    Scanner scanner{text};
    KREL_STYPE value;
    TokenLocation location;
    while (const int token = krel_lex(&value, &location, scanner.handle())) {
        const auto index = static_cast<std::size_t>(token - firstTokenCode);
        std::cerr << location.first_line << ' ' << tokenNames.at(index) << valueOf(token, value)
                  << '\n';
        if (!isOneLineWithoutColumns(location)) {
            std::cerr << "wrong location\n";
        }
    }
    return 0;
}

}  // namespace

std::string scan(const std::string& text) {
    const ChildResult child = runInChild([&] { return writeTokens(text); });
    return child.hasExitedWith(0) ? child.err + child.out : child.err + "<the scanner failed>\n";
}

std::string tokensOf(const std::string& text) {
    std::istringstream lines{scan(text)};
    std::string tokens;
    for (std::string line; std::getline(lines, line);) {
        const bool isToken = std::isdigit(static_cast<unsigned char>(line[0])) != 0;
        tokens += tokens.empty() ? "" : " ";
        tokens += isToken ? line.substr(line.find(' ') + 1) : line;
    }
    return tokens;
}

}  // namespace krel
