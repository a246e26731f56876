#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "frontend/frontEnd.hpp"

namespace krel {

namespace Format {

/// A line of the formatted program. It has code, a comment, or both.
struct Line {
    std::size_t indentation = 0;  // columns
    std::size_t depth = 0;        // how many blocks are around it
    bool blankBefore = false;     // an empty line stands before it
    std::size_t codeEnd = 0;      // in Lines::code; it begins where the line before ends
    std::size_t width = 0;        // columns up to the end of the code, the indentation included
    const FrontEnd::Token* comment = nullptr;
    bool continues = false;  // a comment alone, in the column of the one on the line before
};

/// A formatted program, but for the columns of its comments. It refers to the tokens.
struct Lines {
    std::string code;  // of all lines, without indentation and line feeds
    std::vector<Line> lines;
};

/// The column of a comment in the source, where tabs lead to steps of indentation.
std::size_t sourceColumnOf(const FrontEnd::Token& comment, std::string_view source);

/// Puts the tokens of a program that parses into lines.
Lines layOut(std::string_view source, const std::vector<FrontEnd::Token>& tokens);

}  // namespace Format

}  // namespace krel
