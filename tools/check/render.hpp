#pragma once

#include <string>
#include <vector>

#include "shared/error/lineIndex.hpp"
#include "tools/check/check.hpp"

namespace krel::Check {

/// A file that was checked, for the renderers.
struct CheckedFile {
    std::string path;
    std::string text;
    Report report;
};

/// The word for a severity.
std::string_view nameOf(Severity severity);

/// The findings of a file as people read them: the place, the line with the range underlined, the
/// help. With colours if asked for.
std::string textOf(const CheckedFile& file, bool colours);

/// The changes that --fix makes, as a unified difference; empty when there are none.
std::string differenceOf(const CheckedFile& file, bool colours);

/// All findings as a JSON document, described in docs/check.md.
std::string jsonOf(const std::vector<CheckedFile>& files);

/// The same as SARIF 2.1.0.
std::string sarifOf(const std::vector<CheckedFile>& files);

}  // namespace krel::Check
