// Runs a command and writes what it took, its children included, to a file:
//     wall seconds, CPU seconds (user and system), peak memory in KB, exit status
//
// Usage: measure RESULT COMMAND [ARGUMENT]...
//
// A process inherits the peak of the memory of the one that started it. Started from an interpreter
// a small compiler would therefore show the interpreter's memory as its own; this program has next
// to none. It also keeps the interpreter's own work out of the wall time.
#include <stdio.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double seconds(struct timeval time) {
    return (double)time.tv_sec + (double)time.tv_usec * 1e-6;
}

static double now(void) {
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return (double)time.tv_sec + (double)time.tv_nsec * 1e-9;
}

int main(int argc, char** argv) {
    if (argc < 3) {
        fputs("Usage: measure RESULT COMMAND [ARGUMENT]...\n", stderr);
        return 1;
    }
    const double start = now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(argv[2], argv + 2);
        perror(argv[2]);
        _exit(127);
    }
    int status;
    struct rusage usage;
    if (child < 0 || wait4(child, &status, 0, &usage) < 0) {
        perror("measure");
        return 1;
    }
    const double wall = now() - start;
    const double cpu = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    FILE* result = fopen(argv[1], "w");
    if (result == NULL) {
        perror(argv[1]);
        return 1;
    }
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    fprintf(result, "%.9f %.6f %ld %d\n", wall, cpu, usage.ru_maxrss, code);
    return fclose(result) == 0 ? 0 : 1;
}
