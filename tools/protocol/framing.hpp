#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// How messages travel that are JSON behind headers: the same for all servers of editors.
namespace krel::Protocol {

/// A longer message is refused.
constexpr std::size_t longestMessage = std::size_t{256} * 1024 * 1024;

/// Takes the messages out of a stream of bytes: headers, an empty line, and as many bytes as the
/// header Content-Length says. The descriptor belongs to the caller.
class MessageReader {
public:
    explicit MessageReader(int itsDescriptor) : descriptor(itsDescriptor) {}

    /// Waits for the next message and returns its body; without value at the end of the stream.
    /// Throws std::runtime_error for headers that cannot be understood (nobody knows where the next
    /// message begins then), for an end within a message, and when the stream cannot be read.
    std::optional<std::string> next();
    /// Whether there is something to read at once, the end of the stream included.
    bool hasMore() const;

private:
    bool fill();
    std::optional<std::string> readHeaders();
    void drop(std::size_t count);

    int descriptor;
    std::string buffer;  // what was read and not yet returned
};

/// The number of bytes that the headers announce, which are lines with their line ends. Throws
/// std::runtime_error when they do not say it, or more than `longestMessage`.
std::size_t contentLength(std::string_view headers);

/// Writes a message. Throws std::runtime_error when it cannot be written.
void writeMessage(int descriptor, std::string_view body);

}  // namespace krel::Protocol
