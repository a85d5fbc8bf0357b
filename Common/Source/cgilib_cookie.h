#ifndef CGILIB_COOKIE_H
#define CGILIB_COOKIE_H

#include <string>

/// The value of a cookie that came with the request (HTTP_COOKIE; RFC 6265, 4.2), or the empty text
/// if none of that name came. Of several the first counts, which browsers make the one with the
/// longest path. Nothing is decoded, and quotation marks stay; names are compared as written.
///
/// A cookie is a client's text like any other: in a page it goes through EscapeHtml(). One that
/// EscapeUrl() made fit for Set-Cookie is decoded by cCGI::NormalizeData().
///
///     std::cout << "Set-Cookie: message=" << EscapeUrl(l_s_message) << "; HttpOnly\n";
std::string GetCookie(const std::string& a_s_name);

#endif
