// The program. Comes in: the command line. Goes out: an exit code, or an abort after an internal
// error.

#include <iostream>

#include "driver/compilerDriver.hpp"
#include "shared/error/internalError.hpp"
#include "shared/process/standardStreams.hpp"

int main(int argc, char** argv) {
    krel::occupyClosedStandardStreams();
    CompilerDriver::Options options;
    if (!CompilerDriver::parseOptions(argc, argv, options)) {
        CompilerDriver::printUsage(argv[0], std::cerr);
        return 1;
    }
    try {
        return CompilerDriver::compile(options, argv[0]);
    } catch (const krel::InternalError& error) {
        krel::abortBecauseOf(error);
    }
}
