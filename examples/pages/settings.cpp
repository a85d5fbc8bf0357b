#include "settings.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdlib>

namespace
{

constexpr const char* const NAMES[] = {"hostname", "location", "method", "address",
                                       "mtu",      "log",      "ntp",    "note"};

bool IsLetterOrDigit(char a_i_byte)
{
    return (a_i_byte >= 'a' && a_i_byte <= 'z') || (a_i_byte >= 'A' && a_i_byte <= 'Z') ||
           (a_i_byte >= '0' && a_i_byte <= '9');
}

bool IsHostName(const std::string& a_s_text)
{
    return !a_s_text.empty() && a_s_text.size() <= 63 && IsLetterOrDigit(a_s_text.front()) &&
           IsLetterOrDigit(a_s_text.back()) &&
           std::all_of(a_s_text.begin(), a_s_text.end(),
                       [](char a_i_byte) { return IsLetterOrDigit(a_i_byte) || a_i_byte == '-'; });
}

// In UTF-8 every byte except those of the form 10xxxxxx begins a character.
std::ptrdiff_t CountCharacters(const std::string& a_s_text)
{
    return std::count_if(a_s_text.begin(), a_s_text.end(), [](char a_i_byte) {
        return (static_cast<unsigned char>(a_i_byte) & 0xC0U) != 0x80U;
    });
}

bool IsAddress(const std::string& a_s_text)
{
    in_addr l_c_address = {};
    return a_s_text.find('\0') == std::string::npos &&
           inet_pton(AF_INET, a_s_text.c_str(), &l_c_address) == 1;
}

bool IsNumber(const std::string& a_s_text, long a_i_least, long a_i_most)
{
    if (a_s_text.empty() || a_s_text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    const long l_i_number = std::strtol(a_s_text.c_str(), nullptr, 10); // saturates
    return l_i_number >= a_i_least && l_i_number <= a_i_most;
}

template<class tChoices> bool IsOneOf(const tChoices& a_c_choices, const std::string& a_s_text)
{
    return std::find(std::begin(a_c_choices), std::end(a_c_choices), a_s_text) !=
           std::end(a_c_choices);
}

} // namespace

tTexts Submitted(const cCGI& a_c_page)
{
    tTexts l_m_settings;
    for (const char* l_p_name : NAMES) {
        l_m_settings[l_p_name] = a_c_page.GetField(l_p_name);
    }
    // TextArea() writes a newline after the content, which comes back as part of the field.
    std::string& l_s_note = l_m_settings["note"];
    if (l_s_note.size() >= 2 && l_s_note.compare(l_s_note.size() - 2, 2, "\r\n") == 0) {
        l_s_note.erase(l_s_note.size() - 2);
    }
    return l_m_settings;
}

tTexts Faults(const tTexts& a_m_settings)
{
    tTexts l_m_faults;
    const auto l_c_require = [&](const char* a_p_name, bool a_b_good, const char* a_p_advice) {
        if (!a_b_good) {
            l_m_faults[a_p_name] = a_p_advice;
        }
    };
    const std::string& l_s_address = a_m_settings.at("address");
    const std::string& l_s_location = a_m_settings.at("location");
    const bool l_b_static = a_m_settings.at("method") == METHODS[0];

    l_c_require("hostname", IsHostName(a_m_settings.at("hostname")),
                "Use letters, digits and hyphens, with a letter or digit at both ends.");
    l_c_require("location", !l_s_location.empty() && CountCharacters(l_s_location) <= 64,
                "Enter 1 to 64 characters.");
    l_c_require("method", IsOneOf(METHODS, a_m_settings.at("method")), "Choose one of the two.");
    l_c_require("address", IsAddress(l_s_address) || (l_s_address.empty() && !l_b_static),
                "Enter four numbers from 0 to 255 with dots between them, such as 10.4.0.17.");
    l_c_require("mtu", IsNumber(a_m_settings.at("mtu"), 576, 9000),
                "Enter a number from 576 to 9000.");
    l_c_require("log", IsOneOf(LOG_LEVELS, a_m_settings.at("log")), "Choose one of the levels.");
    l_c_require("note", CountCharacters(a_m_settings.at("note")) <= 500,
                "Use at most 500 characters.");
    return l_m_faults;
}
