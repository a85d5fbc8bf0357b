#ifndef SETTINGS_H
#define SETTINGS_H

#include <cgilib.h>

/// Field name to text, as it came: nothing here is escaped.
using tTexts = cCGI::tFormData;

constexpr const char* const METHODS[] = {"static", "dhcp"};

const cCGI::tStrings& LogLevels();

/// The settings that came with a request; one that did not come is empty.
tTexts Submitted(const cCGI& a_c_page);

/// For each field that cannot be accepted what to do about it. The browser tested nothing: whoever
/// sends a request need not use the form.
tTexts Faults(const tTexts& a_m_settings);

#endif
