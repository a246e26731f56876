// What runs before the program's main and after it, in executables that are linked without the C
// library. The linker adds this object to each of them.
//
// The executable is linked for address 0 and loaded anywhere. So the addresses in its data have to
// be corrected first; until then nothing here may use such an address. It is compiled like the
// runtime: without any function of the C library.

#include <elf.h>

#include <cstdint>

#include "codegen/runtime/systemCalls.hpp"

extern "C" {

/// What the linker knows about the executable.
#pragma GCC visibility push(hidden)
extern const char __ehdr_start[];
extern const Elf64_Rela __rela_start[];
extern const Elf64_Rela __rela_end[];
extern const char __relro_start[];
extern const char __relro_end[];
extern void (*const __init_array_start[])(int, char**, char**);
extern void (*const __init_array_end[])(int, char**, char**);
extern void (*const __fini_array_start[])();
extern void (*const __fini_array_end[])();
#pragma GCC visibility pop

/// The program's; what it does not take of the arguments, it leaves alone.
[[gnu::visibility("hidden")]] int programMain(int, char**, char**) asm("main");

/// Ends the program: runs what is to run after it, the last first.
[[noreturn, gnu::visibility("default")]] void exit(int status) {
    for (auto entry = __fini_array_end; entry != __fini_array_start;) {
        (*--entry)();
    }
    krel::system::exitProcess(status);
}

/// Corrects the addresses in the data. These are then as constant as the code.
static void relocate() {
    const auto base = reinterpret_cast<std::uintptr_t>(__ehdr_start);
    for (const Elf64_Rela* relocation = __rela_start; relocation != __rela_end; ++relocation) {
        *reinterpret_cast<std::uintptr_t*>(base + relocation->r_offset) =
            base + static_cast<std::uintptr_t>(relocation->r_addend);
    }
    constexpr long readOnly = 1;
    krel::system::call(krel::system::number::mprotect, krel::system::addressOf(__relro_start),
                       __relro_end - __relro_start, readOnly);
}

/// Clears the part of the stack that has been used for the start-up and will be used by main, whose
/// arrays without values then hold zeroes: as if nothing had run before it. It is several times as
/// large as what the functions above and the runtime's take.
[[gnu::noinline]] static void clearStack() {
    volatile long used[512];
    for (volatile long& word : used) {
        word = 0;
    }
}

/// The kernel has put onto the stack: the number of arguments, their addresses, a null, and the
/// addresses of the environment's texts.
[[noreturn, gnu::used]] static void start(long* stack) asm("krel_start_program");
static void start(long* stack) {
    const int count = static_cast<int>(stack[0]);
    char** const arguments = reinterpret_cast<char**>(stack + 1);
    char** const environment = arguments + count + 1;
    relocate();
    for (auto entry = __init_array_start; entry != __init_array_end; ++entry) {
        (*entry)(count, arguments, environment);
    }
    clearStack();
    exit(programMain(count, arguments, environment));
}

/// Where the kernel enters the program. It does not say what %rbp is; 0 marks the outermost frame.
[[gnu::naked, gnu::visibility("default")]] void _start() {
    asm volatile(
        "xorl %ebp, %ebp\n\t"
        "movq %rsp, %rdi\n\t"
        "andq $-16, %rsp\n\t"
        "call krel_start_program");
}

}  // extern "C"
