#include <cgilib.h>
#include <cgilib_escape.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <initializer_list>
#include <sstream>
#include <utility>

static const cCGI FLAT(cCGI::eHTML_LEVEL_4); // indent 0
static const cCGI::tAttributes NONE;
static const cCGI::tAttributes TWO = {{"name", "n"}, {"ID", ""}}; // "ID" comes first

// Result and expected text; ' stands for a double quote there.
static void ExpectEach(std::initializer_list<std::pair<std::string, std::string>> a_c_cases)
{
    for (auto [l_s_result, l_s_expected] : a_c_cases) {
        std::replace(l_s_expected.begin(), l_s_expected.end(), '\'', '"');
        EXPECT_EQ(l_s_result, l_s_expected);
    }
}

template<class tWrite> static std::string Written(tWrite a_c_write)
{
    testing::internal::CaptureStdout();
    a_c_write();
    return testing::internal::GetCapturedStdout();
}

// A page that has begun: the indent is 2.
static cCGI Page(int a_i_level)
{
    cCGI l_c_page(static_cast<cCGI::eCompliance>(a_i_level));
    Written([&] { l_c_page.BeginHtml("", {}, {}); });
    return l_c_page;
}

TEST(Html, FramesPages)
{
    const std::string l_s_start = "Content-type: text/html\n\n<?xml version='1.0' encoding='iso-8859-1'?>\n\n";
    const std::string l_s_head =
        "\n<html xmlns='http://www.w3.org/1999/xhtml' lang='en-US' xml:lang='en-US'>\n <head>\n";
    // Of the levels from 4 on; those below 4 have the first one too.
    const std::string l_documentTypes[] = {
        R"(<!DOCTYPE html PUBLIC '-//W3C//DTD HTML 4.01 Transitional//EN' 'http://www.w3.org/TR/html4/loose.dtd'>)",
        R"(<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Frameset//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-frameset.dtd'>)",
        R"(<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd'>)",
        R"(<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Transitional//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd'>)",
    };
    for (int l_i_level = 0; l_i_level < 8; ++l_i_level) {
        cCGI l_c_page(static_cast<cCGI::eCompliance>(l_i_level));
        const std::string l_s_type = l_documentTypes[std::max(l_i_level, 4) - 4] + "\n";
        ExpectEach({{Written([&] { l_c_page.BeginHtml("", {}, {}); }),
                     l_s_start + l_s_type + l_s_head + " </head>\n\n <body>\n"},
                    {l_c_page.Br(2), l_i_level < 5 ? "<br>\n<br>\n" : "<br />\n<br />\n"},
                    {l_c_page.Hr(NONE), l_i_level < 5 ? "<hr>\n" : "<hr />\n"}});
    }
    ExpectEach({{Page(8).Br(1) + Page(8).Hr(NONE), "<br />\n<hr />\n"}, {Page(9).Br(3), ""}});
    cCGI l_c_page(cCGI::eXHTML_NO_DOCTYPE);
    const std::string l_s_written = Written([&] {
        l_c_page.BeginHtml("S", {"onload=init()", "bare"}, {"one", "two\n"});
        l_c_page.BeginForm({{"method", "post"}, {"action", "/cgi"}, {"empty", ""}});
        l_c_page.BeginForm(NONE);
        l_c_page.DispText("t");
        l_c_page.DispLine("l");
        l_c_page.EndHtml();
        for (int l_i_form = 0; l_i_form < 5; ++l_i_form) {
            l_c_page.EndForm();
        }
    });
    ExpectEach({{l_s_written, l_s_start + l_s_head +
                                  "  <title>S</title>\n  one\n  two\n\n </head>\n\n <body onload=init() bare>\n"
                                  "  <form action='/cgi' empty='' method='post'>\n   <form>\n    t    l\n"
                                  " </body>\n</html>\n   </form>\n  </form>\n </form>\n</form>\n</form>\n"}});
}

