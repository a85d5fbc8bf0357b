#include "cgilib.h"

std::string cCGI::Enclosed(const std::string& a_s_opening, const tAttributes& a_m_attributes,
                           const std::string& a_s_content, const char* a_p_closing) const
{
    return a_s_opening + InflateAtomicTag(a_m_attributes) + ">\n" + a_s_content + Indent() +
           a_p_closing;
}

std::string cCGI::Table(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return Enclosed("<table", a_m_attributes, a_s_content, "</table>\n");
}

std::string cCGI::Table(const tAttributes& a_m_attributes, const tStrings& a_c_rows) const
{
    return Enclosed("<table ", a_m_attributes, Listed(a_c_rows, "", ""), "</table>\n");
}

std::string cCGI::Tr(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return Enclosed(Indent() + " <tr", a_m_attributes, a_s_content, " </tr>\n");
}

std::string cCGI::Tr(const tAttributes& a_m_attributes, const tStrings& a_c_cells) const
{
    return Tr(a_m_attributes, Listed(a_c_cells, Indent(), "\n"));
}

std::string cCGI::Frameset(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return Enclosed(Indent() + " <frameset", a_m_attributes, a_s_content, " </frameset>\n");
}

std::string cCGI::Frameset(const tAttributes& a_m_attributes, const tStrings& a_c_frames) const
{
    return Frameset(a_m_attributes, Listed(a_c_frames, Indent(), "\n"));
}

std::string cCGI::Td(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return Indent() + "  <td" + InflateDiatomicTag(a_m_attributes, a_s_content, true) + Indent() +
           "  </td>\n";
}

std::string cCGI::Td(const tAttributes& a_m_attributes, const tStrings& a_c_contents) const
{
    std::string l_s_cells;
    for (const std::string& l_s_content : a_c_contents) {
        l_s_cells += Td(a_m_attributes, l_s_content);
    }
    return l_s_cells;
}
