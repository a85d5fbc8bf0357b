/* The other side of a request, small enough not to disturb the measurement:
 *
 *     launch PROGRAM      runs it with its own environment and standard input, as a web server does
 *     launch PROGRAM all  the same, and adopts the processes that the program leaves behind
 *     launch PORT         sends its standard input to this machine's web server, as a client does
 *
 * Prints one line:
 *     microseconds to the last byte of the answer, microseconds to its end of file, microseconds to
 *     the end of the program, processor microseconds of the program (including children that it
 *     waited for), processor microseconds of it and the adopted processes, peak resident KB, wait
 *     status (1 for a response other than 200)
 *
 * Only "all" adopts them: otherwise a child whose parent has ended belongs to init, as on a device.
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

static char buffer[65536];

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

/* Both return where the answer can be read. */
static int start_program(char* program, pid_t* child)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        exit(2);
    }
    *child = vfork(); /* the child does not pay for a copy of this process */
    if (*child == 0) {
        setpgid(0, 0);
        dup2(ends[1], STDOUT_FILENO);
        execl(program, program, (char*)NULL);
        _exit(127);
    }
    close(ends[1]);
    return ends[0];
}

static int send_request(int port, size_t size)
{
    const struct sockaddr_in server = {
        AF_INET, htons((in_port_t)port), {htonl(INADDR_LOOPBACK)}, {0}};
    const int connection = socket(AF_INET, SOCK_STREAM, 0);
    if (connect(connection, (const struct sockaddr*)&server, sizeof server) != 0 ||
        write(connection, buffer, size) != (ssize_t)size) {
        exit(2);
    }
    return connection;
}

int main(int count, char** arguments)
{
    const int port = count > 1 ? atoi(arguments[1]) : 0;
    const size_t size = port != 0 ? fread(buffer, 1, sizeof buffer, stdin) : 0;
    prctl(PR_SET_CHILD_SUBREAPER, count > 2);

    const long long start = now();
    pid_t child = 0;
    const int answer = port != 0 ? send_request(port, size) : start_program(arguments[1], &child);
    long long last_byte = start;
    char* place = buffer;
    while (read(answer, place, sizeof buffer - 16) > 0) {
        last_byte = now();
        place = buffer + 16; /* keeps the status line's beginning */
    }
    const long long answered = now();

    int status = strncmp(buffer, "HTTP/1.0 200 ", 13) != 0;
    struct rusage own = {0}, other;
    wait4(child, &status, 0, &own); /* fails if there is none */
    const long long ended = now();
    long long all = processor_time(&own);
    while (wait4(-1, NULL, 0, &other) > 0) {
        all += processor_time(&other);
    }
    while (child != 0 && kill(-child, 0) == 0) { /* the next run must not compete with these */
        usleep(1000);
    }
    printf("%lld %lld %lld %lld %lld %ld %d\n", last_byte - start, answered - start, ended - start,
           processor_time(&own), all, own.ru_maxrss, status);
    return 0;
}
