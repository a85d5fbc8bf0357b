/* The handler's job, done by a C program on libxml2. */
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include "cgi.h"

static xmlXPathContextPtr context;

static void print_value(const char* expression)
{
    xmlXPathObjectPtr result = xmlXPathEval((const xmlChar*)expression, context);
    if (result != NULL && !xmlXPathNodeSetIsEmpty(result->nodesetval)) {
        xmlNodePtr node = result->nodesetval->nodeTab[0];
        if (node->type == XML_ELEMENT_NODE) {
            xmlBufferPtr subtree = xmlBufferCreate();
            xmlNodeDump(subtree, context->doc, node, 0, 0);
            const char* text = (const char*)xmlBufferContent(subtree);
            print_escaped(text, (size_t)xmlBufferLength(subtree), "&quot;");
            xmlBufferFree(subtree);
        } else {
            char* content = (char*)xmlNodeGetContent(node);
            print_escaped(content, strlen(content), "\\\"");
            xmlFree(content);
        }
    }
    xmlXPathFreeObject(result);
}

int main(void)
{
    const int options = XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT;
    xmlDocPtr document = xmlReadFile(CONFIG_PATH, NULL, options);
    if (document == NULL) {
        return 1;
    }
    context = xmlXPathNewContext(document);
    context->node = xmlDocGetRootElement(document);
    return answer(print_value);
}
