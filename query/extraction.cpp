#include "extraction.h"

#include <xpath_processor.h>

static std::string PrintedSubtree(const TiXmlNode& a_c_node)
{
    TiXmlPrinter l_c_printer;
    l_c_printer.SetStreamPrinting();
    a_c_node.Accept(&l_c_printer);

    std::string l_s_value;
    l_s_value.reserve(l_c_printer.Size());
    for (const char* l_p_byte = l_c_printer.CStr(); *l_p_byte != '\0'; ++l_p_byte) {
        if (*l_p_byte == '"') {
            l_s_value += "&quot;";
        } else {
            l_s_value += *l_p_byte;
        }
    }
    return l_s_value;
}

static std::string NodeText(const TiXmlNode& a_c_node)
{
    switch (a_c_node.Type()) {
    case TiXmlNode::TINYXML_DOCUMENT:
    case TiXmlNode::TINYXML_ELEMENT:
        return PrintedSubtree(a_c_node);
    case TiXmlNode::TINYXML_COMMENT:
    case TiXmlNode::TINYXML_TEXT:
        return a_c_node.Value();
    default:
        return {};
    }
}

static std::string ExtractValue(const TiXmlDocument& a_c_document, const char* a_p_expression)
{
    TinyXPath::xpath_processor l_c_processor(a_c_document.RootElement(), a_p_expression);
    if (l_c_processor.u_compute_xpath_node_set() == 0) {
        return {};
    }
    const TiXmlNode* l_p_node = l_c_processor.XNp_get_xpath_node(0);
    return l_p_node == nullptr ? l_c_processor.S_compute_xpath() : NodeText(*l_p_node);
}

std::map<std::string, std::string>
ExtractValues(const TiXmlDocument& a_c_document,
              const std::map<std::string, std::string>& a_m_query)
{
    std::map<std::string, std::string> l_m_result;
    for (const auto& [l_s_key, l_s_expression] : a_m_query) {
        l_m_result.emplace_hint(l_m_result.end(), l_s_key,
                                ExtractValue(a_c_document, l_s_expression.c_str()));
    }
    return l_m_result;
}
