#include "cgilib.h"

#include <array>
#include <iostream>
#include <utility>

// A Release build asserts too; without this, <cassert> declares nothing to call.
#undef NDEBUG
#include <cassert>

namespace
{

// Indexed by eTextDisplayID.
constexpr std::array DECORATIONS = {
    "acronym", "b", "center", "em",     "h1",  "h2",  "h3", "h4", "h5",
    "h6",      "i", "strike", "strong", "sub", "sup", "tt", "u",
};
static_assert(DECORATIONS.size() == cCGI::eDISPLAY_U + 1, "one tag name an identifier");

void Display(const cCGI::tFormData& a_m_data, const std::string& a_s_indent,
             const char* a_p_closing)
{
    for (const auto& l_c_entry : a_m_data) {
        std::cout << a_s_indent << l_c_entry.first << " = '" << l_c_entry.second << a_p_closing
                  << std::endl;
    }
}

} // namespace

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): all generators are called alike.
std::string cCGI::DecorateText(eTextDisplayID a_e_display, std::string a_s_text) const
{
    if (a_e_display >= DECORATIONS.size()) {
        // Not assert(): file and function must read the same whatever builds this source.
        __assert_fail(
            "0UL", "Common/Source/cgilib_text.cpp", __LINE__,
            "std::__cxx11::string cCGI::DecorateText(cCGI::eTextDisplayID, std::__cxx11::string)");
    }
    const std::string l_s_name = DECORATIONS[a_e_display];
    return "<" + l_s_name + ">" + std::move(a_s_text) + "</" + l_s_name + ">";
}

std::string cCGI::Br(unsigned int a_u_count) const
{
    std::string l_s_breaks;
    for (unsigned int l_u_break = 0; l_u_break < a_u_count; ++l_u_break) {
        l_s_breaks += LineBreak();
    }
    return l_s_breaks;
}

void cCGI::DispEnvironment() const
{
    Display(m_m_environment, Indent(), "'<BR>");
}

void cCGI::DispGetData() const
{
    Display(m_m_getData, Indent(), "'<BR>");
}

void cCGI::DispPostData() const
{
    Display(m_m_postData, Indent(), "'<br>");
}

void cCGI::DispLine(std::string a_s_text) const
{
    std::cout << a_s_text.insert(0, m_u_indent, ' ') << std::endl;
}

void cCGI::DispText(std::string a_s_text) const
{
    std::cout << a_s_text.insert(0, m_u_indent, ' ');
}
