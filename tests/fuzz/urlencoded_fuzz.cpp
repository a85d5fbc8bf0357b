// A URL-encoded body gives the same fields as the same text in a query string, up to its first
// line feed or NUL, in whatever pieces it arrives.

#include <cgilib.h>

#include <cstdlib>

#include "interposed.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    if (a_u_size < 2) {
        return 0;
    }
    const std::string l_s_body(reinterpret_cast<const char*>(a_p_data + 1), a_u_size - 1);
    const std::size_t l_u_cut = a_p_data[0] % l_s_body.size();

    static cCGI s_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    const std::string l_s_line = l_s_body.substr(0, l_s_body.find('\n'));
    s_c_request.GetEnvironment()["CONTENT_LENGTH"] = std::to_string(l_s_body.size());
    s_c_request.GetEnvironment()["QUERY_STRING"] = l_s_line.substr(0, l_s_line.find('\0'));
    s_c_request.GetPostData().clear();
    s_c_request.GetGetData().clear();
    const cDelivery l_c_delivery({l_s_body.substr(0, l_u_cut), l_s_body.substr(l_u_cut)}, true);
    if (!s_c_request.ParsePostData() || !s_c_request.ParseGetData() ||
        s_c_request.GetPostData() != s_c_request.GetGetData()) {
        std::abort();
    }
    return 0;
}
