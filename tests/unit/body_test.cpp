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

// All that a parse leaves behind: result, fields, log, and the content of /tmp/u.bin.
using tOutcome = std::tuple<bool, tFields, std::vector<std::string>, std::string>;

tOutcome Parse(const std::string& a_s_type, const std::string& a_s_length, const std::vector<std::string>& a_v_pieces,
               bool a_b_keepOpen = true)
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
    EXPECT_TRUE(l_c_request.GetGetData().empty() && !l_c_request.IsFileUpload());
    std::ifstream l_c_file("/tmp/u.bin");
    return {l_b_result, l_c_request.GetData(), Logged(), std::string(std::istreambuf_iterator<char>(l_c_file), {})};
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
tOutcome ParseEveryWay(const std::string& a_s_type, const std::string& a_s_body)
{
    const std::string l_s_length = std::to_string(a_s_body.size());
    const tOutcome l_c_whole = Parse(a_s_type, l_s_length, {a_s_body});
    EXPECT_EQ(Parse(a_s_type, l_s_length, Bytes(a_s_body)), l_c_whole);
    for (std::size_t l_u_cut = 1; l_u_cut < a_s_body.size(); ++l_u_cut) {
        EXPECT_EQ(Parse(a_s_type, l_s_length, {a_s_body.substr(0, l_u_cut), a_s_body.substr(l_u_cut)}), l_c_whole)
            << "cut at " << l_u_cut;
    }
    return l_c_whole;
}

const std::string MULTIPART = "multipart/form-data; boundary=AaB03x";

std::string Part(const std::string& a_s_attributes, const std::string& a_s_content)
{
    return "--AaB03x\r\nContent-Disposition: form-data; " + a_s_attributes + "\r\n\r\n" + a_s_content + "\r\n";
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
        {"a=1\0&b\n=2"s, {{"a", "1"}}},
    };
    for (const auto& [l_s_body, l_m_fields] : l_cases) {
        EXPECT_EQ(std::get<1>(ParseEveryWay(l_s_type, l_s_body)), l_m_fields) << l_s_body;
    }
    const tOutcome l_c_a1 = {true, {{"a", "1"}}, {}, ""};
    for (const char* l_p_type : {"", "text/plain", "Multipart/Form-Data; boundary=x"}) {
        EXPECT_EQ(Parse(l_p_type, " 3x", {"a=12345"}), l_c_a1);
    }
    EXPECT_EQ(Parse(l_s_type, "16777216", {"a=1"}, false), l_c_a1);
    for (const char* l_p_length : {"", "0", "abc", "-3", "16777217", "4294967299", "99999999999999999999"}) {
        EXPECT_FALSE(std::get<0>(Parse(l_s_type, l_p_length, {"a=1"}))) << l_p_length;
    }
}

TEST(MultipartBody, StoresFieldsAndOneFile)
{
    const std::vector<std::string> l_v_log = {
        "7 cCGI::ParseMultipartData",
        "7 ParseMultipartData - Parsed name attribute from entity header (a)",
        "7 ParseMultipartData - Parsed entity value (x) for name (a)",
        "7 ParseMultipartData - Found END-OF-POST for file upload.",
        "7 ParseMultipartData - returning 1",
    };
    EXPECT_EQ(ParseEveryWay(MULTIPART, Part("name=\"a\"", "x") + END), (tOutcome{true, {{"a", "x"}}, l_v_log, ""}));

    const std::string l_s_almost = "\r\n--AaB03\r\r\n-\r\n--AaB03\r\n\0\xFF"s;
    const std::string l_s_cutOff = "--AaB03x\r\nname=\"a\"\r\n\r\n";
    const tFields l_m_file = {{"f", "/tmp/u.bin"}};
    const std::tuple<std::string, tFields, std::string> l_cases[] = {
        {Part("name=\"a\"", "1\r\n\r\n2\r") + Part("name=\"b\"", "") + END, {{"a", "1\r\n\r\n2\r"}, {"b", ""}}, ""},
        {Part("name=\"a\"", l_s_almost) + Part("name=\"a\"", "2") + END, {{"a", l_s_almost}}, ""},
        {Part("name=\"f\"; filename=\"u.bin\"", l_s_almost) + END, l_m_file, l_s_almost},
        {Part("name=\"f\"; filename=\"u.bin\"", "") + Part("name=\"b\"", "%41+") + END,
         {{"f", "/tmp/u.bin"}, {"b", "%41+"}},
         ""},
        {Part("name=\"f\"; filename=\"C:\\d/x\\u.bin\"", "abc") + END, l_m_file, "abc"},
        {Part("name=\"f\"; filename=\"../../x/u.bin\"", "\r\r\r\r") + END, l_m_file, "\r\r\r\r"},
        {Part("filename=\"u.bin\"; name=\"f\"", "x") + END, {{"u.bin", "/tmp/u.bin"}}, "x"},
        {Part("name=abc", "v") + END, {{"abc\r\n\r\n", "v"}}, ""},
        {Part("name=a\"b\"c", "v") + END, {{"ab", "v"}}, ""},
        {l_s_cutOff, {}, ""},
        {l_s_cutOff + "no line end", {}, ""},
    };
    for (const auto& [l_s_body, l_m_fields, l_s_upload] : l_cases) {
        const tOutcome l_c_outcome = ParseEveryWay(MULTIPART, l_s_body);
        EXPECT_EQ(l_c_outcome, (tOutcome{true, l_m_fields, std::get<2>(l_c_outcome), l_s_upload}));
    }
}

