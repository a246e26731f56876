// Comes in: the variable TMPDIR. Goes out: a directory, as long as its object lives.

#include "tools/krel/privateDirectory.hpp"

#include <cstdlib>
#include <string>
#include <system_error>

#include "tools/krel/report.hpp"

namespace fs = std::filesystem;

namespace krel {

fs::path temporaryPlace() {
    const char* const variable = std::getenv("TMPDIR");
    return variable == nullptr || *variable == '\0' ? "/tmp" : variable;
}

PrivateDirectory::PrivateDirectory() {
    const fs::path place = temporaryPlace();
    std::string name = (fs::absolute(place) / "krel-XXXXXX").native();
    if (mkdtemp(name.data()) == nullptr) {
        throw systemError("cannot make a temporary directory in " + place.native() +
                          " (TMPDIR names another place)");
    }
    path_ = name;
}

PrivateDirectory::~PrivateDirectory() {
    std::error_code error;
    fs::remove_all(path_, error);
    if (error) {
        complain("cannot remove " + path_.native() + ": " + error.message());
    }
}

}  // namespace krel
