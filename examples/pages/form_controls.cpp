#include "form_controls.h"

namespace
{

constexpr const char* const SEND_ICON =
    "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' width='38' height='38'%3E"
    "%3Ccircle cx='19' cy='19' r='19' fill='%230b5394'/%3E"
    "%3Cpath d='M11 19h15m-6-7 7 7-7 7' fill='none' stroke='white' stroke-width='3'/%3E%3C/svg%3E";

// A control made up of several inputs; the row's text names the group.
std::string GroupRow(const cCGI& a_c_page, const std::string& a_s_label,
                     const std::string& a_s_inputs)
{
    return ControlRow(a_c_page, "<strong>" + a_s_label + "</strong>",
                      a_c_page.Span({{"aria-label", a_s_label}, {"role", "group"}}, a_s_inputs));
}

} // namespace

std::string Label(const std::string& a_s_id, const std::string& a_s_text)
{
    return "<label for=\"" + a_s_id + "\">" + a_s_text + "</label>";
}

std::string ControlRow(const cCGI& a_c_page, const std::string& a_s_label,
                       const std::string& a_s_control)
{
    return a_c_page.Tr({}, a_c_page.Td({}, {a_s_label, a_s_control}));
}

cCGI::tAttributes Named(const std::string& a_s_name, const std::string& a_s_default)
{
    cCGI::tAttributes l_m_attributes = {{"id", a_s_name}, {"name", a_s_name}};
    if (!a_s_default.empty()) {
        l_m_attributes["DEFAULT"] = a_s_default;
    }
    return l_m_attributes;
}

std::string InputRows(const cCGI& a_c_page)
{
    const cCGI::tAttributes l_m_yes = {
        {"checked", "checked"}, {"id", "yes"}, {"name", "radio"}, {"value", "yes"}};
    const cCGI::tAttributes l_m_no = {{"id", "no"}, {"name", "radio"}, {"value", "no"}};
    return ControlRow(a_c_page, Label("text", "Text"), a_c_page.Text(Named("text"), "gateway-7")) +
           ControlRow(a_c_page, Label("password", "Password"),
                      a_c_page.Password(Named("password"))) +
           ControlRow(a_c_page, Label("area", "Text area"),
                      a_c_page.TextArea(Named("area"), "Two\nlines", 3, 40)) +
           ControlRow(a_c_page, Label("box", "Check box"), a_c_page.CheckBox(Named("box"))) +
           GroupRow(a_c_page, "Radio buttons",
                    a_c_page.RadioButton(l_m_yes) + Label("yes", "yes") +
                        a_c_page.RadioButton(l_m_no) + Label("no", "no")) +
           GroupRow(a_c_page, "Check box group",
                    a_c_page.CheckBoxGroup({{"DEFAULT", "eth0"}, {"name", "boxes"}},
                                           {"eth0", "eth1", "wwan0"})) +
           GroupRow(a_c_page, "Radio group",
                    a_c_page.RadioGroup({{"DEFAULT", "udp"}, {"name", "radios"}},
                                        {"tcp", "udp", "any"}));
}

std::string ListRows(const cCGI& a_c_page)
{
    // The options of a map are sorted by their text.
    const cCGI::tOptions l_m_services = {{"http", {{"value", "80"}}},
                                         {"https", {{"selected", "selected"}, {"value", "443"}}},
                                         {"ssh", {{"value", "22"}}}};
    const cCGI::tStrings l_c_items = {a_c_page.Option({{"value", "1"}}, "first"),
                                      a_c_page.Option({{"value", "2"}}, "second")};
    return ControlRow(a_c_page, Label("popup", "Pop-up menu of values"),
                      a_c_page.PopupMenu(Named("popup", "lte"), {"ethernet", "lte", "wifi"})) +
           ControlRow(a_c_page, Label("popup_options", "Pop-up menu of options"),
                      a_c_page.PopupMenu(Named("popup_options"), l_m_services)) +
           ControlRow(a_c_page, Label("dropdown", "Drop-down list of items"),
                      a_c_page.DropDownList(Named("dropdown"), l_c_items)) +
           ControlRow(
               a_c_page, Label("scroll", "Scrolling list of values"),
               a_c_page.ScrollList(3, Named("scroll", "notice"), {"error", "notice", "debug"})) +
           ControlRow(a_c_page, Label("scroll_options", "Scrolling list of options"),
                      a_c_page.ScrollList(3, Named("scroll_options"), l_m_services)) +
           ControlRow(a_c_page, Label("scroll_items", "Scrolling list of items"),
                      a_c_page.ScrollList(Named("scroll_items"), l_c_items, 2));
}

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
