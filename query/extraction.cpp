#include "extraction.h"

#include <string_view>

#include <xpath_processor.h>

static std::string PrintedSubtree(const TiXmlNode& a_c_node)
{
    TiXmlPrinter l_c_printer;
    l_c_printer.SetStreamPrinting();
    a_c_node.Accept(&l_c_printer);

    std::string l_s_value;
    std::string_view l_s_rest = l_c_printer.CStr();
    for (std::size_t l_u_quote = l_s_rest.find('"'); l_u_quote != std::string_view::npos;
         l_u_quote = l_s_rest.find('"')) {
        l_s_value.append(l_s_rest.substr(0, l_u_quote)).append("&quot;");
        l_s_rest.remove_prefix(l_u_quote + 1);
    }
    return l_s_value.append(l_s_rest);
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
