#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace CompilerDriver {

/// Reads a file from where it stands to its end into `text`. False, with errno set, when a read
/// fails, be it the first or a later one, or when there are two gigabytes or more.
bool readToEnd(std::FILE* file, std::string& text);

/// Reads the whole file of that path into `text`. False, with errno set, when it cannot be opened
/// or read.
bool readSource(const std::filesystem::path& path, std::string& text);

}  // namespace CompilerDriver
