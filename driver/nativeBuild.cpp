// Finding the native tools, and running the native compiler. Comes in: paths. Goes out: the
// executable, and the exit status of the native compiler. The temporary file is made and deleted
// here; the environment is only read.

#include "driver/nativeBuild.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// Nothing but the permission is tested (kept): a directory that may be searched passes.
bool isExecutable(const fs::path& path) {
    return access(path.c_str(), X_OK) == 0;
}

/// The directory of the running compiler's own file, past any link that it was started by.
fs::path executableDirectory(const char* argv0) {
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        return self.parent_path();
    }
    const fs::path absolute = fs::absolute(argv0, error);
    return error ? fs::current_path() : absolute.parent_path();
}

/// The path in a spelling that the native compiler takes for a file, whatever it begins with: a
/// leading '-' would make it an option, a leading '@' a file of options.
std::string asOperand(const fs::path& path) {
    const std::string& text = path.native();
    return text.starts_with('-') || text.starts_with('@') ? "./" + text : text;
}

void reportSystemError(std::string_view what, std::string_view program) {
    std::string message{what};
    message.append(program).append(": ").append(std::strerror(errno)).append("\n");
    std::cerr << message;
}

}  // namespace

std::string CompilerDriver::findProgram(const std::string& name) {
    const char* variable = std::getenv("PATH");
    if (variable == nullptr) {
        return {};
    }
    std::string_view rest{variable};
    while (true) {
        const std::size_t colon = rest.find(':');
        const std::string_view piece = rest.substr(0, colon);
        const fs::path candidate = fs::path{piece.empty() ? "." : piece} / name;
        if (isExecutable(candidate)) {
            return candidate.string();
        }
        if (colon == std::string_view::npos) {
            return {};
        }
        rest.remove_prefix(colon + 1);
    }
}

fs::path CompilerDriver::findRuntime(const char* argv0) {
    constexpr const char* name = "codegen/runtime.o";
    const fs::path directory = executableDirectory(argv0);
    std::error_code error;
    const std::array<fs::path, 3> candidates = {directory / name, directory.parent_path() / name,
                                                fs::current_path(error) / name};
    for (const fs::path& candidate : candidates) {
        if (fs::is_regular_file(candidate, error)) {
            return candidate;
        }
    }
    return {};
}

CompilerDriver::TemporaryAssembly::TemporaryAssembly() {
    std::string name = (fs::temp_directory_path() / "krelcc-XXXXXX.s").string();
    const SignalsHeld held;
    const int descriptor = mkstemps(name.data(), 2);
    if (descriptor < 0) {
        throw std::runtime_error("could not create temporary assembly file: " +
                                 std::string{std::strerror(errno)});
    }
    close(descriptor);
    path_ = name;
    doomed.emplace(path_.c_str());
}

CompilerDriver::TemporaryAssembly::~TemporaryAssembly() {
    const SignalsHeld held;
    std::error_code ignored;
    fs::remove(path_, ignored);
    doomed.reset();
}

int CompilerDriver::runNativeCompiler(const std::string& compiler, const fs::path& assembly,
                                      const fs::path& runtime, const fs::path& output) {
    const std::array<std::string, 3> paths = {asOperand(assembly), asOperand(runtime),
                                              asOperand(output)};
    const std::array<const char*, 6> arguments = {
        compiler.c_str(), paths[0].c_str(), paths[1].c_str(), "-o", paths[2].c_str(), nullptr};
    std::optional<SignalsHeld> held{std::in_place};
    const pid_t child = vfork();
    if (child < 0) {
        reportSystemError("Could not start ", compiler);
        return 1;
    }
    if (child == 0) {
        held->releaseInChild();
        execv(compiler.c_str(), const_cast<char* const*>(arguments.data()));
        reportSystemError("Could not run ", compiler);
        _exit(127);
    }
    setChild(child);
    held.reset();
    int status = 0;
    int waited = 0;
    do {
        waited = waitpid(child, &status, 0);
    } while (waited < 0 && errno == EINTR);
    if (waited < 0) {
        reportSystemError("Could not wait for ", compiler);
        return 1;
    }
    return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}
