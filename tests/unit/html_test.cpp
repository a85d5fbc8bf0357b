#include <cgilib.h>
#include <cgilib_escape.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>

static const cCGI FLAT(cCGI::eHTML_LEVEL_4); // indent 0
static const cCGI::tAttributes NONE;
static const cCGI::tAttributes ONE = {{"c", "1"}};
static const cCGI::tAttributes TWO = {{"name", "n"}, {"ID", ""}}; // "ID" sorts first

// Result and expected text; in the latter, ' stands for a double quote.
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

// A page that has been started: the indent is 2.
struct sPage : cCGI
{
    explicit sPage(int a_i_level = eXHTML_1_0_TRANSITIONAL)
        : cCGI(static_cast<eCompliance>(a_i_level))
    {
    }
    const std::string m_s_start = Written([this] { BeginHtml("", {}, {}); });
};

struct Html : testing::Test, sPage
{
};

TEST_F(Html, FramesPages)
{
    const std::string l_s_start = "Content-type: text/html\n\n"
                                  "<?xml version='1.0' encoding='iso-8859-1'?>\n\n";
    const char* const l_p_head = "\n<html xmlns='http://www.w3.org/1999/xhtml' lang='en-US' "
                                 "xml:lang='en-US'>\n <head>\n";
    // For the levels from 4 on; lower levels use the first one too.
    const std::string l_documentTypes[] = {
        "HTML 4.01 Transitional//EN' 'http://www.w3.org/TR/html4/loose.dtd'>\n",
        "XHTML 1.0 Frameset//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-frameset.dtd'>\n",
        "XHTML 1.0 Strict//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd'>\n",
        "XHTML 1.0 Transitional//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd'>\n",
    };
    for (int l_i_level = 0; l_i_level < 8; ++l_i_level) {
        const sPage l_c_page(l_i_level);
        const std::string l_s_type =
            "<!DOCTYPE html PUBLIC '-//W3C//DTD " + l_documentTypes[std::max(l_i_level, 4) - 4];
        const char* const l_p_breaks = l_i_level < 5 ? "<br>\n<hr>\n" : "<br />\n<hr />\n";
        ExpectEach({{l_c_page.m_s_start, l_s_start + l_s_type + l_p_head + " </head>\n\n <body>\n"},
                    {l_c_page.Br(1) + l_c_page.Hr(NONE), l_p_breaks}});
    }
    sPage l_c_page(eXHTML_NO_DOCTYPE);
    const std::string l_s_written = Written([&] {
        l_c_page.BeginHtml("S", {"onload=init()", "bare"}, {"one", "two\n"});
        l_c_page.BeginForm({{"method", "post"}, {"action", "/cgi"}, {"empty", ""}});
        l_c_page.DispText("t");
        l_c_page.DispLine("l");
        l_c_page.EndHtml();
        for (int l_i_form = 0; l_i_form < 4; ++l_i_form) {
            l_c_page.EndForm();
        }
    });
    const char* const l_p_body = " </head>\n\n <body onload=init() bare>\n"
                                 "  <form action='/cgi' empty='' method='post'>\n   t   l\n"
                                 " </body>\n</html>\n  </form>\n </form>\n</form>\n</form>\n";
    const std::string l_s_lines = "  <title>S</title>\n  one\n  two\n\n";
    ExpectEach({{l_s_written, l_s_start + l_p_head + l_s_lines + l_p_body},
                {l_c_page.Br(2) + l_c_page.Hr(NONE) + sPage(9).Br(3), "<br />\n<br />\n<hr />\n"}});
}

