/* Shared by the peers: parses a request's fields and prints the handler's answer, in C that also
 * compiles as C++. Only what the benchmark needs: no pid file, no signals, no bodies, and names
 * that are unique and in order. */
#pragma once
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The same document that the shipped handler reads. */
#define CONFIG_PATH "/home/httpd/kestoconfig/conf/config.xml"

static inline int digit(char letter)
{
    return letter <= '9' ? letter - '0' : (letter | 0x20) - 'a' + 10;
}

static inline void decode(char* text)
{
    char* write = text;
    for (; *text != '\0'; ++text) {
        if (*text == '%' && text[1] != '\0' && text[2] != '\0') {
            *write++ = (char)(digit(text[1]) * 16 + digit(text[2]));
            text += 2;
        } else {
            *write++ = (char)(*text == '+' ? ' ' : *text);
        }
    }
    *write = '\0';
}

/* Prints a JSON string's content; the kind of value determines how a double quote is escaped. */
static inline void print_escaped(const char* text, size_t count, const char* quote)
{
    static const char from[] = "\b\t\n\f\r/\\", to[] = "btnfr/\\";
    for (const char* end = text + count; text < end; ++text) {
        const char* rare = *text <= '/' || *text == '\\' ? strchr(from, *text) : NULL;
        if (*text == '"') {
            fputs(quote, stdout);
        } else if (rare != NULL) {
            putc_unlocked('\\', stdout);
            putc_unlocked(to[rare - from], stdout);
        } else {
            putc_unlocked(*text, stdout);
        }
    }
}

/* Answers the request; print_value prints an expression's value with print_escaped. */
static inline int answer(void (*print_value)(const char* expression))
{
    fputs("Content-type: application/json\r\n\r\n{\"error\" : false, \"data\" : {", stdout);
    const char* before = "\"";
    char* name = strtok(strdup(getenv("QUERY_STRING")), "&");
    for (; name != NULL; name = strtok(NULL, "&")) {
        char* expression = strchr(name, '=');
        *expression++ = '\0';
        decode(name);
        decode(expression);
        printf("%s%s\" : \"", before, name);
        print_value(expression);
        putchar('"');
        before = ",\"";
    }
    fputs("}}", stdout);
    return 0;
}
