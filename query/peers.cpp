#include "peers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sched.h>
#include <unistd.h>

#include "paths.h"

// The beginnings of what a client chooses about a request, or a server derives from that (RFC 3875,
// 4.1, and what servers add).
static constexpr const char* const CLIENT_VARIABLES[] = {
    "AUTH_",         "CONTENT_",         "DOCUMENT_URI=",  "HTTP_",
    "PATH_INFO=",    "PATH_TRANSLATED=", "QUERY_STRING=",  "REDIRECT_",
    "REMOTE_IDENT=", "REMOTE_USER=",     "REQUEST_",       "SCRIPT_",
    "SERVER_NAME=",  "SERVER_PROTOCOL=", "UNENCODED_URL=",
};

static bool IsClients(const char* a_p_variable)
{
    return std::any_of(std::begin(CLIENT_VARIABLES), std::end(CLIENT_VARIABLES),
                       [a_p_variable](const char* a_p_beginning) {
                           return std::strncmp(a_p_variable, a_p_beginning,
                                               std::strlen(a_p_beginning)) == 0;
                       });
}

// What a client chose has no business in a shell.
static void ForgetTheClient()
{
    char** l_p_end = environ;
    while (*l_p_end != nullptr) {
        ++l_p_end;
    }
    *std::remove_if(environ, l_p_end, IsClients) = nullptr;
}

// A child that kept the response pipe open would make the web server wait for killall before it
// could finish the response. Should /dev/null be missing, the streams are closed instead.
static void LetGoOfStandardStreams()
{
    const int l_i_null = open("/dev/null", O_RDWR);
    for (int l_i_stream = STDIN_FILENO; l_i_stream <= STDERR_FILENO; ++l_i_stream) {
        if (l_i_null < 0) {
            close(l_i_stream);
        } else {
            dup2(l_i_null, l_i_stream);
        }
    }
    if (l_i_null > STDERR_FILENO) {
        close(l_i_null);
    }
}

// On the single core of a device the answer would otherwise queue behind two shells that start.
// Four turns are enough for it to go out; a lower priority instead would let helpers pile up.
static void LetTheAnswerGoFirst()
{
    constexpr int YIELDS = 4;
    for (int l_i_turn = 0; l_i_turn < YIELDS; ++l_i_turn) {
        sched_yield();
    }
}

[[noreturn]] static void BecomeShell(const char* a_p_command)
{
    ForgetTheClient();
    LetGoOfStandardStreams();
    LetTheAnswerGoFirst();
    execlp("bash", "bash", "-c", a_p_command, static_cast<char*>(nullptr));
    std::exit(0);
}

void SignalPeers()
{
    for (const char* l_p_command : PEER_COMMANDS) {
        if (fork() == 0) {
            BecomeShell(l_p_command);
        }
    }
}
