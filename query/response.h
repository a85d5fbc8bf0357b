#ifndef RESPONSE_H
#define RESPONSE_H

#include <map>
#include <string>

/// The answer to a request whose configuration document could not be parsed.
constexpr const char* const ERROR_RESPONSE = R"({"error" : true, "data" : {}})";

/// Composes the JSON object that maps every key to its value, in ascending byte order of the keys.
/// In values, exactly the eight bytes for which RFC 8259, section 7, has a two-character escape are
/// escaped (backspace, tab, line feed, form feed, carriage return, double quote, solidus,
/// backslash); every other byte is copied as it is, whatever its encoding. Keys are not escaped:
/// they are the caller's own field names.
std::string ComposeResponse(const std::map<std::string, std::string>& a_m_result);

#endif
