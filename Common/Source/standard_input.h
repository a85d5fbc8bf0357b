#ifndef STANDARD_INPUT_H
#define STANDARD_INPUT_H

#include <cerrno>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

/// Call this after a read of stdin that returned fewer bytes than requested. Returns false at the
/// end of input and after an error: no more bytes will arrive. Otherwise standard input is
/// non-blocking and merely empty: clears the stream's error state, sleeps until standard input is
/// readable or has ended, and returns true. REQUIRES: errno is still that of the read.
///
/// Static, so that a page linked with the library can use the name itself.
static inline bool AwaitStandardInput()
{
    const bool l_b_empty = errno == EAGAIN || errno == EINTR;
    if (std::feof(stdin) != 0 || !l_b_empty) {
        return false;
    }
    std::clearerr(stdin);
    pollfd l_c_input = {STDIN_FILENO, POLLIN, 0};
    constexpr int FOREVER = -1;
    poll(&l_c_input, 1, FOREVER);
    return true;
}

#endif
