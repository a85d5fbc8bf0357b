#include "itos.h"

#include <algorithm>

std::string itos(int a_i_value)
{
    return std::to_string(a_i_value);
}

// NOLINTNEXTLINE(bugprone-reserved-identifier): callers know the function by this name.
char* _itoa(unsigned int a_u_value, char* a_p_buffer, unsigned int a_u_radix)
{
    constexpr unsigned int SIGN_BIT = 0x80000000U;
    const bool l_b_negative = a_u_radix == 10 && (a_u_value & SIGN_BIT) != 0;
    const unsigned int l_u_radix = a_u_radix == 16 ? 16 : 10;
    unsigned int l_u_rest = l_b_negative ? 0U - a_u_value : a_u_value;

    char* l_p_end = a_p_buffer;
    do {
        *l_p_end++ = "0123456789ABCDEF"[l_u_rest % l_u_radix];
        l_u_rest /= l_u_radix;
    } while (l_u_rest != 0);
    if (l_b_negative) {
        *l_p_end++ = '-';
    }
    *l_p_end = '\0';
    std::reverse(a_p_buffer, l_p_end);
    return a_p_buffer;
}
