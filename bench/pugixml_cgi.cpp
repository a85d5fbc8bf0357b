// The handler's job done the short way, on pugixml alone: no request object, no pid file, no
// signals. What a purpose-built program of one page costs.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <pugixml.hpp>
#include <string>

#include "config_path.h"

namespace
{

using tFields = std::map<std::string, std::string>;

int Digit(char a_i_digit)
{
    return a_i_digit <= '9' ? a_i_digit - '0' : (a_i_digit | 0x20) - 'a' + 10;
}

std::string Decoded(const char* a_p_begin, const char* a_p_end)
{
    std::string l_s_text;
    l_s_text.reserve(static_cast<std::size_t>(a_p_end - a_p_begin));
    for (const char* l_p_byte = a_p_begin; l_p_byte < a_p_end; ++l_p_byte) {
        if (*l_p_byte == '%' && a_p_end - l_p_byte > 2) {
            l_s_text += static_cast<char>(Digit(l_p_byte[1]) * 16 + Digit(l_p_byte[2]));
            l_p_byte += 2;
        } else {
            l_s_text += *l_p_byte == '+' ? ' ' : *l_p_byte;
        }
    }
    return l_s_text;
}

tFields Fields(const char* a_p_query)
{
    tFields l_m_fields;
    const char* l_p_equals = nullptr;
    for (; (l_p_equals = std::strchr(a_p_query, '=')) != nullptr;) {
        const char* l_p_end = l_p_equals + 1 + std::strcspn(l_p_equals + 1, "&");
        l_m_fields.emplace(Decoded(a_p_query, l_p_equals), Decoded(l_p_equals + 1, l_p_end));
        a_p_query = *l_p_end == '&' ? l_p_end + 1 : l_p_end;
    }
    return l_m_fields;
}

// A JSON string's content; of a subtree the quotes become entities first.
void AppendEscaped(std::string& a_s_text, const char* a_p_bytes, std::size_t a_u_count,
                   const char* a_p_quote)
{
    static const char FROM[] = "\b\t\n\f\r/\\";
    static const char TO[] = "btnfr/\\";
    const char* l_p_plain = a_p_bytes;
    const char* const l_p_end = a_p_bytes + a_u_count;
    for (const char* l_p_byte = a_p_bytes; l_p_byte < l_p_end; ++l_p_byte) {
        const bool l_b_rare = static_cast<unsigned char>(*l_p_byte) < ' ' || *l_p_byte == '"' ||
                              *l_p_byte == '/' || *l_p_byte == '\\';
        const char* l_p_found =
            l_b_rare && *l_p_byte != '\0' ? std::strchr(FROM, *l_p_byte) : nullptr;
        if (*l_p_byte != '"' && l_p_found == nullptr) {
            continue;
        }
        a_s_text.append(l_p_plain, l_p_byte);
        l_p_plain = l_p_byte + 1;
        if (l_p_found == nullptr) {
            a_s_text += a_p_quote;
        } else {
            a_s_text += '\\';
            a_s_text += TO[l_p_found - FROM];
        }
    }
    a_s_text.append(l_p_plain, l_p_end);
}

struct sWriter : pugi::xml_writer
{
    explicit sWriter(std::string& a_s_text) : m_s_text(a_s_text) {}
    void write(const void* a_p_data, std::size_t a_u_size) override
    {
        AppendEscaped(m_s_text, static_cast<const char*>(a_p_data), a_u_size, "&quot;");
    }
    std::string& m_s_text;
};

void AppendValue(std::string& a_s_text, const pugi::xpath_node& a_c_found)
{
    if (a_c_found.node().type() == pugi::node_element) {
        sWriter l_c_writer(a_s_text);
        a_c_found.node().print(l_c_writer, "", pugi::format_raw);
        return;
    }
    const char* l_p_value =
        a_c_found.attribute() ? a_c_found.attribute().value() : a_c_found.node().value();
    AppendEscaped(a_s_text, l_p_value, std::strlen(l_p_value), "\\\"");
}

pugi::xpath_node Select(pugi::xml_node a_c_root, const std::string& a_s_expression)
{
    try {
        return a_c_root.select_node(a_s_expression.c_str());
    } catch (const pugi::xpath_exception&) {
        return {};
    }
}

} // namespace

int main()
{
    const char* l_p_query = std::getenv("QUERY_STRING");
    pugi::xml_document l_c_document;
    if (l_p_query == nullptr || !l_c_document.load_file(CONFIG_PATH)) {
        return 1;
    }
    std::string l_s_text = "Content-type: application/json\r\n\r\n"
                           "{\"error\" : false, \"data\" : {";
    const char* l_p_separator = "\"";
    for (const auto& [l_s_key, l_s_expression] : Fields(l_p_query)) {
        ((l_s_text += l_p_separator) += l_s_key) += "\" : \"";
        AppendValue(l_s_text, Select(l_c_document.document_element(), l_s_expression));
        l_s_text += '"';
        l_p_separator = ",\"";
    }
    l_s_text += "}}";
    std::fwrite(l_s_text.data(), 1, l_s_text.size(), stdout);
    return 0;
}
