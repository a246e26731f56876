// What the tests by script ask of our assembler and our reader of objects.
//
//     objects compare FILE.s...           what is different between FILE.s, assembled, and FILE.o
//     objects mutate SEED COUNT FILE.s... what is different between mutants of the files, assembled
//                                         by us and by the system; those that we refuse do not
//                                         count
//     objects describe FILE.o             sections, symbols and relocations, as they are read
//
// The status is 1 when something is different.

#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "native/assembler.hpp"
#include "native/files.hpp"
#include "native/notKnown.hpp"
#include "native/objectReader.hpp"
#include "tests/native/support/mutations.hpp"
#include "tests/native/support/objectDifference.hpp"
#include "tests/native/support/systemAssembler.hpp"

namespace {

using namespace krel::Native;

std::string differenceOfFiles(const std::string& assemblyPath) {
    const std::string objectPath = assemblyPath.substr(0, assemblyPath.size() - 1) + "o";
    try {
        const FileContent assembly{assemblyPath.c_str()};
        const FileContent object{objectPath.c_str()};
        return difference(assemble(assembly.text()), readObject(object.text()));
    } catch (const NotKnown& error) {
        return std::string{error.what()} + "\n";
    }
}

/// The number of files that are different.
int compare(const std::vector<std::string>& paths) {
    int count = 0;
    for (const std::string& path : paths) {
        const std::string found = differenceOfFiles(path);
        if (!found.empty()) {
            std::cout << path << ":\n" << found;
            ++count;
        }
    }
    return count;
}

std::optional<ObjectFile> assembledIfKnown(const std::string& text) {
    try {
        return assemble(text);
    } catch (const NotKnown&) {
        return std::nullopt;
    }
}

std::string differenceOfMutants(const ObjectFile& ours, const std::string& text) {
    const std::optional<std::string> file = assembledBySystem(text);
    if (!file) {
        return "only the system refuses it\n";
    }
    try {
        return difference(ours, readObject(*file));
    } catch (const NotKnown& error) {
        return std::string{error.what()} + "\n";
    }
}

/// Mutates until so many mutants were taken; returns how many of them are different.
int mutate(unsigned seed, int count, const std::vector<std::string>& paths) {
    std::mt19937 random{seed};
    std::vector<std::string> texts;
    for (const std::string& path : paths) {
        texts.emplace_back(FileContent{path.c_str()}.text());
    }
    int differing = 0;
    for (int taken = 0; taken < count;) {
        // A symbol at the end: objects without any have no table of symbols, and are not read.
        const std::string text = mutated(texts[random() % texts.size()], random) +
                                 "\t.text\n\t.globl end_of_text\nend_of_text:\n";
        const std::optional<ObjectFile> ours = assembledIfKnown(text);
        if (!ours) {
            continue;
        }
        ++taken;
        const std::string found = differenceOfMutants(*ours, text);
        if (!found.empty()) {
            std::cout << found << "of the text\n" << text << "----\n";
            ++differing;
        }
    }
    return differing;
}

int run(const std::vector<std::string>& arguments) {
    const std::string& mode = arguments.at(0);
    if (mode == "compare") {
        return compare({arguments.begin() + 1, arguments.end()});
    }
    if (mode == "mutate") {
        return mutate(static_cast<unsigned>(std::stoul(arguments.at(1))),
                      std::stoi(arguments.at(2)), {arguments.begin() + 3, arguments.end()});
    }
    if (mode != "describe") {
        throw std::invalid_argument("no such mode: " + mode);
    }
    const FileContent file{arguments.at(1).c_str()};
    std::cout << described(readObject(file.text()));
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    try {
        return run({arguments + 1, arguments + count}) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 2;
    }
}
