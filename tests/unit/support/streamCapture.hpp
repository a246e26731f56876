#pragma once

#include <ostream>
#include <sstream>
#include <string>

/// Collects what is written to a stream (std::cout, std::cerr) while the object lives.
class StreamCapture {
public:
    explicit StreamCapture(std::ostream& captured)
        : stream(captured), original(captured.rdbuf(text.rdbuf())) {}
    StreamCapture(const StreamCapture&) = delete;
    StreamCapture& operator=(const StreamCapture&) = delete;
    ~StreamCapture() { stream.rdbuf(original); }

    /// What has been written so far.
    std::string str() const { return text.str(); }
    /// Forgets it.
    void clear() { text.str({}); }

private:
    std::ostringstream text;
    std::ostream& stream;
    std::streambuf* original;
};
