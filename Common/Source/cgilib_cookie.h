#ifndef CGILIB_COOKIE_H
#define CGILIB_COOKIE_H

#include <string>

/// The value of the first cookie of that name in HTTP_COOKIE (RFC 6265, 4.2), unchanged, or an
/// empty string if there is none. Browsers send the cookie with the longest path first. Nothing is
/// decoded, and quotation marks are kept; names are compared as written.
///
/// A cookie is text from a client like any other: show it in a page through EscapeHtml(). If
/// EscapeUrl() encoded it for Set-Cookie, cCGI::NormalizeData() decodes it.
///
///     std::cout << "Set-Cookie: message=" << EscapeUrl(l_s_message) << "; HttpOnly\n";
std::string GetCookie(const std::string& a_s_name);

#endif
