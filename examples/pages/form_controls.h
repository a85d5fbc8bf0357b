#ifndef FORM_CONTROLS_H
#define FORM_CONTROLS_H

#include <cgilib.h>

#include <string>

// The controls of the form page, as rows of a two-column table.

std::string Label(const std::string& a_s_id, const std::string& a_s_text);

/// The attributes of a control whose name is also its id.
cCGI::tAttributes Named(const std::string& a_s_name, const std::string& a_s_default = "");

std::string ControlRow(const cCGI& a_c_page, const std::string& a_s_label,
                       const std::string& a_s_control);

std::string InputRows(const cCGI& a_c_page);
std::string ListRows(const cCGI& a_c_page);

/// One button of each kind, outside the table.
std::string Buttons(const cCGI& a_c_page);

#endif
