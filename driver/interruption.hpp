#pragma once

#include <sys/types.h>

#include <csignal>

/// What a signal that ends the compiler has to undo: the native compiler that it has started, and
/// the temporary files that it has made. A signal that is already ignored or handled when the first
/// of these appears stays so. All of this is for the whole process, as signals are.
namespace CompilerDriver {

/// As long as it lives, signals that would end the process wait. Hold them for short work only: a
/// user who presses Ctrl-C waits, too.
class SignalsHeld {
public:
    SignalsHeld();
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld();

    /// Lets signals through again in a new child, before it becomes another program. There they end
    /// the child and undo nothing. Changes no memory, so it may run in a child of vfork.
    void releaseInChild() const;

private:
    sigset_t before;
};

/// A file that is deleted when a signal ends the process. Has to be made and destroyed while
/// signals are held, together with the file.
class DoomedFile {
public:
    /// The path stays the caller's and must outlive this object.
    explicit DoomedFile(const char* itsPath);
    DoomedFile(const DoomedFile&) = delete;
    DoomedFile& operator=(const DoomedFile&) = delete;
    ~DoomedFile();

private:
    friend void undoAndEnd(int signal);

    const char* path;
    DoomedFile* next;
};

/// Names the child process that a signal is passed on to. The compiler then waits for its end, and
/// kills it after a second. To be called while signals are held.
void setChild(pid_t child);

}  // namespace CompilerDriver
