#include "cgilib_cookie.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace
{

// Removes the text up to and including the separator; returns what preceded the separator.
std::string_view CutOff(std::string_view& a_s_text, char a_i_separator)
{
    const std::string_view l_s_first = a_s_text.substr(0, a_s_text.find(a_i_separator));
    a_s_text.remove_prefix(std::min(l_s_first.size() + 1, a_s_text.size()));
    return l_s_first;
}

} // namespace

std::string GetCookie(const std::string& a_s_name)
{
    const char* l_p_header = std::getenv("HTTP_COOKIE");
    std::string_view l_s_rest = l_p_header == nullptr ? "" : l_p_header;
    while (!l_s_rest.empty()) {
        std::string_view l_s_value = CutOff(l_s_rest, ';');
        l_s_value.remove_prefix(std::min(l_s_value.find_first_not_of(" \t"), l_s_value.size()));
        if (CutOff(l_s_value, '=') == a_s_name) {
            return std::string(l_s_value);
        }
    }
    return "";
}
