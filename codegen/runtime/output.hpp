// The program's standard output: collected in a buffer and written in large pieces, or after every
// print when it goes to a terminal.
#pragma once

#include <cstddef>

#include "codegen/runtime/bytes.hpp"

namespace krel {

/// A buffer and the descriptor that it is written to.
class Output {
public:
    static constexpr std::size_t capacity = std::size_t{1} << 16;

    constexpr Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// From now on writes to the descriptor, which stays the caller's. If it is a terminal, every
    /// print is written at once. To be called before anything else.
    void open(int target);

    /// Prints `length` bytes as they are. Up to 16 bytes after them are read.
    void print(const char* text, std::size_t length) {
        if (!printToBuffer(text, length)) [[unlikely]] {
            printSlowly(text, length);
        }
    }

    /// The same if the buffer has room for so many bytes. Otherwise does nothing and returns false.
    [[nodiscard]] bool printToBuffer(const char* text, std::size_t length) {
        if (length > static_cast<std::size_t>(limit - next)) [[unlikely]] {
            return false;
        }
        copyChunks(next, text, length);
        next += length;
        return true;
    }

    /// Prints the text that a literal stands for.
    void printLiteral(const char* literal);

    /// Writes what is held back. The first failure is reported on standard error; from then on
    /// everything is dropped, so that what was written is a beginning of the output without gaps.
    void flush();

    /// Whether a flush is under way: a signal that interrupts it cannot tell how far it has come.
    bool isFlushing() const { return flushing; }

    /// Whether a write failed, now or earlier.
    bool hasFailed() const { return failed; }

private:
    void printSlowly(const char* text, std::size_t length);
    std::size_t writeSome(const char* bytes, std::size_t length);
    void fail(long error);

    /// All members are zero at first, so that the object file holds no copy of the buffer. For a
    /// terminal the limit is the buffer's beginning, so that every print takes the slow way.
    char* next = nullptr;
    char* limit = nullptr;
    /// The first byte that still has to be written: outside of a flush, the beginning of the
    /// buffer. If the stack overflows in the middle of a flush, the trap's handler goes on from
    /// here.
    char* unwritten = nullptr;
    int descriptor = 0;
    bool failed = false;
    bool flushing = false;
    char buffer[capacity + chunkSize] = {};
};

/// The program's standard output.
extern Output standardOutput;

}  // namespace krel