TEST(Html, GeneratesElements)
{
    const cCGI l_c_page = Page(7);
    const std::string l_s_script = "  <script language='javascript' type='text/javascript'";
    ExpectEach({
        {l_c_page.InflateAtomicTag(NONE) + FLAT.InflateDiatomicTag(NONE, "", false), ">"},
        {l_c_page.InflateAtomicTag(TWO), " ID='' name='n'"},
        {l_c_page.InflateDiatomicTag(TWO, "x", false), " ID name='n'>  x"},
        {l_c_page.InflateDiatomicTag(NONE, "abc", true), ">\n  abc\n"},
        {l_c_page.Button(TWO, "v"), "<input type='button' ID='' name='n' value='v' />\n"},
        {l_c_page.CheckBox(TWO), "<input type='checkbox' ID='' name='n' />\n"},
        {FLAT.DefaultsButton(NONE), "<input type='submit' value='Reset to Defaults'>\n"},
        {l_c_page.FileUpload(NONE), "<input type='file' />\n"},
        {l_c_page.Frame(TWO, "f"), "<frame src='f' ID='' name='n' />\n"},
        {l_c_page.Hidden(NONE, "\"<&"), "<input type='hidden' value=''<&' />\n"},
        {FLAT.Img(TWO, ""), "<img src='' ID='' name='n'>\n"},
        {FLAT.Br(0) + l_c_page.ImgButton(NONE), "<input type='image' />\n"},
        {l_c_page.Link(TWO) + l_c_page.Meta(NONE), "<link ID='' name='n' />\n<meta />\n"},
        {l_c_page.Password(NONE), "<input type='password' />\n"},
        {l_c_page.RadioButton(NONE), "<input type='radio' />\n"},
        {l_c_page.ResetButton(TWO, "v"), "<input type='reset' ID='' name='n' value='v'>"},
        {FLAT.ResetButton(NONE, ""), "<input type='reset' value=''>"},
        {l_c_page.Submit(NONE, "v"), "<input type='submit' value='v' />\n"},
        {l_c_page.Text(NONE, ""), "<input type='text' value='' />\n"},
        {l_c_page.A(TWO, "c"), "<a ID name='n'>\n  c\n  </a>"},
        {l_c_page.Div(NONE, ""), "    <div >  </div>\n"},
        {l_c_page.Div(TWO, "abc"), "    <div  ID name='n'>\n  abc\n    </div>\n"},
        {l_c_page.Span(TWO, "c\n"), "    <span  ID name='n'>\n  c\n    </span>\n"},
        {l_c_page.Font(TWO, "x"), "    <font ID name='n'>  x</font>"},
        {l_c_page.Form(TWO, "f"), "    <form ID name='n'>\n  f\n    </form>\n"},
        {l_c_page.Option(TWO, "l"), "    <option ID name='n'>  l  </option>\n"},
        {l_c_page.Script(TWO, ""), l_s_script + " ID='' name='n'></script>\n"},
        {l_c_page.Script(NONE, "f"), l_s_script + ">\n   <!--\nf   //-->\n  </script>\n"},
        {l_c_page.TextArea(TWO, "t\n", 4, 4294967295U),
         "<textarea cols='-1' rows='4' ID name='n'>\nt\n\n</textarea>\n"},
    });
}

TEST(Html, GeneratesChoices)
{
    const cCGI l_c_page = Page(7);
    const cCGI::tAttributes l_m_b = {{"name", "x"}, {"DEFAULT", "b"}, {"ID", ""}};
    const std::string l_s_some = "<select ID='' name='x'";
    const std::string l_s_all = "<select DEFAULT='b' ID='' name='x'";
    const std::string l_s_values = " <option value='a'>a</option>\n"
                                   " <option selected='selected' value='b'>b</option>\n</select>\n";
    const cCGI::tOptions l_m_options = {{"b", {{"selected", ""}}}, {"a", {{"value", "1"}}}};
    const std::string l_s_options = " <option value='1'>a</option>\n <option selected>b</option>\n</select>\n";
    ExpectEach({
        {l_c_page.PopupMenu(l_m_b, {"a", "b"}), l_s_some + ">\n" + l_s_values},
        {FLAT.RadioGroup(NONE, {}) + FLAT.PopupMenu(NONE, {}), "<select>\n</select>\n"},
        {l_c_page.PopupMenu(NONE, {""}), "<select>\n <option value=''></option>\n</select>\n"},
        {l_c_page.PopupMenu(l_m_b, l_m_options), l_s_all + ">\n" + l_s_options},
        {l_c_page.DropDownList(l_m_b, {"<b", "a\n"}), l_s_all + ">\n<b\na\n\n</select>\n"},
        {l_c_page.ScrollList(5, l_m_b, {"a", "b"}), l_s_some + " size='5'>\n" + l_s_values},
        {l_c_page.ScrollList(~0U, l_m_b, l_m_options), l_s_all + " size='-1'>\n" + l_s_options},
        {l_c_page.ScrollList({{"DEFAULT", "i"}}, {"i"}, 1U << 31U),
         "<select size='-2147483648' DEFAULT='i'>\ni\n</select>\n"},
        {l_c_page.CheckBoxGroup(l_m_b, {"a", "b"}),
         "  <input type=checkbox  ID='' name='x' value='a' />\na"
         "  <input type=checkbox  checked='checked' ID='' name='x' value='b' />\nb"},
        {FLAT.RadioGroup({{"DEFAULT", "b"}}, {"a", "b"}),
         "<input type=radio  value= 'a'>\na<input type=radio  checked='checked' value= 'b'>\nb"},
    });
}

