#include "scan.hpp"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "lexer/scannerInput.hpp"
#include "parser/parser.hpp"
#include "shared/ast/name.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/sourceText.hpp"

namespace {

/// The value of the token just scanned, behind a blank; empty when its kind carries none.
std::string valueOf(int token) {
    std::ostringstream value;
    value.precision(17);
    switch (token) {
        case T_INT_LITERAL:
            value << ' ' << yylval.integer;
            break;
        case T_DECIMAL_LITERAL:
            value << ' ' << yylval.real;
            break;
        case T_ID:
            value << ' ' << Name::fromIndex(yylval.name).text();
            break;
        case T_STRING_LITERAL:
        case T_CHARACTER_LITERAL:
            value << ' ' << yylval.text;
            std::free(yylval.text);
            break;
        default:
            break;
    }
    return value.str();
}

bool isOneLineWithoutColumns(const YYLTYPE& location) {
    return location.first_line == location.last_line && location.first_column == 0 &&
           location.last_column == 0;
}

int writeTokens(const std::string& text) {
    yyin = openSource(text);
    for (int token = yylex(); token != 0; token = yylex()) {
        const auto index = static_cast<std::size_t>(token - firstTokenCode);
        std::cerr << yylloc.first_line << ' ' << tokenNames.at(index) << valueOf(token) << '\n';
        if (!isOneLineWithoutColumns(yylloc)) {
            std::cerr << "wrong location\n";
        }
    }
    return std::fclose(yyin);
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
