// The faults of one source. Comes in: a fault, as a pass reports it. Goes out: a call of the sink,
// or a line on standard error. Only the number of faults and the name of the source change.

#include "shared/error/diagnostics.hpp"

#include <iostream>
#include <utility>

namespace krel {

namespace {

constexpr std::string_view prefixOf(DiagnosticKind kind) {
    switch (kind) {
        case DiagnosticKind::Lexer:
            return "Lexer error";
        case DiagnosticKind::Syntax:
            return "Syntax error";
        case DiagnosticKind::Semantic:
            return "Semantic error";
    }
    return {};
}

constinit Diagnostics* inUse = nullptr;

}  // namespace

/// Standard error is unbuffered. So a line is put together first, and leaves in one write.
Diagnostics::Diagnostics()
    : sink([this](const Diagnostic& diagnostic) { std::cerr << lineOf(diagnostic); }) {}

Diagnostics::Diagnostics(Sink itsSink) : sink(std::move(itsSink)) {}

void Diagnostics::setSourceFile(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    sourceFile = separator == path.npos ? path : path.substr(separator + 1);
}

void Diagnostics::report(const Diagnostic& diagnostic) {
    ++errorCount;
    sink(diagnostic);
}

std::string Diagnostics::lineOf(const Diagnostic& diagnostic) const {
    std::string text{prefixOf(diagnostic.kind)};
    if (!sourceFile.empty()) {
        text.append(" in ").append(sourceFile);
    }
    if (diagnostic.place.line > 0) {
        text.append(" at line ").append(std::to_string(diagnostic.place.line));
    }
    if (!diagnostic.message.empty()) {
        text.append(": ").append(diagnostic.message);
    }
    return text.append("\n");
}

Diagnostics::Use::Use(Diagnostics& diagnostics) : before(std::exchange(inUse, &diagnostics)) {}

Diagnostics::Use::~Use() {
    inUse = before;
}

Diagnostics& Diagnostics::current() {
    static Diagnostics& ofTheProcess = *new Diagnostics;
    return inUse != nullptr ? *inUse : ofTheProcess;
}

}  // namespace krel
