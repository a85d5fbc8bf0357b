#include <cgilib.h>

#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>

using tFields = cCGI::tFormData;

static cCGI& Parsed(const char* a_p_method, const char* a_p_query, bool a_b_expected)
{
    setenv("REQUEST_METHOD", a_p_method, 1);
    setenv("QUERY_STRING", a_p_query, 1);
    unsetenv("CONTENT_LENGTH");
    unsetenv("CONTENT_TYPE");
    static std::unique_ptr<cCGI> s_p_request;
    s_p_request = std::make_unique<cCGI>(cCGI::eXHTML_1_0_TRANSITIONAL);
    EXPECT_EQ(s_p_request->ParseData(), a_b_expected) << a_p_method << ' ' << a_p_query;
    return *s_p_request;
}

TEST(Request, DecodesText)
{
    using namespace std::string_literals;
    const std::pair<std::string, std::string> l_cases[] = {
        {"plain", "plain"}, {"+a++", " a  "},   {"%41%42", "AB"},       {"%2B+", "+ "}, {"%2541", "%41"}, //
        {"%41%", "A%"},     {"%4", "\x04"},     {"%zz", "C"},           {"%%41", "T1"}, {"%+1", "\x01"},  //
        {"%00", "\0"s},     {"x%\0A"s, "x\0"s}, {"%c3%BC", "\xC3\xBC"},
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
        {"a=1&a=2&b=b=c", {{"a", "1"}, {"b", "b=c"}}},
        {"=v&a=", {{"", "v"}, {"a", ""}}},
        {"a=1&", {{"a", "1"}}},
        {"a&b=2&&c=3&d", {{"a&b", "2"}, {"&c", "3"}}},
        {"x+y=%41%42&a%3Db=1%262", {{"x y", "AB"}, {"a=b", "1&2"}}},
    };
    for (const auto& [l_p_query, l_m_expected] : l_cases) {
        EXPECT_EQ(Parsed("GET", l_p_query, true).GetData(), l_m_expected) << l_p_query;
    }
    EXPECT_EQ(Parsed("get", "a=1", true).GetData().size(), 1U);
    for (const char* l_p_other : {"Get", "HEAD", "", "POST", "post"}) {
        EXPECT_TRUE(Parsed(l_p_other, "a=1", false).GetData().empty());
    }
}

TEST(Request, CapturesTheEnvironmentAndCopiesWithoutIt)
{
    setenv("SERVER_NAME", "box", 1);
    setenv("SCRIPT_NAME", "/cgi/q", 1);
    unsetenv("HTTP_ACCEPT");
    cCGI& l_c_source = Parsed("GET", "a=1", true);
    EXPECT_EQ(l_c_source.GetEnvironment().size(), 21U);
    EXPECT_EQ(l_c_source.GetEnvironment().count("HTTP_ACCEPT"), 1U);
    EXPECT_EQ(l_c_source.Url(), "box/cgi/q");
    std::ostringstream l_c_stream;
    l_c_stream << l_c_source;
    EXPECT_EQ(l_c_stream.str(), "cCGI:\n\n      indent = 0\n environment:  \n");

    l_c_source.GetUploadFilename() = "name";
    l_c_source.GetPostData()["field"] = "value";
    cCGI l_c_copy(l_c_source);
    EXPECT_TRUE(l_c_copy.GetEnvironment().empty() && l_c_copy.GetGetData().empty());
    EXPECT_FALSE(l_c_copy.ParseData() || l_c_copy.ParseGetData() || l_c_copy.ParsePostData());
    EXPECT_EQ(l_c_copy.GetUploadFilename(), "name");
    EXPECT_EQ(l_c_copy.Url(), "");
    EXPECT_EQ(l_c_copy.GetEnvironment().size(), 2U);

    l_c_copy = l_c_source;
    std::string l_s_field = "field";
    EXPECT_FALSE(l_c_copy.GetFormElementVal(l_s_field));
    EXPECT_EQ(l_s_field, "field");
    EXPECT_TRUE(l_c_source.GetFormElementVal(l_s_field));
    EXPECT_EQ(l_s_field, "value");
}
