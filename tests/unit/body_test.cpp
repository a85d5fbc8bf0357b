#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "interposed.h"

using namespace std::string_literals;
using tFields = cCGI::tFormData;

// Delivers the body whole, then byte by byte, with nothing after it: both must give the same result.
static tOutcome ParseBothWays(const std::string& a_s_type, const std::string& a_s_body)
{
    const tOutcome l_c_whole = Parse(a_s_type, a_s_body);
    EXPECT_EQ(Parse(a_s_type, a_s_body, 1), l_c_whole);
    return l_c_whole;
}

TEST(UrlEncodedBody, IsReadAndSplit)
{
    const std::pair<std::string, tFields> l_cases[] = {
        {"w", {}},
        {"a=1&a=2&b=b=c", {{"a", "1"}, {"b", "b=c"}}},
        {"=v&a=&", {{"", "v"}, {"a", ""}}},
        {"a&b=2&&c=3&d", {{"a&b", "2"}, {"&c", "3"}}},
        {"+x++=%41%42&a%3Db=1%262&%c3%BC=%2B+", {{" x  ", "AB"}, {"a=b", "1&2"}, {"\xC3\xBC", "+ "}}},
        {"a=%2541&b=%41%&c=%4&d=%zz", {{"a", "%41"}, {"b", "A%"}, {"c", "\x04"}, {"d", "C"}}},
        {"a=%%41&b=%+1&c=%00.", {{"a", "T1"}, {"b", "\x01"}, {"c", "\0."s}}},
        {"a=1\r\n&b=2", {{"a", "1\r"}}},
        {"a=1\0&b\n=2"s, {{"a", "1"}}},
    };
    for (const auto& [l_s_body, l_m_fields] : l_cases) {
        EXPECT_EQ(ParseBothWays("", l_s_body), tOutcome(true, l_m_fields, "", ""));
    }
    const tOutcome l_c_a1 = {true, {{"a", "1"}}, "", ""};
    EXPECT_EQ(Parse("Multipart/Form-Data; boundary=x", "a=12345", 7, " 3x"), l_c_a1);
    EXPECT_EQ(Parse("text/plain", "a=1", 3, "16777216"), l_c_a1);
    for (const char* l_p_length : {"", "0", "abc", "-3", "16777217", "4294967299", "99999999999999999999"}) {
        EXPECT_FALSE(std::get<0>(Parse("", "a=1", 3, l_p_length))) << l_p_length;
    }
}

// In the attributes, ' stands for a double quote.
static std::string Part(std::string a_s_attributes, const std::string& a_s_content)
{
    std::replace(a_s_attributes.begin(), a_s_attributes.end(), '\'', '"');
    return "--AaB03x\r\nContent-Disposition: form-data; " + a_s_attributes + "\r\n\r\n" + a_s_content + "\r\n";
}

