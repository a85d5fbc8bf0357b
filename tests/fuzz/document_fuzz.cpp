// Any bytes load as a document or are refused, and every node of the document is found by XPath.

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
    std::ofstream("/tmp/document") << std::string(reinterpret_cast<const char*>(a_p_data), a_u_size);
    cDocument l_c_document;
    if (l_c_document.LoadFile("/tmp/document", TIXML_DEFAULT_ENCODING)) {
        ExtractValues(l_c_document, {{"a", "/"}, {"b", "(//@*)[last()]"}});
        TinyXPath::xpath_processor l_c_processor(l_c_document.RootElement(), "//node()");
        if (l_c_processor.u_compute_xpath_node_set() != Descendants(l_c_document)) {
            std::abort();
        }
    }
    return 0;
}
