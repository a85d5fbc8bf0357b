/* The least that a CGI program can do: shows what starting and ending a process costs. */
#include <stdio.h>

int main(void)
{
    fputs("Content-type: application/json\r\n\r\n{\"error\" : false, \"data\" : {}}", stdout);
    return 0;
}
