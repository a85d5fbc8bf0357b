#ifndef DOCUMENT_H
#define DOCUMENT_H

#include <string>
#include <tinyxml.h>

/// The configuration document: a TinyXML document that loads its file in its own way.
class cDocument : public TiXmlDocument
{
public:
    /// Gives the tree, the result and the errors of TiXmlDocument::LoadFile(), and differs in three
    /// ways. A text that ends within a character of UTF-8, as one cut short by its writer may, is
    /// not read beyond its end. A document without an element, as one cut short in its prolog is,
    /// is an error ("Error document empty."). And bytes are copied one by one, to change line ends,
    /// only from the first CR on: without one that saves a tenth of a request's instructions.
    /// The file may be replaced by rename(2) at any time: one of the two is loaded.
    /// Throws std::bad_alloc.
    bool LoadFile(const std::string& a_s_path, TiXmlEncoding a_e_encoding);
};

#endif
