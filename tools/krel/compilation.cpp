// Compiling to an executable that is open and has no name. Comes in: a program, and the krelcc
// beside krel. Goes out: a descriptor, or how krelcc has failed. All files are made in a directory
// that is removed; signals wait until then.

#include "tools/krel/compilation.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <vector>

#include "tools/krel/heldSignals.hpp"
#include "tools/krel/privateDirectory.hpp"
#include "tools/krel/report.hpp"
#include "tools/krel/standardInput.hpp"

namespace fs = std::filesystem;

namespace krel {

namespace {

void writeFile(const fs::path& path, const std::string& text) {
    std::ofstream stream(path, std::ios::binary);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    stream.close();
    if (!stream) {
        throw systemError("cannot write the program on standard input to " + path.native());
    }
}

/// The environment of the krelcc that makes something in `directory`. Its temporary files and those
/// of the native compiler are made there, too: they are gone even when these are killed.
Environment environmentFor(const Program& program, const fs::path& krelcc, NativeCompiler native,
                           const fs::path& directory) {
    Environment environment = krelccEnvironment(krelcc, native);
    environment.set("TMPDIR", directory.native());
    if (const auto path = environment.find("PATH"); program.isOnInput && path) {
        environment.set("PATH", absoluteSearchPath(*path, fs::current_path()));
    }
    return environment;
}

/// Starts krelcc, which finds its standard output in `output`, and its working directory in
/// `directory` unless that is null. Throws std::runtime_error when it cannot be started.
pid_t startKrelcc(const HeldSignals& held, std::vector<std::string> arguments,
                  Environment& environment, int output, const char* directory) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    if (directory != nullptr) {
        posix_spawn_file_actions_addchdir_np(&actions, directory);
    }
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setsigmask(&attributes, &held.blockedBefore());
    pid_t child = 0;
    const int error = posix_spawn(&child, arguments.front().c_str(), &actions, &attributes,
                                  pointersTo(arguments).data(), environment.pointers().data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        errno = error;
        throw systemError("cannot start " + arguments.front());
    }
    return child;
}

}  // namespace

/// The name is that of the source without its suffix. A name that means a directory is none.
Program programNamed(const std::string& word) {
    if (word == "-") {
        return {"stdin.krl", readStandardInput(), true, "stdin"};
    }
    const fs::path source = asSource(word);
    const std::string stem = source.stem();
    const bool isName = !stem.empty() && stem != "." && stem != "..";
    return {source, {}, false, isName ? stem : "program"};
}

/// What krelcc writes to standard output goes nowhere: it only says that all is well.
Compiled compile(const Program& program, NativeCompiler native) {
    const std::string krelcc = krelccPath();
    const int unwanted = memfd_create("output of krelcc", MFD_CLOEXEC);
    if (unwanted < 0) {
        throw systemError("cannot make a place for the output of krelcc");
    }
    const HeldSignals held;
    const PrivateDirectory directory;
    const fs::path output = directory.path() / program.name;
    if (program.isOnInput) {
        writeFile(directory.path() / program.source, program.text);
    }
    Environment environment = environmentFor(program, krelcc, native, directory.path());
    const pid_t child =
        startKrelcc(held, {krelcc, program.source, "-o", output}, environment, unwanted,
                    program.isOnInput ? directory.path().c_str() : nullptr);
    const int status = held.waitFor(child);
    close(unwanted);
    if (status != 0) {
        return {status, -1};
    }
    const int executable = open(output.c_str(), O_RDONLY | O_CLOEXEC);
    if (executable < 0) {
        throw systemError("cannot open the compiled program");
    }
    return {status, executable};
}

}  // namespace krel
