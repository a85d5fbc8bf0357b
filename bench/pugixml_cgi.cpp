// The handler's job on pugixml alone: what a purpose-built program of one page costs. It finds
// every selected node, as the handler must because its XPath interface counts them.
#include <pugixml.hpp>

#include "cgi.h"

namespace
{

pugi::xml_document g_c_document;

struct sWriter : pugi::xml_writer
{
    void write(const void* a_p_data, std::size_t a_u_size) override
    {
        print_escaped(static_cast<const char*>(a_p_data), a_u_size, "&quot;");
    }
};

void PrintValue(const char* a_p_expression)
{
    const auto l_c_found = g_c_document.document_element().select_nodes(a_p_expression).first();
    if (l_c_found.node().type() == pugi::node_element) {
        sWriter l_c_writer;
        l_c_found.node().print(l_c_writer, "", pugi::format_raw);
        return;
    }
    const char* l_p_value =
        l_c_found.attribute() ? l_c_found.attribute().value() : l_c_found.node().value();
    print_escaped(l_p_value, strlen(l_p_value), "\\\"");
}

} // namespace

int main()
{
    return g_c_document.load_file(CONFIG_PATH) ? answer(PrintValue) : 1;
}
