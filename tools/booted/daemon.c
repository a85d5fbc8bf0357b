/* Stand-in for a peer daemon: writes the number of SIGUSR2 received into the file that its argument
 * names. Runs before every other process: of two signals pending together, one would be lost. */
#include <sched.h>
#include <signal.h>
#include <stdio.h>

int main(int count, char** arguments)
{
    const struct sched_param first = {.sched_priority = 1};
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGUSR2);
    if (count != 2 || sigprocmask(SIG_BLOCK, &signals, NULL) != 0 ||
        sched_setscheduler(0, SCHED_FIFO, &first) != 0) {
        return 1;
    }
    for (unsigned received = 0;; ++received) {
        FILE* file = fopen(arguments[1], "w");
        if (file == NULL || fprintf(file, "%u\n", received) < 0 || fclose(file) != 0) {
            return 1;
        }
        int signal = 0;
        sigwait(&signals, &signal);
    }
}
