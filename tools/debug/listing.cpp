// Intermediate code and assembly side by side. Comes in: a program. Goes out: rows.

#include "tools/debug/listing.hpp"

#include <string>

namespace krel::Debug {

namespace {

/// The lines of the assembly that come from each line of the intermediate code, without directives
/// and labels.
std::vector<std::vector<std::string_view>> assemblyByLine(
    const FrontEnd::Compilation& compilation) {
    std::vector<std::vector<std::string_view>> found(compilation.irLines().size());
    std::string_view rest = compilation.assembly();
    for (const std::size_t origin : compilation.irLineOfAssembly()) {
        const std::size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
        const std::size_t begin = line.find_first_not_of(" \t");
        if (origin >= found.size() || begin == line.npos || begin == 0 || line[begin] == '.') {
            continue;
        }
        found[origin].push_back(line.substr(begin));
    }
    return found;
}

}  // namespace

Listing::Listing(const Program& program) {
    const auto assembly = assemblyByLine(*program.compilation);
    for (std::size_t irLine = 0; irLine < assembly.size(); ++irLine) {
        firstRows.push_back(all.size());
        all.push_back({irLine, program.irText(irLine), false});
        for (const std::string_view text : assembly[irLine]) {
            all.push_back({irLine, text, true});
        }
    }
}

}  // namespace krel::Debug
