#ifndef EXTRACTION_H
#define EXTRACTION_H

#include <map>
#include <string>
#include <tinyxml.h>

/// Turns the query map (key to XPath 1.0 expression) into the result map: evaluates every
/// expression from the document's root element and replaces it with a text:
///   - for an element or the document, its compact XML text, with double quotes as "&quot;";
///   - for a text, a comment or an attribute, its text;
///   - for anything else, the empty string: a declaration or an unknown node (DOCTYPE, processing
///     instruction), an empty node set, a number, boolean or string result, an expression that does
///     not parse, any expression on a document without an element.
/// If several nodes are selected, the first in document order counts. An expression ends at a NUL
/// byte. Throws std::bad_alloc: a value that does not fit in memory is never returned as empty.
std::map<std::string, std::string> ExtractValues(const TiXmlDocument& a_c_document,
                                                 std::map<std::string, std::string> a_m_query);

#endif
