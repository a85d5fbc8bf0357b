#ifndef CGILIB_ESCAPE_H
#define CGILIB_ESCAPE_H

#include <string>

/// The text as it has to stand in a page to show as it is: & < > " and ' become &amp; &lt; &gt;
/// &quot; and &#39;. cCGI copies every text unchanged, so what comes from a client, a file or
/// another program passes through here first.
///
///     l_c_page.Text({{"name", "host"}}, EscapeHtml(l_c_page.GetField("host")))
///
/// For text between tags and for attribute values in quotes. It makes nothing safe that stands in a
/// script or a style, or in an attribute that holds code (onclick) or a URL (href, which may say
/// "javascript:"): keep what others chose out of these. Escape once: a text that is escaped already
/// shows its references.
std::string EscapeHtml(const std::string& a_s_text);

/// The text as it has to stand in a part of a URL: every byte but letters, digits and - . _ ~ as %
/// and two hexadecimal digits (RFC 3986, 2.1). What it gives also fits into a cookie, and into HTML
/// as it is. cCGI decodes fields by itself; cCGI::NormalizeData() decodes other texts.
///
///     "query?host=" + EscapeUrl("//user[@name='a & b']")
///
/// For one name or value, not for a whole URL, whose separators it would escape.
std::string EscapeUrl(const std::string& a_s_text);

#endif
