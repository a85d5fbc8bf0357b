#include "response.h"

// The letter of the byte's two-character escape, or 0 for a byte that stands for itself.
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
    for (const char l_i_byte : a_s_value) {
        const char l_i_letter = EscapeLetter(l_i_byte);
        if (l_i_letter == '\0') {
            a_s_text += l_i_byte;
        } else {
            a_s_text += '\\';
            a_s_text += l_i_letter;
        }
    }
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
