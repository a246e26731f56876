// Comes in: paths. Goes out: the programs below a directory, the text of a file, or a file that has
// a new text. A file is replaced by renaming a temporary one that lies beside it.
#include "tools/files/sourceFiles.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "shared/process/endingSignals.hpp"

namespace fs = std::filesystem;

namespace krel {

namespace {

std::runtime_error failure(const std::string& path, const std::string& reason) {
    return std::runtime_error(path + ": " + reason);
}

std::runtime_error systemFailure(const std::string& path) {
    return failure(path, std::strerror(errno));
}

/// A file that this process has opened; it is closed in the end.
class Descriptor {
public:
    explicit Descriptor(int itsNumber) : number(itsNumber) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number >= 0) {
            ::close(number);
        }
    }

    int get() const { return number; }
    /// False, with errno set, when the system could not write everything after all.
    bool close() { return ::close(std::exchange(number, -1)) == 0; }

private:
    int number;
};

/// As long as it lives, signals that would end the process wait.
class SignalsWait {
public:
    SignalsWait() {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : endingSignals) {
            sigaddset(&ending, signal);
        }
        sigprocmask(SIG_BLOCK, &ending, &before);
    }
    SignalsWait(const SignalsWait&) = delete;
    SignalsWait& operator=(const SignalsWait&) = delete;
    ~SignalsWait() { sigprocmask(SIG_SETMASK, &before, nullptr); }

private:
    sigset_t before;
};

/// A new file beside another one. It is deleted in the end, unless it has taken the other's place.
/// `path` is what users call the other one.
class Neighbour {
public:
    Neighbour(std::string itsTarget, std::string itsPath)
        : target(std::move(itsTarget)),
          path(std::move(itsPath)),
          name(target + ".XXXXXX"),
          file(mkostemp(name.data(), O_CLOEXEC)) {
        if (file.get() < 0) {
            throw systemFailure(path);
        }
    }
    Neighbour(const Neighbour&) = delete;
    Neighbour& operator=(const Neighbour&) = delete;
    ~Neighbour() {
        if (!placed) {
            unlink(name.c_str());
        }
    }

    void write(std::string_view text) {
        while (!text.empty()) {
            const ssize_t written = ::write(file.get(), text.data(), text.size());
            if (written >= 0) {
                text.remove_prefix(static_cast<std::size_t>(written));
            } else if (errno != EINTR) {
                throw systemFailure(path);
            }
        }
    }

    /// Gives the new file the owner and the mode of another one. Only some may give files away;
    /// what stays with this process does not get the bits that would let others act as its owner.
    void takeAfter(const struct stat& other) {
        const bool given = fchown(file.get(), other.st_uid, other.st_gid) == 0;
        if (fchmod(file.get(), other.st_mode & (given ? 07777U : 0777U)) != 0) {
            throw systemFailure(path);
        }
    }

    void takePlace() {
        if (!file.close() || std::rename(name.c_str(), target.c_str()) != 0) {
            throw systemFailure(path);
        }
        placed = true;
    }

private:
    std::string target;
    std::string path;
    std::string name;
    Descriptor file;
    bool placed = false;
};

bool isProgram(const fs::directory_entry& entry) {
    return entry.path().extension() == ".krl" && entry.is_regular_file() && !entry.is_symlink();
}

bool isHidden(const fs::directory_entry& entry) {
    return entry.path().filename().native().front() == '.';
}

}  // namespace

std::vector<std::string> programsIn(const std::string& directory) {
    std::vector<std::string> programs;
    try {
        fs::recursive_directory_iterator entry{directory};
        for (; entry != fs::recursive_directory_iterator{}; ++entry) {
            if (isHidden(*entry)) {
                entry.disable_recursion_pending();
            } else if (isProgram(*entry)) {
                programs.push_back(entry->path().string());
            }
        }
    } catch (const fs::filesystem_error& error) {
        throw failure(error.path1().empty() ? directory : error.path1().string(),
                      error.code().message());
    }
    std::sort(programs.begin(), programs.end());
    return programs;
}

std::string readSource(const std::string& path) {
    const Descriptor file{open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    struct stat status {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0) {
        throw systemFailure(path);
    }
    if (!S_ISREG(status.st_mode)) {
        throw failure(path, S_ISDIR(status.st_mode) ? "is a directory" : "is no regular file");
    }
    std::string text;
    text.reserve(static_cast<std::size_t>(status.st_size));
    std::array<char, 65536> block;
    while (true) {
        const ssize_t count = read(file.get(), block.data(), block.size());
        if (count == 0) {
            return text;
        }
        if (count > 0) {
            text.append(block.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            throw systemFailure(path);
        }
    }
}

void replaceSource(const std::string& path, std::string_view text) {
    std::error_code error;
    const std::string target = fs::canonical(path, error).string();
    if (error) {
        throw failure(path, error.message());
    }
    struct stat status {};
    // A rename needs no permission to write the file itself; its owner may have taken that away.
    if (stat(target.c_str(), &status) != 0 ||
        faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
        throw systemFailure(path);
    }
    const SignalsWait untilDone;
    Neighbour file{target, path};
    file.write(text);
    file.takeAfter(status);
    file.takePlace();
}

}  // namespace krel
