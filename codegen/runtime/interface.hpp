// The functions that compiled programs call. All texts are NUL-terminated.
//
// A text that comes from a literal of the program carries the escapes of the intermediate
// representation (see literal.hpp); a text that one of these functions returned carries none and
// belongs to the runtime. The caller never releases a text and never writes to it. None of the
// functions fails: when memory is exhausted, they end the program.
//
// The address of any byte of a text, or of its NUL, stands for the rest of the text, also of one
// that belongs to the runtime. An address in the runtime's memory may lie in no text, for example
// in the unused rest behind one. It then stands for the empty text, or for up to 64 KB of whatever
// lies there.
#pragma once

#include <cstdint>

extern "C" {

/// Writes the text, and nothing else, to standard output.
void krel_print(const char* text);

/// Returns a new text: what `left` stands for followed by what `right` stands for.
const char* krel_concat(const char* left, const char* right);

/// Returns the integer in decimal.
const char* krel_inttostring(std::int64_t value);

/// Returns the character with the code in the low eight bits; the empty text for code 0.
const char* krel_chartostring(std::uint64_t value);

/// Returns "false" for 0 and "true" for everything else.
const char* krel_booltostring(std::uint64_t value);

/// Returns the shortest decimal text that reads back as the value (see doubleText.hpp).
const char* krel_doubletostring(double value);
}
