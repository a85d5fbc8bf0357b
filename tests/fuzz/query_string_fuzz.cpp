// Any query string is parsed, into no more bytes than it has.

#include <cgilib.h>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    static cCGI s_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    const std::string l_s_query(reinterpret_cast<const char*>(a_p_data), a_u_size);
    s_c_request.GetEnvironment()["QUERY_STRING"] = l_s_query;
    s_c_request.GetGetData().clear();
    if (!s_c_request.ParseGetData()) {
        std::abort();
    }
    std::size_t l_u_stored = 0;
    for (const auto& [l_s_name, l_s_value] : s_c_request.GetGetData()) {
        l_u_stored += l_s_name.size() + 1 + l_s_value.size();
    }
    if (l_u_stored > l_s_query.size()) {
        std::abort();
    }
    return 0;
}
