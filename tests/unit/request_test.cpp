#include <cgilib.h>

#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>

using tFields = cCGI::tFormData;

static void SetRequest(const char* a_p_method, const char* a_p_query)
{
    setenv("REQUEST_METHOD", a_p_method, 1);
    setenv("QUERY_STRING", a_p_query, 1);
}

TEST(Request, DecodesText)
{
    using namespace std::string_literals;
    const std::pair<std::string, std::string> l_cases[] = {
        {"", ""},           {"plain", "plain"},   {"+a++", " a  "}, {"%41%42", "AB"},
        {"%2B+", "+ "},     {"%2541", "%41"},     {"%41%", "A%"},   {"%", "%"},
        {"%4", "\x04"},     {"%zz", "C"},         {"%00", "\0"s},   {"%c3%BC", "\xC3\xBC"},
        {"%%41", "T1"},     {"%+1", "\x01"},      {"%G0x", "\0x"s}, {"x%\0A"s, "x\0"s},
        {"a%20b%", "a b%"}, {"%25%32%35", "%25"}, {"%zZ%Zz", "CC"}, {"%7e%7E", "~~"},
    };
    for (const auto& [l_s_text, l_s_expected] : l_cases) {
        std::string l_s_decoded = l_s_text;
        cCGI::NormalizeData(l_s_decoded);
        EXPECT_EQ(l_s_decoded, l_s_expected) << l_s_text;
    }
    char l_digits[] = "zz";
    EXPECT_EQ(Htoi(l_digits), 323);
}

TEST(Request, SplitsQueryStrings)
{
    const std::pair<const char*, tFields> l_cases[] = {
        {"", {}},
        {"word", {}},
        {"a=1&b=2", {{"a", "1"}, {"b", "2"}}},
        {"a=1&a=2", {{"a", "1"}}},
        {"a=b=c", {{"a", "b=c"}}},
        {"=v", {{"", "v"}}},
        {"a=", {{"a", ""}}},
        {"a=1&", {{"a", "1"}}},
        {"a=1&b", {{"a", "1"}}},
        {"a&b=2", {{"a&b", "2"}}},
        {"a=1&&b=2", {{"a", "1"}, {"&b", "2"}}},
        {"x+y=%41%42", {{"x y", "AB"}}},
        {"a%3Db=1%262&c=%3D", {{"a=b", "1&2"}, {"c", "="}}},
    };
    for (const auto& [l_p_query, l_m_expected] : l_cases) {
        SetRequest("GET", l_p_query);
        cCGI l_c_parsed(cCGI::eXHTML_1_0_TRANSITIONAL);
        EXPECT_TRUE(l_c_parsed.ParseData()) << l_p_query;
        EXPECT_EQ(l_c_parsed.GetData(), l_m_expected) << l_p_query;
        EXPECT_TRUE(l_c_parsed.GetPostData().empty());
    }
}

TEST(Request, TellsMethods)
{
    const std::tuple<const char*, bool, bool> l_cases[] = {
        {"GET", true, false},  {"get", true, false},   {"POST", false, true}, {"post", false, true},
        {"Get", false, false}, {"HEAD", false, false}, {"", false, false},
    };
    unsetenv("CONTENT_LENGTH");
    for (const auto& [l_p_method, l_b_get, l_b_post] : l_cases) {
        SetRequest(l_p_method, "a=1");
        cCGI l_c_request(cCGI::eXHTML_1_0_STRICT);
        EXPECT_EQ(l_c_request.IsGetRsp(), l_b_get) << l_p_method;
        EXPECT_EQ(l_c_request.IsPostRsp(), l_b_post) << l_p_method;
        EXPECT_EQ(l_c_request.ParseData(), l_b_get) << l_p_method;
        EXPECT_EQ(l_c_request.GetData().empty(), !l_b_get) << l_p_method;
    }
}

TEST(Request, CapturesTheEnvironment)
{
    setenv("SERVER_NAME", "box", 1);
    setenv("SCRIPT_NAME", "/cgi/q", 1);
    setenv("NOT_A_CGI_VARIABLE", "x", 1);
    unsetenv("HTTP_ACCEPT");
    cCGI l_c_request(cCGI::eXHTML_1_0_STRICT);
    EXPECT_EQ(l_c_request.GetEnvironment().size(), 21U);
    EXPECT_EQ(l_c_request.GetEnvironment().count("HTTP_ACCEPT"), 1U);
    EXPECT_EQ(l_c_request.GetEnvironment().count("NOT_A_CGI_VARIABLE"), 0U);
    EXPECT_EQ(l_c_request.Url(), "box/cgi/q");

    std::ostringstream l_c_stream;
    l_c_stream << l_c_request;
    EXPECT_EQ(l_c_stream.str(), "cCGI:\n\n      indent = 0\n environment:  \n");
}

TEST(Request, CopiesWithoutItsData)
{
    SetRequest("GET", "a=1");
    cCGI l_c_source(cCGI::eXHTML_1_0_STRICT);
    ASSERT_TRUE(l_c_source.ParseData());
    l_c_source.GetUploadFilename() = "name";
    l_c_source.GetPostData()["field"] = "value";

    cCGI l_c_copy(l_c_source);
    EXPECT_TRUE(l_c_copy.GetEnvironment().empty());
    EXPECT_TRUE(l_c_copy.GetGetData().empty());
    EXPECT_TRUE(l_c_copy.GetPostData().empty());
    EXPECT_FALSE(l_c_copy.IsGetRsp());
    EXPECT_FALSE(l_c_copy.ParseData());
    EXPECT_FALSE(l_c_copy.ParseGetData());
    EXPECT_FALSE(l_c_copy.ParsePostData());
    EXPECT_EQ(l_c_copy.GetUploadFilename(), "name");
    EXPECT_EQ(l_c_copy.Url(), "");
    EXPECT_EQ(l_c_copy.GetEnvironment().size(), 2U);

    l_c_copy = l_c_source;
    EXPECT_TRUE(l_c_copy.GetGetData().empty());
    std::string l_s_field = "field";
    EXPECT_FALSE(l_c_copy.GetFormElementVal(l_s_field));
    EXPECT_EQ(l_s_field, "field");
    EXPECT_TRUE(l_c_source.GetFormElementVal(l_s_field));
    EXPECT_EQ(l_s_field, "value");
}
