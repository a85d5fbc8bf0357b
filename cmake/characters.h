// Included first when TinyXML is compiled: classes of bytes in the C locale, the only one that the
// programs use. TinyXML passes an unsigned char, so it calls these instead of the C library's
// functions, each of which calls another for the address of a table, for every byte of a document.
#ifndef CHARACTERS_H
#define CHARACTERS_H

#include <cctype>

inline int isspace(unsigned char a_u_byte)
{
    return a_u_byte == ' ' || (a_u_byte >= '\t' && a_u_byte <= '\r');
}

inline int isalpha(unsigned char a_u_byte)
{
    const unsigned char l_u_lower = a_u_byte | 0x20U;
    return l_u_lower >= 'a' && l_u_lower <= 'z';
}

inline int isalnum(unsigned char a_u_byte)
{
    return isalpha(a_u_byte) || (a_u_byte >= '0' && a_u_byte <= '9');
}

#endif
