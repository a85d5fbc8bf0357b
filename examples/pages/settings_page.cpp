// A settings form that comes back with what the client entered and an error next to each field that
// cannot be accepted, or with a message that the settings were accepted. Below it, a table from the
// configuration document. The page changes nothing. One that does must also know who is asking and
// that the request comes from its own form, as login_page shows.
#include <cgilib.h>
#include <cgilib_escape.h>

#include <iterator>
#include <string>
#include <tinyxml.h>

#include "configuration.h"
#include "page.h"
#include "request.h"
#include "settings.h"

namespace
{

constexpr const char* const FIELD_STYLE = R"css(
.fields { display: grid; gap: 1.1rem 1.5rem; margin-bottom: 1.25rem; }
@media (min-width: 40rem) { .fields { grid-template-columns: 1fr 1fr; } }
.fields label { display: block; }
fieldset { margin: 0; padding: 0; border: 0; }
legend { padding: 0; font-weight: 600; }
.fields fieldset label { display: inline; margin: 0 1.25rem 0 .15rem; font-weight: 400; }
.fields .hint, .fields .error { margin: 0 0 .25rem; }
.error { color: #86170e; font-weight: 600; }
.fields input[aria-invalid] { border: 2px solid #b3261e; }
.failed ul { margin: .3rem 0 0; padding-left: 1.2rem; }
.failed a { color: inherit; }
caption { margin-bottom: .5rem; text-align: left; font-weight: 600; font-size: 1.15rem; }
th small { display: block; font-weight: 400; }
.wide { overflow-x: auto; }
.wide th, .wide td { overflow-wrap: break-word; }
@media (max-width: 39.9rem) { .wide th, .wide td { padding-right: .4rem; font-size: .85rem; } }
)css";

// One setting as the form shows it.
struct sField
{
    const char* m_p_name;
    const char* m_p_label;
    const char* m_p_hint;
};

constexpr sField HOSTNAME = {"hostname", "Host name", "Letters, digits and hyphens, at most 63."};
constexpr sField LOCATION = {"location", "Location", "Where the device stands."};
constexpr sField METHOD = {"method", "Address of the uplink", "Where the device has it from."};
constexpr sField ADDRESS = {"address", "IP address", "Needed for a fixed address only."};
constexpr sField MTU = {"mtu", "Largest packet (MTU)", "In bytes, from 576 to 9000."};
constexpr sField LOG = {"log", "Log level", "The least important message that is logged."};
constexpr sField NTP = {"ntp", "Clock", "By the time servers of the configuration."};
constexpr sField NOTE = {"note", "Note", "For the record of changes, at most 500 characters."};

// Generates the form, and escapes all of the client's and the document's text in it.
class cForm
{
public:
    cForm(cCGI& a_c_page, const tTexts& a_m_settings, const tTexts& a_m_faults)
        : m_c_page(a_c_page), m_m_settings(a_m_settings), m_m_faults(a_m_faults)
    {
    }

    void Show()
    {
        m_c_page.BeginForm({{"action", "settings_page"}, {"id", "settings"}, {"method", "post"}});
        m_c_page.DispText(m_c_page.Div({{"class", "fields"}}, TextRow(HOSTNAME) +
                                                                  TextRow(LOCATION) + MethodRow() +
                                                                  TextRow(ADDRESS) + TextRow(MTU) +
                                                                  LogRow() + NtpRow() + NoteRow()));
        m_c_page.DispText(
            m_c_page.Div({{"class", "actions"}}, m_c_page.Submit({{"class", "main"}}, "Save")));
        m_c_page.EndForm();
    }

private:
    std::string Value(const sField& a_c_field) const
    {
        return EscapeHtml(m_m_settings.at(a_c_field.m_p_name));
    }

    // What a screen reader announces with the control: whether it is valid, and the texts near it.
    cCGI::tAttributes Described(const sField& a_c_field, cCGI::tAttributes a_m_attributes) const
    {
        const std::string l_s_name = a_c_field.m_p_name;
        a_m_attributes["aria-describedby"] = l_s_name + "_hint";
        if (m_m_faults.count(l_s_name) > 0) {
            a_m_attributes["aria-describedby"] = l_s_name + "_error " + l_s_name + "_hint";
            a_m_attributes["aria-invalid"] = "true";
        }
        return a_m_attributes;
    }

    cCGI::tAttributes Control(const sField& a_c_field, const std::string& a_s_default = "") const
    {
        return Described(a_c_field, Named(a_c_field.m_p_name, a_s_default));
    }

    std::string Texts(const sField& a_c_field) const
    {
        const std::string l_s_name = a_c_field.m_p_name;
        std::string l_s_texts = Paragraph(m_c_page, {{"class", "hint"}, {"id", l_s_name + "_hint"}},
                                          a_c_field.m_p_hint);
        if (m_m_faults.count(l_s_name) > 0) {
            l_s_texts += Paragraph(m_c_page, {{"class", "error"}, {"id", l_s_name + "_error"}},
                                   m_m_faults.at(l_s_name));
        }
        return l_s_texts;
    }

    std::string Row(const sField& a_c_field, const std::string& a_s_control) const
    {
        return m_c_page.Div({}, Label(a_c_field.m_p_name, a_c_field.m_p_label) + "\n" +
                                    Texts(a_c_field) + a_s_control);
    }

    std::string TextRow(const sField& a_c_field) const
    {
        return Row(a_c_field, m_c_page.Text(Control(a_c_field), Value(a_c_field)));
    }

    // A group of buttons is named by a legend, since each button has its own label.
    std::string MethodRow() const
    {
        const char* const l_labels[] = {"fixed", "by DHCP"};
        std::string l_s_buttons;
        for (int l_i_choice = 0; l_i_choice < 2; ++l_i_choice) {
            const std::string l_s_value = METHODS[l_i_choice];
            cCGI::tAttributes l_m_button = {
                {"id", l_s_value}, {"name", METHOD.m_p_name}, {"value", l_s_value}};
            if (m_m_settings.at(METHOD.m_p_name) == l_s_value) {
                l_m_button["checked"] = "checked";
            }
            l_s_buttons +=
                m_c_page.RadioButton(l_m_button) + Label(l_s_value, l_labels[l_i_choice]) + "\n";
        }
        const cCGI::tAttributes l_m_set =
            Described(METHOD, {{"id", METHOD.m_p_name}, {"role", "radiogroup"}});
        return "<fieldset" + m_c_page.InflateAtomicTag(l_m_set) + ">\n<legend>" + METHOD.m_p_label +
               "</legend>\n" + Texts(METHOD) + m_c_page.Div({}, l_s_buttons) + "</fieldset>\n";
    }

    // The levels need no escaping; the client's choice is only compared with them.
    std::string LogRow() const
    {
        const cCGI::tStrings l_c_levels(std::begin(LOG_LEVELS), std::end(LOG_LEVELS));
        const std::string& l_s_chosen = m_m_settings.at(LOG.m_p_name);
        return Row(LOG, m_c_page.PopupMenu(Control(LOG, l_s_chosen), l_c_levels));
    }

    // An unchecked box sends nothing.
    std::string NtpRow() const
    {
        cCGI::tAttributes l_m_attributes = Control(NTP);
        if (!m_m_settings.at(NTP.m_p_name).empty()) {
            l_m_attributes["checked"] = "checked";
        }
        return "<fieldset>\n<legend>" + std::string(NTP.m_p_label) + "</legend>\n" + Texts(NTP) +
               m_c_page.Div({}, m_c_page.CheckBox(l_m_attributes) +
                                    Label(NTP.m_p_name, "Keep it right") + "\n") +
               "</fieldset>\n";
    }

    std::string NoteRow() const
    {
        return Row(NOTE, m_c_page.TextArea(Control(NOTE), Value(NOTE), 3, 40));
    }

    cCGI& m_c_page;
    const tTexts& m_m_settings;
    const tTexts& m_m_faults;
};

void ShowFaults(const cCGI& a_c_page, const tTexts& a_m_faults)
{
    std::string l_s_items;
    for (const sField& l_c_field : {HOSTNAME, LOCATION, METHOD, ADDRESS, MTU, LOG, NOTE}) {
        if (a_m_faults.count(l_c_field.m_p_name) > 0) {
            const std::string l_s_target = "#" + std::string(l_c_field.m_p_name);
            l_s_items +=
                "<li>" + a_c_page.A({{"href", l_s_target}}, l_c_field.m_p_label) + "</li>\n";
        }
    }
    a_c_page.DispText(
        a_c_page.Div({{"class", "panel failed"}, {"id", "failed"}, {"role", "alert"}},
                     "Not saved. Please look again at\n<ul>\n" + l_s_items + "</ul>\n"));
}

void ShowInterfaces(const cCGI& a_c_page, TiXmlDocument& a_c_document)
{
    std::string l_s_rows = a_c_page.Tr({}, "<th scope=\"col\">Interface</th>\n"
                                           "<th scope=\"col\">State</th>\n"
                                           "<th scope=\"col\">IP address</th>\n"
                                           "<th scope=\"col\">MTU</th>\n");
    for (const sInterface& l_c_interface : Interfaces(a_c_document)) {
        l_s_rows += a_c_page.Tr(
            {}, "<th scope=\"row\">" + EscapeHtml(l_c_interface.m_s_name) + " <small>" +
                    EscapeHtml(l_c_interface.m_s_description) + "</small></th>\n" +
                    a_c_page.Td({}, {l_c_interface.m_s_state, EscapeHtml(l_c_interface.m_s_address),
                                     EscapeHtml(l_c_interface.m_s_mtu)}));
    }
    a_c_page.DispText(a_c_page.Div(
        {{"class", "panel wide"}},
        a_c_page.Table({{"id", "interfaces"}}, "<caption>Interfaces</caption>\n" + l_s_rows)));
}

} // namespace

int main()
{
    cCGI l_c_page(cCGI::eXHTML_1_0_STRICT);
    const bool l_b_parsed = ParseOrRefuse(l_c_page);
    const bool l_b_submitted = l_b_parsed && l_c_page.IsPostRsp();
    TiXmlDocument l_c_document;
    const bool l_b_loaded = l_c_document.LoadFile(CONFIG_PATH);
    const tTexts l_m_settings = l_b_submitted ? Submitted(l_c_page) : Configured(l_c_document);
    const tTexts l_m_faults = l_b_submitted ? Faults(l_m_settings) : tTexts();

    // A screen reader announces the title first.
    const std::string l_s_title = "Device settings";
    const bool l_b_good = l_b_parsed && l_m_faults.empty();
    BeginPage(l_c_page, l_b_good ? l_s_title : "Not saved: " + l_s_title, FIELD_STYLE);
    l_c_page.DispLine(l_c_page.DecorateText(cCGI::eDISPLAY_H1, l_s_title));
    if (!l_b_loaded) {
        l_c_page.DispText(
            Paragraph(l_c_page, {{"class", "failed"}}, "The configuration cannot be read."));
    }
    if (!l_b_parsed) {
        l_c_page.DispText(
            Paragraph(l_c_page, {{"class", "failed"}, {"role", "alert"}}, NOT_ARRIVED));
    } else if (!l_m_faults.empty()) {
        ShowFaults(l_c_page, l_m_faults);
    } else if (l_b_submitted) {
        l_c_page.DispText(Paragraph(l_c_page,
                                    {{"class", "done"}, {"id", "done"}, {"role", "status"}},
                                    "Accepted. This page is an example: nothing was changed."));
    }
    cForm(l_c_page, l_m_settings, l_m_faults).Show();
    ShowInterfaces(l_c_page, l_c_document);
    l_c_page.EndHtml();
    return 0;
}
