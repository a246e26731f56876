#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "shared/error/place.hpp"

namespace krel {

/// Which pass found a fault in the user's program.
enum class DiagnosticKind { Lexer, Syntax, Semantic };

/// One fault. The message is valid only until the sink returns. It is empty when the kind says all
/// that is known.
struct Diagnostic {
    DiagnosticKind kind;
    Place place;
    std::string_view message;
};

/// The faults found in one source: counts them and hands each to a sink, as soon as it is found.
class Diagnostics {
public:
    using Sink = std::function<void(const Diagnostic&)>;

    /// The sink writes the faults as lines on standard error, each in one write.
    Diagnostics();
    explicit Diagnostics(Sink itsSink);
    Diagnostics(const Diagnostics&) = delete;
    Diagnostics& operator=(const Diagnostics&) = delete;
    ~Diagnostics() = default;

    /// Remembers the part of `path` after its last '/' or '\' as the name of the source.
    void setSourceFile(std::string_view path);
    /// The name set last; empty when none was set.
    const std::string& getSourceFile() const { return sourceFile; }
    /// Whether anything was reported.
    bool hasErrors() const { return errorCount > 0; }
    void report(const Diagnostic& diagnostic);

    /// The diagnostic as a line, with its line feed.
    std::string lineOf(const Diagnostic& diagnostic) const;

    /// As long as this object lives, the passes report here; afterwards, where they reported
    /// before.
    class Use {
    public:
        explicit Use(Diagnostics& diagnostics);
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;
        ~Use();

    private:
        Diagnostics* before;
    };
    /// The diagnostics in use; those of the process when no others are.
    static Diagnostics& current();

private:
    Sink sink;
    std::string sourceFile;
    int errorCount = 0;
};

}  // namespace krel
