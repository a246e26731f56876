// Where the programs are that krel starts. Comes in: the place of the running krel. Goes out:
// paths, and an environment.

#include "tools/krel/installation.hpp"

#include <sys/auxv.h>
#include <unistd.h>

#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace krel {

namespace {

/// The running krel's own file, past any link that it was started by. Where /proc is not mounted,
/// the system still tells by which path it has started the program.
fs::path ownFile() {
    std::error_code error;
    fs::path self = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        return self;
    }
    const auto* const startedAs = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
    return fs::canonical(startedAs == nullptr ? "" : startedAs);
}

/// No empty piece is added: that would be the working directory.
std::string searchPathFrom(const fs::path& folder, const Environment& environment) {
    const std::string inherited = environment.find("PATH").value_or("");
    return inherited.empty() ? folder.native() : folder.native() + ":" + inherited;
}

}  // namespace

fs::path krelccPath() {
    return ownFile().replace_filename("krelcc");
}

Environment krelccEnvironment(const fs::path& krelcc, NativeCompiler native) {
    Environment environment;
    if (native == NativeCompiler::system) {
        return environment;
    }
    const fs::path folder = krelcc.parent_path() / "native";
    constexpr const char* otherwise = "; with --native=system, gcc or clang of the system is used";
    if (access((folder / "gcc").c_str(), X_OK) != 0) {
        throw std::runtime_error("there is no native compiler in " + folder.native() + otherwise);
    }
    if (folder.native().find(':') != std::string::npos) {
        throw std::runtime_error("a search path cannot name " + folder.native() +
                                 ", which has a colon" + otherwise);
    }
    environment.set("PATH", searchPathFrom(folder, environment));
    return environment;
}

std::string asSource(const std::string& name) {
    return name.starts_with('-') ? "./" + name : name;
}

}  // namespace krel
