// The program krel. Comes in: the command line. Goes out: what the command does, and an exit
// status; or the process becomes another program.

#include <algorithm>
#include <cstddef>
#include <exception>

#include "shared/process/standardStreams.hpp"
#include "tools/krel/commands.hpp"
#include "tools/krel/report.hpp"

int main(int argc, char** argv) {
    krel::occupyClosedStandardStreams();
    const krel::Words words{argv, static_cast<std::size_t>(argc)};
    try {
        return krel::runCommandLine(words.subspan(std::min<std::size_t>(words.size(), 1)));
    } catch (const krel::WrongUse& wrongUse) {
        krel::complain(wrongUse.what());
        return krel::wronglyUsed;
    } catch (const std::exception& exception) {
        krel::complain(exception.what());
        return krel::failed;
    }
}
