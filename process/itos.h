#ifndef ITOS_H
#define ITOS_H

#include <string>

/// a_i_value in decimal: a minus sign if it is negative, no padding, no plus sign, in any locale.
std::string itos(int a_i_value);

/// Writes a_u_value as a null-terminated string to the caller's buffer and returns the buffer.
/// Radix 16 yields upper-case hexadecimal digits. Radix 10 interprets the value as a signed 32-bit
/// number, so the bit pattern of -7 yields "-7". Any other radix yields the decimal digits of the
/// unsigned value.
/// REQUIRES: a_p_buffer holds at least 12 bytes (a sign, ten digits and the terminating null).
// NOLINTNEXTLINE(bugprone-reserved-identifier): callers know the function by this name.
char* _itoa(unsigned int a_u_value, char* a_p_buffer, unsigned int a_u_radix);

#endif
