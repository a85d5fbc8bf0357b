#include "cgilib.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "standard_input.h"

namespace
{

// Queries are short, and a client must not be able to fill a small device's memory.
constexpr long MAX_BODY_LENGTH = 16L * 1024 * 1024;

// Appends the first line of standard input, without its line feed, but at most a_u_limit bytes: a
// server that keeps the pipe open never sends the byte after them, so the read must not wait for
// it. Returns false if the input ends before.
bool ReadLine(std::string& a_s_line, std::size_t a_u_limit)
{
    a_s_line.reserve(a_u_limit);
    while (a_s_line.size() < a_u_limit) {
        const int l_i_byte = getc_unlocked(stdin);
        if (l_i_byte == '\n') {
            return true;
        }
        if (l_i_byte != EOF) {
            a_s_line += static_cast<char>(l_i_byte);
        } else if (!AwaitStandardInput()) {
            return false;
        }
    }
    return true;
}

} // namespace

bool cCGI::ParsePostData()
{
    m_b_bodyComplete = false;
    const std::string* l_p_type = Environment("CONTENT_TYPE");
    if (l_p_type == nullptr) {
        return false;
    }
    if (l_p_type->find("multipart/form-data") != std::string::npos) {
        return ParseMultipartData();
    }

    const std::string* l_p_length = Environment("CONTENT_LENGTH");
    if (l_p_length == nullptr) {
        return false;
    }
    // Not atoi: beyond the range of int its result is undefined; strtol's is merely too large.
    const long l_i_length = std::strtol(l_p_length->c_str(), nullptr, 10);
    if (l_i_length <= 0 || l_i_length > MAX_BODY_LENGTH) {
        return false;
    }

    std::string l_s_body;
    const bool l_b_complete = ReadLine(l_s_body, static_cast<std::size_t>(l_i_length));
    l_s_body.resize(std::min(l_s_body.find('\0'), l_s_body.size()));
    StoreFields(l_s_body, m_m_postData);
    m_b_bodyComplete = l_b_complete;
    return true;
}
