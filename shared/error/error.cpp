// The functions by which the passes report. Comes in: a message and a place. Goes out: a report to
// the diagnostics in use, the only thing that changes.

#include "shared/error/error.hpp"

#include "shared/error/diagnostics.hpp"

namespace krel {

namespace {

std::string_view withoutStockText(std::string_view message) {
    return message == "syntax error" ? std::string_view{} : message;
}

}  // namespace

void Error::setSourceFile(const std::string& path) {
    Diagnostics::current().setSourceFile(path);
}

const std::string& Error::getSourceFile() {
    return Diagnostics::current().getSourceFile();
}

bool Error::hasErrors() {
    return Diagnostics::current().hasErrors();
}

void Error::lexer(std::string_view message, const Place& place) {
    Diagnostics::current().report({DiagnosticKind::Lexer, place, message});
}

void Error::parser(std::string_view message, const Place& place) {
    Diagnostics::current().report({DiagnosticKind::Syntax, place, withoutStockText(message)});
}

void Error::semantic(std::string_view message, const Place& place) {
    Diagnostics::current().report({DiagnosticKind::Semantic, place, withoutStockText(message)});
}

}  // namespace krel
