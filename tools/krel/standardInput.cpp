// Comes in: standard input. Goes out: its text.

#include "tools/krel/standardInput.hpp"

#include <unistd.h>

#include <cerrno>
#include <vector>

#include "tools/krel/report.hpp"

std::string krel::readStandardInput() {
    std::string text;
    constexpr std::size_t blockSize = 65536;
    std::vector<char> block(blockSize);
    while (true) {
        const ssize_t count = read(STDIN_FILENO, block.data(), block.size());
        if (count == 0) {
            return text;
        }
        if (count > 0) {
            text.append(block.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            throw systemError("cannot read the program from standard input");
        }
        if (text.size() > longestInput) {
            throw std::runtime_error("the program on standard input is longer than " +
                                     std::to_string(longestInput) + " bytes");
        }
    }
}
