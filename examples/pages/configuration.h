#ifndef CONFIGURATION_H
#define CONFIGURATION_H

#include <string>
#include <tinyxml.h>
#include <vector>

#include "settings.h"

/// One interface of the device; what the document does not tell is empty.
struct sInterface
{
    std::string m_s_name;
    std::string m_s_description;
    std::string m_s_state;
    std::string m_s_address;
    std::string m_s_mtu;
};

// The document is only read. One that could not be loaded tells nothing: everything is empty.

std::vector<sInterface> Interfaces(TiXmlDocument& a_c_document);

/// What the settings form starts with; the address is that of the first interface.
tTexts Configured(TiXmlDocument& a_c_document);

#endif
