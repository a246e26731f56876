#include "driver/sourceFile.hpp"

#include <array>
#include <cerrno>
#include <limits>

namespace {

// The scanner counts characters, and two more behind the text, in an int.
constexpr std::size_t longestSource = std::numeric_limits<int>::max() - 2;

}  // namespace

// The size of the file is not asked for: pipes and devices have none.
bool CompilerDriver::readToEnd(std::FILE* file, std::string& text) {
    std::array<char, std::size_t{1} << 14> piece;
    text.clear();
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), file)) {
        if (size > longestSource - text.size()) {
            errno = EFBIG;
            return false;
        }
        text.append(piece.data(), size);
    }
    return std::ferror(file) == 0;
}

bool CompilerDriver::readSource(const std::filesystem::path& path, std::string& text) {
    std::FILE* const file = std::fopen(path.c_str(), "r");
    if (file == nullptr) {
        return false;
    }
    const bool isRead = readToEnd(file, text);
    const int error = errno;
    std::fclose(file);
    errno = error;
    return isRead;
}
