// The system's assembler. Comes in: assembly text. Goes out: the object file that `as` makes of it.

#include "tests/native/support/systemAssembler.hpp"

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace krel::Native {

namespace {

namespace fs = std::filesystem;

/// A folder that is removed with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (fs::temp_directory_path() / "krel-native-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("there is no temporary folder");
        }
        path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }

    std::string file(const char* name) const { return (path / name).string(); }

private:
    fs::path path;
};

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream{path, std::ios::binary}.rdbuf();
    return content.str();
}

}  // namespace

std::optional<std::string> assembledBySystem(std::string_view text) {
    constexpr int noSuchCommand = 127;
    const TemporaryFolder folder;
    std::ofstream{folder.file("text.s"), std::ios::binary} << text;
    const std::string command =
        "as -o " + folder.file("text.o") + " " + folder.file("text.s") + " 2>/dev/null";
    const int status = std::system(command.c_str());
    if (!WIFEXITED(status) || WEXITSTATUS(status) == noSuchCommand) {
        throw std::runtime_error("cannot run: " + command);
    }
    return WEXITSTATUS(status) == 0 ? std::optional{contentOf(folder.file("text.o"))}
                                    : std::nullopt;
}

std::string objectBySystem(std::string_view text) {
    std::optional<std::string> object = assembledBySystem(text);
    if (!object) {
        throw std::runtime_error("the system's assembler refuses the text");
    }
    return *std::move(object);
}

}  // namespace krel::Native
