#include "cgilib_escape.h"

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
