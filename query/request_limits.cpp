#include "request_limits.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <new>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

namespace
{

#ifndef __has_feature
#define __has_feature(feature) 0 // GCC defines a macro instead
#endif
#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
constexpr bool MEMORY_IS_LIMITED = false;
#else
constexpr bool MEMORY_IS_LIMITED = KESTO_MEMORY_LIMIT != 0;
#endif

// The resource is an enumeration in glibc and an int in musl.
rlimit Limit(decltype(RLIMIT_AS) a_e_resource)
{
    rlimit l_c_limit = {RLIM_INFINITY, RLIM_INFINITY};
    getrlimit(a_e_resource, &l_c_limit);
    return l_c_limit;
}

// Called by operator new. It must not throw, because no exception gets through the XPath engine:
// evaluation would carry on without the memory, perhaps for a long time, and report only at the end
// that it has no result.
[[noreturn]] void EndOutOfMemory()
{
    rlimit l_c_limit = Limit(RLIMIT_AS);
    l_c_limit.rlim_cur = l_c_limit.rlim_max; // logging and exiting need some
    setrlimit(RLIMIT_AS, &l_c_limit);
    syslog(LOG_ERR, "  main(): Out of memory.");
    std::exit(NOT_ANSWERED);
}

// A device does not have the memory for sixteen requests that each use all they may.
void OfferToBeKilledFirst()
{
    const int l_i_file = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    if (l_i_file >= 0) {
        constexpr std::string_view HIGHEST = "1000";
        static_cast<void>(!write(l_i_file, HIGHEST.data(), HIGHEST.size())); // best effort
        close(l_i_file);
    }
}

iovec Piece(const char* a_p_text)
{
    return {const_cast<char*>(a_p_text), std::strlen(a_p_text)}; // NOLINT: only read
}

// A signal handler. It may interrupt malloc or syslog itself, so it sends the line as syslog would,
// but with system calls alone. It leaves the timestamp to the receiver (RFC 3164, 4.3.2) and does
// not wait for a receiver that has stopped reading.
[[noreturn]] void EndOutOfTime(int /*signal*/)
{
    static_assert((LOG_USER | LOG_ERR) == 11, "the priority in the line");
    iovec l_line[] = {Piece("<11>"), Piece(program_invocation_short_name),
                      Piece(":   main(): Processor time is used up.")};
    sockaddr_un l_c_receiver = {AF_UNIX, "/dev/log"};
    msghdr l_c_message = {};
    l_c_message.msg_name = &l_c_receiver;
    l_c_message.msg_namelen = sizeof l_c_receiver;
    l_c_message.msg_iov = l_line;
    l_c_message.msg_iovlen = std::size(l_line);
    sendmsg(socket(AF_UNIX, SOCK_DGRAM, 0), &l_c_message, MSG_DONTWAIT);
    _exit(NOT_ANSWERED);
}

void LimitMemory()
{
    std::set_new_handler(EndOutOfMemory);
    OfferToBeKilledFirst();
    if (MEMORY_IS_LIMITED) {
        rlimit l_c_limit = Limit(RLIMIT_AS);
        l_c_limit.rlim_cur = std::min(l_c_limit.rlim_cur, rlim_t{KESTO_MEMORY_LIMIT} << 20U);
        setrlimit(RLIMIT_AS, &l_c_limit);
    }
}

void RaiseStackLimit()
{
    constexpr rlim_t USUAL = rlim_t{8} << 20U;
    rlimit l_c_limit = Limit(RLIMIT_STACK);
    if (l_c_limit.rlim_cur < USUAL) {
        l_c_limit.rlim_cur = std::min(USUAL, l_c_limit.rlim_max);
        setrlimit(RLIMIT_STACK, &l_c_limit);
    }
}

// A signal that the server has blocked would come only when the hard limit kills the process.
void HandleEndOfTime()
{
    struct sigaction l_c_action = {};
    l_c_action.sa_handler = EndOutOfTime;
    sigaction(SIGXCPU, &l_c_action, nullptr);
    sigset_t l_c_signals;
    sigemptyset(&l_c_signals);
    sigaddset(&l_c_signals, SIGXCPU);
    sigprocmask(SIG_UNBLOCK, &l_c_signals, nullptr);
}

} // namespace

void LimitProcess()
{
    RaiseStackLimit();
    LimitMemory();
    HandleEndOfTime();
    std::signal(SIGXFSZ, SIG_IGN);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
}

void LimitProcessorTime()
{
    static const rlimit INHERITED = Limit(RLIMIT_CPU); // not what an earlier call has set
    rusage l_c_used = {};
    if (KESTO_CPU_LIMIT != 0 && getrusage(RUSAGE_SELF, &l_c_used) == 0) {
        const auto l_u_used =
            static_cast<rlim_t>(l_c_used.ru_utime.tv_sec + l_c_used.ru_stime.tv_sec);
        const rlimit l_c_limit = {std::min(INHERITED.rlim_cur, l_u_used + KESTO_CPU_LIMIT),
                                  INHERITED.rlim_max};
        setrlimit(RLIMIT_CPU, &l_c_limit);
    }
}
