#include "cgilib.h"

#include <iostream>

void cCGI::BeginHtml(const std::string& a_s_title, const tStrings& a_c_bodyAttributes,
                     const tStrings& a_c_headLines)
{
    std::cout << "Content-type: text/html" << std::endl << std::endl;
    std::cout << R"(<?xml version="1.0" encoding="iso-8859-1"?>)" << std::endl << std::endl;
    const std::string l_s_documentType = DocumentType();
    if (!l_s_documentType.empty()) {
        std::cout << l_s_documentType << std::endl;
    }
    std::cout << std::endl;

    std::cout << R"(<html xmlns="http://www.w3.org/1999/xhtml" lang="en-US" xml:lang="en-US">)"
              << std::endl;
    std::cout << " <head>" << std::endl;
    if (!a_s_title.empty()) {
        std::cout << "  <title>" << a_s_title << "</title>" << std::endl;
    }
    for (const std::string& l_s_line : a_c_headLines) {
        std::cout << "  " << l_s_line << std::endl;
    }
    std::cout << " </head>" << std::endl << std::endl;

    std::cout << " <body" << Listed(a_c_bodyAttributes, " ", "") << ">" << std::endl;
    m_u_indent = 2;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): called like BeginHtml().
void cCGI::EndHtml() const
{
    std::cout << " </body>" << std::endl << "</html>" << std::endl;
}

void cCGI::BeginForm(const tAttributes& a_m_attributes)
{
    std::cout << Indent() << "<form" << InflateAtomicTag(a_m_attributes) << ">\n";
    ++m_u_indent;
}

void cCGI::EndForm()
{
    if (m_u_indent != 0) {
        --m_u_indent;
    }
    std::cout << Indent() << "</form>\n";
}
