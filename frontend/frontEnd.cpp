// All passes in their order, on memory and diagnostics of their own. Comes in: a text. Goes out:
// all that the passes make. The checkpoints are those of the driver.

#include "frontend/frontEnd.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "KrelIR/KrelIR.hpp"
#include "codegen/codeGenerator.hpp"
#include "lexer/scanner.hpp"
#include "parser/parser.hpp"
#include "semantic_analyzer/semanticAnalyzer.hpp"
#include "shared/ast/node.hpp"
#include "shared/error/internalError.hpp"

namespace krel {

namespace FrontEnd {

namespace {

/// Places are kept as 32 bits, and the generated scanner counts by ints.
void checkLength(const std::string& text) {
    if (text.size() > std::numeric_limits<int>::max() - std::size_t{2}) {
        throw std::length_error("the source is too long");
    }
}

/// A copy of a tree in the memory in use. Works from a list: a tree may be a million levels deep.
Node* copyOf(const Node& root) {
    Node* const copy = root.copyWithoutChildren();
    std::vector<std::pair<const Node*, Node*>> waiting = {{&root, copy}};
    while (!waiting.empty()) {
        const auto [original, parent] = waiting.back();
        waiting.pop_back();
        for (const Node* child : original->getChildren()) {
            Node* const childCopy = child->copyWithoutChildren();
            parent->addChild(childCopy);
            waiting.emplace_back(child, childCopy);
        }
    }
    return copy;
}

/// The numbers of the instructions that the lines of an assembly text come from.
std::vector<std::size_t> originsOfLines(std::string_view assembly,
                                        const std::vector<CodeGenerator::Source>& sources) {
    std::vector<std::size_t> origins;
    auto stretch = sources.begin();
    for (std::size_t begin = 0; begin < assembly.size();) {
        while (std::next(stretch) != sources.end() && std::next(stretch)->position <= begin) {
            ++stretch;
        }
        origins.push_back(stretch->instruction);
        begin = std::min(assembly.find('\n', begin), assembly.size() - 1) + 1;
    }
    return origins;
}

}  // namespace

Compilation::Compilation(std::string itsText, const std::string& itsName, const Request& request)
    : source(std::move(itsText)), lineIndex(source), diagnostics([this](const Diagnostic& fault) {
          std::string line = diagnostics.lineOf(fault);
          line.pop_back();
          found.push_back({fault.kind, fault.place, std::string{fault.message}, std::move(line)});
      }) {
    diagnostics.setSourceFile(itsName);
    sourceName = diagnostics.getSourceFile();
    run(request);
}

Compilation::~Compilation() = default;

void Compilation::run(const Request& request) {
    const Diagnostics::Use report{diagnostics};
    const ParseContext::Use memory{context};
    if (request.tokens) {
        pieces = tokensOf(source);
    }
    try {
        howFar = compile(request);
    } catch (const InternalError& error) {
        howFar = Outcome::InternalError;
        failureMessage = error.what();
    }
}

Outcome Compilation::compile(const Request& request) {
    const int status = parse(source, context);
    if (status != 0 || diagnostics.hasErrors()) {
        return Outcome::SyntaxFaults;
    }
    if (request.parsedTree) {
        asParsed = copyOf(*context.root);
    }
    if (request.parseOnly) {
        return Outcome::Complete;
    }
    SemanticAnalyzer(context.symbolTable).analyze(context.root);
    if (diagnostics.hasErrors()) {
        return Outcome::SemanticFaults;
    }
    return translate(request);
}

Outcome Compilation::translate(const Request& request) {
    KrelIR lowering;
    std::vector<SourceRange> ranges;
    CodeGenerator generator{context.symbolTable};
    std::vector<CodeGenerator::Source> stretches;
    if (request.sources) {
        lowering.recordSources(&ranges);
        generator.recordSources(&stretches);
    }
    std::ostringstream out;
    Outcome outcome = Outcome::Complete;
    try {
        program = std::move(lowering.analyze(context.root));
        listInstructions(ranges);
        generator.generate(program, out);
    } catch (const InternalError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        outcome = Outcome::NotTranslated;
        failureMessage = error.what();
        refusedLine = stretches.empty() ? none : stretches.back().instruction;
    }
    assemblyText = std::move(out).str();
    if (request.sources) {
        originOfAssembly = originsOfLines(assemblyText, stretches);
    }
    return outcome;
}

void Compilation::listInstructions(const std::vector<SourceRange>& ranges) {
    const auto& functions = program.getFunctions();
    for (std::size_t function = 0; function < functions.size(); ++function) {
        const auto& blocks = functions[function].getBlocks();
        for (std::size_t block = 0; block < blocks.size(); ++block) {
            const std::size_t count = blocks[block].getInstructions().size();
            for (std::size_t index = 0; index < count; ++index) {
                const std::size_t number = instructions.size();
                instructions.push_back({function, block, index,
                                        number < ranges.size() ? ranges[number] : SourceRange{}});
            }
        }
    }
}

std::string_view Compilation::textOf(SourceRange range) const {
    return std::string_view{source}.substr(range.begin, range.end - range.begin);
}

std::string Compilation::jsonOf(const Node& node) const {
    // The document names the source. The name comes from the diagnostics in use.
    Diagnostics named{[](const Diagnostic&) {}};
    named.setSourceFile(sourceName);
    const Diagnostics::Use use{named};
    return node.toJSON(0);
}

const Symbol* Compilation::symbol(std::string_view function, std::string_view name) const {
    const ParseContext::Use memory{context};
    return context.symbolTable.lookup(Name::known(function), Name::known(name), 0);
}

std::vector<const Symbol*> Compilation::symbolsOf(std::string_view function) const {
    const ParseContext::Use memory{context};
    std::vector<const Symbol*> symbols;
    for (const auto& symbol : context.symbolTable.symbolsOf(Name::known(function))) {
        symbols.push_back(symbol.get());
    }
    return symbols;
}

std::vector<std::string> Compilation::functions() const {
    const std::vector<Name>& names = context.symbolTable.scopesInOrder();
    return {names.begin(), names.end()};
}

/// Whatever is no token, comment or illegal character is white space.
std::vector<Token> tokensOf(const std::string& text) {
    checkLength(text);
    Diagnostics nobody{[](const Diagnostic&) {}};
    const Diagnostics::Use ignore{nobody};
    ParseContext context;
    const ParseContext::Use memory{context};
    std::vector<Trivia> trivia;
    Scanner scanner{text, &trivia};
    KREL_STYPE value;
    TokenLocation location;
    std::vector<Token> known;
    while (const int code = krel_lex(&value, &location, scanner.handle())) {
        known.push_back({Token::Kind::Word, code, location.range()});
        if (code == T_STRING_LITERAL || code == T_CHARACTER_LITERAL) {
            std::free(value.text);
        }
    }
    const auto words = static_cast<std::ptrdiff_t>(known.size());
    for (const auto& [kind, range] : trivia) {
        known.push_back(
            {kind == Trivia::Kind::Comment ? Token::Kind::Comment : Token::Kind::IllegalCharacter,
             0, range});
    }
    std::inplace_merge(
        known.begin(), known.begin() + words, known.end(),
        [](const Token& left, const Token& right) { return left.range.begin < right.range.begin; });
    std::vector<Token> pieces;
    const auto fillUpTo = [&pieces](std::uint32_t end) {
        const std::uint32_t begin = pieces.empty() ? 0 : pieces.back().range.end;
        if (begin < end) {
            pieces.push_back({Token::Kind::WhiteSpace, 0, {begin, end}});
        }
    };
    for (const Token& token : known) {
        fillUpTo(token.range.begin);
        pieces.push_back(token);
    }
    fillUpTo(static_cast<std::uint32_t>(text.size()));
    return pieces;
}

std::unique_ptr<Compilation> compile(std::string text, const std::string& name,
                                     const Request& request) {
    checkLength(text);
    return std::make_unique<Compilation>(std::move(text), name, request);
}

}  // namespace FrontEnd

}  // namespace krel
