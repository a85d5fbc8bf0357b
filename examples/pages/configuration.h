#ifndef CONFIGURATION_H
#define CONFIGURATION_H

#include <string>
#include <tinyxml.h>
#include <vector>

#include "settings.h"

/// One interface of the device; whatever the document lacks is empty.
struct sInterface
{
    std::string m_s_name;
    std::string m_s_description;
    std::string m_s_state;
    std::string m_s_address;
    std::string m_s_mtu;
};

// The document is only read. If it could not be loaded, everything is empty.

std::vector<sInterface> Interfaces(TiXmlDocument& a_c_document);

/// The initial values of the settings form; the address is that of the first interface.
tTexts Configured(TiXmlDocument& a_c_document);

#endif