TEST(MultipartBody, TellsItsFaults)
{
    const std::string l_s_field = Part("name=\"a\"", "1");
    const std::string l_s_file = Part("name=\"f\"; filename=\"u.bin\"", "x");
    const std::string l_s_last = " - Entity Header is NOT correct last header: BAD ";
    const std::string l_s_foreign = " - Entity header (\r\n--X\r\n\r\n) does NOT begin with boundary ";
    const std::string l_s_nameless = " - Entity Header does NOT contain name attribute.";
    const std::string l_s_closing = "7 ParseMultipartData - returning 0";
    // Content type, body, message, and whether the closing line follows it.
    const std::tuple<std::string, std::string, std::string, bool> l_cases[] = {
        {"multipart/form-data; b=x", "x", " - No boundary found in content type.", false},
        {"multipart/form-data; boundary", "x", " - No (=) found in boundary assignment (multipart/form-data; boundary)",
         false},
        {MULTIPART, "--X\r\n\r\n", l_s_foreign + "(\r\n--AaB03x).", true},
        {"multipart/form-data; c=U; boundary=X", "--X\r\n\r\n", l_s_foreign + "(\r\n--U; boundary=X).", true},
        {MULTIPART, Part("nam=\"a\"", ""), l_s_nameless, true},
        {MULTIPART, Part("name=\"\"", ""), l_s_nameless, true},
        {MULTIPART, l_s_field + END + "\n", l_s_last + "LENGTH", true},
        {MULTIPART, l_s_field + "--AaB03x", l_s_last + "LENGTH", true},
        {MULTIPART, "", l_s_last + "LENGTH", true},
        {MULTIPART, l_s_field + "--AaB03xxx\r\n", l_s_last + "FORMAT", true},
        {MULTIPART, l_s_file + l_s_file + END, " - POST data contains multiple file uploads: Unsupported.", true},
        {MULTIPART, Part("name=\"f\"; filename=\"\"", "") + END,
         "() - Unable to open tmp file for writing, filename is empty", false},
        {MULTIPART, Part("name=\"f\"; filename=\"d/\"", "") + END,
         "() - Unable to open tmp file /tmp/ for writing: error Is a directory", false},
    };
    for (const auto& [l_s_type, l_s_body, l_s_message, l_b_closed] : l_cases) {
        const auto [l_b_result, l_m_fields, l_v_log, l_s_upload] = ParseEveryWay(l_s_type, l_s_body);
        EXPECT_FALSE(l_b_result) << l_s_message;
        EXPECT_EQ(l_v_log.back() == l_s_closing, l_b_closed);
        EXPECT_EQ(l_v_log.end()[l_b_closed ? -2 : -1], "3 ParseMultipartData" + l_s_message);
    }
    for (const char* l_p_tail : {"\r", "x\r\n--AaB03"}) {
        EXPECT_FALSE(std::get<0>(ParseEveryWay(MULTIPART, "--AaB03x\r\nname=\"a\"\r\n\r\n"s + l_p_tail)));
    }
    // A long header is taken if it arrives in one read, and not if it keeps the parser waiting.
    const std::string l_s_long = Part("x=" + std::string(12000, 'x') + "; name=\"a\"", "1") + END;
    const std::string l_s_length = std::to_string(l_s_long.size());
    EXPECT_TRUE(std::get<0>(Parse(MULTIPART, l_s_length, {l_s_long})));
    EXPECT_EQ(std::get<2>(Parse(MULTIPART, l_s_length, Bytes(l_s_long)))[1],
              "3 ParseMultipartData - Entity Header length exceeds maximum allowable length.");
    // The client has gone before it sent what it promised: what was complete by then stays.
    const tOutcome l_c_gone = Parse(MULTIPART, "99999999999", Bytes(l_s_field + l_s_file), false);
    const tFields l_m_stored = {{"a", "1"}, {"f", "/tmp/u.bin"}};
    EXPECT_EQ(l_c_gone, (tOutcome{false, l_m_stored, std::get<2>(l_c_gone), "x"}));
}

TEST(MultipartBody, FindsADelimiterOnTheEdgeOfARead)
{
    for (const std::string& l_s_header : {"name=\"f\""s, "name=\"f\"; filename=\"u.bin\""s}) {
        for (std::size_t l_u_shift = 0; l_u_shift <= END.size() + 2; ++l_u_shift) {
            const std::size_t l_u_around = Part(l_s_header, "").size() + END.size();
            const std::string l_s_content(131072 - l_u_around + l_u_shift, '\r');
            const std::string l_s_body = Part(l_s_header, l_s_content) + END;
            auto [l_b_result, l_m_fields, l_v_log, l_s_upload] =
                Parse(MULTIPART, std::to_string(l_s_body.size()), {l_s_body});
            EXPECT_TRUE(l_b_result);
            EXPECT_TRUE((l_s_upload.empty() ? l_m_fields["f"] : l_s_upload) == l_s_content);
        }
    }
}
