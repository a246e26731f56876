#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

#include "codegen/shortText.hpp"
#include "shared/krelir-cfg/textParts.hpp"

namespace krel {

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
        const std::size_t size = (partSize(parts) + ...);
        if (size > blockSize - used) {
            flush();
        }
        if (size > blockSize) {
            (writeThrough(parts), ...);
        } else {
            char* at = block.get() + used;
            ((at = writePart(at, parts)), ...);
            used += size;
        }
    }

    /// How many bytes there have been so far.
    std::size_t position() const { return handedOn + used; }

private:
    static constexpr std::size_t blockSize = std::size_t{1} << 16;

    void writeThrough(std::string_view text) {
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        handedOn += text.size();
    }

    void flush() {
        out.write(block.get(), static_cast<std::streamsize>(used));
        handedOn += std::exchange(used, 0);
    }

    std::ostream& out;
    // With room for one short text that is copied whole.
    std::unique_ptr<char[]> block =
        std::make_unique_for_overwrite<char[]>(blockSize + ShortText::capacity);
    std::size_t used = 0;
    std::size_t handedOn = 0;
};

}  // namespace krel
