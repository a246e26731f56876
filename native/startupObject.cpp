// The start-up code for executables, as it was compiled when this program was built. It lies in the
// program itself, so that no file has to be found.

#include "native/startupObject.hpp"

asm(".section .rodata\n"
    "krel_startup_object:\n"
    ".incbin \"" KREL_STARTUP_OBJECT
    "\"\n"
    "krel_startup_object_end:\n"
    ".previous\n");

extern "C" const char krel_startup_object[];
extern "C" const char krel_startup_object_end[];

namespace krel::Native {

std::string_view startupObject() {
    return {krel_startup_object, krel_startup_object_end};
}

}  // namespace krel::Native
