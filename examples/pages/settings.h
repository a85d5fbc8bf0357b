#ifndef SETTINGS_H
#define SETTINGS_H

#include <cgilib.h>

/// Field name to text, as received: nothing here is escaped.
using tTexts = cCGI::tFormData;

constexpr const char* const METHODS[] = {"static", "dhcp"};
constexpr const char* const LOG_LEVELS[] = {"error", "warning", "notice", "debug"};

/// The settings in a request; one that is missing is empty.
tTexts Submitted(const cCGI& a_c_page);

/// For each field that cannot be accepted, what to do about it. No check in the browser replaces
/// this, since a client need not use the form.
tTexts Faults(const tTexts& a_m_settings);

#endif
