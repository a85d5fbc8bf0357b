/* The web server's side of a request, small enough not to disturb the measurement. Runs the program
 * named in its argument with its own environment and standard input, and prints one line:
 *     microseconds to the end of the answer, microseconds to the end of the program,
 *     processor microseconds of the program (including children that it waited for),
 *     processor microseconds of it and all its descendants, peak resident KB, wait status
 *
 * This is a separate program because of peak memory: a process inherits the peak of the process
 * that started it, which must therefore be lower than that of any program worth measuring. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <stdio.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static long long now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000 + time.tv_nsec / 1000;
}

static long long processor_time(const struct rusage* usage)
{
    return (usage->ru_utime.tv_sec + usage->ru_stime.tv_sec) * 1000000 + usage->ru_utime.tv_usec +
           usage->ru_stime.tv_usec;
}

int main(int count, char** arguments)
{
    int ends[2];
    if (count != 2 || prctl(PR_SET_CHILD_SUBREAPER, 1) != 0 || pipe2(ends, O_CLOEXEC) != 0) {
        return 2;
    }
    const long long start = now();
    const pid_t child = vfork(); /* the child does not pay for a copy of this process */
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        execl(arguments[1], arguments[1], (char*)NULL);
        _exit(127);
    }
    close(ends[1]);
    static char answer[65536];
    while (read(ends[0], answer, sizeof answer) > 0) {
    }
    const long long answered = now();

    int status = 0;
    struct rusage own;
    wait4(child, &status, 0, &own);
    const long long ended = now();

    long long all = processor_time(&own);
    struct rusage helper;
    while (wait4(-1, NULL, 0, &helper) > 0) {
        all += processor_time(&helper);
    }
    printf("%lld %lld %lld %lld %ld %d\n", answered - start, ended - start, processor_time(&own),
           all, own.ru_maxrss, status);
    return 0;
}
