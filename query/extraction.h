#ifndef EXTRACTION_H
#define EXTRACTION_H

#include <map>
#include <string>
#include <tinyxml.h>

/// Evaluates every expression of the query map (key to XPath 1.0 expression) from the document's
/// root element and gives one text for each key:
///   - an element or the document: its compact XML text, each double quote written as "&quot;";
///   - a text, a comment or an attribute: its text;
///   - anything else is the empty string: a declaration or an unknown node (DOCTYPE, processing
///     instruction), an empty node set, a number, boolean or string result, an expression that does
///     not parse, any expression over a document without an element.
/// Of several selected nodes the first in document order counts. An expression ends at a NUL byte.
std::map<std::string, std::string>
ExtractValues(const TiXmlDocument& a_c_document,
              const std::map<std::string, std::string>& a_m_query);

#endif
