#pragma once

#include <cstdio>
#include <string>

/// Opens a text as the scanner's input. The text must outlive the file.
inline std::FILE* openSource(const std::string& text) {
    return fmemopen(const_cast<char*>(text.data()), text.size(), "r");
}
