#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "parser/parseContext.hpp"
#include "shared/error/diagnostics.hpp"
#include "shared/error/lineIndex.hpp"
#include "shared/error/place.hpp"
#include "shared/krelir-cfg/ir-program.hpp"

namespace krel {

class Node;

/// The whole compiler as one call, for tools: takes a text, returns all that the passes make of it
/// up to the assembly, and leaves nothing behind. It writes to no stream and opens no file. May be
/// called any number of times, on one thread.
namespace FrontEnd {

/// A fault of the program, as it was reported.
struct Fault {
    DiagnosticKind kind;
    Place place;
    std::string message;  // empty when the kind says all that is known
    std::string line;     // as the compiler prints it, without the line feed
};

/// A piece of the source. All pieces, in order, make up the source.
struct Token {
    enum class Kind { Word, WhiteSpace, Comment, IllegalCharacter };

    Kind kind;
    int code;  // of a word: the parser's code for the token (parser/parser.hpp); else 0
    SourceRange range;
};

/// What is wanted besides the results of the passes.
struct Request {
    bool parseOnly = false;  // no pass behind the parser
    bool tokens = false;
    bool parsedTree = false;  // a copy of the tree as it was parsed
    bool sources = false;     // where lines of the intermediate code and of the assembly come from
};

/// How far a compilation came.
enum class Outcome {
    SyntaxFaults,    // found while parsing
    SemanticFaults,  // found by the analysis
    NotTranslated,   // the lowering or the code generator refused: "Compilation error: ..."
    InternalError,   // "Internal error: ..."
    Complete         // all passes that were asked for
};

/// A line of the intermediate code: an instruction.
struct IRLine {
    std::size_t function;  // indexes in the program, the function, the block
    std::size_t block;
    std::size_t instruction;
    SourceRange source;  // empty unless sources were asked for
};

/// All that a compilation has made. It owns what its functions return pointers or references to.
class Compilation {
public:
    Compilation(std::string itsText, const std::string& itsName, const Request& request);
    Compilation(const Compilation&) = delete;
    Compilation& operator=(const Compilation&) = delete;
    ~Compilation();

    /// The source as it was given, and its name as messages show it.
    const std::string& text() const { return source; }
    const std::string& name() const { return sourceName; }
    /// The bytes of a range.
    std::string_view textOf(SourceRange range) const;
    /// Lines and columns of the source.
    const LineIndex& lines() const { return lineIndex; }

    Outcome outcome() const { return howFar; }
    /// The faults in the order in which they were found.
    const std::vector<Fault>& faults() const { return found; }
    /// The message of an outcome that is NotTranslated or InternalError, without the prefix.
    const std::string& failure() const { return failureMessage; }

    /// Asked for by Request::tokens.
    const std::vector<Token>& tokens() const { return pieces; }
    /// The tree as it was parsed, asked for by Request::parsedTree; null when it was not asked for,
    /// or after a syntax error.
    const Node* parsedTree() const { return asParsed; }
    /// The tree as far as it was analysed; null after a syntax error.
    const Node* tree() const { return context.root; }
    /// A tree as the compiler dumps it.
    std::string jsonOf(const Node& node) const;

    /// The declaration of a name in a function; the function itself has its own name. Null when
    /// there is none.
    const Symbol* symbol(std::string_view function, std::string_view name) const;
    /// All symbols of a function, the function's first, in the order of their declaration.
    std::vector<const Symbol*> symbolsOf(std::string_view function) const;
    /// All symbols; to look one up by its name, hold a NamesInUse.
    const SymbolTable& symbolTable() const { return context.symbolTable; }
    /// As long as this object lives, texts that are names of the compilation are found as names.
    class NamesInUse {
    public:
        explicit NamesInUse(const Compilation& compilation) : memory(compilation.context) {}

    private:
        ParseContext::Use memory;
    };
    /// The names of all functions in the order of their definition, without those that were
    /// refused.
    std::vector<std::string> functions() const;

    /// The intermediate code; empty when the compilation did not get so far.
    const IRProgram& ir() const { return program; }
    /// Every instruction of it, in order.
    const std::vector<IRLine>& irLines() const { return instructions; }
    /// The assembly text, as far as it was made.
    const std::string& assembly() const { return assemblyText; }
    /// For each line of the assembly the number of the line of the intermediate code that it comes
    /// from, or `none`. Asked for by Request::sources.
    const std::vector<std::size_t>& irLineOfAssembly() const { return originOfAssembly; }
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    /// The line of the intermediate code at which the code generator gave up; `none` when it did
    /// not, or before it had begun with a function. Asked for by Request::sources.
    std::size_t refusedIRLine() const { return refusedLine; }

private:
    void run(const Request& request);
    Outcome compile(const Request& request);
    Outcome translate(const Request& request);
    void listInstructions(const std::vector<SourceRange>& ranges);

    std::string source;
    std::string sourceName;
    LineIndex lineIndex;
    Diagnostics diagnostics;
    mutable ParseContext context;  // looking a name up puts its memory to use
    Outcome howFar = Outcome::SyntaxFaults;
    std::vector<Fault> found;
    std::string failureMessage;
    std::vector<Token> pieces;
    const Node* asParsed = nullptr;  // in the context's memory
    IRProgram program;
    std::vector<IRLine> instructions;
    std::string assemblyText;
    std::vector<std::size_t> originOfAssembly;
    std::size_t refusedLine = none;
};

/// The tokens of a text of less than two gigabytes, which need not be a program: the scanner goes
/// on behind an illegal character. Throws what `compile` throws.
std::vector<Token> tokensOf(const std::string& text);

/// Compiles a text of less than two gigabytes under a name. Never fails because of the text: faults
/// are part of the result. Throws std::bad_alloc, and std::length_error for a longer text.
std::unique_ptr<Compilation> compile(std::string text, const std::string& name,
                                     const Request& request = {});

}  // namespace FrontEnd

}  // namespace krel
