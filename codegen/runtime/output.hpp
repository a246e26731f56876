// The program's standard output: collected in a buffer and written in large pieces, or at once
// after every print where a person is looking on.
#pragma once

#include <cstddef>

#include "codegen/runtime/bytes.hpp"

namespace krel {

class Output {
public:
    static constexpr std::size_t capacity = std::size_t{1} << 16;

    constexpr Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // Writes to the descriptor from now on, which stays the caller's; at once if it is a terminal.
    void open(int target);

    // Appends `length` bytes as they are.
    void append(const char* text, std::size_t length) {
        if (length <= capacity - fill) [[likely]] {
            copyText(buffer + fill, text, length);
            fill += length;
        } else {
            appendLarge(text, length);
        }
    }

    // Appends the text that a literal stands for.
    void appendLiteral(const char* literal);

    // Ends one print statement: on a terminal its text is written now.
    void endPrint() {
        if (writesAtOnce) [[unlikely]] {
            flush();
        }
    }

    // Writes what is held back. The first failure is reported on standard error; from then on
    // everything is dropped, so that what was written is a beginning of the output without gaps.
    void flush();

    // Whether a write failed, now or earlier.
    bool hasFailed() const { return failed; }

private:
    void appendLarge(const char* text, std::size_t length);
    void writeAll(const char* bytes, std::size_t length);
    void fail(long error);

    // All zero at the beginning: the object file then holds no copy of the buffer.
    int descriptor = 0;
    bool writesAtOnce = false;
    bool failed = false;
    std::size_t fill = 0;
    char buffer[capacity + chunkSize] = {};
};

// The program's standard output.
extern Output standardOutput;

}  // namespace krel
