#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

/// Collects assembly text and hands it to a stream in blocks; the rest follows on destruction, also
/// when an error ends the generation, so that what was written stays. Failures stay in the
/// stream's state.
class AssemblyWriter {
public:
    explicit AssemblyWriter(std::ostream& stream) : out(stream) {}
    AssemblyWriter(const AssemblyWriter&) = delete;
    AssemblyWriter& operator=(const AssemblyWriter&) = delete;
    ~AssemblyWriter() { flush(); }

    /// Appends the parts as they are.
    template <typename... Parts>
    void write(const Parts&... parts) {
        (text.append(std::string_view{parts}), ...);
        if (text.size() >= blockSize) {
            flush();
        }
    }

private:
    static constexpr std::size_t blockSize = std::size_t{1} << 16;

    void flush() {
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        text.clear();
    }

    std::ostream& out;
    std::string text;
};
