#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

/// The text of some lines, with a line feed behind each.
inline std::string joinLines(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (const std::string_view line : lines) {
        text.append(line).append("\n");
    }
    return text;
}
