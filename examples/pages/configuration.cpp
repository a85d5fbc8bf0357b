#include "configuration.h"

namespace
{

std::string Text(const TiXmlHandle& a_c_node)
{
    const TiXmlText* l_p_text = a_c_node.FirstChild().ToText();
    return l_p_text == nullptr ? "" : l_p_text->Value();
}

std::string Attribute(const TiXmlHandle& a_c_node, const char* a_p_name)
{
    const TiXmlElement* l_p_element = a_c_node.ToElement();
    const char* l_p_value = l_p_element == nullptr ? nullptr : l_p_element->Attribute(a_p_name);
    return l_p_value == nullptr ? "" : l_p_value;
}

} // namespace

std::vector<sInterface> Interfaces(TiXmlDocument& a_c_document)
{
    std::vector<sInterface> l_c_interfaces;
    TiXmlElement* l_p_next = TiXmlHandle(a_c_document.RootElement())
                                 .FirstChild("interfaces")
                                 .FirstChild("interface")
                                 .ToElement();
    for (; l_p_next != nullptr; l_p_next = l_p_next->NextSiblingElement("interface")) {
        const TiXmlHandle l_c_interface(l_p_next);
        const bool l_b_enabled = Attribute(l_c_interface, "enabled") == "true";
        l_c_interfaces.push_back(
            {Attribute(l_c_interface, "name"), Text(l_c_interface.FirstChild("description")),
             l_b_enabled ? "on" : "off", Text(l_c_interface.FirstChild("address").FirstChild("ip")),
             Text(l_c_interface.FirstChild("mtu"))});
    }
    return l_c_interfaces;
}

tTexts Configured(TiXmlDocument& a_c_document)
{
    const TiXmlHandle l_c_root(a_c_document.RootElement());
    const TiXmlHandle l_c_system = l_c_root.FirstChild("system");
    const TiXmlHandle l_c_first = l_c_root.FirstChild("interfaces").FirstChild("interface");
    const bool l_b_ntp = Attribute(l_c_root.FirstChild("ntp"), "enabled") == "true";
    return {
        {"hostname", Text(l_c_system.FirstChild("hostname"))},
        {"location", Text(l_c_system.FirstChild("location"))},
        {"method", Attribute(l_c_first.FirstChild("address"), "method")},
        {"address", Text(l_c_first.FirstChild("address").FirstChild("ip"))},
        {"mtu", Text(l_c_first.FirstChild("mtu"))},
        {"log", Attribute(l_c_system.FirstChild("log"), "level")},
        {"ntp", l_b_ntp ? "on" : ""},
        {"note", ""},
    };
}
