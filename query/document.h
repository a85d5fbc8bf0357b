#ifndef DOCUMENT_H
#define DOCUMENT_H

#include <string>
#include <tinyxml.h>

/// Loads a file into a document. Produces the same tree, result and errors as the document's own
/// LoadFile(), with these differences:
///   - A text that ends inside a UTF-8 character, as a truncated one may, is not read beyond its
///     end.
///   - A document without an element, such as one truncated in its prolog, is an error ("Error
///     document empty."). So is a FIFO: opening one does not wait for a writer.
///   - A file that is truncated while it is read is parsed as far as there was something to read.
///   - Bytes are copied one by one, to convert line ends, only from the first CR on.
///   - Nodes have no row and column, which would cost another pass over the text.
/// The file may be replaced by rename(2) at any time: either the old or the new one is loaded.
/// Throws std::bad_alloc; the document may then lack nodes and lose memory.
bool LoadDocument(TiXmlDocument& a_c_document, const std::string& a_s_path);

#endif