TEST_F(Html, GeneratesElementsAndTables)
{
    const std::string l_s_script = "  <script language='javascript' type='text/javascript'";
    ExpectEach({
        {InflateAtomicTag(NONE) + FLAT.InflateDiatomicTag(NONE, "", false), ">"},
        {InflateDiatomicTag(NONE, "abc", true), ">\n  abc\n"},
        {InflateDiatomicTag(TWO, "x", false), " ID name='n'>  x"},
        {A(TWO, "c") + Font(ONE, "x"), "<a ID name='n'>\n  c\n  </a>    <font c='1'>  x</font>"},
        {Button(ONE, "v"), "<input type='button' c='1' value='v' />\n"},
        {CheckBox(ONE) + Link(ONE), "<input type='checkbox' c='1' />\n<link c='1' />\n"},
        {FileUpload(ONE) + Meta(ONE), "<input type='file' c='1' />\n<meta c='1' />\n"},
        {ImgButton(ONE) + FLAT.Img(ONE, ""), "<input type='image' c='1' />\n<img src='' c='1'>\n"},
        {Password(ONE), "<input type='password' c='1' />\n"},
        {RadioButton(ONE), "<input type='radio' c='1' />\n"},
        {Submit(ONE, ""), "<input type='submit' c='1' value='' />\n"},
        {Text(ONE, "v"), "<input type='text' c='1' value='v' />\n"},
        {Hidden(ONE, "\"<&"), "<input type='hidden' c='1' value=''<&' />\n"},
        {FLAT.DefaultsButton(ONE), "<input type='submit' c='1' value='Reset to Defaults'>\n"},
        {ResetButton(ONE, "v"), "<input type='reset' c='1' value='v'>"},
        {FLAT.ResetButton(NONE, ""), "<input type='reset' value=''>"},
        {FLAT.Br(0) + Frame(TWO, "f"), "<frame src='f' ID='' name='n' />\n"},
        {Div(NONE, "") + FLAT.Table(NONE, {}), "    <div >  </div>\n<table >\n</table>\n"},
        {Div(TWO, "abc"), "    <div  ID name='n'>\n  abc\n    </div>\n"},
        {Span(TWO, "c\n"), "    <span  ID name='n'>\n  c\n    </span>\n"},
        {Form(ONE, "f"), "    <form c='1'>\n  f\n    </form>\n"},
        {Option(ONE, "o"), "    <option c='1'>  o  </option>\n"},
        {Script(TWO, ""), l_s_script + " ID='' name='n'></script>\n"},
        {Script(NONE, "f"), l_s_script + ">\n   <!--\nf   //-->\n  </script>\n"},
        {TextArea(TWO, "t\n", 4, ~0U),
         "<textarea cols='-1' rows='4' ID name='n'>\nt\n\n</textarea>\n"},
        {Table(ONE, "R"), "<table c='1'>\nR  </table>\n"},
        {Table(ONE, {"1", "2"}), "<table  c='1'>\n12  </table>\n"},
        {Td(TWO, "c"), "    <td ID name='n'>\n  c\n    </td>\n"},
        {Tr(ONE, "X") + InflateAtomicTag(TWO), "   <tr c='1'>\nX   </tr>\n ID='' name='n'"},
        {Tr(ONE, tStrings{"a", "b\n"}), "   <tr c='1'>\n  a\n  b\n\n   </tr>\n"},
        {Td(ONE, {"c\n", ""}), "    <td c='1'>\n  c\n    </td>\n    <td c='1'>\n      </td>\n"},
        {Td(NONE, tStrings()) + FLAT.Frameset(ONE, "F"), " <frameset c='1'>\nF </frameset>\n"},
        {Frameset(ONE, {std::string("F")}), "   <frameset c='1'>\n  F\n   </frameset>\n"},
    });
}

