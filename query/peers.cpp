#include "peers.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "paths.h"
#include "streams.h"

// What a shell and killall may need. Everything else is dropped, since servers pass more of what a
// client chose than anyone can list.
static constexpr const char* const KEPT_VARIABLES[] = {
    "HOME=", "LANG=", "LC_", "LD_LIBRARY_PATH=", "PATH=", "TZ=",
};

static bool IsDropped(const char* a_p_variable)
{
    return std::none_of(std::begin(KEPT_VARIABLES), std::end(KEPT_VARIABLES),
                        [a_p_variable](const char* a_p_beginning) {
                            return std::strncmp(a_p_variable, a_p_beginning,
                                                std::strlen(a_p_beginning)) == 0;
                        });
}

static void ReduceEnvironment()
{
    char** l_p_end = environ;
    while (*l_p_end != nullptr) {
        ++l_p_end;
    }
    *std::remove_if(environ, l_p_end, IsDropped) = nullptr;
}

static bool HasOneCore()
{
    cpu_set_t l_c_cores;
    return sched_getaffinity(0, sizeof l_c_cores, &l_c_cores) == 0 && CPU_COUNT(&l_c_cores) == 1;
}

// Waits for the handler to end, up to a limit. Returns false if the kernel does not support this.
static bool WaitFor(pid_t a_i_handler)
{
#ifdef SYS_pidfd_open
    constexpr int LONG_ENOUGH = 100; // milliseconds by which a slow client may delay the daemons
    pollfd l_c_end = {static_cast<int>(syscall(SYS_pidfd_open, a_i_handler, 0)), POLLIN, 0};
    const bool l_b_ended = getppid() != a_i_handler; // another process may have its number by now
    const bool l_b_waited = l_b_ended || (l_c_end.fd >= 0 && poll(&l_c_end, 1, LONG_ENOUGH) >= 0);
    close(l_c_end.fd);
    return l_b_waited;
#else
    return false;
#endif
}

// On a device's single core, the answer would otherwise queue behind two starting shells. A lower
// priority instead would let shells pile up. With several cores, shells and answer need not wait
// for each other.
static void LetTheAnswerGoFirst(pid_t a_i_handler)
{
    if (!HasOneCore() || WaitFor(a_i_handler)) {
        return;
    }
    constexpr int YIELDS = 4; // enough for a small answer
    for (int l_i_turn = 0; l_i_turn < YIELDS; ++l_i_turn) {
        sched_yield();
    }
}

[[noreturn]] static void BecomeShell(const char* a_p_command, pid_t a_i_handler)
{
    CloseDescriptors(UINT_MAX); // those of the server that its programs inherit, too
    LetTheAnswerGoFirst(a_i_handler);
    for (int l_i_stream = STDIN_FILENO; l_i_stream <= STDERR_FILENO; ++l_i_stream) {
        open("/dev/null", O_RDWR); // gets the lowest free number: this one
    }
    ReduceEnvironment();
    execlp("bash", "bash", "-c", a_p_command, static_cast<char*>(nullptr));
    std::exit(0);
}

void SignalPeers()
{
    const pid_t l_i_handler = getpid();
    const cParkedStreams l_c_parked;
    for (const char* l_p_command : PEER_COMMANDS) {
        if (fork() == 0) {
            BecomeShell(l_p_command, l_i_handler);
        }
    }
}
