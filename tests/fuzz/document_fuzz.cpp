// Any bytes load as a document or are refused, and every node of the document is found by XPath. The
// first line is an expression, which is evaluated as well.

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include <document.h>
#include <extraction.h>
#include <xpath_processor.h>

static unsigned Descendants(const TiXmlNode& a_c_node)
{
    unsigned l_u_count = 0;
    for (const auto* l_p_child = a_c_node.FirstChild(); l_p_child != nullptr; l_p_child = l_p_child->NextSibling()) {
        l_u_count += 1 + Descendants(*l_p_child);
    }
    return l_u_count;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    constexpr std::size_t LARGEST = 1000; // on larger ones a short expression may take minutes
    const std::string l_s_input(reinterpret_cast<const char*>(a_p_data), a_u_size);
    const std::size_t l_u_end = std::min(l_s_input.find('\n'), a_u_size);
    std::ofstream("/tmp/document") << l_s_input.substr(std::min(l_u_end + 1, a_u_size), LARGEST);
    cDocument l_c_document;
    if (l_c_document.LoadFile("/tmp/document", TIXML_DEFAULT_ENCODING)) {
        ExtractValues(l_c_document, {{"a", "/"}, {"b", l_s_input.substr(0, l_u_end)}});
        TinyXPath::xpath_processor l_c_processor(l_c_document.RootElement(), "//node()");
        if (l_c_processor.u_compute_xpath_node_set() != Descendants(l_c_document)) {
            std::abort();
        }
    }
    return 0;
}
