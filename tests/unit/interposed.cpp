#include "interposed.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <stdio_ext.h>
#include <syslog.h>
#include <unistd.h>

static cDelivery* g_p_delivery = nullptr;

std::vector<std::string>& Logged()
{
    static std::vector<std::string> l_v_logged;
    return l_v_logged;
}

static void Log(int a_i_priority, const char* a_p_format, va_list a_arguments)
{
    char* l_p_text = nullptr;
    if (vasprintf(&l_p_text, a_p_format, a_arguments) >= 0) {
        Logged().push_back(std::to_string(a_i_priority) + " " + l_p_text);
        free(l_p_text);
    }
}

extern "C" void syslog(int a_i_priority, const char* a_p_format, ...)
{
    va_list l_arguments;
    va_start(l_arguments, a_p_format);
    Log(a_i_priority, a_p_format, l_arguments);
    va_end(l_arguments);
}

// What syslog turns into in a fortified build.
extern "C" void __syslog_chk(int a_i_priority, int /*flag*/, const char* a_p_format, ...)
{
    va_list l_arguments;
    va_start(l_arguments, a_p_format);
    Log(a_i_priority, a_p_format, l_arguments);
    va_end(l_arguments);
}

extern "C" int poll(pollfd* /*fds*/, nfds_t /*count*/, int /*timeout*/)
{
    g_p_delivery->DeliverNext();
    return 1;
}

cDelivery::cDelivery(std::vector<std::string> a_v_pieces, bool a_b_keepOpen)
    : m_v_pieces(std::move(a_v_pieces)), m_b_keepOpen(a_b_keepOpen), m_i_savedInput(dup(STDIN_FILENO))
{
    int l_ends[2];
    if (pipe2(l_ends, O_NONBLOCK) != 0) {
        throw std::runtime_error("no pipe");
    }
    dup2(l_ends[0], STDIN_FILENO);
    close(l_ends[0]);
    m_i_sender = l_ends[1];
    __fpurge(stdin);
    clearerr(stdin);
    g_p_delivery = this;
}

cDelivery::~cDelivery()
{
    g_p_delivery = nullptr;
    if (m_i_sender >= 0) {
        close(m_i_sender);
    }
    dup2(m_i_savedInput, STDIN_FILENO);
    close(m_i_savedInput);
}

void cDelivery::DeliverNext()
{
    if (m_u_next < m_v_pieces.size()) {
        const std::string& l_s_piece = m_v_pieces[m_u_next++];
        const auto l_i_size = static_cast<int>(l_s_piece.size());
        if (l_i_size > fcntl(m_i_sender, F_GETPIPE_SZ)) {
            fcntl(m_i_sender, F_SETPIPE_SZ, l_i_size);
        }
        if (write(m_i_sender, l_s_piece.data(), l_s_piece.size()) != l_i_size) {
            throw std::runtime_error("pipe full");
        }
        return;
    }
    if (m_b_keepOpen || m_i_sender < 0) {
        throw std::logic_error("waited for a byte that never comes");
    }
    close(m_i_sender);
    m_i_sender = -1;
}
