#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <string_view>

#include "codegen/shortText.hpp"

/// Collects assembly text and hands it to a stream in blocks; the rest follows on destruction, also
/// when an error ends the generation, so that what was written stays. Failures stay in the
/// stream's state.
class AssemblyWriter {
public:
    explicit AssemblyWriter(std::ostream& stream) : out(stream) {}
    AssemblyWriter(const AssemblyWriter&) = delete;
    AssemblyWriter& operator=(const AssemblyWriter&) = delete;
    ~AssemblyWriter() { flush(); }

    /// Appends the parts as they are: string literals and short texts, whose copying is compiled to
    /// a few moves, and other texts.
    template <typename... Parts>
    void write(const Parts&... parts) {
        const std::size_t size = (sizeOf(parts) + ...);
        if (size > blockSize - used) {
            flush();
        }
        if (size > blockSize) {
            (writeThrough(parts), ...);
        } else {
            (append(parts), ...);
        }
    }

private:
    static constexpr std::size_t blockSize = std::size_t{1} << 16;

    template <std::size_t size>
    static constexpr std::size_t sizeOf(const char (&/*literal*/)[size]) {
        return size - 1;
    }
    static std::size_t sizeOf(const ShortText& text) { return text.size(); }
    static std::size_t sizeOf(std::string_view text) { return text.size(); }

    template <std::size_t size>
    void append(const char (&literal)[size]) {
        std::memcpy(block.get() + used, literal, size - 1);
        used += size - 1;
    }
    void append(const ShortText& text) {
        std::memcpy(block.get() + used, text.data(), ShortText::capacity);
        used += text.size();
    }
    void append(std::string_view text) {
        std::memcpy(block.get() + used, text.data(), text.size());
        used += text.size();
    }

    void writeThrough(const ShortText& text) { writeThrough(text.view()); }
    void writeThrough(std::string_view text) {
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
    }

    void flush() {
        out.write(block.get(), static_cast<std::streamsize>(used));
        used = 0;
    }

    std::ostream& out;
    // With room behind the block for what a short text copies beyond its size.
    std::unique_ptr<char[]> block = std::make_unique<char[]>(blockSize + ShortText::capacity);
    std::size_t used = 0;
};
