// Files. Comes in: paths and bytes. Goes out: the same. Nothing is cached.

#include "native/files.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "native/notKnown.hpp"

namespace krel::Native {

namespace {

[[noreturn]] void fail(const char* what, const std::string& path) {
    throw NotKnown(std::string{what} + " " + path + ": " + std::strerror(errno));
}

/// To be called before a file is opened: with a pipe that has a name, this would wait for whoever
/// is at its other end. What comes through one can be read only once, and that is left to others.
void requireNoPipe(const char* what, const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode)) {
        errno = ESPIPE;
        fail(what, path);
    }
}

/// A descriptor of our own.
class Descriptor {
public:
    explicit Descriptor(int itsNumber) : number(itsNumber) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    explicit operator bool() const { return number >= 0; }
    int get() const { return number; }
    /// False when what was written is known to be lost.
    bool close() {
        const bool isClosed = number < 0 || ::close(number) == 0;
        number = -1;
        return isClosed;
    }

private:
    int number;
};

bool writeAll(int descriptor, const Bytes& bytes) {
    for (std::size_t written = 0; written < bytes.size();) {
        const ssize_t count = write(descriptor, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

mode_t maskOfProcess() {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

/// As long as it lives, no signal ends the process but one that cannot be held. The signal of a
/// file that would become too large is dropped: the write has failed, and that is reported.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, &before);
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() {
        sigset_t dropped;
        sigemptyset(&dropped);
        sigaddset(&dropped, SIGXFSZ);
        constexpr timespec noTime = {0, 0};
        sigtimedwait(&dropped, nullptr, &noTime);
        sigprocmask(SIG_SETMASK, &before, nullptr);
    }

private:
    sigset_t before{};
};

/// Writes a new file beside the path, and then gives it the name. Returns whether that worked; if
/// not, errno says why, and the new file is gone.
bool replace(const std::string& path, const Bytes& bytes) {
    const std::size_t directoryEnd = path.rfind('/') + 1;  // npos + 1 is 0
    std::string temporary = path.substr(0, directoryEnd) + ".krel-XXXXXX";
    Descriptor descriptor{mkostemp(temporary.data(), O_CLOEXEC)};
    if (!descriptor) {
        return false;
    }
    const bool isWritten = writeAll(descriptor.get(), bytes) &&
                           fchmod(descriptor.get(), 0777 & ~maskOfProcess()) == 0 &&
                           descriptor.close() && rename(temporary.c_str(), path.c_str()) == 0;
    if (!isWritten) {
        const int error = errno;
        unlink(temporary.c_str());
        errno = error;
    }
    return isWritten;
}

/// Writes into what is there, and lets everybody execute it who may read it.
bool overwrite(const std::string& path, const Bytes& bytes) {
    Descriptor descriptor{open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)};
    struct stat status {};
    if (!descriptor || fstat(descriptor.get(), &status) != 0) {
        return false;
    }
    const bool isFile = S_ISREG(status.st_mode);
    const mode_t mode = 0777 & (status.st_mode | (0111 & ~maskOfProcess()));
    const bool isWritten = writeAll(descriptor.get(), bytes) &&
                           (!isFile || fchmod(descriptor.get(), mode) == 0) && descriptor.close();
    if (!isWritten && isFile) {
        const int error = errno;
        unlink(path.c_str());
        errno = error;
    }
    return isWritten;
}

/// Whether a new file takes the place of what is there.
bool isToBeReplaced(const std::string& path) {
    struct stat entry {};
    if (lstat(path.c_str(), &entry) != 0) {
        return errno == ENOENT;
    }
    struct stat target {};
    return (S_ISREG(entry.st_mode) || S_ISLNK(entry.st_mode)) && stat(path.c_str(), &target) == 0 &&
           S_ISREG(target.st_mode) && target.st_size != 0;
}

}  // namespace

FileContent::FileContent(const char* path) {
    requireNoPipe("cannot read", path);
    const Descriptor descriptor{open(path, O_RDONLY | O_CLOEXEC)};
    struct stat status {};
    if (!descriptor || fstat(descriptor.get(), &status) != 0) {
        fail("cannot read", path);
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    void* const bytes =
        mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor.get(), 0);
    if (bytes == MAP_FAILED) {
        fail("cannot read", path);
    }
    content = {static_cast<const char*>(bytes), size};
}

FileContent::~FileContent() {
    munmap(const_cast<char*>(content.data()), content.size());
}

void writeExecutable(const std::string& path, const Bytes& bytes) {
    requireNoPipe("cannot write", path);
    const SignalsHeld held;
    if (!(isToBeReplaced(path) ? replace(path, bytes) : overwrite(path, bytes))) {
        fail("cannot write", path);
    }
}

}  // namespace krel::Native
