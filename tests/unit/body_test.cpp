#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "interposed.h"

using namespace std::string_literals;
using tFields = cCGI::tFormData;

static const std::string MULTIPART = "multipart/form-data; boundary=AaB03x";
static const std::string END = "--AaB03x--\r\n";

// In the attributes, ' stands for a double quote.
static std::string Part(std::string a_s_attributes, const std::string& a_s_content)
{
    std::replace(a_s_attributes.begin(), a_s_attributes.end(), '\'', '"');
    return "--AaB03x\r\nContent-Disposition: form-data; " + a_s_attributes + "\r\n\r\n" +
           a_s_content + "\r\n";
}

// Delivers the body whole, then byte by byte, with nothing after it: the result must be the same.
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
        {"+x++=%41%42&a%3Db=1%262", {{" x  ", "AB"}, {"a=b", "1&2"}}},
        {"a=%2541&b=%41%&c=%4&d=%zz", {{"a", "%41"}, {"b", "A%"}, {"c", "\x04"}, {"d", "C"}}},
        {"a=%%41&b=%+1&c=%00.&%c3%BC=%2B+",
         {{"a", "T1"}, {"b", "\x01"}, {"c", "\0."s}, {"\xC3\xBC", "+ "}}},
        {"a=1\r\n&b=2", {{"a", "1\r"}}},
        {"a=1\0&b\n=2"s, {{"a", "1"}}},
    };
    for (const auto& [l_s_body, l_m_fields] : l_cases) {
        SCOPED_TRACE(l_s_body);
        EXPECT_EQ(ParseBothWays("", l_s_body), tOutcome(true, true, l_m_fields, "", ""));
    }
    const tFields l_m_a1 = {{"a", "1"}};
    EXPECT_EQ(Parse("Multipart/Form-Data; boundary=x", "a=12345", 7, " 3x"),
              tOutcome(true, true, l_m_a1, "", ""));
    EXPECT_EQ(Parse("text/plain", "a=1", 3, "16777216"), tOutcome(true, false, l_m_a1, "", ""));
    for (const char* l_p_length :
         {"", "0", "abc", "-3", "16777217", "4294967299", "99999999999999999999"}) {
        EXPECT_EQ(Parse("", "a=1", 3, l_p_length), tOutcome()) << l_p_length;
    }
}

