#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "shared/error/place.hpp"

namespace krel::Check {

/// How bad a finding is: the compiler refuses the program; it does something else than it seems to
/// say; it may be meant otherwise.
enum class Severity { Error, Warning, Hint };

/// A change of the source: the bytes of the range give way to the text.
struct Edit {
    SourceRange range;
    std::string text;
};

/// Something to say about a source.
struct Finding {
    std::string_view rule;  // a name of the rule book (ruleBook.hpp)
    Severity severity = Severity::Error;
    SourceRange range;
    std::string message;
    std::string help;  // the reason and what to write instead; empty when there is nothing
    std::vector<std::size_t> edits = {};  // numbers of the report's edits that repair it
};

}  // namespace krel::Check
