#include "cgilib.h"

// ---- Elements without an end tag ----

std::string cCGI::EmptyElement(const std::string& a_s_opening, const tAttributes& a_m_attributes,
                               const std::string& a_s_value) const
{
    return a_s_opening + InflateAtomicTag(a_m_attributes) + a_s_value + EmptyElementEnd();
}

std::string cCGI::Button(const tAttributes& a_m_attributes, const std::string& a_s_value) const
{
    return EmptyElement(R"(<input type="button")", a_m_attributes, Attribute("value", a_s_value));
}

std::string cCGI::CheckBox(const tAttributes& a_m_attributes) const
{
    return EmptyElement(R"(<input type="checkbox")", a_m_attributes);
}

std::string cCGI::DefaultsButton(const tAttributes& a_m_attributes) const
{
    return EmptyElement(R"(<input type="submit")", a_m_attributes, R"( value="Reset to Defaults")");
}

std::string cCGI::FileUpload(const tAttributes& a_m_attributes) const
{
    return EmptyElement(R"(<input type="file")", a_m_attributes);
}

std::string cCGI::Frame(const tAttributes& a_m_attributes, const std::string& a_s_source) const
{
    return EmptyElement("<frame src=\"" + a_s_source + "\"", a_m_attributes);
}

std::string cCGI::Hidden(const tAttributes& a_m_attributes, const std::string& a_s_value) const
{
    return EmptyElement(R"(<input type="hidden")", a_m_attributes, Attribute("value", a_s_value));
}

std::string cCGI::Hr(const tAttributes& a_m_attributes) const
{
    return EmptyElement("<hr", a_m_attributes);
}

std::string cCGI::Img(const tAttributes& a_m_attributes, const std::string& a_s_source) const
{
    return EmptyElement("<img src=\"" + a_s_source + "\"", a_m_attributes);
}

std::string cCGI::ImgButton(const tAttributes& a_m_attributes) const
{
    return EmptyElement(R"(<input type="image")", a_m_attributes);
}

std::string cCGI::Link(const tAttributes& a_m_attributes) const
{
    return EmptyElement("<link", a_m_attributes);
}

std::string cCGI::Meta(const tAttributes& a_m_attributes) const
{
    return EmptyElement("<meta", a_m_attributes);
}

std::string cCGI::Password(const tAttributes& a_m_attributes) const
{
    return EmptyElement(R"(<input type="password")", a_m_attributes);
}

std::string cCGI::RadioButton(const tAttributes& a_m_attributes) const
{
    return EmptyElement(R"(<input type="radio")", a_m_attributes);
}

std::string cCGI::ResetButton(const tAttributes& a_m_attributes, const std::string& a_s_value) const
{
    return R"(<input type="reset")" + InflateAtomicTag(a_m_attributes) +
           Attribute("value", a_s_value) + ">";
}

std::string cCGI::Submit(const tAttributes& a_m_attributes, const std::string& a_s_value) const
{
    return EmptyElement(R"(<input type="submit")", a_m_attributes, Attribute("value", a_s_value));
}

std::string cCGI::Text(const tAttributes& a_m_attributes, const std::string& a_s_value) const
{
    return EmptyElement(R"(<input type="text")", a_m_attributes, Attribute("value", a_s_value));
}

// ---- Elements with content ----

std::string cCGI::A(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return "<a" + InflateDiatomicTag(a_m_attributes, a_s_content, true) + Indent() + "</a>";
}

// Only an element with content is spread over several lines.
std::string cCGI::Container(const char* a_p_opening, const tAttributes& a_m_attributes,
                            const std::string& a_s_content, const char* a_p_closing) const
{
    const bool l_b_lines = !a_s_content.empty();
    return Indent() + a_p_opening + InflateDiatomicTag(a_m_attributes, a_s_content, l_b_lines) +
           (l_b_lines ? Indent() + "  " : "") + a_p_closing;
}

std::string cCGI::Div(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return Container("  <div ", a_m_attributes, a_s_content, "</div>\n");
}

std::string cCGI::Span(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return Container("  <span ", a_m_attributes, a_s_content, "</span>\n");
}

std::string cCGI::Font(const tAttributes& a_m_attributes, const std::string& a_s_text) const
{
    return Indent() + "  <font" + InflateDiatomicTag(a_m_attributes, a_s_text, false) + "</font>";
}

std::string cCGI::Form(const tAttributes& a_m_attributes, const std::string& a_s_content) const
{
    return Indent() + "  <form" + InflateDiatomicTag(a_m_attributes, a_s_content, true) + Indent() +
           "  </form>\n";
}

std::string cCGI::Option(const tAttributes& a_m_attributes, const std::string& a_s_label) const
{
    return Indent() + "  <option" + InflateDiatomicTag(a_m_attributes, a_s_label, false) +
           "  </option>\n";
}

// ---- Script and text area ----

std::string cCGI::Script(const tAttributes& a_m_attributes, const std::string& a_s_code) const
{
    const std::string l_s_start = Indent() +
                                  R"(<script language="javascript" type="text/javascript")" +
                                  InflateAtomicTag(a_m_attributes);
    if (a_s_code.empty()) {
        return l_s_start + "></script>\n";
    }
    return l_s_start + ">\n" + Indent() + " <!--\n" + a_s_code + Indent() + " //-->\n" + Indent() +
           "</script>\n";
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): all generators are called alike.
std::string cCGI::TextArea(const tAttributes& a_m_attributes, const std::string& a_s_content,
                           unsigned int a_u_rows, unsigned int a_u_cols) const
{
    return "<textarea" + Attribute("cols", Decimal(a_u_cols)) +
           Attribute("rows", Decimal(a_u_rows)) + MinimizedAttributes(a_m_attributes) + ">\n" +
           a_s_content + "\n</textarea>\n";
}
