// The command line, and all passes in their order. Comes in: the words of the command line. Goes
// out: the executable, the dumps that were asked for, messages, and an exit code. The working
// directory receives the dumps; the variables of parser/facade.hpp are set.

#include "driver/compilerDriver.hpp"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "KrelIR/KrelIR.hpp"
#include "codegen/codeGenerator.hpp"
#include "driver/nativeBuild.hpp"
#include "parser/facade.hpp"
#include "semantic_analyzer/semanticAnalyzer.hpp"
#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"
#include "shared/error/internalError.hpp"

namespace fs = std::filesystem;
using namespace krel;

namespace CompilerDriver {

namespace {

constexpr int failure = 1;

/// A dump is written into the working directory (kept), whatever directory the source is in.
fs::path dumpPath(const fs::path& source, std::string_view suffix) {
    return source.stem().string().append(suffix);
}

bool openDumpFile(const fs::path& path, std::ofstream& stream) {
    stream.open(path);
    if (!stream) {
        std::cerr << "Could not open " << path << " for writing.\n";
        return false;
    }
    return true;
}

/// Writes a dump with `write` and says so on standard output, at once: the process may abort before
/// it ends. False, after a message on standard error, when the file cannot be opened or written.
template <typename Write>
bool writeDump(const fs::path& path, const char* what, Write write) {
    std::ofstream stream;
    if (!openDumpFile(path, stream)) {
        return false;
    }
    write(stream);
    stream.close();
    if (!stream) {
        std::cerr << "Could not write " << path << ".\n";
        return false;
    }
    std::cout << what << " written to " << path << "." << std::endl;
    return true;
}

bool dumpAst(const fs::path& path) {
    return writeDump(path, "AST", [](std::ostream& out) {
        ast->printJSON(out, 0);
        out << '\n';
    });
}

bool dumpIrProgram(const IRProgram& program, const fs::path& path) {
    return writeDump(path, "KrelIR", [&](std::ostream& out) { program.print(out); });
}

/// Parses the source into `ast` and `symbolTable`. False when it cannot be read (after a message)
/// or has errors (which are reported).
bool parseSource(const fs::path& source) {
    std::FILE* const file = std::fopen(source.c_str(), "r");
    if (file == nullptr) {
        std::perror(source.c_str());
        return false;
    }
    yyin = file;
    const int status = yyparse();
    if (status == unreadableSource) {
        std::perror(source.c_str());
    }
    std::fclose(file);
    return status == 0 && !Error::hasErrors() && ast != nullptr;
}

/// Writes the assembly of the program, links it, and returns the exit code. Throws what the code
/// generator throws.
int build(const IRProgram& program, const Options& options, const std::string& compiler,
          const fs::path& runtime) {
    std::unique_ptr<TemporaryAssembly> temporary;
    if (!options.dumpAssembly) {
        temporary = std::make_unique<TemporaryAssembly>();
    }
    const fs::path assembly =
        options.dumpAssembly ? dumpPath(options.source, ".s") : temporary->path();
    std::ofstream stream;
    if (!openDumpFile(assembly, stream)) {
        return failure;
    }
    CodeGenerator(symbolTable).generate(program, stream);
    stream.close();
    if (!stream) {
        throw std::runtime_error("could not write assembly file");
    }
    if (options.dumpAssembly) {
        std::cout << "Assembly written to " << assembly << "." << std::endl;
    }
    const int status = runNativeCompiler(compiler, assembly, runtime, options.output);
    if (status != 0) {
        std::cerr << "Native compilation failed.\n";
    }
    return status;
}

/// Lowers the tree and builds the executable; returns the exit code.
int generate(const Options& options, const std::string& compiler, const fs::path& runtime) {
    // Kept until the process ends, which is soon: freeing a large program only takes time.
    static KrelIR& generator = *new KrelIR;
    try {
        const IRProgram& program = generator.analyze(ast);
        if (options.dumpIr && !dumpIrProgram(program, dumpPath(options.source, ".ir"))) {
            return failure;
        }
        const int status = build(program, options, compiler, runtime);
        if (status != 0) {
            return status;
        }
    } catch (const InternalError&) {
        throw;
    } catch (const std::exception& exception) {
        std::cerr << "Compilation error: " << exception.what() << "\n";
        return failure;
    }
    std::cout << "Compiled " << options.source << " to " << options.output << ".\n";
    return 0;
}

/// The option that a word of the command line sets; null when it sets none.
bool Options::*flagOf(std::string_view word) {
    constexpr std::pair<std::string_view, bool Options::*> flags[] = {
        {"--ast-dump", &Options::dumpParserAst},
        {"--ast-semantic-dump", &Options::dumpSemanticAst},
        {"--ir-dump", &Options::dumpIr},
        {"--asm-dump", &Options::dumpAssembly},
    };
    const auto entry = std::find_if(std::begin(flags), std::end(flags),
                                    [word](const auto& flag) { return flag.first == word; });
    return entry == std::end(flags) ? nullptr : entry->second;
}

/// The words of the command line, read one by one.
class CommandLine {
public:
    CommandLine(char** first, char** last) : next(first), end(last) {}

