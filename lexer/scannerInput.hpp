#pragma once

#include <cstdio>
#include <string>

/// The scanner's input: set to an open file before the parser is started; the file stays the
/// caller's. (The scanner itself is declared with the parser, which calls it.)
extern std::FILE* yyin;

struct yy_buffer_state;

/// A text that the scanner reads instead of yyin, as long as this object lives. To be made before
/// the parser is started.
class ScannedText {
public:
    explicit ScannedText(std::string itsText);
    ScannedText(const ScannedText&) = delete;
    ScannedText& operator=(const ScannedText&) = delete;
    ~ScannedText();

private:
    std::string text;         // with what the scanner needs behind it
    yy_buffer_state* buffer;  // the scanner's record of it
};
