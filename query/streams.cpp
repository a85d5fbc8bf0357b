#include "streams.h"

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace
{

constexpr int STREAMS[] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};

// A message with room for three descriptors.
struct sMessage
{
    sMessage()
    {
        m_c_header.msg_iov = &m_c_content;
        m_c_header.msg_iovlen = 1;
        m_c_header.msg_control = m_descriptors;
        m_c_header.msg_controllen = sizeof m_descriptors;
    }

    msghdr m_c_header = {};
    char m_i_byte = '\0'; // a message needs some content
    iovec m_c_content = {&m_i_byte, sizeof m_i_byte};
    alignas(cmsghdr) char m_descriptors[CMSG_SPACE(sizeof STREAMS)] = {};
};

} // namespace

// open() returns the lowest free descriptor.
void OpenStandardStreams()
{
    int l_i_file = STDIN_FILENO;
    while (l_i_file >= STDIN_FILENO && l_i_file <= STDERR_FILENO) {
        l_i_file = open("/dev/null", O_RDONLY);
    }
    if (l_i_file > STDERR_FILENO) {
        close(l_i_file);
    }
}

void CloseDescriptors(unsigned a_u_last)
{
#ifdef SYS_close_range
    if (syscall(SYS_close_range, 0U, a_u_last, 0U) == 0) {
        return;
    }
#endif
    for (const int l_i_stream : STREAMS) {
        close(l_i_stream);
    }
}

cParkedStreams::cParkedStreams()
{
    sMessage l_c_message;
    cmsghdr* const l_p_descriptors = CMSG_FIRSTHDR(&l_c_message.m_c_header);
    l_p_descriptors->cmsg_level = SOL_SOCKET;
    l_p_descriptors->cmsg_type = SCM_RIGHTS;
    l_p_descriptors->cmsg_len = CMSG_LEN(sizeof STREAMS);
    std::memcpy(CMSG_DATA(l_p_descriptors), STREAMS, sizeof STREAMS);

    if (socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, m_sockets) == 0 &&
        sendmsg(m_sockets[0], &l_c_message.m_c_header, 0) >= 0) {
        CloseDescriptors(STDERR_FILENO);
    }
}

cParkedStreams::~cParkedStreams()
{
    // Each of them gets the lowest free number: its own.
    sMessage l_c_message;
    const ssize_t l_i_received = recvmsg(m_sockets[1], &l_c_message.m_c_header, MSG_DONTWAIT);
    if (l_i_received < 0 || (l_c_message.m_c_header.msg_flags & MSG_CTRUNC) != 0) {
        OpenStandardStreams();
    }
    close(m_sockets[0]);
    close(m_sockets[1]);
}
