#ifndef REQUEST_H
#define REQUEST_H

#include <cgilib.h>

#include <iostream>

/// What a page shows in place of what it would have done with the form.
constexpr const char* const NOT_ARRIVED = "The form did not arrive in full. Please send it again.";

/// Parses the request of a page, or writes the status that refuses it and returns false. A body
/// counts only if all of it arrived: a lost connection may cut off the last field. HEAD is answered
/// like GET: the server drops the body. A form in which nothing is ticked is sent without a body,
/// which ParseData() refuses: it has no fields.
inline bool ParseOrRefuse(cCGI& a_c_page)
{
    cCGI::tFormData& l_m_environment = a_c_page.GetEnvironment();
    if (a_c_page.IsPostRsp()) {
        const std::string& l_s_length = l_m_environment["CONTENT_LENGTH"]; // maybe "", not "0"
        const bool l_b_empty = l_s_length.find_first_not_of('0') == std::string::npos;
        if (l_b_empty || (a_c_page.ParseData() && a_c_page.IsBodyComplete())) {
            return true;
        }
        std::cout << "Status: 400 Bad Request\n";
        return false;
    }
    if (a_c_page.IsGetRsp() || l_m_environment["REQUEST_METHOD"] == "HEAD") {
        return a_c_page.ParseGetData();
    }
    std::cout << "Status: 405 Method Not Allowed\nAllow: GET, HEAD, POST\n";
    return false;
}

#endif
