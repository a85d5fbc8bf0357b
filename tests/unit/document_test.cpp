#include <document.h>
#include <extraction.h>

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <stdio.h>
#include <unistd.h>

static int g_i_leased = -1;

static void ReplaceAndRelease(int /*signal*/)
{
    rename("/run/new", "/run/path");
    fcntl(g_i_leased, F_SETLEASE, F_UNLCK);
}

TEST(Document, LoadsOnlyWhole)
{
    std::ifstream l_c_file(EXAMPLE_CONFIG);
    const std::string l_s_text(std::istreambuf_iterator<char>(l_c_file), {});
    for (std::size_t l_u_length = 0; l_u_length < l_s_text.size(); ++l_u_length) {
        std::ofstream("/run/path") << l_s_text.substr(0, l_u_length);
        const bool l_b_whole = l_u_length == l_s_text.size() - 1; // all but the last line end
        TiXmlDocument l_c_part;
        EXPECT_EQ(LoadDocument(l_c_part, "/run/path"), l_b_whole) << l_u_length;
    }

    // When the document is opened, the kernel asks for the lease back and blocks the open
    // meanwhile.
    std::ofstream("/run/path") << "<c/>";
    std::ofstream("/run/new") << "<c><replaced/></c>";
    std::signal(SIGIO, ReplaceAndRelease);
    g_i_leased = open("/run/path", O_RDONLY);
    ASSERT_EQ(fcntl(g_i_leased, F_SETLEASE, F_WRLCK), 0);
    TiXmlDocument l_c_document;
    EXPECT_TRUE(LoadDocument(l_c_document, "/run/path")) << l_c_document.ErrorDesc();
    EXPECT_NE(l_c_document.RootElement()->FirstChild(), nullptr);
}

// Each of these fails with TinyXML as its author ships it; distributions carry patches.
TEST(Document, ParserHasNoKnownFault)
{
    alarm(60); // ends an endless loop: CVE-2021-42260
    TiXmlDocument l_c_document;
    l_c_document.Parse("<a>\xEF\0\0</a><a>&amp;#x41;</a>", nullptr, TIXML_ENCODING_UTF8);
    EXPECT_EQ(ExtractValues(l_c_document, {{"k", "/a[2]"}})["k"], "<a>&amp;#x41;</a>");
    l_c_document.Parse("<?xml "); // a failed assertion: CVE-2023-34194
    alarm(0);
}
