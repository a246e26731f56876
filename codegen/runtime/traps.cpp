// Signals that end the program. Comes in: a signal, or exhausted memory. Goes out: the output so
// far, a line on standard error, and the end of the process. The signals' actions are set here.

#include "codegen/runtime/traps.hpp"

#include <cstddef>

#include "codegen/runtime/output.hpp"
#include "codegen/runtime/report.hpp"
#include "codegen/runtime/systemCalls.hpp"

namespace krel {

namespace {

// What follows are the kernel's structures and numbers for x86-64.

enum Signal : int {
    IllegalInstruction = 4,
    Aborted = 6,
    BusError = 7,
    Arithmetic = 8,
    Segment = 11
};

struct SignalAction {
    void (*handler)(int signal, const struct SignalInfo* info, const struct SignalContext* context);
    unsigned long flags;
    void (*restorer)();
    unsigned long mask;
};

struct SignalInfo {
    int signal;
    int error;
    int code;
    int padding;
    std::uintptr_t faultAddress;
};

struct SignalStack {
    void* base;
    int flags;
    std::size_t size;
};

struct SignalContext {
    unsigned long flags;
    const SignalContext* link;
    SignalStack stack;
    std::uint64_t r8ToR15[8];
    std::uint64_t rdi, rsi, rbp, rbx, rdx, rax, rcx, rsp, rip;
};

constexpr unsigned long withInfo = 0x4;
constexpr unsigned long withRestorer = 0x04000000;
constexpr unsigned long onAlternateStack = 0x08000000;
constexpr unsigned long resetWhenCaught = 0x80000000;

constexpr std::size_t signalSetSize = 8;

alignas(16) char alternateStack[std::size_t{1} << 16];
std::uintptr_t mainStackEnd;

[[gnu::naked]] void returnFromSignal() {
    asm volatile(
        "movl $15, %eax\n\t"
        "syscall");
}

constexpr int trapSignals[] = {IllegalInstruction, BusError, Arithmetic, Segment};

void setSignalAction(int signal, const SignalAction& action) {
    system::call(system::number::sigaction, signal, system::addressOf(&action), 0, signalSetSize);
}

/// Lets a signal through: a parent process may have left it blocked.
void unblockSignal(int signal) {
    constexpr long unblock = 1;
    const std::uint64_t set = std::uint64_t{1} << (signal - 1);
    system::call(system::number::sigprocmask, unblock, system::addressOf(&set), 0, signalSetSize);
}

/// Whether the next instruction is the division that the compiler emits, "idivq %rcx".
bool isDivisionByRcx(std::uintptr_t instruction) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(instruction);
    return bytes[0] == 0x48 && bytes[1] == 0xF7 && bytes[2] == 0xF9;
}

const char* describeArithmeticFault(const SignalContext& context) {
    if (isDivisionByRcx(context.rip) && context.rcx != 0) {
        return "integer division overflow";
    }
    return "integer division by zero";
}

/// A frame that does not fit shows when it is touched: the fault lies between the stack's end and
/// the stack pointer, or just below that, where a call pushes. As long as the stack has room,
/// nothing faults there.
bool isStackOverflow(const SignalInfo& info, const SignalContext& context) {
    constexpr std::uintptr_t pushed = 256;
    return info.faultAddress >= context.rsp - pushed && info.faultAddress < mainStackEnd;
}

bool isSentByProcess(const SignalInfo& info) {
    return info.code <= 0;
}

const char* describe(const SignalInfo& info, const SignalContext& context) {
    if (isSentByProcess(info)) {
        return "ended by a signal from outside";
    }
    switch (info.signal) {
        case Arithmetic:
            return describeArithmeticFault(context);
        case IllegalInstruction:
            return "illegal instruction";
        case Segment:
            return isStackOverflow(info, context) ? "stack overflow" : "invalid memory access";
        default:
            return "invalid memory access";
    }
}

/// When this runs, the signal's action has been reset, and the signal is blocked until it returns.
/// So the signal raised here ends the program on return, before its next instruction. A signal from
/// outside may interrupt a write. That write is not repeated: some bytes would be written twice.
void handleTrap(int signal, const SignalInfo* info, const SignalContext* context) {
    if (!isSentByProcess(*info) || !standardOutput.isFlushing()) {
        standardOutput.flush();
    }
    reportRuntimeError(describe(*info, *context));
    system::raise(signal);
}

}  // namespace

void catchTraps(std::uintptr_t stackEnd) {
    mainStackEnd = stackEnd;
    const SignalStack stack = {alternateStack, 0, sizeof alternateStack};
    system::call(system::number::sigaltstack, system::addressOf(&stack));
    const SignalAction action = {handleTrap,
                                 withInfo | withRestorer | onAlternateStack | resetWhenCaught,
                                 returnFromSignal, 0};
    for (const int signal : trapSignals) {
        setSignalAction(signal, action);
        unblockSignal(signal);
    }
}

void endOutOfMemory() {
    standardOutput.flush();
    reportRuntimeError("out of memory");
    setSignalAction(Aborted, SignalAction{});
    unblockSignal(Aborted);
    system::raise(Aborted);
    system::exitProcess(128 + Aborted);
}

}  // namespace krel