TEST(MultipartBody, IsStoredOrTellsItsFault)
{
    const std::string START = "7 cCGI::ParseMultipartData\n";
    const std::string FAULT = "3 ParseMultipartData";
    const std::string BAD = "\n7 ParseMultipartData - returning 0\n";
    const std::string GOOD = "7 ParseMultipartData - returning 1\n";
    const std::string l_s_named = "name='f'; filename='u.bin'";
    const std::string l_s_a1 = Part("name='a'", "1");
    const std::string l_s_fx = Part(l_s_named, "x");
    const tFields l_m_a1 = {{"a", "1"}};
    const tFields l_m_two = {{"a", ""}, {"b", "%41+"}};
    const tFields l_m_ab = {{"ab", "v"}};
    const tFields l_m_f = {{"f", "/tmp/u.bin"}};
    const std::string l_s_cutText = "--AaB03x\r\nname=\"a\"\r\n\r\n";
    const std::string l_s_cutFile = "--AaB03x\r\nname=\"f\"; filename=\"u.bin\"\r\n\r\n";
    const std::string l_s_almost = "\r\n--AaB03\r\r\n-\r\n--AaB03\r\n\0\xFF"s;
    // So large that, with either header, a read of 128 KiB ends inside the delimiter.
    const std::string l_s_large(131074 - l_s_fx.size(), '\r');
    const std::string NAMELESS = FAULT + " - Entity Header does NOT contain name attribute." + BAD;
    const std::string NOT_LAST = FAULT + " - Entity Header is NOT correct last header: BAD ";
    const std::string UNOPENED = FAULT + "() - Unable to open tmp file ";
    const std::string FIFO = " for writing: error No such device or address\n";
    const std::string FOLDER = " for writing: error Is a directory\n";
    mkfifo("/tmp/r", 0666);
    open("/tmp/r", O_RDONLY | O_NONBLOCK);
    // Body, end of the log, fields and upload.
    const std::tuple<std::string, std::string, tFields, std::string> l_cases[] = {
        {Part("name='a'", "1\r\n\r\n2\r") + END, GOOD, {{"a", "1\r\n\r\n2\r"}}, ""},
        {Part("name='a'", "") + Part("name='b'", "%41+") + END, GOOD, l_m_two, ""},
        {Part("name='a'", l_s_almost) + l_s_a1 + END, GOOD, {{"a", l_s_almost}}, ""},
        {Part("name='longer_name'", l_s_large) + END, GOOD, {{"longer_name", l_s_large}}, ""},
        {Part(l_s_named, l_s_large) + END, GOOD, l_m_f, l_s_large},
        {Part(l_s_named, l_s_almost) + END, GOOD, l_m_f, l_s_almost},
        {Part(l_s_named, "") + l_s_a1 + END, GOOD, {{"a", "1"}, {"f", "/tmp/u.bin"}}, ""},
        {Part("name='f'; filename='C:/d\\..\\u.bin'", "\r\r") + END, GOOD, l_m_f, "\r\r"},
        {Part("filename='u.bin'; name='f'", "x") + END, GOOD, {{"u.bin", "/tmp/u.bin"}}, "x"},
        {Part("name=abc", "v") + END, GOOD, {{"abc\r\n\r\n", "v"}}, ""},
        {Part("name=a'b'c", "v") + END, "Found END-OF-POST for file upload.\n" + GOOD, l_m_ab, ""},
        {l_s_cutText + "no line end", GOOD, {}, ""},
        {l_s_cutText + "\r", "entity header (a)" + BAD, {}, ""},
        {l_s_cutText + "x\r\n--AaB03", "entity header (a)" + BAD, {}, ""},
        {l_s_cutFile + "\r234567890\r\r3456789", "(/tmp/u.bin)." + BAD, l_m_f, "\r234567890"},
        {l_s_cutFile + "x\r\n3456789a", GOOD, l_m_f, "x\r\n3456789a"},
        {Part("nam='a'", ""), NAMELESS, {}, ""},
        {Part("name=''", ""), NAMELESS, {}, ""},
        {"", NOT_LAST + "LENGTH" + BAD, {}, ""},
        {l_s_a1 + END + "\n", NOT_LAST + "LENGTH" + BAD, l_m_a1, ""},
        {l_s_fx + "--AaB03x", NOT_LAST + "LENGTH" + BAD, l_m_f, "x"},
        {l_s_a1 + "--AaB03xxx\r\n", NOT_LAST + "FORMAT" + BAD, l_m_a1, ""},
        {l_s_fx + l_s_fx, FAULT + " - POST data contains multiple file uploads: Unsupported." + BAD,
         l_m_f, "x"},
        {Part("name='f'; filename=''", ""), UNOPENED + "for writing, filename is empty\n", {}, ""},
        {Part("filename='r'", "x"), UNOPENED + "/tmp/r" + FIFO, {{"r", "/tmp/r"}}, ""},
        {Part("filename='d/'", ""), UNOPENED + "/tmp/" + FOLDER, {{"d/", "/tmp/"}}, ""},
    };
    for (const auto& [l_s_body, l_s_last, l_m_fields, l_s_upload] : l_cases) {
        SCOPED_TRACE(l_s_body.substr(0, 100));
        const tOutcome l_c_outcome = ParseBothWays(MULTIPART, l_s_body);
        EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFL) & O_NONBLOCK, 0) << "which is also the output";
        const std::string& l_s_log = std::get<3>(l_c_outcome);
        const bool l_b_result = l_s_log.end()[-2] == '1';
        const bool l_b_whole = l_s_log.find("Found END-OF-POST") != std::string::npos;
        EXPECT_EQ(l_c_outcome, tOutcome(l_b_result, l_b_whole, l_m_fields, l_s_log, l_s_upload));
        EXPECT_EQ(l_s_log.substr(l_s_log.size() - l_s_last.size()), l_s_last);
    }

    // A header is accepted if it arrives in one read. This one is the shortest that keeps the
    // parser waiting too long.
    const std::string l_s_long = Part("x=" + std::string(10181, 'x') + "; name='a'", "1") + END;
    EXPECT_TRUE(std::get<0>(Parse(MULTIPART, l_s_long)));
    EXPECT_EQ(std::get<3>(Parse(MULTIPART, l_s_long, 1)),
              START + FAULT + " - Entity Header length exceeds maximum allowable length." + BAD);

    // Data waiting to be parsed leaves room for a read.
    std::string l_s_many;
    while (l_s_many.size() < 300000) {
        l_s_many += l_s_a1;
    }
    const std::string l_s_x(262144, 'x');
    EXPECT_EQ(std::get<4>(Parse(MULTIPART, l_s_many + Part(l_s_named, l_s_x) + END)), l_s_x);

    // The client leaves before it has sent all it promised: whatever was complete by then is kept.
    const std::string l_s_log = R"(7 cCGI::ParseMultipartData
