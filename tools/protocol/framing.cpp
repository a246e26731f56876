// Messages on streams. Comes in: bytes. Goes out: the bodies of messages, and the other way round.

#include "tools/protocol/framing.hpp"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <stdexcept>

namespace krel::Protocol {

namespace {

constexpr std::size_t longestHeaders = 4096;
constexpr std::string_view headersEnd = "\r\n\r\n";
/// More room than this is given back once it is not needed.
constexpr std::size_t roomToKeep = std::size_t{1} << 20U;

std::runtime_error systemError(const std::string& what) {
    const int number = errno;
    return std::runtime_error(what + ": " + std::strerror(number));
}

bool isSameWord(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    });
}

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace

std::size_t contentLength(std::string_view headers) {
    while (!headers.empty()) {
        const std::size_t end = headers.find("\r\n");
        const std::string_view line = headers.substr(0, end);
        headers.remove_prefix(end == headers.npos ? headers.size() : end + 2);
        const std::size_t colon = line.find(':');
        if (colon == line.npos) {
            throw std::runtime_error("a header of a message has no colon");
        }
        if (!isSameWord(withoutBlanks(line.substr(0, colon)), "Content-Length")) {
            continue;
        }
        const std::string_view number = withoutBlanks(line.substr(colon + 1));
        std::size_t length = 0;
        const auto [rest, fault] =
            std::from_chars(number.data(), number.data() + number.size(), length);
        if (fault != std::errc{} || rest != number.data() + number.size()) {
            throw std::runtime_error("the Content-Length of a message is no number");
        }
        if (length > longestMessage) {
            throw std::runtime_error("a message is longer than " + std::to_string(longestMessage) +
                                     " bytes");
        }
        return length;
    }
    throw std::runtime_error("a message has no Content-Length");
}

bool MessageReader::hasMore() const {
    if (buffer.find(headersEnd) != buffer.npos) {
        return true;
    }
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, 0) > 0;
}

/// False at the end of the stream.
bool MessageReader::fill() {
    std::array<char, 65536> block{};
    while (true) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count >= 0) {
            buffer.append(block.data(), static_cast<std::size_t>(count));
            return count > 0;
        }
        if (errno != EINTR) {
            throw systemError("cannot read from the client");
        }
    }
}

void MessageReader::drop(std::size_t count) {
    buffer.erase(0, count);
    if (buffer.capacity() > roomToKeep && buffer.size() < roomToKeep) {
        buffer.shrink_to_fit();
    }
}

std::optional<std::string> MessageReader::readHeaders() {
    std::size_t end = 0;
    while ((end = buffer.find(headersEnd)) == buffer.npos) {
        if (buffer.size() > longestHeaders) {
            throw std::runtime_error("the headers of a message have no end");
        }
        if (!fill()) {
            if (buffer.empty()) {
                return std::nullopt;
            }
            throw std::runtime_error("the client has gone within a message");
        }
    }
    std::string headers = buffer.substr(0, end);
    drop(end + headersEnd.size());
    return headers;
}

std::optional<std::string> MessageReader::next() {
    const std::optional<std::string> headers = readHeaders();
    if (!headers) {
        return std::nullopt;
    }
    const std::size_t length = contentLength(*headers);
    while (buffer.size() < length) {
        if (!fill()) {
            throw std::runtime_error("the client has gone within a message");
        }
    }
    std::string body = buffer.substr(0, length);
    drop(length);
    return body;
}

void writeMessage(int descriptor, std::string_view body) {
    std::string message = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    message.append(body);
    std::string_view rest = message;
    while (!rest.empty()) {
        const ssize_t written = write(descriptor, rest.data(), rest.size());
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            throw systemError("cannot write to the client");
        }
    }
}

}  // namespace krel::Protocol
