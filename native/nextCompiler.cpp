// The other compilers on the search path. Comes in: the arguments of this program. Goes out:
// another program in its place.

#include "native/nextCompiler.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace krel::Native {

namespace {

/// Tells programs like this one which compilers have had the work already: those that have handed
/// it on, and those that were given it. Two of the first kind would otherwise hand it to each other
/// for ever when their folders take turns on the path, and so would one with a script that calls
/// it.
constexpr const char* passedByVariable = "KREL_NATIVE_PASSED_BY";

/// The folders of a search path; an empty piece is the working directory.
std::vector<std::string> foldersOf(const std::string& path) {
    std::vector<std::string> folders;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = path.find(':', begin);
        const std::string piece = path.substr(begin, end - begin);
        folders.push_back(piece.empty() ? "." : piece);
        if (end == std::string::npos) {
            return folders;
        }
        begin = end + 1;
    }
}

bool isProgram(const std::string& file) {
    struct stat status {};
    return stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(file.c_str(), X_OK) == 0;
}

std::string valueOf(const char* variable) {
    const char* const value = std::getenv(variable);
    return value == nullptr ? "" : value;
}

}  // namespace

std::string identityOf(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        return "";
    }
    return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino) + " ";
}

std::vector<std::string> nextCompilers(const std::string& path, const std::string& own,
                                       const std::string& passedBy) {
    const std::string ownIdentity = identityOf(own);
    const std::string leftOut = " " + passedBy + ownIdentity;
    std::vector<std::string> folders = foldersOf(path);
    for (std::size_t number = 0; number < folders.size(); ++number) {
        if (!ownIdentity.empty() && identityOf(folders[number] + "/gcc") == ownIdentity) {
            folders.erase(folders.begin(),
                          folders.begin() + static_cast<std::ptrdiff_t>(number) + 1);
            break;
        }
    }
    std::vector<std::string> compilers;
    for (const char* const name : {"/gcc", "/clang"}) {
        for (const std::string& folder : folders) {
            const std::string file = folder + name;
            if (isProgram(file) && leftOut.find(" " + identityOf(file)) == std::string::npos) {
                compilers.push_back(file);
            }
        }
    }
    return compilers;
}

std::string becomeNextCompiler(char** arguments) {
    const char* const path = std::getenv("PATH");
    const std::string own = "/proc/self/exe";
    std::string passedBy = valueOf(passedByVariable);
    const std::vector<std::string> compilers =
        path == nullptr ? std::vector<std::string>{} : nextCompilers(path, own, passedBy);
    passedBy += identityOf(own);
    for (const std::string& compiler : compilers) {
        passedBy += identityOf(compiler);
        setenv(passedByVariable, passedBy.c_str(), 1);
        std::string name = compiler;
        arguments[0] = name.data();
        execv(name.c_str(), arguments);
    }
    return compilers.empty() ? "" : compilers.back();
}

}  // namespace krel::Native
