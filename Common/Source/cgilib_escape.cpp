#include "cgilib_escape.h"

#include <string_view>

std::string EscapeHtml(const std::string& a_s_text)
{
    std::string l_s_escaped;
    for (const char l_i_byte : a_s_text) {
        switch (l_i_byte) {
        case '&':
            l_s_escaped += "&amp;";
            break;
        case '<':
            l_s_escaped += "&lt;";
            break;
        case '>':
            l_s_escaped += "&gt;";
            break;
        case '"':
            l_s_escaped += "&quot;";
            break;
        case '\'':
            l_s_escaped += "&#39;";
            break;
        default:
            l_s_escaped += l_i_byte;
        }
    }
    return l_s_escaped;
}

std::string EscapeUrl(const std::string& a_s_text)
{
    constexpr std::string_view UNRESERVED = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                            "0123456789-._~";
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    std::string l_s_escaped;
    for (const char l_i_byte : a_s_text) {
        if (UNRESERVED.find(l_i_byte) != std::string_view::npos) {
            l_s_escaped += l_i_byte;
        } else {
            const auto l_u_byte = static_cast<unsigned char>(l_i_byte);
            l_s_escaped += {'%', DIGITS[l_u_byte / 16], DIGITS[l_u_byte % 16]};
        }
    }
    return l_s_escaped;
}
