// Preloaded into a program, interrupts its system calls every millisecond.
#include <signal.h>
#include <sys/time.h>

static void ignore(int signal) {
    (void)signal;
}

__attribute__((constructor)) static void interrupt(void) {
    const struct sigaction action = {.sa_handler = ignore};
    sigaction(SIGALRM, &action, 0);
    const struct timeval millisecond = {.tv_usec = 1000};
    const struct itimerval often = {.it_interval = millisecond, .it_value = millisecond};
    setitimer(ITIMER_REAL, &often, 0);
}
