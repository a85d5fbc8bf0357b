// The floor for a handler that loads the document with TinyXML: only loads it, with the handler's
// settings (no rows and columns). The tree is not destroyed.
#include <tinyxml.h>

#include "cgi.h"

int main()
{
    auto& l_c_document = *new TiXmlDocument;
    l_c_document.SetTabSize(0);
    if (!l_c_document.LoadFile(CONFIG_PATH, TIXML_DEFAULT_ENCODING)) {
        return 1;
    }
    puts("Content-type: application/json\r\n\r\n{}");
    return 0;
}
