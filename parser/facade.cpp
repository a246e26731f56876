// The parser of a process that compiles one program. Comes in: an open file. Goes out: the tree and
// the symbols, in variables of the process, which are all that changes.

#include "parser/facade.hpp"

#include <array>
#include <cerrno>
#include <limits>
#include <string>
#include <utility>

#include "parser/parseContext.hpp"

using krel::ParseContext;

std::FILE* yyin = nullptr;
krel::Node* ast = nullptr;
krel::SymbolTable& symbolTable = ParseContext::ofTheProcess().symbolTable;
std::queue<krel::Symbol*>& symbols = ParseContext::ofTheProcess().symbols;

namespace {

/// Reads a file to its end. Returns false, with errno set, when a read fails, the first one or a
/// later one, or when the file has more bytes than the scanner can count. Its size is not asked
/// for: pipes and devices have none.
bool readToEnd(std::FILE* file, std::string& text) {
    constexpr std::size_t longest = std::numeric_limits<int>::max() - 2;
    constexpr std::size_t usual = std::size_t{1} << 20;
    text.reserve(usual);  // what stays unused is never touched
    std::array<char, std::size_t{1} << 14> piece;
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), file)) {
        if (size > longest - text.size()) {
            errno = EFBIG;
            return false;
        }
        text.append(piece.data(), size);
    }
    return std::ferror(file) == 0;
}

}  // namespace

int yyparse() {
    std::string text;
    if (!readToEnd(yyin != nullptr ? yyin : stdin, text)) {
        return unreadableSource;
    }
    ParseContext& context = ParseContext::ofTheProcess();
    const int status = krel::parse(std::move(text), context);
    ast = context.root;
    return status;
}
