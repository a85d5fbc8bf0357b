// Any body is parsed to the same result in whatever pieces it arrives, and a URL-encoded body to
// the same fields as a query string, up to its first line feed or NUL. The first input byte gives
// the length of the pieces, the second that of the boundary, which follows; 0 means a URL-encoded
// body. The rest is the body. The inputs stay below the limit for a waiting part header.

#include <cstdlib>

#include "interposed.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    if (a_u_size < 3 || a_u_size < 3U + a_p_data[1]) {
        return 0;
    }
    const std::string l_s_rest(reinterpret_cast<const char*>(a_p_data + 2), a_u_size - 2);
    const std::string l_s_type =
        a_p_data[1] == 0 ? "" : "multipart/form-data; boundary=" + l_s_rest.substr(0, a_p_data[1]);
    const std::string l_s_body = l_s_rest.substr(a_p_data[1]);
    const tOutcome l_c_whole = Parse(l_s_type, l_s_body);
    if (Parse(l_s_type, l_s_body, a_p_data[0] + 1U) != l_c_whole) {
        std::abort();
    }
    if (l_s_type.empty()) {
        static cCGI s_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
        const std::string l_s_line = l_s_body.substr(0, l_s_body.find('\n'));
        s_c_request.GetEnvironment()["QUERY_STRING"] = l_s_line.substr(0, l_s_line.find('\0'));
        s_c_request.GetGetData().clear();
        if (!s_c_request.ParseGetData() ||
            l_c_whole != tOutcome(true, true, s_c_request.GetGetData(), "", "")) {
            std::abort();
        }
    }
    return 0;
}
