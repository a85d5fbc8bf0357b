#include <xpath_processor.h>

#include <climits>
#include <gtest/gtest.h>
#include <optional>

#include <extraction.h>
#include <response.h>

#include "interposed.h"

using TinyXPath::xpath_processor;

constexpr char DOCUMENT[] = R"(<?xml version="1.0"?><!DOCTYPE c><?p><c xmlns:p="u" xml:lang="e">
<a n="1">one</a><p:a n="2"><?pi x?><![CDATA[t<o]]></p:a><a n="3"><!--in--><b/>ü&amp;"</a><!X></c>)";

static std::string Value(const TiXmlDocument& a_c_document, const std::string& a_s_expression)
{
    return ExtractValues(a_c_document, {{"k", a_s_expression}}).at("k");
}

// The members of a node set in order, @ for an attribute, each followed by a comma.
static std::string Members(const TiXmlDocument& a_c_document, const char* a_p_expression)
{
    xpath_processor l_c_processor(a_c_document.RootElement(), a_p_expression);
    EXPECT_EQ(l_c_processor.XNp_get_xpath_node(0), nullptr) << "not computed yet";
    const unsigned l_u_count = l_c_processor.u_compute_xpath_node_set();
    EXPECT_EQ(l_c_processor.XNp_get_xpath_node(l_u_count), nullptr);
    std::string l_s_members;
    for (unsigned l_u_index = 0; l_u_index < l_u_count; ++l_u_index) {
        const TiXmlNode* l_p_node = l_c_processor.XNp_get_xpath_node(l_u_index);
        l_s_members.append(l_p_node == nullptr ? "@" : l_p_node->Value()).append(",");
    }
    return l_s_members;
}

TEST(XPath, SelectsAndExtracts)
{
    TiXmlDocument l_c_document;
    l_c_document.Parse(DOCUMENT);
    const std::tuple<const char*, const char*, const char*> l_cases[] = {
        {"a", "a,a,", "<a n=&quot;1&quot;>one</a>"},
        {"a[2]", "a,", "<a n=&quot;3&quot;><!--in--><b />\xC3\xBC&amp;&quot;</a>"},
        {"a[last()]/b | a[1] | p:a", "a,p:a,b,", "<a n=&quot;1&quot;>one</a>"},
        {"a[last()]/@n | a[1]/@n", "@,@,", "1"},
        {"a/text()[string-length() = 4]/../@n", "@,", "3"}, // the umlaut takes two bytes
        {"a/comment()", "in,", "in"},
        {"p:a/node()", "?pi x?,t<o,", ""},
        {"a['1']/@n", "@,@,", "1"},
        {"/processing-instruction('p')[. = ''] | //processing-instruction('pi')[. = 'x']",
         "?p,?pi x?,", ""},
        {"//processing-instruction()", "?p,?pi x?,!X,", ""}, // !X is not at the top
        {"/node()", ",!DOCTYPE c,?p,c,", ""},
    };
    for (const auto& [l_p_expression, l_p_members, l_p_value] : l_cases) {
        EXPECT_EQ(Members(l_c_document, l_p_expression), l_p_members) << l_p_expression;
        EXPECT_EQ(Value(l_c_document, l_p_expression), l_p_value) << l_p_expression;
    }
    for (const char* l_p_nothing : {"missing", "@xmlns:p", "processing-instruction('')", "count(a)",
                                    "'text'", "a = 1", "", "a[", "a['", "$v", "f(a)", "id('1')",
                                    "namespace::p", "a[b > false()]", "a/@n[lang('e')]"}) {
        EXPECT_EQ(Members(l_c_document, l_p_nothing), "") << l_p_nothing;
        EXPECT_EQ(Value(l_c_document, l_p_nothing), "") << l_p_nothing;
    }
    EXPECT_EQ(Members(l_c_document, std::string(100000, '(').c_str()), "");
    EXPECT_EQ(Value(l_c_document, "/").substr(0, 21), "<?xml version=&quot;1");
    EXPECT_EQ(Value(l_c_document, std::string("a/@n\0[", 6)), "1");
    EXPECT_EQ(xpath_processor(l_c_document.RootElement(), "sum(a/@n)").S_compute_xpath(), "4");
    l_c_document.RemoveChild(l_c_document.RootElement());
    EXPECT_EQ(Value(l_c_document, "/"), "");
    TiXmlElement l_c_lone("lone");
    xpath_processor l_c_root(l_c_lone.InsertEndChild(TiXmlText("t"))->Parent(), "/*/..");
    EXPECT_EQ(l_c_root.u_compute_xpath_node_set(), 1U);
    EXPECT_EQ(l_c_root.XNp_get_xpath_node(0), &l_c_lone);
    EXPECT_EQ(xpath_processor(nullptr, "/").S_compute_xpath(), "");
    EXPECT_EQ(xpath_processor(nullptr, "/").XNp_get_xpath_node(0), nullptr);
}

