// The floor of a handler that loads the document with TinyXML: it does that, as the handler asks
// for it (without rows and columns), and nothing else. The tree is not taken down.
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
