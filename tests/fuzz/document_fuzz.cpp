// Any bytes load as a document or are refused, and every node of the document is found by XPath.

#include <cstdlib>
#include <fstream>

#include <document.h>
#include <extraction.h>
#include <xpath_processor.h>

// How many there are from this node on: itself, its later siblings and everything below them.
static unsigned Count(const TiXmlNode* a_p_node)
{
    return a_p_node == nullptr ? 0
                               : 1 + Count(a_p_node->FirstChild()) + Count(a_p_node->NextSibling());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    std::ofstream("/tmp/document") << std::string(a_p_data, a_p_data + a_u_size);
    TiXmlDocument l_c_document;
    if (LoadDocument(l_c_document, "/tmp/document")) {
        ExtractValues(l_c_document, {{"a", "/"}, {"b", "(//@*)[last()]"}});
        TinyXPath::xpath_processor l_c_processor(l_c_document.RootElement(), "//node()");
        if (l_c_processor.u_compute_xpath_node_set() != Count(l_c_document.FirstChild())) {
            std::abort();
        }
    }
    return 0;
}
