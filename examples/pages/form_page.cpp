// Shows every control of the toolkit in a form that posts to this page, and lists what arrived.
#include <cgilib.h>
#include <cgilib_escape.h>

#include <string>

#include "page.h"
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

constexpr const char* const SEND_ICON =
    "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' width='38' height='38'%3E"
    "%3Ccircle cx='19' cy='19' r='19' fill='%230b5394'/%3E"
    "%3Cpath d='M11 19h15m-6-7 7 7-7 7' fill='none' stroke='white' stroke-width='3'/%3E%3C/svg%3E";

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

// Several inputs that make up one control.
std::string Group(const cCGI& a_c_page, const std::string& a_s_label, const std::string& a_s_inputs)
{
    return a_c_page.Span({{"aria-label", a_s_label}, {"role", "group"}}, a_s_inputs);
}

// The rows of a table: each control after its label.
cCGI::tStrings ControlRows(const cCGI& a_c_page)
{
    const cCGI::tAttributes l_m_yes = {
        {"checked", "checked"}, {"id", "yes"}, {"name", "radio"}, {"value", "yes"}};
    const cCGI::tAttributes l_m_no = {{"id", "no"}, {"name", "radio"}, {"value", "no"}};
    const std::string l_s_buttons = a_c_page.RadioButton(l_m_yes) + Label("yes", "yes") +
                                    a_c_page.RadioButton(l_m_no) + Label("no", "no");
    const cCGI::tAttributes l_m_boxes = {{"DEFAULT", "eth0"}, {"name", "boxes"}};
    const cCGI::tAttributes l_m_radios = {{"DEFAULT", "udp"}, {"name", "radios"}};
    // The options of a map are sorted by their text.
    const cCGI::tOptions l_m_services = {{"http", {{"value", "80"}}},
                                         {"https", {{"selected", "selected"}, {"value", "443"}}},
                                         {"ssh", {{"value", "22"}}}};
    const cCGI::tStrings l_c_items = {a_c_page.Option({{"value", "1"}}, "first"),
                                      a_c_page.Option({{"value", "2"}}, "second")};
    const cCGI::tStrings l_c_controls[] = {
        {Label("text", "Text"), a_c_page.Text(Named("text"), "gateway-7")},
        {Label("password", "Password"), a_c_page.Password(Named("password"))},
        {Label("area", "Text area"), a_c_page.TextArea(Named("area"), "Two\nlines", 3, 40)},
        {Label("box", "Check box"), a_c_page.CheckBox(Named("box"))},
        {"<strong>Radio buttons</strong>", Group(a_c_page, "Radio buttons", l_s_buttons)},
        {"<strong>Check box group</strong>",
         Group(a_c_page, "Check box group",
               a_c_page.CheckBoxGroup(l_m_boxes, {"eth0", "eth1", "wwan0"}))},
        {"<strong>Radio group</strong>",
         Group(a_c_page, "Radio group", a_c_page.RadioGroup(l_m_radios, {"tcp", "udp", "any"}))},
        {Label("popup", "Pop-up menu of values"),
         a_c_page.PopupMenu(Named("popup", "lte"), {"ethernet", "lte", "wifi"})},
        {Label("popup_options", "Pop-up menu of options"),
         a_c_page.PopupMenu(Named("popup_options"), l_m_services)},
        {Label("dropdown", "Drop-down list of items"),
         a_c_page.DropDownList(Named("dropdown"), l_c_items)},
        {Label("scroll", "Scrolling list of values"),
         a_c_page.ScrollList(3, Named("scroll", "notice"), {"error", "notice", "debug"})},
        {Label("scroll_options", "Scrolling list of options"),
         a_c_page.ScrollList(3, Named("scroll_options"), l_m_services)},
        {Label("scroll_items", "Scrolling list of items"),
         a_c_page.ScrollList(Named("scroll_items"), l_c_items, 2)},
        {Label("upload", "File"), a_c_page.FileUpload(Named("upload"))},
    };
    cCGI::tStrings l_c_rows;
    for (const cCGI::tStrings& l_c_cells : l_c_controls) {
        l_c_rows.push_back(a_c_page.Tr({}, a_c_page.Td({}, l_c_cells)));
    }
    return l_c_rows;
}

// One button of each kind, outside the table.
std::string Buttons(const cCGI& a_c_page)
{
    const std::string l_s_buttons =
        a_c_page.Submit({{"class", "main"}, {"id", "send"}, {"name", "send"}}, "Send") +
        a_c_page.ImgButton({{"alt", "Send"}, {"name", "icon"}, {"src", SEND_ICON}}) +
        a_c_page.Button({{"onclick", "this.form.text.value = 'Filled in'"}}, "Fill in the text") +
        a_c_page.ResetButton({}, "Reset") + a_c_page.DefaultsButton({{"name", "defaults"}});
    return a_c_page.Div({{"class", "actions"}}, l_s_buttons) + "<p class=\"hint\">" +
           a_c_page.Img({{"alt", "The arrow"}, {"height", "16"}, {"width", "16"}}, SEND_ICON) +
           " also sends the place on it that was clicked.</p>\n";
}

// Multipart is the only kind of body that can carry a file.
void ShowControls(cCGI& a_c_page)
{
    a_c_page.BeginForm({{"action", "form_page"},
                        {"enctype", "multipart/form-data"},
                        {"id", "controls"},
                        {"method", "post"}});
    a_c_page.DispText(a_c_page.Hidden({{"name", "hidden"}}, "unseen"));
    a_c_page.DispText(
        a_c_page.Table({{"class", "stacked"}, {"role", "presentation"}}, ControlRows(a_c_page)));
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
    const bool l_b_parsed = ParseOrRefuse(l_c_page);

    BeginPage(l_c_page, "Every control", FORM_STYLE);
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
