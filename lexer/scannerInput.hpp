#pragma once

#include <cstdio>

/// The scanner's input: set to an open file before the parser is started; the file stays the
/// caller's. (The scanner itself is declared with the parser, which calls it.)
extern std::FILE* yyin;
