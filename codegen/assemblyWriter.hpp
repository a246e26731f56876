#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
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
        writeAll(std::string_view{parts}...);
    }

private:
    static constexpr std::size_t blockSize = std::size_t{1} << 16;

    template <typename... Views>
    void writeAll(const Views... views) {
        const std::size_t size = (views.size() + ...);
        if (size > blockSize - used) {
            flush();
        }
        if (size > blockSize) {
            (out.write(views.data(), static_cast<std::streamsize>(views.size())), ...);
            return;
        }
        (append(views), ...);
    }

    void append(std::string_view view) {
        std::memcpy(block.get() + used, view.data(), view.size());
        used += view.size();
    }

    void flush() {
        out.write(block.get(), static_cast<std::streamsize>(used));
        used = 0;
    }

    std::ostream& out;
    std::unique_ptr<char[]> block = std::make_unique<char[]>(blockSize);
    std::size_t used = 0;
};
