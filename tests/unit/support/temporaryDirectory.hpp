#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

/// A new directory that is deleted with all its contents together with the object.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string name = (std::filesystem::temp_directory_path() / "krel-unit-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::filesystem::filesystem_error(
                "mkdtemp", std::error_code(errno, std::generic_category()));
        }
        path = name;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    /// Writes a file below the directory, making its parents.
    std::filesystem::path write(const std::filesystem::path& name, std::string_view text) const {
        const std::filesystem::path file = path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream{file} << text;
        return file;
    }

    /// The same, as a shell script that may be executed.
    std::filesystem::path writeScript(const std::filesystem::path& name,
                                      std::string_view commands) const {
        const std::filesystem::path file = write(name, "#!/bin/sh\n" + std::string{commands});
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    }

    std::filesystem::path path;
};
