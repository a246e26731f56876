#pragma once

#include <string>
#include <string_view>

/// The parts in one string, which is allocated once.
template <typename... Parts>
std::string concat(const Parts&... parts) {
    const std::string_view views[] = {parts...};
    std::size_t size = 0;
    for (const std::string_view view : views) {
        size += view.size();
    }
    std::string text;
    text.reserve(size);
    for (const std::string_view view : views) {
        text += view;
    }
    return text;
}