TEST(XPath, NeverAnswersFromAnotherDocument)
{
    std::optional<TiXmlDocument> l_c_document; // the second has the same address
    for (const char* l_p_text : {"<c><v>1</v></c>", "<c><v>2</v></c>"}) {
        SCOPED_TRACE(l_p_text);
        l_c_document.emplace().Parse(l_p_text);
        EXPECT_EQ(Value(*l_c_document, "v/text()"), std::string(1, l_p_text[6]));
        l_c_document->Clear();
        l_c_document->Parse("<c><w/><v>3</v></c>");
        EXPECT_EQ(Value(*l_c_document, "v[. = 3]/text()"), "3");

        const TiXmlDocument l_c_copy(*l_c_document);
        l_c_document->RootElement()->LastChild()->FirstChild()->SetValue("5");
        EXPECT_EQ(Value(*l_c_document, "v[. = 5]/text()"), "5");

        xpath_processor l_c_first(l_c_document->RootElement(), "v");
        EXPECT_EQ(l_c_first.u_compute_xpath_node_set(), 1U);
        EXPECT_EQ(Value(l_c_copy, "v[. = 3]/text()"), "3");
        EXPECT_EQ(l_c_first.XNp_get_xpath_node(0), l_c_document->RootElement()->LastChild());
        EXPECT_EQ(l_c_first.S_compute_xpath(), "5");
    }
}

TEST(XPath, CopiesADeepDocumentOnce)
{
    constexpr unsigned DEPTH = 10000; // about as deep as the parser can go on an 8 MB stack
    std::string l_s_text = "<e>x</e>";
    for (unsigned l_u_level = 0; l_u_level < DEPTH; ++l_u_level) {
        l_s_text.insert(0, "<d>").append("</d>");
    }
    TiXmlDocument l_c_document;
    l_c_document.Parse(l_s_text.c_str());
    const auto Allocated = [&](const std::map<std::string, std::string>& a_m_query) {
        g_i_allocationsLeft = LONG_MAX;
        ExtractValues(l_c_document, a_m_query);
        return LONG_MAX - std::exchange(g_i_allocationsLeft, -1);
    };
    const long l_i_one = Allocated({{"b", "x"}});
    EXPECT_LT(2 * Allocated({}), l_i_one) << "no copy without a key";
    EXPECT_LT(Allocated({{"a", "["}, {"b", "x"}, {"c", "x"}, {"d", "x"}, {"e", "x"}}), 2 * l_i_one);
    EXPECT_EQ(Value(l_c_document, "//e"), "<e>x</e>");
    xpath_processor l_c_processor(l_c_document.RootElement(), "//e/ancestor::d");
    EXPECT_EQ(l_c_processor.u_compute_xpath_node_set(), DEPTH);
}

TEST(XPath, FailsOrAnswersRightWithoutAnAllocation)
{
    TiXmlDocument l_c_document;
    ASSERT_TRUE(l_c_document.LoadFile(EXAMPLE_CONFIG));
    const std::string l_s_long(40000, 'n');
    l_c_document.RootElement()->SetAttribute(l_s_long, "1");
    l_c_document.InsertEndChild(TiXmlUnknown())->SetValue("?" + l_s_long + " " + l_s_long + "?");
    setenv("REQUEST_METHOD", "GET", 1);
    setenv("QUERY_STRING",
           "e=dns[/*/@*[last()][name()]]&p=//mtu[/processing-instruction()=name(/node()[last()])]"
           "&u=//dns/following::*/@*|//dns/following::text()"
           "&v=//ntp/following::*/@*|//ntp/following::*",
           1);
    const auto Answer = [&] {
        cCGI l_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
        l_c_request.ParseData();
        return ComposeResponse(ExtractValues(l_c_document, l_c_request.GetData()));
    };
    const std::string l_s_right = Answer();
    EXPECT_NE(l_s_right.find(R"(<\/mtu>","u" : "true","v" : "<users>)"), std::string::npos);
    int l_i_failed = 0;
    for (long l_i_allocation = 0; g_i_allocationsLeft < 0; ++l_i_allocation) {
        g_i_allocationsLeft = l_i_allocation;
        try {
            EXPECT_EQ(Answer(), l_s_right) << "without allocation " << l_i_allocation;
        } catch (const std::bad_alloc&) {
            ++l_i_failed;
        }
    }
    g_i_allocationsLeft = -1;
    EXPECT_GT(l_i_failed, 50);
}

TEST(Response, ComposesAndEscapes)
{
    EXPECT_EQ(ComposeResponse({}), R"({"error" : false, "data" : {}})");
    EXPECT_EQ(
        ComposeResponse({{"z\"", "\b\t\n\f\r\"/\\\x01\x7F\xFF."}, {"B", "<b>ü</b>"}, {"a", ""}}),
        "{\"error\" : false, \"data\" : {\"B\" : \"<b>ü<\\/b>\",\"a\" : \"\","
        "\"z\"\" : \"\\b\\t\\n\\f\\r\\\"\\/\\\\\x01\x7F\xFF.\"}}");
}
