// A frameset: the other pages next to a menu. A frameset takes the place of the body, so
// BeginHtml(), which begins a body, cannot begin such a page.
#include <cgilib.h>

#include <iostream>

#include "page.h"
#include "request.h"

namespace
{

void ShowFrames(const cCGI& a_c_page)
{
    const cCGI::tStrings l_c_frames = {
        a_c_page.Frame({{"name", "menu"}}, "frames_page?show=menu"),
        a_c_page.Frame({{"name", "content"}}, "settings_page"),
    };
    std::cout << R"(Content-type: text/html; charset=utf-8

<!DOCTYPE html PUBLIC "-//W3C//DTD XHTML 1.0 Frameset//EN"
 "http://www.w3.org/TR/xhtml1/DTD/xhtml1-frameset.dtd">
<html xmlns="http://www.w3.org/1999/xhtml" lang="en" xml:lang="en">
<head><title>Device</title></head>
)" << a_c_page.Frameset({{"cols", "160,*"}}, l_c_frames)
              << "</html>\n";
}

void ShowMenu(cCGI& a_c_page)
{
    BeginPage(a_c_page, "Menu", "a { display: block; }");
    const char* const l_pages[][2] = {{"settings_page", "Settings"},
                                      {"firmware_page", "Firmware"},
                                      {"login_page", "Login"},
                                      {"query_page", "Queries"},
                                      {"form_page", "Every control"}};
    for (const auto& l_page : l_pages) {
        a_c_page.DispLine(
            a_c_page.Div({}, a_c_page.A({{"href", l_page[0]}, {"target", "content"}}, l_page[1])));
    }
    a_c_page.EndHtml();
}

} // namespace

int main()
{
    // The menu's links name a target frame, which the strict document type does not allow.
    cCGI l_c_page(cCGI::eXHTML_1_0_TRANSITIONAL);
    ParseOrRefuse(l_c_page);
    if (l_c_page.GetField("show") == "menu") {
        ShowMenu(l_c_page);
    } else {
        std::cout << NO_FOREIGN_FRAME;
        ShowFrames(l_c_page);
    }
    return 0;
}
