#include "response.h"

// The letter of the byte's two-character escape, or 0 if the byte is not escaped.
static char EscapeLetter(char a_i_byte)
{
    switch (a_i_byte) {
    case '\b':
        return 'b';
    case '\t':
        return 't';
    case '\n':
        return 'n';
    case '\f':
        return 'f';
    case '\r':
        return 'r';
    case '"':
    case '/':
    case '\\':
        return a_i_byte;
    default:
        return '\0';
    }
}

static void AppendEscaped(std::string& a_s_text, const std::string& a_s_value)
{
    std::size_t l_u_copied = 0;
    for (std::size_t l_u_byte = 0; l_u_byte < a_s_value.size(); ++l_u_byte) {
        const char l_i_letter = EscapeLetter(a_s_value[l_u_byte]);
        if (l_i_letter != '\0') {
            a_s_text.append(a_s_value, l_u_copied, l_u_byte - l_u_copied);
            a_s_text += '\\';
            a_s_text += l_i_letter;
            l_u_copied = l_u_byte + 1;
        }
    }
    a_s_text.append(a_s_value, l_u_copied);
}

std::string ComposeResponse(const std::map<std::string, std::string>& a_m_result)
{
    std::string l_s_response = R"({"error" : false, "data" : {)";
    const char* l_p_separator = "";
    for (const auto& [l_s_key, l_s_value] : a_m_result) {
        l_s_response += l_p_separator;
        l_s_response += '"';
        l_s_response += l_s_key;
        l_s_response += "\" : \"";
        AppendEscaped(l_s_response, l_s_value);
        l_s_response += '"';
        l_p_separator = ",";
    }
    l_s_response += "}}";
    return l_s_response;
}
