#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace krel {

/// What exec takes for a list of texts: a pointer to each, then null. Valid as long as the texts
/// are not changed.
std::vector<char*> pointersTo(std::vector<std::string>& texts);

/// A copy of the process's environment with changes, for another program. The process keeps its
/// own.
class Environment {
public:
    Environment();

    /// The value of a variable; without value when it is not set.
    std::optional<std::string> find(std::string_view name) const;

    /// Sets a variable, in place of any value that it has.
    void set(std::string_view name, std::string_view value);

    /// What exec takes: "NAME=value" for each variable, then null. Valid until the next change.
    std::vector<char*> pointers() { return pointersTo(entries); }

private:
    std::vector<std::string> entries;
};

/// A search path that means the same in every working directory as `path` does in `directory`: its
/// relative pieces, and the empty ones, are put behind that.
std::string absoluteSearchPath(std::string_view path, const std::filesystem::path& directory);

}  // namespace krel