TEST(MultipartBody, IsStoredOrTellsItsFault)
{
    const std::string MULTIPART = "multipart/form-data; boundary=AaB03x";
    const std::string END = "--AaB03x--\r\n";
    const std::string START = "7 cCGI::ParseMultipartData\n";
    const std::string FAULT = "3 ParseMultipartData";
    const std::string BAD = "\n7 ParseMultipartData - returning 0\n";
    const std::string GOOD = "7 ParseMultipartData - returning 1\n";
    const std::string l_s_named = "name='f'; filename='u.bin'";
    const std::string l_s_a1 = Part("name='a'", "1");
    const std::string l_s_fx = Part(l_s_named, "x");
    const tFields l_m_a1 = {{"a", "1"}};
    const tFields l_m_f = {{"f", "/tmp/u.bin"}};
    const std::string l_s_cutOff = "--AaB03x\r\nname=\"a\"\r\n\r\n";
    const std::string l_s_almost = "\r\n--AaB03\r\r\n-\r\n--AaB03\r\n\0\xFF"s;
    // So large that, with either header, a read of 128 KiB ends inside the delimiter.
    const std::string l_s_large(131072 - l_s_fx.size() - 4, '\r');
    const std::string l_s_nameless = FAULT + " - Entity Header does NOT contain name attribute." + BAD;
    const std::string l_s_bad = FAULT + " - Entity Header is NOT correct last header: BAD ";
    const std::string l_s_fifo = " for writing: error No such device or address\n";
    const std::string l_s_unopened = FAULT + "() - Unable to open tmp file ";
    mkfifo("/tmp/q", 0666);
    mkfifo("/tmp/r", 0666);
    open("/tmp/r", O_RDONLY | O_NONBLOCK);
    // Body, end of the log, fields and upload.
    const std::tuple<std::string, std::string, tFields, std::string> l_cases[] = {
        {Part("name='a'", "1\r\n\r\n2\r") + Part("name='b'", "") + END, GOOD, {{"a", "1\r\n\r\n2\r"}, {"b", ""}}, ""},
        {Part("name='a'", l_s_almost) + l_s_a1 + END, GOOD, {{"a", l_s_almost}}, ""},
        {Part("name='quite_a_long_name'", l_s_large) + END, GOOD, {{"quite_a_long_name", l_s_large}}, ""},
        {Part(l_s_named, l_s_large) + END, GOOD, l_m_f, l_s_large},
        {Part(l_s_named, l_s_almost) + END, GOOD, l_m_f, l_s_almost},
        {Part(l_s_named, "") + Part("name='b'", "%41+") + END, GOOD, {{"b", "%41+"}, {"f", "/tmp/u.bin"}}, ""},
        {Part("name='f'; filename='C:\\d/x\\../u.bin'", "\r\r") + END, GOOD, l_m_f, "\r\r"},
        {Part("filename='u.bin'; name='f'", "x") + END, GOOD, {{"u.bin", "/tmp/u.bin"}}, "x"},
        {Part("name=abc", "v") + END, GOOD, {{"abc\r\n\r\n", "v"}}, ""},
        {Part("name=a'b'c", "v") + END, "Found END-OF-POST for file upload.\n" + GOOD, {{"ab", "v"}}, ""},
        {l_s_cutOff + "no line end", GOOD, {}, ""},
        {l_s_cutOff + "\r", "entity header (a)" + BAD, {}, ""},
        {l_s_cutOff + "x\r\n--AaB03", "entity header (a)" + BAD, {}, ""},
        {Part("nam='a'", ""), l_s_nameless, {}, ""},
        {Part("name=''", ""), l_s_nameless, {}, ""},
        {"", l_s_bad + "LENGTH" + BAD, {}, ""},
        {l_s_a1 + END + "\n", l_s_bad + "LENGTH" + BAD, l_m_a1, ""},
        {l_s_a1 + "--AaB03x", l_s_bad + "LENGTH" + BAD, l_m_a1, ""},
        {l_s_fx + "--AaB03x", l_s_bad + "LENGTH" + BAD, l_m_f, "x"},
        {l_s_a1 + "--AaB03xxx\r\n", l_s_bad + "FORMAT" + BAD, l_m_a1, ""},
        {l_s_fx + l_s_fx, FAULT + " - POST data contains multiple file uploads: Unsupported." + BAD, l_m_f, "x"},
        {Part("name='f'; filename=''", ""), l_s_unopened + "for writing, filename is empty\n", {}, ""},
        {Part("filename='q'", "x"), l_s_unopened + "/tmp/q" + l_s_fifo, {{"q", "/tmp/q"}}, ""},
        {Part("filename='r'", "x"), l_s_unopened + "/tmp/r" + l_s_fifo, {{"r", "/tmp/r"}}, ""},
        {Part("filename='d/'", ""), l_s_unopened + "/tmp/ for writing: error Is a directory\n", {{"d/", "/tmp/"}}, ""},
    };
    for (const auto& [l_s_body, l_s_last, l_m_fields, l_s_upload] : l_cases) {
        const tOutcome l_c_outcome = ParseBothWays(MULTIPART, l_s_body);
        const std::string& l_s_log = std::get<2>(l_c_outcome);
        EXPECT_EQ(l_c_outcome, tOutcome(l_s_log.end()[-2] == '1', l_m_fields, l_s_log, l_s_upload));
        EXPECT_EQ(l_s_log.substr(l_s_log.size() - l_s_last.size()), l_s_last);
    }

    // A header is accepted if it arrives in one read. This one is the shortest that keeps the parser waiting too long.
    const std::string l_s_long = Part("x=" + std::string(10181, 'x') + "; name='a'", "1") + END;
    EXPECT_TRUE(std::get<0>(Parse(MULTIPART, l_s_long)));
    EXPECT_EQ(std::get<2>(Parse(MULTIPART, l_s_long, 1)),
              START + FAULT + " - Entity Header length exceeds maximum allowable length." + BAD);

    // Data waiting to be parsed leaves room for a read.
    std::string l_s_many;
    while (l_s_many.size() < 300000) {
        l_s_many += l_s_a1;
    }
    const std::string l_s_content(262144, 'x');
    EXPECT_EQ(std::get<3>(Parse(MULTIPART, l_s_many + Part(l_s_named, l_s_content) + END)), l_s_content);

    // The client leaves before it has sent all it promised: whatever was complete by then is kept.
    const std::string l_s_parsed = "7 ParseMultipartData - Parsed ";
    EXPECT_EQ(Parse(MULTIPART, l_s_a1 + l_s_fx, 1, "99999999999"),
              tOutcome(false, {{"a", "1"}, {"f", "/tmp/u.bin"}},
                       START + l_s_parsed + "name attribute from entity header (a)\n" + l_s_parsed +
                           "entity value (1) for name (a)\n" + l_s_parsed + "name attribute from entity header (f)\n" +
                           l_s_parsed + "filename attribute from entity header (/tmp/u.bin)." + BAD,
                       "x"));

    const std::string l_s_unassigned = " - No (=) found in boundary assignment (multipart/form-data; boundary)\n";
    const std::string l_s_foreign =
        " - Entity header (\r\nx\r\n\r\n) does NOT begin with boundary (\r\n--U; boundary=X).";
    EXPECT_EQ(Parse("multipart/form-data", "x"),
              tOutcome(false, {}, START + FAULT + " - No boundary found in content type.\n", ""));
    EXPECT_EQ(Parse("multipart/form-data; boundary", "x"), tOutcome(false, {}, START + FAULT + l_s_unassigned, ""));
    EXPECT_EQ(Parse("multipart/form-data; c=U; boundary=X", "x\r\n\r\n"),
              tOutcome(false, {}, START + FAULT + l_s_foreign + BAD, ""));
}
