// Any expression over the example document ends in a value, the same one each time.

#include <cstdlib>

#include <extraction.h>
#include <response.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    static const TiXmlDocument* const s_p_document = [] {
        auto* l_p_document = new TiXmlDocument;
        if (!l_p_document->LoadFile(EXAMPLE_CONFIG)) {
            std::abort();
        }
        return l_p_document;
    }();
    const std::string l_s_expression(reinterpret_cast<const char*>(a_p_data), a_u_size);
    const auto l_m_values = ExtractValues(*s_p_document, {{"a", l_s_expression}, {"b", l_s_expression}});
    if (l_m_values.at("a") != l_m_values.at("b")) {
        std::abort();
    }
    ComposeResponse(l_m_values);
    return 0;
}
