// Shows every control of the toolkit in a form that posts to this page, and lists what arrived.
#include <cgilib.h>
#include <cgilib_escape.h>

#include <string>

#include "form_controls.h"
#include "head.h"
#include "request.h"

namespace
{

constexpr const char* const FORM_STYLE = R"css(
td { vertical-align: middle; }
td:first-child { width: 15rem; }
td input[type=checkbox], td input[type=radio] { margin: 0 .3rem 0 0; }
td span label { font-weight: 400; }
td span input:not(:first-child) { margin-left: 1.25rem; }
.hint img { vertical-align: text-bottom; }
.listing { white-space: pre-line; overflow-wrap: anywhere; margin-bottom: .75rem; }
.listing br { display: none; }
)css";

// A file field left empty would end the parse of the body, so its part is not sent at all.
constexpr const char* const CODE = R"js(
document.getElementById("controls").addEventListener("formdata", (event) => {
  if (event.formData.get("upload").name === "") event.formData.delete("upload");
});
)js";

// The client chooses the names as well as the values.
void EscapeAll(cCGI::tFormData& a_m_data)
{
    cCGI::tFormData l_m_escaped;
    for (const auto& l_c_field : a_m_data) {
        l_m_escaped.emplace(EscapeHtml(l_c_field.first), EscapeHtml(l_c_field.second));
    }
    a_m_data.swap(l_m_escaped);
}

// The listings escape nothing, so the data is escaped in place first.
void ShowReceived(cCGI& a_c_page, bool a_b_parsed)
{
    EscapeAll(a_c_page.GetGetData());
    EscapeAll(a_c_page.GetPostData());

    a_c_page.DispLine(R"(<div class="panel" id="received">)");
    a_c_page.DispLine(a_c_page.DecorateText(cCGI::eDISPLAY_H2, "What arrived"));
    if (!a_b_parsed) {
        a_c_page.DispLine(R"(<p class="failed">The body ended early or has a fault.</p>)");
    }
    a_c_page.DispText(R"(<div class="listing">)");
    a_c_page.DispGetData();
    a_c_page.DispPostData();
    a_c_page.DispLine("</div>");
    a_c_page.DispLine("</div>");
}

// Multipart is the only kind of body that can carry a file.
void ShowControls(cCGI& a_c_page)
{
    a_c_page.BeginForm({{"action", "form_page"},
                        {"enctype", "multipart/form-data"},
                        {"id", "controls"},
                        {"method", "post"}});
    a_c_page.DispText(a_c_page.Hidden({{"name", "hidden"}}, "unseen"));
    a_c_page.DispText(a_c_page.Table(
        {{"class", "stacked"}, {"role", "presentation"}},
        {InputRows(a_c_page), ListRows(a_c_page),
         ControlRow(a_c_page, Label("upload", "File"), a_c_page.FileUpload(Named("upload")))}));
    a_c_page.DispText(Buttons(a_c_page));
    a_c_page.EndForm();
}

// A form without an encoding type is sent URL-encoded, and a link by GET.
void ShowSmallForms(const cCGI& a_c_page)
{
    a_c_page.DispText(a_c_page.Form(
        {{"action", "form_page"}, {"id", "small"}, {"method", "post"}},
        Label("short", "A short text, URL-encoded") + a_c_page.Br(1) +
            a_c_page.Text(Named("short"), "") + a_c_page.Br(2) +
            a_c_page.Submit({{"id", "send_short"}}, "Send") + a_c_page.Hr({}) +
            a_c_page.A({{"href", "form_page?via=link&amp;text=a+%26+b"}}, "The same by a link") +
            a_c_page.Font({{"color", "#52606f"}}, "shows fields of a query string.")));
}

} // namespace

int main()
{
    cCGI l_c_page(cCGI::eXHTML_1_0_TRANSITIONAL);
    const bool l_b_parsed = Parsed(l_c_page);

    l_c_page.BeginHtml("Every control", {}, HeadLines(l_c_page, FORM_STYLE));
    l_c_page.DispLine(l_c_page.DecorateText(cCGI::eDISPLAY_H1, "Every control"));
    if (!l_c_page.GetData().empty() || !l_b_parsed) {
        ShowReceived(l_c_page, l_b_parsed);
    }
    l_c_page.DispLine("<p>Of several fields with one name, such as a group of check boxes, the " +
                      l_c_page.DecorateText(cCGI::eDISPLAY_EM, "first") +
                      " counts. A file arrives as the path where it was stored.</p>");
    ShowControls(l_c_page);
    ShowSmallForms(l_c_page);
    l_c_page.DispText(l_c_page.Script({}, CODE));
    l_c_page.EndHtml();
    return 0;
}
