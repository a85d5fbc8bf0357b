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

#endif
