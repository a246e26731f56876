// Makes the table of rule pages from the comments of the rules. Comes in: the name of the file to
// write, or --markdown for the pages as docs/check.md has them, on standard output; and the source
// files. Goes out: that file. A page is a run of lines "/// ..." that begins with "/// # NAME".

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using Pages = std::map<std::string, std::string>;

void readPages(const std::string& path, Pages& pages) {
    std::ifstream source{path};
    if (!source) {
        throw std::runtime_error("cannot read " + path);
    }
    std::string* page = nullptr;
    bool isExample = false;  // where "# " begins a comment of Krel
    for (std::string line; std::getline(source, line);) {
        isExample = isExample != (line.rfind("/// ```", 0) == 0);
        if (line.rfind("/// # ", 0) == 0 && !isExample) {
            page = &pages[line.substr(6)];
        } else if (line.rfind("///", 0) != 0) {
            page = nullptr;
        } else if (page != nullptr) {
            *page += line.size() > 4 ? line.substr(4) + "\n" : "\n";
        }
    }
}

/// The first paragraph behind the first heading, in one line.
std::string summaryOf(const std::string& page) {
    const std::string heading = "## What it finds\n\n";
    const std::size_t begin = std::min(page.find(heading) + heading.size(), page.size());
    std::string summary = page.substr(begin, page.find("\n\n", begin) - begin);
    std::replace(summary.begin(), summary.end(), '\n', ' ');
    return summary;
}

std::string literal(const std::string& text) {
    return "R\"page(" + text + ")page\"";
}

/// The pages below the heading of a document.
void writeMarkdown(const Pages& pages) {
    for (const auto& [name, text] : pages) {
        std::cout << "\n### " << name << "\n";
        std::istringstream lines{text};
        for (std::string line; std::getline(lines, line);) {
            std::cout << (line.rfind("## ", 0) == 0 ? "**" + line.substr(3) + "**" : line) << "\n";
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    Pages pages;
    try {
        for (int index = 2; index < argc; ++index) {
            readPages(argv[index], pages);
        }
    } catch (const std::exception& exception) {
        std::cerr << exception.what() << "\n";
        return EXIT_FAILURE;
    }
    if (std::string{argv[1]} == "--markdown") {
        writeMarkdown(pages);
        return EXIT_SUCCESS;
    }
    std::ofstream out{argv[1]};
    out << "#include \"tools/check/ruleBook.hpp\"\n\nnamespace krel::Check {\n\n"
        << "std::span<const RulePage> allRules() {\n    static constexpr RulePage pages[] = {\n";
    for (const auto& [name, text] : pages) {
        const std::string title = "# " + name + "\n";
        out << "{" << literal(name) << ", " << literal(summaryOf(text)) << ",\n"
            << literal(title) << " " << literal(text) << "},\n";
    }
    out << "    };\n    return pages;\n}\n\n}  // namespace krel::Check\n";
    return out.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
