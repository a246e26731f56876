#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>

/// What a child process left behind.
struct ChildResult {
    int status;       // as waitpid gives it
    std::string out;  // all of its standard output
    std::string err;  // all of its standard error

    bool hasExitedWith(int code) const { return WIFEXITED(status) && WEXITSTATUS(status) == code; }
    bool wasKilledBy(int signal) const { return WIFSIGNALED(status) && WTERMSIG(status) == signal; }
};

namespace child_process_detail {

inline std::string contentsOf(std::FILE* file) {
    std::string contents;
    std::rewind(file);
    for (int byte = std::getc(file); byte != EOF; byte = std::getc(file)) {
        contents += static_cast<char>(byte);
    }
    std::fclose(file);
    return contents;
}

}  // namespace child_process_detail

/// Runs `body` in a copy of this process and waits for it; the copy exits with `body`'s result.
/// For what ends a process or stays in it for good: yyparse() parses one program per process, the
/// diagnostics of a process count on, and there are only so many kinds of nodes.
inline ChildResult runInChild(const std::function<int()>& body) {
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    std::cout.flush();
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(fileno(out), STDOUT_FILENO);
        dup2(fileno(err), STDERR_FILENO);
        std::exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {status, child_process_detail::contentsOf(out), child_process_detail::contentsOf(err)};
}
