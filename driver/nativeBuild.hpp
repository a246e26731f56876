#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "driver/interruption.hpp"

/// The native side of a compilation: where its tools are, the assembly file, and the child process.
namespace CompilerDriver {

/// The path of an executable on the search path (PATH); an empty piece means the working directory.
/// Empty when there is none, or PATH is not set.
std::string findProgram(const std::string& name);

/// The path of the runtime object: codegen/runtime.o beside the running compiler, or one folder up,
/// or in the working directory. Empty when there is none.
std::filesystem::path findRuntime(const char* argv0);

/// A new, empty file for the assembly text in the system's temporary directory; it is deleted
/// together with the object, or when a signal ends the process.
class TemporaryAssembly {
public:
    /// Throws std::runtime_error when the file cannot be created.
    TemporaryAssembly();
    TemporaryAssembly(const TemporaryAssembly&) = delete;
    TemporaryAssembly& operator=(const TemporaryAssembly&) = delete;
    ~TemporaryAssembly();

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
    std::optional<DoomedFile> doomed;
};

/// Assembles and links: runs `compiler` on the two inputs and waits for it. Returns its exit
/// status, or 1 when it was killed or could not be started (with a message on standard error). A
/// signal that ends this process ends the child, too.
int runNativeCompiler(const std::string& compiler, const std::filesystem::path& assembly,
                      const std::filesystem::path& runtime, const std::filesystem::path& output);

}  // namespace CompilerDriver
