#include <xpath_processor.h>

#include <gtest/gtest.h>
#include <new>

#include <extraction.h>
#include <response.h>

using TinyXPath::xpath_processor;

namespace
{

const char* const DOCUMENT = R"(<?xml version="1.0"?><!DOCTYPE c><!--top--><c xmlns:p="u" p:id="1">
<a n="1">one</a><p:a n="2"><?pi x?><![CDATA[t<o]]></p:a><a n="3"><!--in--><b/>ü&amp;"</a><!X></c>)";

std::string Value(const TiXmlDocument& a_c_document, const std::string& a_s_expression)
{
    return ExtractValues(a_c_document, {{"k", a_s_expression}}).at("k");
}

unsigned Count(const TiXmlDocument& a_c_document, const char* a_p_expression)
{
    return xpath_processor(a_c_document.RootElement(), a_p_expression).u_compute_xpath_node_set();
}

} // namespace

TEST(XPath, SelectsAndExtracts)
{
    TiXmlDocument l_c_document;
    l_c_document.Parse(DOCUMENT);
    const std::tuple<const char*, unsigned, const char*> l_cases[] = {
        {"a", 2, "<a n=&quot;1&quot;>one</a>"},
        {"a[2]", 1, "<a n=&quot;3&quot;><!--in--><b />\xC3\xBC&amp;&quot;</a>"},
        {"a[last()]/@n | a[1]/@n", 2, "1"},
        {"*[@n > 1]/text()", 2, "t<o"},
        {"@*", 1, "1"},
        {"a/text()[string-length() = 4]/../@n", 1, "3"}, // the umlaut has two bytes
        {"a/comment()", 1, "in"},
        {"/comment()", 1, "top"},
        {"/node()[1]", 1, ""},
        {"p:a/node()", 2, ""},
        {"p:a/node()[2]", 1, "t<o"},
        {"a[1][not(//processing-instruction())]/@n", 1, "1"},
        {"node()[last()]", 1, ""},
        {"a[. = 'processing-instruction()' or @n='1']/@n", 1, "1"},
    };
    for (const auto& [l_p_expression, l_u_count, l_p_value] : l_cases) {
        EXPECT_EQ(Count(l_c_document, l_p_expression), l_u_count) << l_p_expression;
        EXPECT_EQ(Value(l_c_document, l_p_expression), l_p_value) << l_p_expression;
    }
    for (const char* l_p_nothing : {"missing", "@xmlns:p", "//processing-instruction ( )", "count(a)", "'text'",
                                    "a = 1", "", "a[", "a['", "$v", "f(a)", "processing-instruction("}) {
        EXPECT_EQ(Count(l_c_document, l_p_nothing), 0U) << l_p_nothing;
        EXPECT_EQ(Value(l_c_document, l_p_nothing), "") << l_p_nothing;
    }
    EXPECT_EQ(Count(l_c_document, std::string(100000, '(').c_str()), 0U);
    EXPECT_EQ(Value(l_c_document, "/").substr(0, 21), "<?xml version=&quot;1");
    EXPECT_EQ(Value(l_c_document, std::string("a/@n\0[", 6)), "1");
    EXPECT_EQ(xpath_processor(l_c_document.RootElement(), "sum(a/@n)").S_compute_xpath(), "4");
}

TEST(XPath, GivesMembersInDocumentOrder)
{
    TiXmlDocument l_c_document;
    l_c_document.Parse("<c><x/><y/><x/></c>");
    xpath_processor l_c_processor(l_c_document.RootElement(), "x[2] | y/preceding-sibling::x | y");
    EXPECT_EQ(l_c_processor.XNp_get_xpath_node(0), nullptr) << "not computed yet";
    ASSERT_EQ(l_c_processor.u_compute_xpath_node_set(), 3U);
    const TiXmlNode* l_p_expected = l_c_document.RootElement()->FirstChild();
    for (unsigned l_u_index = 0; l_u_index < 3; ++l_u_index) {
        EXPECT_EQ(l_c_processor.XNp_get_xpath_node(l_u_index), l_p_expected);
        l_p_expected = l_p_expected->NextSibling();
    }
    EXPECT_EQ(l_c_processor.XNp_get_xpath_node(3), nullptr);
}

