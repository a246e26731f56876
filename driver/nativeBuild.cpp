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

// Nothing but the permission is tested (kept): a directory that may be searched passes.
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
    const int descriptor = mkstemps(name.data(), 2);
    if (descriptor < 0) {
        throw std::runtime_error("could not create temporary assembly file: " +
                                 std::string{std::strerror(errno)});
    }
    close(descriptor);
    path_ = name;
}

CompilerDriver::TemporaryAssembly::~TemporaryAssembly() {
    std::error_code ignored;
    fs::remove(path_, ignored);
}

int CompilerDriver::runNativeCompiler(const std::string& compiler, const fs::path& assembly,
                                      const fs::path& runtime, const fs::path& output) {
    const std::array<const char*, 6> arguments = {
        compiler.c_str(), assembly.c_str(), runtime.c_str(), "-o", output.c_str(), nullptr};
    const pid_t child = vfork();
    if (child < 0) {
        reportSystemError("Could not start ", compiler);
        return 1;
    }
    if (child == 0) {
        execv(compiler.c_str(), const_cast<char* const*>(arguments.data()));
        reportSystemError("Could not run ", compiler);
        _exit(127);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            reportSystemError("Could not wait for ", compiler);
            return 1;
        }
    }
    return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}
