// Writing the buffer. Comes in: literals, and texts that do not fit. Goes out: system calls. The
// buffer and the state of the output change.

#include "codegen/runtime/output.hpp"

#include "codegen/runtime/literal.hpp"
#include "codegen/runtime/report.hpp"
#include "codegen/runtime/systemCalls.hpp"

namespace krel {

namespace {

struct ErrorText {
    long error;
    const char* text;
};

constexpr ErrorText errorTexts[] = {
    {system::noSpaceLeft, "no space left on device"},
    {system::diskQuotaExceeded, "disk quota exceeded"},
    {system::fileTooLarge, "file too large"},
    {system::inputOutputError, "input/output error"},
    {system::badDescriptor, "bad file descriptor"},
    {system::brokenPipe, "broken pipe"},
};

const char* describeError(long error) {
    for (const ErrorText& entry : errorTexts) {
        if (entry.error == error) {
            return entry.text;
        }
    }
    return "the system refused it";
}

}  // namespace

constinit Output standardOutput;

void Output::open(int target) {
    descriptor = target;
    unwritten = next = buffer;
    limit = system::isTerminal(target) ? buffer : buffer + capacity;
}

void Output::printLiteral(const char* literal) {
    char* const end = buffer + capacity - chunkSize;
    do {
        if (next > end) {
            flush();
        }
    } while (decodePart(literal, next));
    if (limit == buffer) {
        flush();
    }
}

void Output::flush() {
    flushing = true;
    while (unwritten != next) {
        unwritten += writeSome(unwritten, static_cast<std::size_t>(next - unwritten));
    }
    unwritten = next = buffer;
    flushing = false;
}

void Output::printSlowly(const char* text, std::size_t length) {
    flush();
    if (length <= static_cast<std::size_t>(limit - next)) {
        print(text, length);
        return;
    }
    while (length != 0) {
        const std::size_t written = writeSome(text, length);
        text += written;
        length -= written;
    }
}

/// Returns how many of the bytes have been written, perhaps none. After a failure it returns
/// `length`: the bytes are dropped.
std::size_t Output::writeSome(const char* bytes, std::size_t length) {
    if (failed) {
        return length;
    }
    const long written = system::write(descriptor, bytes, length);
    if (written >= 0) {
        return static_cast<std::size_t>(written);
    }
    if (written == -system::tryAgain) {
        system::waitUntilWritable(descriptor);
    } else if (written != -system::interrupted) {
        fail(-written);
    }
    return 0;
}

void Output::fail(long error) {
    failed = true;
    reportRuntimeError("cannot write standard output: ", describeError(error));
}

}  // namespace krel
