#include "extraction.h"

#include <algorithm>
#include <string_view>

#include <xpath_processor.h>

static std::string PrintedSubtree(const TiXmlNode& a_c_node)
{
    TiXmlPrinter l_c_printer;
    l_c_printer.SetStreamPrinting();
    a_c_node.Accept(&l_c_printer);
    const std::string& l_s_printed = l_c_printer.Str();

    constexpr std::string_view ESCAPED = "&quot;";
    const auto l_i_quotes = std::count(l_s_printed.begin(), l_s_printed.end(), '"');
    std::string l_s_value;
    l_s_value.reserve(l_s_printed.size() +
                      static_cast<std::size_t>(l_i_quotes) * (ESCAPED.size() - 1));
    std::size_t l_u_copied = 0;
    for (std::size_t l_u_quote = l_s_printed.find('"'); l_u_quote != std::string::npos;
         l_u_quote = l_s_printed.find('"', l_u_copied)) {
        l_s_value.append(l_s_printed, l_u_copied, l_u_quote - l_u_copied).append(ESCAPED);
        l_u_copied = l_u_quote + 1;
    }
    l_s_value.append(l_s_printed, l_u_copied);
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

std::map<std::string, std::string> ExtractValues(const TiXmlDocument& a_c_document,
                                                 std::map<std::string, std::string> a_m_query)
{
    TinyXPath::xpath_processor l_c_keeper(a_c_document.RootElement(), "/");
    if (!a_m_query.empty()) {
        l_c_keeper.u_compute_xpath_node_set(); // makes the copy of the tree that the others share
    }
    for (auto& l_c_entry : a_m_query) {
        std::string& l_s_text = l_c_entry.second;
        l_s_text = ExtractValue(a_c_document, l_s_text.c_str());
    }
    return a_m_query;
}
