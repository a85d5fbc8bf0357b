#include <cgilib.h>

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <unistd.h>

#include "interposed.h"

namespace
{

using namespace std::string_literals;
using tFields = cCGI::tFormData;

// All that a parse leaves behind.
struct sOutcome
{
    bool m_b_result;
    tFields m_m_fields;
    std::vector<std::string> m_v_log;
    std::string m_s_upload; // content of /tmp/u.bin

    bool operator==(const sOutcome& a_c_other) const
    {
        return std::tie(m_b_result, m_m_fields, m_v_log, m_s_upload) ==
               std::tie(a_c_other.m_b_result, a_c_other.m_m_fields, a_c_other.m_v_log,
                        a_c_other.m_s_upload);
    }
};

sOutcome Parse(const std::string& a_s_type, const std::string& a_s_length,
               const std::vector<std::string>& a_v_pieces, bool a_b_keepOpen)
{
    setenv("REQUEST_METHOD", "POST", 1);
    setenv("QUERY_STRING", "ignored=1", 1);
    setenv("CONTENT_TYPE", a_s_type.c_str(), 1);
    setenv("CONTENT_LENGTH", a_s_length.c_str(), 1);
    Logged().clear();
    unlink("/tmp/u.bin");

    cCGI l_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    const cDelivery l_c_delivery(a_v_pieces, a_b_keepOpen);
    const bool l_b_result = l_c_request.ParseData();
    EXPECT_TRUE(l_c_request.GetGetData().empty());
    EXPECT_FALSE(l_c_request.IsFileUpload());

    std::ifstream l_c_file("/tmp/u.bin");
    return {l_b_result,
            l_c_request.GetData(),
            Logged(),
            {std::istreambuf_iterator<char>(l_c_file), {}}};
}

std::vector<std::string> Bytes(const std::string& a_s_text)
{
    std::vector<std::string> l_v_bytes;
    for (const char l_i_byte : a_s_text) {
        l_v_bytes.emplace_back(1, l_i_byte);
    }
    return l_v_bytes;
}

// Delivers the body whole, byte by byte and cut in two at every offset, and nothing after it.
// All must come to the same; gives that back.
sOutcome ParseEveryWay(const std::string& a_s_type, const std::string& a_s_body)
{
    const std::string l_s_length = std::to_string(a_s_body.size());
    const sOutcome l_c_whole = Parse(a_s_type, l_s_length, {a_s_body}, true);
    EXPECT_TRUE(Parse(a_s_type, l_s_length, Bytes(a_s_body), true) == l_c_whole) << a_s_body;
    for (std::size_t l_u_cut = 1; l_u_cut < a_s_body.size(); ++l_u_cut) {
        const sOutcome l_c_cut = Parse(
            a_s_type, l_s_length, {a_s_body.substr(0, l_u_cut), a_s_body.substr(l_u_cut)}, true);
        EXPECT_TRUE(l_c_cut == l_c_whole) << "cut at " << l_u_cut << " of " << a_s_body;
    }
    return l_c_whole;
}

const std::string MULTIPART = "multipart/form-data; boundary=AaB03x";

std::string Part(const std::string& a_s_attributes, const std::string& a_s_content)
{
    return "--AaB03x\r\nContent-Disposition: form-data; " + a_s_attributes + "\r\n\r\n" +
           a_s_content + "\r\n";
}

const std::string END = "--AaB03x--\r\n";

} // namespace

TEST(UrlEncodedBody, IsReadAndSplit)
{
    const std::string l_s_type = "application/x-www-form-urlencoded";
    const std::pair<std::string, tFields> l_cases[] = {
        {"a=1&b=2", {{"a", "1"}, {"b", "2"}}},
        {"a=1&a=2", {{"a", "1"}}},
        {"q=x%2By+z", {{"q", "x+y z"}}},
        {"word", {}},
        {"a=1\nb=2", {{"a", "1"}}},
        {"a=1\r\n&b=2", {{"a", "1\r"}}},
        {"a=1\0&b=2"s, {{"a", "1"}}},
        {"a=1\0&b\n=2"s, {{"a", "1"}}},
    };
    for (const auto& [l_s_body, l_m_fields] : l_cases) {
        EXPECT_EQ(ParseEveryWay(l_s_type, l_s_body).m_m_fields, l_m_fields) << l_s_body;
    }
    for (const char* l_p_type : {"", "text/plain", "Multipart/Form-Data; boundary=x"}) {
        EXPECT_EQ(Parse(l_p_type, "3", {"x=1"}, true).m_m_fields, (tFields{{"x", "1"}}));
    }
    EXPECT_EQ(Parse(l_s_type, "3", {"a=12345"}, true).m_m_fields, (tFields{{"a", "1"}}));
    EXPECT_EQ(Parse(l_s_type, " 3x", {"a=12345"}, true).m_m_fields, (tFields{{"a", "1"}}));
    const sOutcome l_c_short = Parse(l_s_type, "16777216", {"a=1"}, false);
    EXPECT_TRUE(l_c_short.m_b_result);
    EXPECT_EQ(l_c_short.m_m_fields, (tFields{{"a", "1"}}));
    for (const char* l_p_length :
         {"", "0", "abc", "-3", "16777217", "4294967299", "99999999999999999999"}) {
        EXPECT_FALSE(Parse(l_s_type, l_p_length, {"a=1"}, true).m_b_result) << l_p_length;
    }
}

