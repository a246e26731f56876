// Comes in: the descriptors that the process was started with. Goes out: the same, with the closed
// standard streams occupied. Open ones are not changed.

#include "shared/process/standardStreams.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

/// A new descriptor gets the lowest number that is free. One that is opened with O_PATH can be
/// neither read nor written.
void krel::occupyClosedStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
            open("/", O_PATH | O_CLOEXEC);
        }
    }
}
