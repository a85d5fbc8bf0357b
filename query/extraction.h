#ifndef EXTRACTION_H
#define EXTRACTION_H

#include <map>
#include <string>
#include <tinyxml.h>

/// Turns the query map (key to XPath 1.0 expression) into the result map: evaluates every
/// expression from the document's root element and puts one text in its place:
///   - an element or the document: its compact XML text, each double quote written as "&quot;";
///   - a text, a comment or an attribute: its text;
///   - anything else is the empty string: a declaration or an unknown node (DOCTYPE, processing
///     instruction), an empty node set, a number, boolean or string result, an expression that does
///     not parse, any expression over a document without an element.
/// Of several selected nodes the first in document order counts. An expression ends at a NUL byte.
/// Throws std::bad_alloc: a value that memory did not suffice for is no empty value.
std::map<std::string, std::string> ExtractValues(const TiXmlDocument& a_c_document,
                                                 std::map<std::string, std::string> a_m_query);

#endif
