// Any expression on any document yields a value, the same one each time. The document follows the
// first line feed; without one, the example document is used.

#include <cstdlib>

#include <extraction.h>
#include <response.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    constexpr std::size_t LARGEST = 1000; // on larger ones a short expression may take minutes
    static TiXmlDocument s_c_example;
    static const bool s_b_loaded = s_c_example.LoadFile(EXAMPLE_CONFIG);
    const std::string l_s_input(reinterpret_cast<const char*>(a_p_data), a_u_size);
    const std::size_t l_u_end = l_s_input.find('\n');
    static TiXmlDocument s_c_other;
    s_c_other.Clear();
    s_c_other.Parse(l_s_input.substr(l_u_end + 1, LARGEST).append(3, '\0').c_str()); // zeros: see cDocument

    const std::string l_s_expression = l_s_input.substr(0, l_u_end);
    const TiXmlDocument& l_c_document = l_u_end == std::string::npos ? s_c_example : s_c_other;
    const auto l_m_values = ExtractValues(l_c_document, {{"a", l_s_expression}, {"b", l_s_expression}});
    ComposeResponse(l_m_values);
    if (!s_b_loaded || l_m_values.at("a") != l_m_values.at("b")) {
        std::abort();
    }
    return 0;
}
