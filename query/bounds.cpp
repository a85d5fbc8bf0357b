#include "bounds.h"

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
constexpr bool MEMORY_IS_BOUNDED = false;
#else
constexpr bool MEMORY_IS_BOUNDED = KESTO_MEMORY_LIMIT != 0;
#endif

// The resource is an enumeration in glibc and an int in musl.
void Tighten(decltype(RLIMIT_AS) a_e_resource, rlim_t a_u_soft, rlim_t a_u_hard)
{
    rlimit l_c_limit = {};
    if (getrlimit(a_e_resource, &l_c_limit) == 0) {
        l_c_limit.rlim_max = std::min(l_c_limit.rlim_max, a_u_hard);
        l_c_limit.rlim_cur = std::min({l_c_limit.rlim_cur, a_u_soft, l_c_limit.rlim_max});
        setrlimit(a_e_resource, &l_c_limit);
    }
}

// Called by operator new. It must not throw, because no exception gets through the XPath engine:
// evaluation would carry on without the memory, perhaps for a long time, and report only at the end
// that it has no result.
[[noreturn]] void EndForWantOfMemory()
{
    rlimit l_c_limit = {};
    if (getrlimit(RLIMIT_AS, &l_c_limit) == 0) {
        l_c_limit.rlim_cur = l_c_limit.rlim_max; // logging and exiting need some
        setrlimit(RLIMIT_AS, &l_c_limit);
    }
    syslog(LOG_ERR, "  main(): Out of memory.");
    std::exit(NOTHING_WRITTEN);
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
[[noreturn]] void EndForWantOfTime(int /*signal*/)
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
    _exit(NOTHING_WRITTEN);
}

} // namespace

void BoundMemory()
{
    std::set_new_handler(EndForWantOfMemory);
    OfferToBeKilledFirst();
    if (MEMORY_IS_BOUNDED) {
        Tighten(RLIMIT_AS, rlim_t{KESTO_MEMORY_LIMIT} << 20U, RLIM_INFINITY);
    }
}

void ProvideStack()
{
    constexpr rlim_t USUAL = rlim_t{8} << 20U;
    rlimit l_c_limit = {};
    if (getrlimit(RLIMIT_STACK, &l_c_limit) == 0 && l_c_limit.rlim_cur < USUAL) {
        l_c_limit.rlim_cur = std::min(USUAL, l_c_limit.rlim_max);
        setrlimit(RLIMIT_STACK, &l_c_limit);
    }
}

void SurviveFileSizeLimit()
{
    std::signal(SIGXFSZ, SIG_IGN);
}

void RefuseNewPrivileges()
{
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
}

void BoundProcessorTime()
{
    rusage l_c_used = {};
    if (KESTO_CPU_LIMIT == 0 || getrusage(RUSAGE_SELF, &l_c_used) != 0) {
        return;
    }
    struct sigaction l_c_action = {};
    l_c_action.sa_handler = EndForWantOfTime;
    sigaction(SIGXCPU, &l_c_action, nullptr);

    const auto l_u_limit =
        static_cast<rlim_t>(l_c_used.ru_utime.tv_sec + l_c_used.ru_stime.tv_sec) + KESTO_CPU_LIMIT;
    // If the process was started with the signal blocked, the kernel kills it at the hard limit.
    Tighten(RLIMIT_CPU, l_u_limit, l_u_limit + 1);
}
