#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shared/error/place.hpp"

namespace krel {

/// What stands between tokens and is not white space.
struct Trivia {
    enum class Kind { Comment, IllegalCharacter };

    Kind kind;
    SourceRange range;
};

/// Cuts one text into tokens. The generated parser takes its handle.
class Scanner {
public:
    /// Texts have less than two gigabytes. Comments and illegal characters are added to `trivia`,
    /// if it is not null, as they are passed over.
    explicit Scanner(std::string itsText, std::vector<Trivia>* trivia = nullptr);
    Scanner(const Scanner&) = delete;
    Scanner& operator=(const Scanner&) = delete;
    ~Scanner();

    /// The argument for krel_lex (parser/parser.hpp). It belongs to the scanner.
    void* handle() const { return generated; }

    /// What the actions of the generated scanner know of this one.
    struct State {
        const char* text;
        std::uint32_t size;
        int line;  // at which it stands, from 1 on
        std::vector<Trivia>* trivia;
    };

private:
    std::string text;  // and two NULs, as the generated scanner needs them
    State state;
    void* generated = nullptr;
};

}  // namespace krel