TEST(MultipartBody, TellsItsProgress)
{
    const sOutcome l_c_outcome = ParseEveryWay(MULTIPART, Part("name=\"a\"", "x") + END);
    EXPECT_TRUE(l_c_outcome.m_b_result);
    EXPECT_EQ(l_c_outcome.m_m_fields, (tFields{{"a", "x"}}));
    const std::vector<std::string> l_v_log = {
        "7 cCGI::ParseMultipartData",
        "7 ParseMultipartData - Parsed name attribute from entity header (a)",
        "7 ParseMultipartData - Parsed entity value (x) for name (a)",
        "7 ParseMultipartData - Found END-OF-POST for file upload.",
        "7 ParseMultipartData - returning 1",
    };
    EXPECT_EQ(l_c_outcome.m_v_log, l_v_log);
}

TEST(MultipartBody, StoresFieldsAndOneFile)
{
    const std::string l_s_almost = "\r\n--AaB03\r\r\n-\r\n--AaB03\r\n\0\xFF"s;
    const tFields l_m_file = {{"f", "/tmp/u.bin"}};
    const std::tuple<std::string, tFields, std::string> l_cases[] = {
        {Part("name=\"a\"", "1\r\n\r\n2\r") + Part("name=\"b\"", ""),
         {{"a", "1\r\n\r\n2\r"}, {"b", ""}},
         ""},
        {Part("name=\"a\"", l_s_almost), {{"a", l_s_almost}}, ""},
        {Part("name=\"a\"", "1") + Part("name=\"a\"", "2"), {{"a", "1"}}, ""},
        {Part("name=\"f\"; filename=\"u.bin\"", l_s_almost), l_m_file, l_s_almost},
        {Part("name=\"f\"; filename=\"u.bin\"", "") + Part("name=\"b\"", "%41+"),
         {{"f", "/tmp/u.bin"}, {"b", "%41+"}},
         ""},
        {Part("name=\"f\"; filename=\"C:\\d/x\\u.bin\"", "abc"), l_m_file, "abc"},
        {Part("name=\"f\"; filename=\"../../x/u.bin\"", "\r\r\r\r"), l_m_file, "\r\r\r\r"},
        {Part("filename=\"u.bin\"; name=\"f\"", "x"), {{"u.bin", "/tmp/u.bin"}}, "x"},
        {Part("name=abc", "v"), {{"abc\r\n\r\n", "v"}}, ""},
        {Part("name=a\"b\"c", "v"), {{"ab", "v"}}, ""},
    };
    for (const auto& [l_s_parts, l_m_fields, l_s_upload] : l_cases) {
        const sOutcome l_c_outcome = ParseEveryWay(MULTIPART, l_s_parts + END);
        EXPECT_TRUE(l_c_outcome.m_b_result) << l_s_parts;
        EXPECT_EQ(l_c_outcome.m_m_fields, l_m_fields) << l_s_parts;
        EXPECT_EQ(l_c_outcome.m_s_upload, l_s_upload) << l_s_parts;
    }
    const std::string l_s_header = "--AaB03x\r\nname=\"a\"\r\n\r\n";
    for (const std::string& l_s_cutOff : {l_s_header, l_s_header + "no line end"}) {
        const sOutcome l_c_outcome = ParseEveryWay(MULTIPART, l_s_cutOff);
        EXPECT_TRUE(l_c_outcome.m_b_result);
        EXPECT_TRUE(l_c_outcome.m_m_fields.empty());
    }
}

