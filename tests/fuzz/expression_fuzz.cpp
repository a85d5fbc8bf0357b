// Any expression on the example document yields a value, the same one each time.

#include <cstdlib>

#include <extraction.h>
#include <response.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    static TiXmlDocument s_c_document;
    static const bool s_b_loaded = s_c_document.LoadFile(EXAMPLE_CONFIG);
    const std::string l_s_expression(reinterpret_cast<const char*>(a_p_data), a_u_size);
    const auto l_m_values = ExtractValues(s_c_document, {{"a", l_s_expression}, {"b", l_s_expression}});
    ComposeResponse(l_m_values);
    if (!s_b_loaded || l_m_values.at("a") != l_m_values.at("b")) {
        std::abort();
    }
    return 0;
}
