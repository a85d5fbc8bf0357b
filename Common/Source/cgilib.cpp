#include "cgilib.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ostream>

namespace
{

constexpr const char* const CAPTURED_VARIABLES[] = {
    "AUTH_DATA",       "CONTENT_LENGTH", "CONTENT_TYPE",    "GATEWAY_INTERFACE", "HTTP_ACCEPT",
    "HTTP_REFERER",    "HTTP_REFERRER",  "HTTP_USER_AGENT", "PATH_INFO",         "PATH_TRANSLATED",
    "QUERY_STRING",    "REMOTE_ADDR",    "REMOTE_HOST",     "REMOTE_IDENT",      "REQUEST_METHOD",
    "REMOTE_USER",     "SCRIPT_NAME",    "SERVER_NAME",     "SERVER_PORT",       "SERVER_PROTOCOL",
    "SERVER_SOFTWARE",
};

} // namespace

// The read buffer is not value-initialised, so a request without a multipart body never touches its
// pages.
cCGI::cCGI(eCompliance a_e_compliance)
    : m_e_compliance(a_e_compliance), m_p_readBuffer(new char[READ_BUFFER_SIZE])
{
    for (const char* l_p_name : CAPTURED_VARIABLES) {
        const char* l_p_value = std::getenv(l_p_name);
        m_m_environment.emplace(l_p_name, l_p_value == nullptr ? "" : l_p_value);
    }
}

cCGI::cCGI(const cCGI& a_c_source)
    : m_e_compliance(a_c_source.m_e_compliance), m_u_indent(a_c_source.m_u_indent),
      m_b_fileUpload(a_c_source.m_b_fileUpload), m_s_uploadFilename(a_c_source.m_s_uploadFilename),
      m_p_readBuffer(new char[READ_BUFFER_SIZE])
{
    std::memcpy(m_p_readBuffer.get(), a_c_source.m_p_readBuffer.get(), READ_BUFFER_SIZE);
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assigning an indent to itself is harmless.
cCGI& cCGI::operator=(const cCGI& a_c_source)
{
    m_u_indent = a_c_source.m_u_indent;
    return *this;
}

cCGI::~cCGI() = default;

// The indent is written as text because the stream may be set to another base.
std::ostream& operator<<(std::ostream& a_c_stream, const cCGI& a_c_request)
{
    return a_c_stream << "cCGI:" << std::endl
                      << std::endl
                      << "      indent = " << std::to_string(a_c_request.m_u_indent) << std::endl
                      << " environment:  " << std::endl;
}

bool cCGI::ParseData()
{
    if (IsGetRsp()) {
        return ParseGetData();
    }
    if (IsPostRsp()) {
        return ParsePostData();
    }
    return false;
}

bool cCGI::IsGetRsp() const
{
    const std::string* l_p_method = Environment("REQUEST_METHOD");
    return l_p_method != nullptr && (*l_p_method == "GET" || *l_p_method == "get");
}

bool cCGI::IsPostRsp() const
{
    const std::string* l_p_method = Environment("REQUEST_METHOD");
    return l_p_method != nullptr && (*l_p_method == "POST" || *l_p_method == "post");
}

const std::string* cCGI::Environment(const char* a_p_name) const
{
    const auto l_c_entry = m_m_environment.find(a_p_name);
    return l_c_entry == m_m_environment.end() ? nullptr : &l_c_entry->second;
}

bool cCGI::ParseGetData()
{
    const std::string* l_p_query = Environment("QUERY_STRING");
    if (l_p_query == nullptr) {
        return false;
    }
    StoreFields(*l_p_query, m_m_getData);
    m_b_bodyComplete = true;
    return true;
}

void cCGI::StoreFields(const std::string& a_s_text, tFormData& a_m_data)
{
    std::size_t l_u_start = 0;
    while (l_u_start < a_s_text.size()) {
        const std::size_t l_u_equals = a_s_text.find('=', l_u_start);
        if (l_u_equals == std::string::npos) {
            return;
        }
        const std::size_t l_u_end = std::min(a_s_text.find('&', l_u_equals + 1), a_s_text.size());

        std::string l_s_name = a_s_text.substr(l_u_start, l_u_equals - l_u_start);
        std::string l_s_value = a_s_text.substr(l_u_equals + 1, l_u_end - l_u_equals - 1);
        NormalizeData(l_s_name);
        NormalizeData(l_s_value);
        a_m_data.emplace(std::move(l_s_name), std::move(l_s_value));

        l_u_start = l_u_end + 1;
    }
}

void cCGI::NormalizeData(std::string& a_s_text)
{
    std::replace(a_s_text.begin(), a_s_text.end(), '+', ' ');

    auto l_c_write = std::find(a_s_text.begin(), a_s_text.end(), '%');
    auto l_c_read = l_c_write;
    const auto l_c_end = a_s_text.end();
    while (l_c_read != l_c_end) {
        const auto l_i_follow = std::min<std::ptrdiff_t>(l_c_end - l_c_read - 1, 2);
        if (*l_c_read != '%' || l_i_follow == 0) {
            *l_c_write++ = *l_c_read++;
            continue;
        }
        char l_digits[3] = {};
        std::copy_n(l_c_read + 1, l_i_follow, l_digits);
        *l_c_write++ = static_cast<char>(Htoi(l_digits));
        l_c_read += 1 + l_i_follow;
    }
    a_s_text.erase(l_c_write, l_c_end);
}

// NOLINTNEXTLINE(readability-non-const-parameter): see the declaration.
int Htoi(char* a_p_digits)
{
    // Unsigned, so that a string of any length has a defined result.
    unsigned int l_u_number = 0;
    for (const char* l_p_digit = a_p_digits; *l_p_digit != '\0'; ++l_p_digit) {
        const unsigned int l_u_code = static_cast<unsigned char>(*l_p_digit);
        const unsigned int l_u_value = (l_u_code & 0x0FU) + ((l_u_code & 0x40U) != 0 ? 9U : 0U);
        l_u_number = l_u_number * 16 + l_u_value;
    }
    return static_cast<int>(l_u_number);
}

bool cCGI::GetFormElementVal(std::string& a_s_name) const
{
    const auto l_c_field = m_m_postData.find(a_s_name);
    if (l_c_field == m_m_postData.end()) {
        return false;
    }
    a_s_name = l_c_field->second;
    return true;
}

std::string cCGI::GetField(const std::string& a_s_name, const std::string& a_s_default) const
{
    const tFormData& l_m_data = IsPostRsp() ? m_m_postData : m_m_getData;
    const auto l_c_field = l_m_data.find(a_s_name);
    return l_c_field == l_m_data.end() ? a_s_default : l_c_field->second;
}

std::string cCGI::Url()
{
    return m_m_environment["SERVER_NAME"] + m_m_environment["SCRIPT_NAME"];
}
