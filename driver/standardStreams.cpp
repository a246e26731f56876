// Comes in: the descriptors that the process was started with. Goes out: the same, with the closed
// standard streams occupied. Open ones are not changed.

#include "driver/standardStreams.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

/// A new descriptor has the lowest number that is free; one that only names a place in the file
/// system cannot be read or written.
void CompilerDriver::occupyClosedStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
            open("/", O_PATH | O_CLOEXEC);
        }
    }
}