TEST(MultipartBody, TellsItsFaults)
{
    const std::string l_s_field = Part("name=\"a\"", "1");
    const std::string l_s_file = Part("name=\"f\"; filename=\"u.bin\"", "x");
    const std::string l_s_function = "3 ParseMultipartData";
    const std::string l_s_last = " - Entity Header is NOT correct last header: BAD ";
    const std::string l_s_unopened = "() - Unable to open tmp file ";
    // A closing line in the log follows every fault but those that end the parse at once.
    const std::tuple<std::string, std::string, std::string, bool> l_cases[] = {
        {"multipart/form-data; b=x", l_s_field, " - No boundary found in content type.", false},
        {"multipart/form-data; boundary", l_s_field,
         " - No (=) found in boundary assignment (multipart/form-data; boundary)", false},
        {MULTIPART, "preamble\r\n\r\n",
         " - Entity header (\r\npreamble\r\n\r\n) does NOT begin with boundary (\r\n--AaB03x).",
         true},
        {"multipart/form-data; charset=UTF-8; boundary=X", "--X\r\n\r\n",
         " - Entity header (\r\n--X\r\n\r\n) does NOT begin with boundary "
         "(\r\n--UTF-8; boundary=X).",
         true},
        {MULTIPART, Part("nam=\"a\"", ""), " - Entity Header does NOT contain name attribute.",
         true},
        {MULTIPART, Part("name=\"\"", ""), " - Entity Header does NOT contain name attribute.",
         true},
        {MULTIPART, l_s_field + END + "\n", l_s_last + "LENGTH", true},
        {MULTIPART, l_s_field + "--AaB03x", l_s_last + "LENGTH", true},
        {MULTIPART, "", l_s_last + "LENGTH", true},
        {MULTIPART, l_s_field + "--AaB03xxx\r\n", l_s_last + "FORMAT", true},
        {MULTIPART, l_s_file + l_s_file + END,
         " - POST data contains multiple file uploads: Unsupported.", true},
        {MULTIPART, Part("name=\"f\"; filename=\"\"", "") + END,
         l_s_unopened + "for writing, filename is empty", false},
        {MULTIPART, Part("name=\"f\"; filename=\"d/\"", "") + END,
         l_s_unopened + "/tmp/ for writing: error Is a directory", false},
    };
    for (const auto& [l_s_type, l_s_body, l_s_message, l_b_closed] : l_cases) {
        const sOutcome l_c_outcome = ParseEveryWay(l_s_type, l_s_body);
        EXPECT_FALSE(l_c_outcome.m_b_result) << l_s_message;
        ASSERT_GE(l_c_outcome.m_v_log.size(), 2U);
        EXPECT_EQ(l_c_outcome.m_v_log.back() == "7 ParseMultipartData - returning 0", l_b_closed);
        EXPECT_EQ(l_c_outcome.m_v_log.end()[l_b_closed ? -2 : -1], l_s_function + l_s_message);
    }
    for (const char* l_p_tail : {"\r", "x\r\n--AaB03"}) {
        EXPECT_FALSE(
            ParseEveryWay(MULTIPART, "--AaB03x\r\nname=\"a\"\r\n\r\n"s + l_p_tail).m_b_result);
    }
    // The client has gone, or tells less than it promised; what was complete before stays.
    const sOutcome l_c_gone = Parse(MULTIPART, "99999999999", Bytes(l_s_field + l_s_file), false);
    EXPECT_FALSE(l_c_gone.m_b_result);
    EXPECT_EQ(l_c_gone.m_m_fields, (tFields{{"a", "1"}, {"f", "/tmp/u.bin"}}));
    EXPECT_EQ(l_c_gone.m_s_upload, "x");
}

TEST(MultipartBody, KeepsItsLimits)
{
    const std::string l_s_body = Part("x=" + std::string(12000, 'x') + "; name=\"a\"", "1") + END;
    const std::string l_s_length = std::to_string(l_s_body.size());
    EXPECT_TRUE(Parse(MULTIPART, l_s_length, {l_s_body}, true).m_b_result);
    const sOutcome l_c_split = Parse(MULTIPART, l_s_length, Bytes(l_s_body), true);
    EXPECT_FALSE(l_c_split.m_b_result);
    EXPECT_EQ(l_c_split.m_v_log[1],
              "3 ParseMultipartData - Entity Header length exceeds maximum allowable length.");
}

TEST(MultipartBody, FindsADelimiterOnTheEdgeOfARead)
{
    const std::string l_s_file = "name=\"f\"; filename=\"u.bin\"";
    const std::size_t l_u_rest = Part(l_s_file, "").size();
    for (const std::string& l_s_attributes : {"name=\"f\""s, l_s_file}) {
        for (std::size_t l_u_shift = 0; l_u_shift <= END.size() + 2; ++l_u_shift) {
            const std::string l_s_content(131072 - l_u_rest - END.size() + l_u_shift, '\r');
            const std::string l_s_body = Part(l_s_attributes, l_s_content) + END;
            sOutcome l_c_outcome =
                Parse(MULTIPART, std::to_string(l_s_body.size()), {l_s_body}, true);
            EXPECT_TRUE(l_c_outcome.m_b_result);
            EXPECT_TRUE(l_s_content == (l_s_attributes == l_s_file ? l_c_outcome.m_s_upload
                                                                   : l_c_outcome.m_m_fields["f"]));
        }
    }
}
