// Environments of programs to start. Comes in: the process's own, and changes. Goes out: what exec
// takes. Nothing is changed for the process itself.

#include "tools/krel/environment.hpp"

#include <unistd.h>

namespace krel {

namespace {

bool isEntryOf(std::string_view entry, std::string_view name) {
    return entry.starts_with(name) && entry.substr(name.size()).starts_with('=');
}

}  // namespace

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

Environment::Environment() {
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        entries.emplace_back(*entry);
    }
}

/// Of several entries for a name, getenv takes the first.
std::optional<std::string> Environment::find(std::string_view name) const {
    for (const std::string& entry : entries) {
        if (isEntryOf(entry, name)) {
            return entry.substr(name.size() + 1);
        }
    }
    return std::nullopt;
}

void Environment::set(std::string_view name, std::string_view value) {
    std::erase_if(entries, [name](const std::string& entry) { return isEntryOf(entry, name); });
    entries.push_back(std::string{name}.append("=").append(value));
}

std::string absoluteSearchPath(std::string_view path, const std::filesystem::path& directory) {
    std::string absolute;
    while (true) {
        const std::size_t colon = path.find(':');
        absolute += (directory / path.substr(0, colon)).native();
        if (colon == std::string_view::npos) {
            return absolute;
        }
        absolute += ':';
        path.remove_prefix(colon + 1);
    }
}

}  // namespace krel
