#include "interposed.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <new>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <stdio_ext.h>
#include <string_view>
#include <unistd.h>
#include <utility>

static std::string g_s_log;
long g_i_allocationsLeft = -1;

// The body in transit.
static std::string_view g_s_coming;
static std::size_t g_u_piece;
static bool g_b_ends;
static int g_i_sender = -1;

#ifdef _FORTIFY_SOURCE
extern "C" void __syslog_chk(int a_i_priority, int /*flag*/, const char* a_p_format, ...)
#else
extern "C" void syslog(int a_i_priority, const char* a_p_format, ...)
#endif
{
    static char s_text[1 << 18];
    va_list l_arguments;
    va_start(l_arguments, a_p_format);
    vsnprintf(s_text, sizeof(s_text), a_p_format, l_arguments);
    va_end(l_arguments);
    g_s_log += std::to_string(a_i_priority) + " " + s_text + "\n";
}

extern "C" int poll(pollfd* /*fds*/, nfds_t /*count*/, int /*timeout*/)
{
    if (!g_s_coming.empty()) {
        const std::string_view l_s_piece = g_s_coming.substr(0, g_u_piece);
        const ssize_t l_i_sent = write(g_i_sender, l_s_piece.data(), l_s_piece.size());
        g_s_coming.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(l_i_sent, 0)));
    } else if (std::exchange(g_b_ends, false)) {
        close(std::exchange(g_i_sender, -1));
    } else {
        throw std::logic_error("waited for a byte that never arrives");
    }
    return 1;
}

// Not inlined, or GCC would see a mismatch of allocation functions.
[[gnu::noinline]] void* operator new(std::size_t a_u_size, const std::nothrow_t&) noexcept
{
    return g_i_allocationsLeft >= 0 && g_i_allocationsLeft-- == 0 ? nullptr : std::malloc(a_u_size);
}
[[gnu::noinline]] void* operator new(std::size_t a_u_size)
{
    void* l_p_block = operator new(a_u_size, std::nothrow);
    return l_p_block != nullptr ? l_p_block : throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* a_p) noexcept { std::free(a_p); }
[[gnu::noinline]] void operator delete(void* a_p, std::size_t) noexcept { std::free(a_p); }

static std::string TakeUpload()
{
    std::ostringstream l_c_content;
    for (const auto& l_c_entry : std::filesystem::directory_iterator("/tmp")) {
        if (std::error_code l_c_loop; l_c_entry.is_regular_file(l_c_loop)) {
            l_c_content << std::ifstream(l_c_entry.path()).rdbuf();
            std::filesystem::remove(l_c_entry);
        }
    }
    return l_c_content.str();
}

tOutcome Parse(const std::string& a_s_type, const std::string& a_s_body, std::size_t a_u_piece,
               const char* a_p_length)
{
    close(g_i_sender);
    int l_ends[2] = {-1, -1};
    [[maybe_unused]] const int l_i_made = pipe2(l_ends, O_NONBLOCK);
    dup2(l_ends[0], STDIN_FILENO);
    close(l_ends[0]);
    __fpurge(stdin);
    std::clearerr(stdin);
    g_i_sender = l_ends[1];
    g_s_coming = a_s_body;
    g_u_piece = a_u_piece;
    g_b_ends = a_p_length != nullptr;
    g_s_log.clear();

    static cCGI s_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    s_c_request.GetEnvironment() = {
        {"REQUEST_METHOD", a_u_piece == 1 ? "post" : "POST"},
        {"CONTENT_TYPE", a_s_type},
        {"CONTENT_LENGTH", g_b_ends ? a_p_length : std::to_string(a_s_body.size())}};
    s_c_request.GetPostData().clear();
    const int l_i_output = dup(STDOUT_FILENO);
    dup2(STDIN_FILENO, STDOUT_FILENO); // one connection for both, as some servers do
    const bool l_b_result = s_c_request.ParseData();
    dup2(l_i_output, STDOUT_FILENO);
    close(l_i_output);
    return {l_b_result, s_c_request.IsBodyComplete(), s_c_request.GetData(), g_s_log, TakeUpload()};
}
