/* The handler's job as a C program on libxml2: no request object, no pid file, no signals. */
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "config_path.h"

struct field
{
    char* name;
    char* expression;
};

static char hex_digit(char digit)
{
    return (char)(digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10);
}

/* Decodes in place. */
static void decode(char* text)
{
    char* write = text;
    for (; *text != '\0'; ++text) {
        if (*text == '%' && text[1] != '\0' && text[2] != '\0') {
            *write++ = (char)(hex_digit(text[1]) * 16 + hex_digit(text[2]));
            text += 2;
        } else {
            *write++ = (char)(*text == '+' ? ' ' : *text);
        }
    }
    *write = '\0';
}

/* Names order the fields; of equal names the first in the query string stands first. */
static int compare(const void* left, const void* right)
{
    const struct field* a = left;
    const struct field* b = right;
    const int order = strcmp(a->name, b->name);
    return order != 0 ? order : (a->expression > b->expression) - (a->expression < b->expression);
}

/* Splits the text, which it changes, and returns the number of fields. */
static size_t split(char* text, struct field** fields)
{
    size_t room = 1;
    for (const char* byte = text; *byte != '\0'; ++byte) {
        room += *byte == '&';
    }
    *fields = malloc(room * sizeof **fields);
    size_t count = 0;
    for (char* name = strtok(text, "&"); name != NULL; name = strtok(NULL, "&")) {
        char* equals = strchr(name, '=');
        if (equals != NULL) {
            *equals = '\0';
            decode(name);
            decode(equals + 1);
            (*fields)[count++] = (struct field){name, equals + 1};
        }
    }
    qsort(*fields, count, sizeof **fields, compare);
    return count;
}

/* Prints a JSON string's content; of a subtree the quotes become entities. */
static void print_escaped(const xmlChar* text, const char* quote)
{
    for (; *text != '\0'; ++text) {
        switch (*text) {
        case '\b':
            fputs("\\b", stdout);
            break;
        case '\t':
            fputs("\\t", stdout);
            break;
        case '\n':
            fputs("\\n", stdout);
            break;
        case '\f':
            fputs("\\f", stdout);
            break;
        case '\r':
            fputs("\\r", stdout);
            break;
        case '/':
            fputs("\\/", stdout);
            break;
        case '\\':
            fputs("\\\\", stdout);
            break;
        case '"':
            fputs(quote, stdout);
            break;
        default:
            putc_unlocked(*text, stdout);
        }
    }
}

static void print_subtree(xmlDocPtr document, xmlNodePtr node)
{
    xmlBufferPtr buffer = xmlBufferCreate();
    xmlNodeDump(buffer, document, node, 0, 0);
    print_escaped(xmlBufferContent(buffer), "&quot;");
    xmlBufferFree(buffer);
}

static void print_value(xmlXPathContextPtr context, const char* expression)
{
    xmlXPathObjectPtr result = xmlXPathEval((const xmlChar*)expression, context);
    if (result != NULL && result->type == XPATH_NODESET &&
        !xmlXPathNodeSetIsEmpty(result->nodesetval)) {
        xmlNodePtr node = result->nodesetval->nodeTab[0];
        if (node->type == XML_ELEMENT_NODE) {
            print_subtree(context->doc, node);
        } else {
            xmlChar* content = xmlNodeGetContent(node);
            print_escaped(content, "\\\"");
            xmlFree(content);
        }
    }
    xmlXPathFreeObject(result);
}

static void print_answer(xmlDocPtr document, char* query)
{
    struct field* fields = NULL;
    const size_t count = split(query, &fields);
    xmlXPathContextPtr context = xmlXPathNewContext(document);
    context->node = xmlDocGetRootElement(document);

    fputs("Content-type: application/json\r\n\r\n{\"error\" : false, \"data\" : {", stdout);
    const char* previous = NULL;
    for (size_t i = 0; i < count; ++i) {
        if (previous == NULL || strcmp(previous, fields[i].name) != 0) {
            printf("%s\"%s\" : \"", previous == NULL ? "" : ",", fields[i].name);
            print_value(context, fields[i].expression);
            putchar('"');
            previous = fields[i].name;
        }
    }
    fputs("}}", stdout);
}

int main(void)
{
    const char* query = getenv("QUERY_STRING");
    xmlDocPtr document =
        xmlReadFile(CONFIG_PATH, NULL, XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT);
    if (query == NULL || document == NULL) {
        return 1;
    }
    /* Nothing is freed: the process ends here. */
    print_answer(document, strdup(query));
    return 0;
}
