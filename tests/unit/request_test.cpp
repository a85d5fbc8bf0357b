#include <cgilib.h>
#include <cgilib_cookie.h>
#include <cgilib_escape.h>

#include <cstdlib>
#include <gtest/gtest.h>

using tFields = cCGI::tFormData;

TEST(Request, CapturesTheEnvironmentAndCopiesWithoutIt)
{
    clearenv();
    setenv("QUERY_STRING", "x+y=1&z", 1);
    setenv("REQUEST_METHOD", "get", 1);
    setenv("SCRIPT_NAME", "/cgi/q", 1);
    setenv("SERVER_NAME", "box", 1);
    cCGI l_c_source(cCGI::eXHTML_1_0_TRANSITIONAL);
    std::string l_s_captured;
    for (const auto& [l_s_name, l_s_value] : l_c_source.GetEnvironment()) {
        l_s_captured += l_s_name + "=" + l_s_value + " ";
    }
    EXPECT_EQ(l_s_captured,
              "AUTH_DATA= CONTENT_LENGTH= CONTENT_TYPE= GATEWAY_INTERFACE= HTTP_ACCEPT= "
              "HTTP_REFERER= HTTP_REFERRER= HTTP_USER_AGENT= PATH_INFO= PATH_TRANSLATED= "
              "QUERY_STRING=x+y=1&z REMOTE_ADDR= REMOTE_HOST= REMOTE_IDENT= REMOTE_USER= "
              "REQUEST_METHOD=get SCRIPT_NAME=/cgi/q SERVER_NAME=box SERVER_PORT= "
              "SERVER_PROTOCOL= SERVER_SOFTWARE= ");
    EXPECT_EQ(l_c_source.Url(), "box/cgi/q");
    EXPECT_FALSE(l_c_source.IsBodyComplete());
    EXPECT_TRUE(l_c_source.ParseData() && l_c_source.IsBodyComplete());
    EXPECT_EQ(l_c_source.GetData(), (tFields{{"x y", "1"}}));
    l_c_source.GetUploadFilename() = "name";
    l_c_source.GetPostData()["field"] = "value";
    cCGI l_c_copy(l_c_source);
    l_c_copy = l_c_source;
    EXPECT_TRUE(l_c_copy.GetEnvironment().empty() && l_c_copy.GetGetData().empty());
    EXPECT_FALSE(l_c_copy.ParseData() || l_c_copy.ParseGetData() || l_c_copy.ParsePostData());
    EXPECT_FALSE(l_c_copy.IsFileUpload() || l_c_copy.IsBodyComplete());
    l_c_copy.GetEnvironment()["CONTENT_TYPE"] = "multipart/form-data; boundary=X";
    EXPECT_FALSE(l_c_copy.ParsePostData());
    std::string l_s_field = "field";
    EXPECT_TRUE(!l_c_copy.GetFormElementVal(l_s_field) && l_c_source.GetFormElementVal(l_s_field));
    EXPECT_EQ(l_s_field + l_c_copy.Url() + l_c_copy.GetUploadFilename(), "valuename");
}

TEST(Request, CookiesAreFoundByNameAndUrlsEscaped)
{
    clearenv();
    EXPECT_EQ(GetCookie(""), "");
    setenv("HTTP_COOKIE", "ab=0; a=1=2;a=3;\tb=\"x \"; c; d=5", 1);
    EXPECT_EQ(GetCookie("a") + GetCookie("b") + GetCookie("c") + GetCookie("d"), "1=2\"x \"5");
    EXPECT_EQ(EscapeUrl(std::string("AZaz09-._~ \0%&+/;\xFF", 18)),
              "AZaz09-._~%20%00%25%26%2B%2F%3B%FF");
}
