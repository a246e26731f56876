#pragma once

#include <filesystem>

namespace krel {

/// Where temporary files belong: what TMPDIR names, else /tmp.
std::filesystem::path temporaryPlace();

/// A new directory for temporary files, which nobody else can read or write. It is removed together
/// with the object, with all that is in it.
class PrivateDirectory {
public:
    /// Throws std::runtime_error when it cannot be made.
    PrivateDirectory();
    PrivateDirectory(const PrivateDirectory&) = delete;
    PrivateDirectory& operator=(const PrivateDirectory&) = delete;
    ~PrivateDirectory();

    /// An absolute path.
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace krel
