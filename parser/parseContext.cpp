// One parse, from a text to a tree. Comes in: a text and an unused context. Goes out: the tree and
// the symbols, in the context, which is all that changes but for the diagnostics in use.

#include "parser/parseContext.hpp"

#include <utility>

#include "lexer/scanner.hpp"
#include "parser/parser.hpp"

namespace krel {

ParseContext::ParseContext() : memory(std::make_unique<TreeMemory>()) {}

ParseContext::~ParseContext() {
    for (; !symbols.empty(); symbols.pop()) {
        delete symbols.front();
    }
}

ParseContext& ParseContext::ofTheProcess() {
    static ParseContext& context = *new ParseContext{nullptr};
    return context;
}

std::size_t ParseContext::nodeCount() const {
    return memory == nullptr ? 0 : memory->nodeCount();
}

ParseContext::Use::Use(ParseContext& context) {
    if (context.memory != nullptr) {
        memory.emplace(*context.memory);
    }
}

int parse(std::string text, ParseContext& context) {
    const ParseContext::Use use{context};
    Scanner scanner{std::move(text)};
    return krel_parse(context, scanner.handle());
}

}  // namespace krel
