#pragma once

#include <string>
#include <string_view>

#include "native/objectFile.hpp"

namespace krel::Native {

/// The content of a file, in memory as long as this object lives. Nobody may shorten the file then.
class FileContent {
public:
    /// Throws NotKnown when there is no such file, it is empty, or no ordinary file.
    explicit FileContent(const char* path);
    FileContent(const FileContent&) = delete;
    FileContent& operator=(const FileContent&) = delete;
    ~FileContent();

    std::string_view text() const { return content; }

private:
    std::string_view content;
};

/// Writes an executable. At no time is there half a file under the path: it appears there whole, or
/// not at all. A file or a link that is there is replaced by a new file, as the system's linkers do
/// it; into an empty file or a device is written. Throws NotKnown on failure; what was there may
/// then be lost if it was no ordinary file.
void writeExecutable(const std::string& path, const Bytes& bytes);

}  // namespace krel::Native
