// Makes a table of rule pages from the comments of rules. Comes in: the name of the file to write,
// the header that declares the function with the table, and the function's name; or --markdown for
// the pages as documents have them, on standard output. Then the source files. Goes out: that file.
// A page is a run of lines "/// ..." that begins with "/// # NAME".

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

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
    const std::vector<std::string> words{argv + 1, argv + argc};
    const bool asMarkdown = words.at(0) == "--markdown";
    Pages pages;
    try {
        for (std::size_t index = asMarkdown ? 1 : 3; index < words.size(); ++index) {
            readPages(words[index], pages);
        }
    } catch (const std::exception& exception) {
        std::cerr << exception.what() << "\n";
        return EXIT_FAILURE;
    }
    if (asMarkdown) {
        writeMarkdown(pages);
        return EXIT_SUCCESS;
    }
    std::ofstream out{words[0]};
    out << "#include \"" << words.at(1) << "\"\n\nstd::span<const krel::Check::RulePage> "
        << words.at(2) << "() {\n    static constexpr krel::Check::RulePage pages[] = {\n";
    for (const auto& [name, text] : pages) {
        const std::string title = "# " + name + "\n";
        out << "{" << literal(name) << ", " << literal(summaryOf(text)) << ",\n"
            << literal(title) << " " << literal(text) << "},\n";
    }
    out << "    };\n    return pages;\n}\n";
    return out.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
