// A page as another project would write it.

#include <cgilib.h>

#include <iostream>

int main()
{
    cCGI l_c_page(cCGI::eXHTML_1_0_STRICT);
    l_c_page.ParseData();
    l_c_page.BeginHtml("Consumer", {}, {});
    std::cout << l_c_page.Div({}, "a is " + l_c_page.GetData()["a"]);
    l_c_page.EndHtml();
}