TEST(XPath, NeverAnswersFromAnotherDocument)
{
    alignas(TiXmlDocument) unsigned char l_place[sizeof(TiXmlDocument)];
    for (const char* l_p_text : {"<c><v>1</v></c>", "<c><v>2</v></c>"}) {
        auto* l_p_document = new (l_place) TiXmlDocument;
        l_p_document->Parse(l_p_text);
        EXPECT_EQ(Value(*l_p_document, "v/text()"), std::string(1, l_p_text[6]));
        l_p_document->Clear();
        l_p_document->Parse("<c><w/><v>3</v></c>");
        EXPECT_EQ(Value(*l_p_document, "v[. = 3]/text()"), "3");

        const TiXmlDocument l_c_copy(*l_p_document);
        l_p_document->RootElement()->FirstChild("v")->FirstChild()->SetValue("5");
        EXPECT_EQ(Value(l_c_copy, "v/text()"), "3");
        xpath_processor::forget_tree();
        EXPECT_EQ(Value(*l_p_document, "v[. = 5]/text()"), "5");

        // A mirror lives as long as a processor uses it.
        xpath_processor l_c_first(l_p_document->RootElement(), "v");
        EXPECT_EQ(l_c_first.u_compute_xpath_node_set(), 1U);
        EXPECT_EQ(Count(l_c_copy, "v"), 1U);
        EXPECT_EQ(l_c_first.XNp_get_xpath_node(0), l_p_document->RootElement()->LastChild());
        l_p_document->~TiXmlDocument();
    }

    TiXmlDocument l_c_owned;
    l_c_owned.Parse("<c><v/></c>");
    int l_i_data = 0;
    l_c_owned.RootElement()->SetUserData(&l_i_data);
    EXPECT_EQ(Count(l_c_owned, "v"), 1U);
    l_c_owned.RootElement()->Clear();
    EXPECT_EQ(Count(l_c_owned, "v"), 0U);
    EXPECT_EQ(l_c_owned.RootElement()->GetUserData(), &l_i_data) << "the application's own";
}

TEST(XPath, StandsADeepDocument)
{
    constexpr int DEPTH = 10000; // about as deep as the parser goes on a stack of 8 MB
    std::string l_s_text = "<e>x</e>";
    for (int l_i_level = 0; l_i_level < DEPTH; ++l_i_level) {
        l_s_text.insert(0, "<d>").append("</d>");
    }
    TiXmlDocument l_c_document;
    l_c_document.Parse(l_s_text.c_str());
    EXPECT_EQ(Value(l_c_document, "//e"), "<e>x</e>");
    EXPECT_EQ(Value(l_c_document, "/descendant::text()"), "x");
    EXPECT_EQ(Count(l_c_document, "//e/ancestor::d"), static_cast<unsigned>(DEPTH));
}

TEST(XPath, AnswersWithoutAnElement)
{
    TiXmlDocument l_c_document;
    l_c_document.Parse("<?xml version=\"1.0\"?><!-- nothing else -->");
    EXPECT_EQ(Value(l_c_document, "/"), "");
    EXPECT_EQ(xpath_processor(nullptr, "/").S_compute_xpath(), "");
}

TEST(Response, ComposesWhatWasExtracted)
{
    TiXmlDocument l_c_document;
    ASSERT_TRUE(l_c_document.LoadFile(EXAMPLE_CONFIG));
    const auto l_m_values = ExtractValues(l_c_document, {{"z\"", "dns/server[@priority='2']/text()"},
                                                         {"B", "users/user[@name='jmueller']/fullname"},
                                                         {"a", "//rule/prefix/text()"},
                                                         {"none", "nothing"}});
    EXPECT_EQ(ComposeResponse(l_m_values),
              "{\"error\" : false, \"data\" : {\"B\" : \"<fullname>Jana M\xC3\xBCller<\\/fullname>\","
              "\"a\" : \"fw \\\"drop\\\":\",\"none\" : \"\",\"z\"\" : \"10.4.0.3\"}}");
    EXPECT_EQ(ComposeResponse({}), "{\"error\" : false, \"data\" : {}}");
    EXPECT_EQ(ComposeResponse({{"k", "\b\t\n\f\r\"/\\\x01\x7F\xFF"}}), "{\"error\" : false, \"data\" : {\"k\" : "
                                                                       "\"\\b\\t\\n\\f\\r\\\"\\/\\\\\x01\x7F\xFF\"}}");
}
