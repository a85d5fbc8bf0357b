#include "standard_input.h"

#include <cerrno>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

bool AwaitStandardInput()
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
