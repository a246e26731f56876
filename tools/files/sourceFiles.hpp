#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The files that tools read and rewrite.
namespace krel {

/// The programs, *.krl, in a directory and in those below it, in the order of their paths. Links
/// and what begins with a dot are left out. Throws std::runtime_error when a directory cannot be
/// searched.
std::vector<std::string> programsIn(const std::string& directory);

/// The text of a file. Throws std::runtime_error with the path and the system's reason when it
/// cannot be read or is no regular file; of any other kind none is opened to wait for somebody.
std::string readSource(const std::string& path);

/// Puts a text in the place of a file that exists: whoever reads the path finds either the old text
/// or the new one, also when the process ends midway. The mode is kept, the owner where this
/// process may give files away. A link is followed; other names of the same file keep the old text.
/// Throws std::runtime_error with the path and the system's reason, and leaves the file alone then.
/// Signals that end the process wait meanwhile: no temporary file is left behind.
void replaceSource(const std::string& path, std::string_view text);

}  // namespace krel
