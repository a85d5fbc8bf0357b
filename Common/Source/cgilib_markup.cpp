#include "cgilib.h"

namespace
{

// What a compliance level selects. The system identifiers are the addresses that the W3C maintains
// for all revisions of a document type.
struct sMarkup
{
    const char* m_p_documentType;
    const char* m_p_emptyElementEnd;
    const char* m_p_lineBreak;
};

constexpr sMarkup HTML_4_01 = {
    R"(<!DOCTYPE html PUBLIC "-//W3C//DTD HTML 4.01 Transitional//EN" "http://www.w3.org/TR/html4/loose.dtd">)",
    ">\n", "<br>\n"};
constexpr sMarkup XHTML_1_0_FRAMESET = {
    R"(<!DOCTYPE html PUBLIC "-//W3C//DTD XHTML 1.0 Frameset//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-frameset.dtd">)",
    " />\n", "<br />\n"};
constexpr sMarkup XHTML_1_0_STRICT = {
    R"(<!DOCTYPE html PUBLIC "-//W3C//DTD XHTML 1.0 Strict//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd">)",
    " />\n", "<br />\n"};
constexpr sMarkup XHTML_1_0_TRANSITIONAL = {
    R"(<!DOCTYPE html PUBLIC "-//W3C//DTD XHTML 1.0 Transitional//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd">)",
    " />\n", "<br />\n"};
constexpr sMarkup XHTML_NO_DOCTYPE = {"", " />\n", "<br />\n"};
// For a number outside the enumeration.
constexpr sMarkup OUTSIDE = {"", " />\n", ""};

constexpr const sMarkup& Markup(cCGI::eCompliance a_e_compliance)
{
    switch (a_e_compliance) {
    case cCGI::eHTML_LEVEL_0:
    case cCGI::eHTML_LEVEL_1:
    case cCGI::eHTML_LEVEL_2:
    case cCGI::eHTML_LEVEL_3:
    case cCGI::eHTML_LEVEL_4:
        return HTML_4_01;
    case cCGI::eXHTML_1_0_FRAMESET:
        return XHTML_1_0_FRAMESET;
    case cCGI::eXHTML_1_0_STRICT:
        return XHTML_1_0_STRICT;
    case cCGI::eXHTML_1_0_TRANSITIONAL:
        return XHTML_1_0_TRANSITIONAL;
    case cCGI::eXHTML_NO_DOCTYPE:
        return XHTML_NO_DOCTYPE;
    }
    return OUTSIDE;
}

} // namespace

const char* cCGI::DocumentType() const
{
    return Markup(m_e_compliance).m_p_documentType;
}

const char* cCGI::EmptyElementEnd() const
{
    return Markup(m_e_compliance).m_p_emptyElementEnd;
}

const char* cCGI::LineBreak() const
{
    return Markup(m_e_compliance).m_p_lineBreak;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): all generators are called alike.
std::string cCGI::InflateAtomicTag(const tAttributes& a_m_attributes) const
{
    std::string l_s_text;
    for (const auto& l_c_attribute : a_m_attributes) {
        l_s_text += Attribute(l_c_attribute.first, l_c_attribute.second);
    }
    return l_s_text;
}

std::string cCGI::InflateDiatomicTag(const tAttributes& a_m_attributes,
                                     const std::string& a_s_content, bool a_b_newline) const
{
    const bool l_b_unended = !a_s_content.empty() && a_s_content.back() != '\n';
    return MinimizedAttributes(a_m_attributes) + (a_b_newline ? ">\n" : ">") + Indent() +
           a_s_content + (a_b_newline && l_b_unended ? "\n" : "");
}

std::string cCGI::Attribute(const std::string& a_s_name, const std::string& a_s_value)
{
    return " " + a_s_name + "=\"" + a_s_value + "\"";
}

std::string cCGI::MinimizedAttributes(const tAttributes& a_m_attributes)
{
    std::string l_s_text;
    for (const auto& l_c_attribute : a_m_attributes) {
        const bool l_b_minimized = l_c_attribute.second.empty();
        l_s_text += l_b_minimized ? " " + l_c_attribute.first
                                  : Attribute(l_c_attribute.first, l_c_attribute.second);
    }
    return l_s_text;
}

std::string cCGI::Decimal(unsigned int a_u_number)
{
    return std::to_string(static_cast<int>(a_u_number));
}

std::string cCGI::Listed(const tStrings& a_c_items, const std::string& a_s_before,
                         const std::string& a_s_after)
{
    std::string l_s_text;
    for (const std::string& l_s_item : a_c_items) {
        l_s_text.append(a_s_before).append(l_s_item).append(a_s_after);
    }
    return l_s_text;
}
