// A stand-in for the native compiler: a program called gcc that does what krelcc asks of one, and
// nothing else. Comes in: an assembly file and the runtime object. Goes out: an executable.
// Whatever it does not know exactly, it leaves to the next compiler on the search path.

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "native/assembler.hpp"
#include "native/files.hpp"
#include "native/linker.hpp"
#include "native/nextCompiler.hpp"
#include "native/notKnown.hpp"
#include "native/objectReader.hpp"
#include "native/startupObject.hpp"

namespace {

namespace Native = krel::Native;

/// gcc ASSEMBLY RUNTIME -o OUTPUT: the only command line that is known.
void build(const std::vector<const char*>& arguments) {
    constexpr std::size_t count = 5;
    const auto isFile = [](std::string_view argument, std::string_view suffix) {
        return argument.ends_with(suffix) && !argument.starts_with('-') &&
               !argument.starts_with('@');
    };
    if (arguments.size() != count || !isFile(arguments[1], ".s") || !isFile(arguments[2], ".o") ||
        std::string_view{arguments[3]} != "-o") {
        throw Native::NotKnown("the command line is not known");
    }
    const Native::FileContent assembly{arguments[1]};
    const Native::FileContent runtime{arguments[2]};
    std::vector<Native::ObjectFile> objects;
    objects.push_back(Native::assemble(assembly.text()));
    objects.push_back(Native::readObject(runtime.text()));
    objects.push_back(Native::readObject(Native::startupObject()));
    Native::writeExecutable(arguments[4], Native::link(objects));
}

int handOn(char** arguments, const char* reason) {
    const std::string tried = Native::becomeNextCompiler(arguments);
    if (tried.empty()) {
        std::fprintf(stderr,
                     "krelcc's native build: %s; no other gcc or clang is on the search path\n",
                     reason);
    } else {
        std::fprintf(stderr, "krelcc's native build: %s; could not run %s: %s\n", reason,
                     tried.c_str(), std::strerror(errno));
    }
    return 1;
}

}  // namespace

int main(int count, char** arguments) {
    try {
        build({arguments, arguments + count});
        return 0;
    } catch (const std::exception& error) {
        return handOn(arguments, error.what());
    }
}
