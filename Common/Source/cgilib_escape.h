#ifndef CGILIB_ESCAPE_H
#define CGILIB_ESCAPE_H

#include <string>

/// The text with & < > " ' replaced by &amp; &lt; &gt; &quot; &#39;, so that a page shows it
/// literally. cCGI copies all text unchanged, so pass text from a client, a file or another program
/// through here first.
///
///     l_c_page.Text({{"name", "host"}}, EscapeHtml(l_c_page.GetField("host")))
///
/// For text between tags and for quoted attribute values. It does not make text safe in a script,
/// in a style, or in an attribute that holds code (onclick) or a URL (href, which may begin with
/// "javascript:"): keep text chosen by others out of these. Escape once: text escaped twice shows
/// its character references.
std::string EscapeHtml(const std::string& a_s_text);

/// The text with every byte except letters, digits and - . _ ~ replaced by % and two hexadecimal
/// digits (RFC 3986, 2.1), for a part of a URL. The result also fits into a cookie and, unescaped,
/// into HTML. cCGI decodes fields by itself; cCGI::NormalizeData() decodes other text.
///
///     "query?host=" + EscapeUrl("//user[@name='a & b']")
///
/// For one name or value, not for a whole URL, whose separators it would escape.
std::string EscapeUrl(const std::string& a_s_text);

#endif
