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
    writesAtOnce = system::isTerminal(target);
}

void Output::appendLiteral(const char* literal) {
    char* end = buffer + fill;
    do {
        fill = static_cast<std::size_t>(end - buffer);
        if (capacity - fill < chunkSize) {
            flush();
            end = buffer;
        }
    } while (decodePart(literal, end));
    fill = static_cast<std::size_t>(end - buffer);
}

void Output::flush() {
    writeAll(buffer, fill);
    fill = 0;
}

void Output::appendLarge(const char* text, std::size_t length) {
    flush();
    if (length > capacity) {
        writeAll(text, length);
        return;
    }
    append(text, length);
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
