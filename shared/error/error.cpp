#include "shared/error/error.hpp"

#include <iostream>

std::string Error::sourceFile;
int Error::errorCount = 0;

namespace {

std::string_view withoutStockText(std::string_view message) {
    return message == "syntax error" ? std::string_view{} : message;
}

}  // namespace

void Error::setSourceFile(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    sourceFile = separator == std::string::npos ? path : path.substr(separator + 1);
}

const std::string& Error::getSourceFile() {
    return sourceFile;
}

bool Error::hasErrors() {
    return errorCount > 0;
}

void Error::lexer(const std::string& message, int line) {
    report("Lexer error", message, line);
}

void Error::parser(const std::string& message, int line) {
    report("Syntax error", withoutStockText(message), line);
}

void Error::semantic(const std::string& message, int line) {
    report("Semantic error", withoutStockText(message), line);
}

// Standard error is unbuffered: the line is put together first, so that it leaves in one write.
void Error::report(std::string_view prefix, std::string_view message, int line) {
    ++errorCount;
    static std::string text;  // keeps its memory for the next report
    text = prefix;
    if (!sourceFile.empty()) {
        text.append(" in ").append(sourceFile);
    }
    if (line > 0) {
        text.append(" at line ").append(std::to_string(line));
    }
    if (!message.empty()) {
        text.append(": ").append(message);
    }
    text += '\n';
    std::cerr << text;
}
