/* The other side of a request, small enough not to disturb the measurement:
 *
 *     launch PROGRAM      runs it with its own environment and standard input, as a web server does
 *     launch PROGRAM all  the same, as the parent of all that the program leaves behind
 *     launch PORT         sends its standard input to the web server on this machine, as a client
 * does
 *
 * Prints one line:
 *     microseconds to the last byte of the answer, microseconds to its end of file,
 *     microseconds to the end of the program, processor microseconds of the program (including
 *     children that it waited for), the same with "all" that it left behind, peak resident KB,
 *     wait status, or 1 for a response other than 200
 *
 * Only "all" changes what is measured: a child whose parent has ended must see init as its parent,
 * as on a device, and not this program.
 *
 * This is a separate program because of peak memory: a process inherits the peak of the process
 * that started it, which must therefore be lower than that of any program worth measuring. */
#define _GNU_SOURCE
#include <arpa/inet.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
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

static pid_t start_program(char* program, const int* ends)
{
    const pid_t child = vfork(); /* the child does not pay for a copy of this process */
    if (child == 0) {
        setpgid(0, 0);
        dup2(ends[1], STDOUT_FILENO);
        execl(program, program, (char*)NULL);
        _exit(127);
    }
    close(ends[1]);
    return child;
}

static int send_request(int port, const char* request, size_t size)
{
    const struct sockaddr_in server = {.sin_family = AF_INET,
                                       .sin_port = htons((uint16_t)port),
                                       .sin_addr.s_addr = htonl(INADDR_LOOPBACK)};
    const int connection = socket(AF_INET, SOCK_STREAM, 0);
    if (connect(connection, (const struct sockaddr*)&server, sizeof server) != 0 ||
        write(connection, request, size) != (ssize_t)size) {
        exit(2);
    }
    return connection;
}

int main(int count, char** arguments)
{
    static char buffer[65536];
    int ends[2];
    if (count < 2 || pipe2(ends, O_CLOEXEC) != 0) {
        return 2;
    }
    prctl(PR_SET_CHILD_SUBREAPER, count > 2);
    const int port = atoi(arguments[1]);
    const size_t size = port != 0 ? fread(buffer, 1, sizeof buffer, stdin) : 0;

    const long long start = now();
    const pid_t child = port != 0 ? 0 : start_program(arguments[1], ends);
    const int answer = port != 0 ? send_request(port, buffer, size) : ends[0];
    long long last_byte = start;
    int status = port != 0;
    for (ssize_t got; (got = read(answer, buffer, sizeof buffer)) > 0; last_byte = now()) {
        if (last_byte == start && strncmp(buffer, "HTTP/1.0 200 ", 13) == 0) {
            status = 0;
        }
    }
    const long long answered = now();

    struct rusage own = {0}, other;
    wait4(child, &status, 0, &own); /* fails if there is none */
    const long long ended = now();
    long long all = processor_time(&own);
    while (wait4(-1, NULL, 0, &other) > 0) {
        all += processor_time(&other);
    }
    while (child != 0 &&
           kill(-child, 0) == 0) { /* the next run must not compete with the rest of this one */
        usleep(1000);
    }
    printf("%lld %lld %lld %lld %lld %ld %d\n", last_byte - start, answered - start, ended - start,
           processor_time(&own), all, own.ru_maxrss, status);
    return 0;
}
