#pragma once

#include <string>
#include <vector>

namespace krel::Native {

/// Becomes the next native compiler: the first `gcc` behind this program on the search path (PATH),
/// else the first `clang`, with the same arguments. So the user sees that one's answer. Where this
/// program is not on the path, all of it counts. Several programs like this one may be on the path:
/// each is asked once, and so is a script that calls one of them. Only returns when no compiler
/// could be started: the last one that was tried, and errno says why; or nothing when there is
/// none.
std::string becomeNextCompiler(char** arguments);

/// The compilers that may be next, in the order in which they are tried. `path` is the search path,
/// `own` the file of the running program. Files that `passedBy` lists as device and inode numbers,
/// each followed by a blank, are left out, as is `own`.
std::vector<std::string> nextCompilers(const std::string& path, const std::string& own,
                                       const std::string& passedBy);

/// How a file is listed there: its device and inode numbers, and a blank. Empty when there is no
/// such file.
std::string identityOf(const std::string& file);

}  // namespace krel::Native