TEST_F(Html, GeneratesChoices)
{
    const tAttributes l_m_b = {{"name", "x"}, {"DEFAULT", "b"}, {"ID", ""}};
    const std::string l_s_some = "<select ID='' name='x'";
    const std::string l_s_all = "<select DEFAULT='b' ID='' name='x'";
    const std::string l_s_values = " <option value='a'>a</option>\n"
                                   " <option selected='selected' value='b'>b</option>\n</select>\n";
    const tOptions l_m_options = {{"b", {{"selected", ""}}}, {"a", {{"value", "1"}}}};
    const std::string l_s_options =
        " <option value='1'>a</option>\n <option selected>b</option>\n</select>\n";
    ExpectEach({
        {PopupMenu(l_m_b, {"a", "b"}), l_s_some + ">\n" + l_s_values},
        {FLAT.RadioGroup(NONE, {}) + FLAT.PopupMenu(NONE, {}), "<select>\n</select>\n"},
        {PopupMenu(NONE, {""}), "<select>\n <option value=''></option>\n</select>\n"},
        {PopupMenu(l_m_b, l_m_options), l_s_all + ">\n" + l_s_options},
        {DropDownList(l_m_b, {"<b", "a\n"}), l_s_all + ">\n<b\na\n\n</select>\n"},
        {ScrollList(5, l_m_b, {"a", "b"}), l_s_some + " size='5'>\n" + l_s_values},
        {ScrollList(~0U, l_m_b, l_m_options), l_s_all + " size='-1'>\n" + l_s_options},
        {ScrollList({{"DEFAULT", "i"}}, {"i"}, 1U << 31U),
         "<select size='-2147483648' DEFAULT='i'>\ni\n</select>\n"},
        {CheckBoxGroup(l_m_b, {"a", "b"}),
         "  <input type=checkbox  ID='' name='x' value='a' />\na"
         "  <input type=checkbox  checked='checked' ID='' name='x' value='b' />\nb"},
        {FLAT.RadioGroup({{"DEFAULT", "b"}}, {"a", "b"}),
         "<input type=radio  value= 'a'>\na<input type=radio  checked='checked' value= 'b'>\nb"},
    });
}

TEST_F(Html, DecoratesAndDisplays)
{
    std::stringstream l_c_tags(
        "acronym b center em h1 h2 h3 h4 h5 h6 i strike strong sub sup tt u");
    std::string l_s_tag;
    for (int l_i_id = 0; l_c_tags >> l_s_tag; ++l_i_id) {
        const std::string l_s_decorated = DecorateText(static_cast<eTextDisplayID>(l_i_id), "<&");
        EXPECT_EQ(l_s_decorated, "<" + l_s_tag + "><&</" + l_s_tag + ">");
    }
    EXPECT_DEATH(DecorateText(static_cast<eTextDisplayID>(17), ""),
                 ": Common/Source/cgilib.*: std::__cxx11::string cCGI::DecorateText\\("
                 "cCGI::eTextDisplayID, std::__cxx11::string\\): Assertion `0UL' failed");
    GetEnvironment() = {{"E", "<"}};
    GetGetData() = {{"b", "2"}, {"a", ""}};
    GetPostData() = {{"p", "'"}};
    EXPECT_EQ(Written([&] { DispEnvironment(); }), "  E = '<'<BR>\n");
    EXPECT_EQ(Written([&] { DispGetData(); }), "  a = ''<BR>\n  b = '2'<BR>\n");
    EXPECT_EQ(Written([&] { DispPostData(); }), "  p = '''<br>\n");

    std::ostringstream l_c_stream;
    ::operator<<(l_c_stream << std::hex << std::showbase, *this) << 16;
    EXPECT_EQ(l_c_stream.str(), "cCGI:\n\n      indent = 2\n environment:  \n0x10");
    EXPECT_EQ(GetField("b") + GetField("a", "?") + GetField("p", "!"), "2!");
    GetEnvironment() = {{"REQUEST_METHOD", "POST"}};
    EXPECT_EQ(GetField("p") + GetField("b", "!"), "'!");
    ExpectEach({{EscapeHtml("<a b=\"'&lt;\xC3\xA4'\">"),
                 "&lt;a b=&quot;&#39;&amp;lt;\xC3\xA4&#39;&quot;&gt;"}});
}
