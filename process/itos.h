#ifndef ITOS_H
#define ITOS_H

#include <string>

/// The decimal text of a_i_value: a minus sign for a negative value, no fill characters, no plus
/// sign, whatever the locale.
std::string itos(int a_i_value);

/// Writes the text of a_u_value, zero-terminated, into the caller's buffer and returns the buffer.
/// Radix 16 gives upper-case hexadecimal digits. Radix 10 reads the value as a signed 32-bit
/// number, so that the bit pattern of -7 gives "-7". Any other radix gives the decimal digits of
/// the unsigned value.
/// REQUIRES: a_p_buffer holds at least 12 bytes (a sign, ten digits and the terminating zero).
// NOLINTNEXTLINE(bugprone-reserved-identifier): callers know the function by this name.
char* _itoa(unsigned int a_u_value, char* a_p_buffer, unsigned int a_u_radix);

#endif
