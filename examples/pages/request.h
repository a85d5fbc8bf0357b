#ifndef REQUEST_H
#define REQUEST_H

#include <cgilib.h>

#include <iostream>

/// Parses the request of a page. HEAD is answered like GET: the server drops the body. A form in
/// which nothing is ticked is sent without a body, which ParseData() refuses: it has no fields.
inline bool Parsed(cCGI& a_c_page)
{
    cCGI::tFormData& l_m_environment = a_c_page.GetEnvironment();
    if (l_m_environment["REQUEST_METHOD"] == "HEAD") {
        return a_c_page.ParseGetData();
    }
    const std::string& l_s_length =
        l_m_environment["CONTENT_LENGTH"]; // "0" or, from some servers, ""
    const bool l_b_empty = l_s_length.find_first_not_of('0') == std::string::npos;
    return (a_c_page.IsPostRsp() && l_b_empty) || a_c_page.ParseData();
}

/// Like Parsed(), but writes the status for a request that cannot be parsed. Header fields must be
/// written before BeginHtml(), which ends the header.
inline bool ParsedOrRefused(cCGI& a_c_page)
{
    const bool l_b_parsed = Parsed(a_c_page);
    if (!l_b_parsed) {
        std::cout << (a_c_page.IsPostRsp()
                          ? "Status: 400 Bad Request\n"
                          : "Status: 405 Method Not Allowed\nAllow: GET, HEAD, POST\n");
    }
    return l_b_parsed;
}

#endif