TEST(Html, GeneratesTables)
{
    const cCGI l_c_page = Page(7);
    ExpectEach({
        {l_c_page.Table(TWO, "R"), "<table ID='' name='n'>\nR  </table>\n"},
        {l_c_page.Table(TWO, {"R1", "R2"}), "<table  ID='' name='n'>\nR1R2  </table>\n"},
        {l_c_page.Td(NONE, cCGI::tStrings()) + FLAT.Table(NONE, {}), "<table >\n</table>\n"},
        {l_c_page.Tr(TWO, "X"), "   <tr ID='' name='n'>\nX   </tr>\n"},
        {l_c_page.Tr(NONE, cCGI::tStrings{"a", "b\n"}), "   <tr>\n  a\n  b\n\n   </tr>\n"},
        {l_c_page.Td(TWO, "c"), "    <td ID name='n'>\n  c\n    </td>\n"},
        {l_c_page.Td(NONE, {"c\n", ""}), "    <td>\n  c\n    </td>\n    <td>\n      </td>\n"},
        {FLAT.Frameset(TWO, "F"), " <frameset ID='' name='n'>\nF </frameset>\n"},
        {l_c_page.Frameset(NONE, {std::string("F")}), "   <frameset>\n  F\n   </frameset>\n"},
    });
}

TEST(Html, DecoratesAndDisplays)
{
    cCGI l_c_page = Page(0);
    std::istringstream l_c_tags("acronym b center em h1 h2 h3 h4 h5 h6 i strike strong sub sup tt u");
    std::string l_s_tag;
    for (int l_i_id = 0; l_c_tags >> l_s_tag; ++l_i_id) {
        const auto l_e_id = static_cast<cCGI::eTextDisplayID>(l_i_id);
        EXPECT_EQ(l_c_page.DecorateText(l_e_id, "<&"), "<" + l_s_tag + "><&</" + l_s_tag + ">");
    }
    EXPECT_DEATH(l_c_page.DecorateText(static_cast<cCGI::eTextDisplayID>(17), ""),
                 ": Common/Source/cgilib.*: std::__cxx11::string cCGI::DecorateText\\("
                 "cCGI::eTextDisplayID, std::__cxx11::string\\): Assertion `0UL' failed");
    l_c_page.GetEnvironment() = {{"E", "<"}};
    l_c_page.GetGetData() = {{"b", "2"}, {"a", ""}};
    l_c_page.GetPostData() = {{"p", "'"}};
    EXPECT_EQ(Written([&] { l_c_page.DispEnvironment(); }), "  E = '<'<BR>\n");
    EXPECT_EQ(Written([&] { l_c_page.DispGetData(); }), "  a = ''<BR>\n  b = '2'<BR>\n");
    EXPECT_EQ(Written([&] { l_c_page.DispPostData(); }), "  p = '''<br>\n");

    std::ostringstream l_c_stream;
    ::operator<<(l_c_stream << std::hex << std::showbase, l_c_page) << 16;
    EXPECT_EQ(l_c_stream.str(), "cCGI:\n\n      indent = 2\n environment:  \n0x10");

    const cCGI& l_c_const = l_c_page;
    EXPECT_EQ(l_c_const.GetField("b") + l_c_const.GetField("a", "?") + l_c_const.GetField("p", "!"), "2!");
    l_c_page.GetEnvironment() = {{"REQUEST_METHOD", "POST"}};
    EXPECT_EQ(l_c_const.GetField("p") + l_c_const.GetField("b", "!"), "'!");
    ExpectEach({{EscapeHtml("<a b=\"'&lt;ä'\">"), "&lt;a b=&quot;&#39;&amp;lt;ä&#39;&quot;&gt;"}});
}
