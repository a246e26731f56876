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
    next = buffer;
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
    const auto length = static_cast<std::size_t>(next - buffer);
    next = buffer;
    writeAll(buffer, length);
}

void Output::printSlowly(const char* text, std::size_t length) {
    flush();
    if (length <= static_cast<std::size_t>(limit - next)) {
        print(text, length);
    } else {
        writeAll(text, length);
    }
}

void Output::writeAll(const char* bytes, std::size_t length) {
    while (length != 0 && !failed) {
        const long written = system::write(descriptor, bytes, length);
        if (written > 0) {
            bytes += written;
            length -= static_cast<std::size_t>(written);
        } else if (written == -system::tryAgain) {
            system::waitUntilWritable(descriptor);
        } else if (written != -system::interrupted) {
            fail(-written);
        }
    }
}

void Output::fail(long error) {
    failed = true;
    reportRuntimeError("cannot write standard output: ", describeError(error));
}

}  // namespace krel
