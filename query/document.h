#ifndef DOCUMENT_H
#define DOCUMENT_H

#include <string>
#include <tinyxml.h>

/// The configuration document: a TinyXML document with its own way of loading a file.
class cDocument : public TiXmlDocument
{
public:
    /// Produces the same tree, result and errors as TiXmlDocument::LoadFile(), with three
    /// differences. A text that ends inside a UTF-8 character, as a truncated one may, is not read
    /// beyond its end. A document without an element, such as one truncated in its prolog, is an
    /// error ("Error document empty."). Bytes are copied one by one, to convert line ends, only
    /// from the first CR on; if there is none, this saves a tenth of a request's instructions.
    /// The file may be replaced by rename(2) at any time: either the old or the new one is loaded.
    /// Throws std::bad_alloc.
    bool LoadFile(const std::string& a_s_path, TiXmlEncoding a_e_encoding);
};

#endif
