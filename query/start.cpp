#include "start.h"

#include <cstring>
#include <fcntl.h>
#include <unistd.h>

// open() returns the lowest free descriptor.
static void OpenStandardStreams()
{
    int l_i_file = STDIN_FILENO;
    while (l_i_file >= STDIN_FILENO && l_i_file <= STDERR_FILENO) {
        l_i_file = open("/dev/null", O_RDONLY);
    }
    if (l_i_file > STDERR_FILENO) {
        close(l_i_file);
    }
}

void PutInOrder(int a_i_count, char* a_p_arguments[])
{
    OpenStandardStreams();
    for (int l_i_argument = 1; l_i_argument < a_i_count; ++l_i_argument) {
        std::memset(a_p_arguments[l_i_argument], 0, std::strlen(a_p_arguments[l_i_argument]));
    }
}
