// The Linux system calls that the runtime needs, made directly: a Krel function may be named
// `write` or `mmap`, and would replace that of the C library.
//
// Every function returns what the kernel returns: a value from 0 up, or the negated error number.
#pragma once

#include <cstddef>
#include <cstdint>

namespace krel::system {

// Error numbers of the kernel's interface, as far as the runtime tells them apart.
inline constexpr long interrupted = 4;          // EINTR
inline constexpr long inputOutputError = 5;     // EIO
inline constexpr long badDescriptor = 9;        // EBADF
inline constexpr long tryAgain = 11;            // EAGAIN
inline constexpr long fileTooLarge = 27;        // EFBIG
inline constexpr long noSpaceLeft = 28;         // ENOSPC
inline constexpr long brokenPipe = 32;          // EPIPE
inline constexpr long diskQuotaExceeded = 122;  // EDQUOT

namespace number {
inline constexpr long write = 1;
inline constexpr long poll = 7;
inline constexpr long mmap = 9;
inline constexpr long mprotect = 10;
inline constexpr long munmap = 11;
inline constexpr long sigaction = 13;
inline constexpr long sigprocmask = 14;
inline constexpr long sigreturn = 15;
inline constexpr long ioctl = 16;
inline constexpr long madvise = 28;
inline constexpr long getpid = 39;
inline constexpr long sigaltstack = 131;
inline constexpr long gettid = 186;
inline constexpr long exitGroup = 231;
inline constexpr long tgkill = 234;
inline constexpr long prlimit = 302;
}  // namespace number

inline long call(long number, long first = 0, long second = 0, long third = 0, long fourth = 0,
                 long fifth = 0, long sixth = 0) {
    register long r10 asm("r10") = fourth;
    register long r8 asm("r8") = fifth;
    register long r9 asm("r9") = sixth;
    long result;
    asm volatile("syscall"
                 : "=a"(result)
                 : "a"(number), "D"(first), "S"(second), "d"(third), "r"(r10), "r"(r8), "r"(r9)
                 : "rcx", "r11", "memory");
    return result;
}

inline long addressOf(const volatile void* pointer) {
    return static_cast<long>(reinterpret_cast<std::uintptr_t>(pointer));
}

inline long write(int descriptor, const char* bytes, std::size_t length) {
    return call(number::write, descriptor, addressOf(bytes), static_cast<long>(length));
}

/// Waits until the descriptor takes bytes again, or has an error to report.
inline void waitUntilWritable(int descriptor) {
    struct PollEntry {
        int descriptor;
        short events;
        short returned;
    };
    constexpr short readyForOutput = 4;
    PollEntry entry = {descriptor, readyForOutput, 0};
    constexpr long noTimeout = -1;
    call(number::poll, addressOf(&entry), 1, noTimeout);
}

inline bool isTerminal(int descriptor) {
    char settings[64];
    constexpr long getTerminalSettings = 0x5401;
    return call(number::ioctl, descriptor, getTerminalSettings, addressOf(settings)) == 0;
}

/// Ends the process at once; nothing of the C library runs any more.
[[noreturn]] inline void exitProcess(int status) {
    for (;;) {
        call(number::exitGroup, status);
    }
}

/// Sends a signal to the calling thread.
inline void raise(int signal) {
    call(number::tgkill, call(number::getpid), call(number::gettid), signal);
}

}  // namespace krel::system