    bool atEnd() const { return next >= end; }
    bool hasSource() const { return sourceIsKnown; }
    bool hasOutput() const { return outputIsKnown; }

    /// Takes the next word, and what belongs to it, into the options. False for a usage error.
    bool readInto(Options& options) {
        const std::string_view word = *next++;
        if (const auto flag = flagOf(word); flag != nullptr) {
            options.*flag = true;
            return true;
        }
        return word == "-o" ? readOutput(options) : readSource(word, options);
    }

private:
    bool readOutput(Options& options) {
        if (outputIsKnown || atEnd()) {
            return false;
        }
        options.output = *next++;
        outputIsKnown = true;
        return true;
    }

    bool readSource(std::string_view word, Options& options) {
        if (word.starts_with('-') || sourceIsKnown) {
            return false;
        }
        options.source = word;
        sourceIsKnown = true;
        return true;
    }

    char** next;
    char** end;
    bool sourceIsKnown = false;
    bool outputIsKnown = false;
};

}  // namespace

bool parseOptions(int argc, char** argv, Options& options) {
    CommandLine line{argv + 1, argv + argc};
    while (!line.atEnd()) {
        if (!line.readInto(options)) {
            return false;
        }
    }
    if (!line.hasSource() || options.source.extension() != ".krl") {
        return false;
    }
    if (!line.hasOutput()) {
        options.output = fs::path{options.source}.replace_extension();
    }
    return !options.output.empty();
}

void printUsage(const char* program, std::ostream& out) {
    out << "Usage: " << program << " <source.krl> [-o output] [dump-options]\n"
        << "Dump options:\n"
        << "  --ast-dump           Write <source>.ast.json\n"
        << "  --ast-semantic-dump  Write <source>.semantic.json\n"
        << "  --ir-dump            Write <source>.ir\n"
        << "  --asm-dump           Write <source>.s\n";
}

int compile(const Options& options, const char* argv0) {
    std::string compiler = findProgram("gcc");
    if (compiler.empty()) {
        compiler = findProgram("clang");
    }
    if (compiler.empty()) {
        std::cerr << "No native compiler found (install gcc or clang).\n";
        return failure;
    }
    const fs::path runtime = findRuntime(argv0);
    if (runtime.empty()) {
        std::cerr << "Could not find codegen/runtime.o relative to krelcc.\n";
        return failure;
    }
    Error::setSourceFile(options.source.string());
    if (!parseSource(options.source)) {
        return failure;
    }
    if (options.dumpParserAst && !dumpAst(dumpPath(options.source, ".ast.json"))) {
        return failure;
    }
    SemanticAnalyzer(symbolTable).analyze(ast);
    if (Error::hasErrors()) {
        return failure;
    }
    if (options.dumpSemanticAst && !dumpAst(dumpPath(options.source, ".semantic.json"))) {
        return failure;
    }
    return generate(options, compiler, runtime);
}

}  // namespace CompilerDriver
