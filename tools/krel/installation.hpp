#pragma once

#include <filesystem>

#include "tools/krel/environment.hpp"

/// What krel is installed with: the compiler krelcc, and the native compiler that it finds on its
/// search path.
namespace krel {

/// Who assembles and links for krelcc.
enum class NativeCompiler {
    own,    // the one in the folder native/ beside krel
    system  // gcc or clang, whatever the search path has
};

/// The path of the krelcc beside the running krel, which need not exist. Throws std::runtime_error
/// when krel cannot tell where it is itself.
std::filesystem::path krelccPath();

/// The environment for the krelcc of that path: with our own native compiler, its folder is the
/// first on the search path. Throws std::runtime_error when it is not there.
Environment krelccEnvironment(const std::filesystem::path& krelcc, NativeCompiler native);

/// The spelling of a source's name that krelcc takes for a file, whatever it begins with.
std::string asSource(const std::string& name);

}  // namespace krel
