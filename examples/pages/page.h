#ifndef PAGE_H
#define PAGE_H

#include <cgilib.h>

#include <iostream>
#include <string>

// What the pages share: the style, the beginning, and the parts of a form.

constexpr const char* const STYLE = R"css(<style type="text/css">
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 58rem; padding: 1.5rem 1rem 3rem; background: #f4f6f8;
  color: #1c2733; font: 1rem/1.5 system-ui, sans-serif; }
h1 { margin: 0 0 .75rem; font-size: 1.6rem; }
h2 { margin: 0 0 .75rem; font-size: 1.15rem; }
p { margin: 0 0 1rem; }
a { display: inline-block; color: #0b5394; }
hr { margin: 1.5rem 0; border: 0; border-top: 1px solid #d3dae2; }
code, tt, pre, .answers td { font: .9rem/1.5 ui-monospace, "DejaVu Sans Mono", monospace; }
form, .panel { margin: 0 0 1.25rem; padding: 1.25rem; background: #fff;
  border: 1px solid #d3dae2; border-radius: .5rem; }
.panel > :last-child, form > :last-child { margin-bottom: 0; }
label { font-weight: 600; }
input, select, textarea { font: inherit; font-weight: 400; accent-color: #0b5394; }
input[type=text], input[type=password], input[type=file], select, textarea { width: 100%;
  padding: .45rem .6rem; background: #fff; color: inherit; border: 1px solid #7a8795;
  border-radius: .3rem; }
input[type=submit], input[type=button], input[type=reset] { padding: .45rem 1rem;
  background: #fff; color: #0b5394; border: 1px solid #0b5394; border-radius: .3rem;
  cursor: pointer; }
input[type=submit].main { background: #0b5394; color: #fff; }
input[type=image] { vertical-align: middle; }
:focus-visible { outline: 3px solid #b35c00; outline-offset: 2px; }
.hint { color: #52606f; font-size: .9rem; font-weight: 400; }
.done, .failed { padding: .6rem .8rem; background: #e6f4ea; color: #0d4a22;
  border-left: 4px solid #1e7d3c; }
.failed { background: #fdecea; color: #86170e; border-left-color: #b3261e; }
.actions { display: flex; flex-wrap: wrap; gap: .6rem; align-items: center; margin-bottom: .75rem; }
table { width: 100%; margin-bottom: 1rem; border-collapse: collapse; }
th, td { padding: .5rem .6rem .5rem 0; text-align: left; vertical-align: top;
  overflow-wrap: anywhere; border-bottom: 1px solid #e4e9ee; }
td:last-child { padding-right: 0; }
pre { margin: .5rem 0 0; white-space: pre-wrap; overflow-wrap: anywhere; }
@media (max-width: 39.9rem) {
  .stacked, .stacked tbody, .stacked tr, .stacked td { display: block; }
  .stacked thead { position: absolute; left: -999rem; }
  .stacked td { padding: .15rem 0; border: 0; }
  .stacked tr { padding: .5rem 0; border-bottom: 1px solid #e4e9ee; }
}
</style>)css";

/// The header field that keeps other sites' pages from showing a page in a frame, where its user
/// would not know what they click.
constexpr const char* const NO_FOREIGN_FRAME = "X-Frame-Options: SAMEORIGIN\n";

/// Writes a page up to the start of its body, with its own style rules.
inline void BeginPage(cCGI& a_c_page, const std::string& a_s_title, const std::string& a_s_style)
{
    const cCGI::tStrings l_c_head = {
        // The XML declaration names another encoding; browsers follow this line.
        a_c_page.Meta({{"http-equiv", "Content-Type"}, {"content", "text/html; charset=utf-8"}}),
        a_c_page.Meta({{"name", "viewport"}, {"content", "width=device-width"}}),
        // An empty icon, so that browsers do not request one from the server.
        a_c_page.Link({{"rel", "icon"}, {"href", "data:,"}}),
        STYLE,
        "<style type=\"text/css\">" + a_s_style + "</style>",
    };
    std::cout << NO_FOREIGN_FRAME;
    a_c_page.BeginHtml(a_s_title, {}, l_c_head);
}

/// A paragraph. The text is not escaped.
inline std::string Paragraph(const cCGI& a_c_page, const cCGI::tAttributes& a_m_attributes,
                             const std::string& a_s_text)
{
    return "<p" + a_c_page.InflateAtomicTag(a_m_attributes) + ">" + a_s_text + "</p>\n";
}

/// The label of the control with this id.
inline std::string Label(const std::string& a_s_id, const std::string& a_s_text)
{
    return "<label for=\"" + a_s_id + "\">" + a_s_text + "</label>";
}

/// The attributes of a control whose name is also its id.
inline cCGI::tAttributes Named(const std::string& a_s_name, const std::string& a_s_default = "")
{
    cCGI::tAttributes l_m_attributes = {{"id", a_s_name}, {"name", a_s_name}};
    if (!a_s_default.empty()) {
        l_m_attributes["DEFAULT"] = a_s_default;
    }
    return l_m_attributes;
}

#endif
