#include <iostream>

#include "driver/compilerDriver.hpp"
#include "driver/standardStreams.hpp"

int main(int argc, char** argv) {
    CompilerDriver::occupyClosedStandardStreams();
    CompilerDriver::Options options;
    if (!CompilerDriver::parseOptions(argc, argv, options)) {
        CompilerDriver::printUsage(argv[0], std::cerr);
        return 1;
    }
    return CompilerDriver::compile(options, argv[0]);
}
