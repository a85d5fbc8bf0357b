/* The web server's side of a request, small enough not to disturb what it measures.
 *
 *     launch PROGRAM              runs one request and prints one line:
 *         microseconds to the end of the answer, microseconds to the end of the program,
 *         processor microseconds of the program (with children that it waited for itself),
 *         processor microseconds of it and all its descendants, peak resident KB, wait status
 *     launch SECONDS PROGRAM      runs one request after the other, prints how many
 *
 * Environment and standard input are handed on. A single request's descendants are waited for
 * before anything is printed; those of a series of requests are left to the system, as a web
 * server leaves them.
 *
 * Peak memory is why this is a program: a process inherits the peak of the one that started it, so
 * that must have less than any program worth measuring. */
#define _GNU_SOURCE
#include <stdio.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static long now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000 + time.tv_nsec / 1000;
}

static long processor_time(const struct rusage* usage)
{
    return (usage->ru_utime.tv_sec + usage->ru_stime.tv_sec) * 1000000 + usage->ru_utime.tv_usec +
           usage->ru_stime.tv_usec;
}

/* Starts the program with its standard output in a pipe and reads that to its end. */
static pid_t run(char* program)
{
    int ends[2];
    if (pipe(ends) != 0) {
        exit(2);
    }
    const pid_t child = vfork(); /* nothing of this process is copied at the child's cost */
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl(program, program, (char*)NULL);
        _exit(127);
    }
    close(ends[1]);
    static char answer[65536];
    while (read(ends[0], answer, sizeof answer) > 0) {
    }
    close(ends[0]);
    return child;
}

static int run_once(char* program)
{
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const long start = now();
    const pid_t child = run(program);
    const long answered = now();

    int status = 0;
    struct rusage own;
    wait4(child, &status, 0, &own);
    const long ended = now();

    long all = processor_time(&own);
    struct rusage helper;
    while (wait4(-1, NULL, 0, &helper) > 0) {
        all += processor_time(&helper);
    }
    printf("%ld %ld %ld %ld %ld %d\n", answered - start, ended - start, processor_time(&own), all,
           own.ru_maxrss, status);
    return 0;
}

static int run_series(double seconds, char* program)
{
    const long end = now() + (long)(seconds * 1e6);
    int count = 0;
    for (; now() < end; ++count) {
        int status = 0;
        waitpid(run(program), &status, 0);
        if (status != 0) {
            return 1;
        }
    }
    printf("%d\n", count);
    return 0;
}

int main(int count, char** arguments)
{
    switch (count) {
    case 2:
        return run_once(arguments[1]);
    case 3:
        return run_series(atof(arguments[1]), arguments[2]);
    default:
        return 2;
    }
}