7 ParseMultipartData - Parsed name attribute from entity header (a)
7 ParseMultipartData - Parsed entity value (1) for name (a)
7 ParseMultipartData - Parsed name attribute from entity header (f)
7 ParseMultipartData - Parsed filename attribute from entity header (/tmp/u.bin).)";
    EXPECT_EQ(Parse(MULTIPART, l_s_a1 + l_s_fx, 1, "99999999999"),
              tOutcome(false, false, {{"a", "1"}, {"f", "/tmp/u.bin"}}, l_s_log + BAD, "x"));

    const std::string l_s_foreign = "Entity header (\r\nx\r\n\r\n) does NOT begin with boundary ";
    const std::pair<std::string, std::string> l_types[] = {
        {"", "No boundary found in content type.\n"},
        {"; boundary", "No (=) found in boundary assignment (multipart/form-data; boundary)\n"},
        {"; c=U; boundary=X", l_s_foreign + "(\r\n--U; boundary=X)." + BAD},
    };
    for (const auto& [l_s_parameters, l_s_fault] : l_types) {
        EXPECT_EQ(Parse("multipart/form-data" + l_s_parameters, "x\r\n\r\n"),
                  tOutcome(false, false, {}, START + FAULT + " - " + l_s_fault, ""));
    }
}

TEST(MultipartBody, GoesOnlyWhereStrangersHaveNoSay)
{
    chmod("/tmp", 0777); // not sticky, so the kernel's own protection does not apply
    // What stands in place of the upload (user 1 is a stranger), error, and content afterwards.
    const std::tuple<std::string, int, std::string> l_cases[] = {
        {"echo longer > u.bin", 0, "new"},
        {"ln -s d/file u.bin", 0, "new"},
        {"ln -s d/none u.bin", 0, "new"},
        {"ln -s d/link u.bin; ln -s /tmp/d/file d/link", 0, "new"},
        {"ln -s u.bin u.bin", ELOOP, ""},
        {"mkfifo u.bin", ENXIO, ""},
        {"ln d/file u.bin", EACCES, "old\n"},
        {"ln -s /tmp/d/file d/link; ln -P d/link u.bin", EACCES, "old\n"},
        {"echo old > u.bin; chown 1 u.bin", EACCES, "old\n"},
        {"ln -s d/file u.bin; chown -h 1 u.bin", EACCES, "old\n"},
        {"ln -s d/none u.bin; chown -h 1 u.bin", EACCES, ""},
        {"ln -s d/link u.bin; ln -s file d/link; chown -h 1 d/link", EACCES, "old\n"},
    };
    const std::string l_s_clear = "set -e; cd /tmp; rm -rf d u.bin; mkdir d; echo old > d/file; ";
    const std::string l_s_body = Part("name='f'; filename='u.bin'", "new") + END;
    for (const auto& [l_s_place, l_i_error, l_s_content] : l_cases) {
        SCOPED_TRACE(l_s_place);
        if (std::system((l_s_clear + l_s_place).c_str()) != 0) {
            ASSERT_NE(l_s_place.find("chown"), std::string::npos);
            GTEST_SKIP() << "this sandbox has one user only";
        }
        const auto [l_b_result, l_b_whole, l_m_fields, l_s_log, l_s_upload] =
            Parse(MULTIPART, l_s_body);
        EXPECT_EQ(l_s_upload, l_s_content);
        EXPECT_EQ(l_b_result, l_i_error == 0);
        EXPECT_EQ(l_s_log.find("error "s + strerror(l_i_error)) == std::string::npos, l_b_result);
    }
}
