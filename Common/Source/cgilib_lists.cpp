#include "cgilib.h"

namespace
{

// The attribute that names the preselected value. It is not an HTML attribute.
constexpr const char* const DEFAULT = "DEFAULT";

cCGI::tAttributes WithoutDefault(cCGI::tAttributes a_m_attributes)
{
    a_m_attributes.erase(DEFAULT);
    return a_m_attributes;
}

std::string Select(const std::string& a_s_attributes, const std::string& a_s_lines)
{
    return "<select" + a_s_attributes + ">\n" + a_s_lines + "</select>\n";
}

std::string ValueLines(const cCGI::tAttributes& a_m_attributes, const cCGI::tStrings& a_c_values)
{
    const auto l_c_default = a_m_attributes.find(DEFAULT);
    std::string l_s_lines;
    for (const std::string& l_s_value : a_c_values) {
        const bool l_b_selected =
            l_c_default != a_m_attributes.end() && l_c_default->second == l_s_value;
        l_s_lines +=
            l_b_selected ? R"( <option selected="selected" value=")" : R"( <option value=")";
        l_s_lines.append(l_s_value).append("\">").append(l_s_value).append("</option>\n");
    }
    return l_s_lines;
}

} // namespace

std::string cCGI::OptionLines(const tOptions& a_m_options)
{
    std::string l_s_lines;
    for (const auto& l_c_option : a_m_options) {
        l_s_lines += " <option" + MinimizedAttributes(l_c_option.second) + ">" + l_c_option.first +
                     "</option>\n";
    }
    return l_s_lines;
}

// ---- Selection lists ----

std::string cCGI::PopupMenu(const tAttributes& a_m_attributes, const tStrings& a_c_values) const
{
    return Select(InflateAtomicTag(WithoutDefault(a_m_attributes)),
                  ValueLines(a_m_attributes, a_c_values));
}

std::string cCGI::PopupMenu(const tAttributes& a_m_attributes, const tOptions& a_m_options) const
{
    return Select(InflateAtomicTag(a_m_attributes), OptionLines(a_m_options));
}

std::string cCGI::DropDownList(const tAttributes& a_m_attributes, const tStrings& a_c_items) const
{
    return Select(InflateAtomicTag(a_m_attributes), Listed(a_c_items, "", "\n"));
}

std::string cCGI::ScrollList(unsigned int a_u_size, const tAttributes& a_m_attributes,
                             const tStrings& a_c_values) const
{
    return Select(InflateAtomicTag(WithoutDefault(a_m_attributes)) +
                      Attribute("size", Decimal(a_u_size)),
                  ValueLines(a_m_attributes, a_c_values));
}

std::string cCGI::ScrollList(unsigned int a_u_size, const tAttributes& a_m_attributes,
                             const tOptions& a_m_options) const
{
    return Select(InflateAtomicTag(a_m_attributes) + Attribute("size", Decimal(a_u_size)),
                  OptionLines(a_m_options));
}

std::string cCGI::ScrollList(const tAttributes& a_m_attributes, const tStrings& a_c_items,
                             unsigned int a_u_size) const
{
    return Select(Attribute("size", Decimal(a_u_size)) + InflateAtomicTag(a_m_attributes),
                  Listed(a_c_items, "", "\n"));
}

// ---- Groups ----

std::string cCGI::Group(const char* a_p_opening, const char* a_p_value,
                        const tAttributes& a_m_attributes, const tStrings& a_c_values) const
{
    std::string l_s_group;
    for (const std::string& l_s_value : a_c_values) {
        l_s_group += Indent() + a_p_opening;
        for (const auto& l_c_attribute : a_m_attributes) {
            if (l_c_attribute.first != DEFAULT) {
                l_s_group += Attribute(l_c_attribute.first, l_c_attribute.second);
            } else if (l_c_attribute.second == l_s_value) {
                l_s_group += R"( checked="checked")";
            }
        }
        l_s_group.append(a_p_value).append(l_s_value).append("\"");
        l_s_group.append(EmptyElementEnd()).append(l_s_value);
    }
    return l_s_group;
}

std::string cCGI::CheckBoxGroup(const tAttributes& a_m_attributes, const tStrings& a_c_values) const
{
    return Group("<input type=checkbox ", " value=\"", a_m_attributes, a_c_values);
}

std::string cCGI::RadioGroup(const tAttributes& a_m_attributes, const tStrings& a_c_values) const
{
    return Group("<input type=radio ", " value= \"", a_m_attributes, a_c_values);
}
