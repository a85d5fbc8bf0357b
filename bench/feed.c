/* A client that uploads one file: writes a multipart/form-data body to standard output, with a
 * boundary like those of browsers.
 *
 *     feed MIB [LETTERS]      the file's content: MIB times 1048576 pseudo-random bytes (as of a
 *                             compressed firmware image), or LETTERS over and over */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#define MEBIBYTE 1048576
#define BOUNDARY "----FormBoundary7MA4YWxkTrZu0gW"

static void put(const char* bytes, size_t count)
{
    while (count != 0) {
        const ssize_t written = write(STDOUT_FILENO, bytes, count);
        if (written <= 0) {
            exit(1);
        }
        bytes += written;
        count -= (size_t)written;
    }
}

static void fill(char* block, const char* letters)
{
    uint32_t state = 1;
    for (size_t i = 0; i < MEBIBYTE; ++i) {
        state = state * 1664525 + 1013904223;
        block[i] = letters == NULL ? (char)(state >> 24) : letters[i % strlen(letters)];
    }
}

int main(int count, char** arguments)
{
    static const char head[] = "--" BOUNDARY "\r\n"
                               "Content-Disposition: form-data; name=\"image\"; "
                               "filename=\"upload.bin\"\r\n"
                               "Content-Type: application/octet-stream\r\n\r\n";
    static const char tail[] = "\r\n--" BOUNDARY "--\r\n";
    static char block[MEBIBYTE];
    fill(block, count > 2 ? arguments[2] : NULL);

    put(head, sizeof head - 1);
    for (int i = 0; i < atoi(arguments[1]); ++i) {
        put(block, sizeof block);
    }
    put(tail, sizeof tail - 1);
    return 0;
}
