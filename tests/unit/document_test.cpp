#include <document.h>

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <stdio.h>

static int g_i_leased = -1;

static void ReplaceAndRelease(int /*signal*/)
{
    rename("/tmp/new", "/tmp/path");
    fcntl(g_i_leased, F_SETLEASE, F_UNLCK);
}

TEST(Document, LoadsOnlyWhole)
{
    std::ifstream l_c_file(EXAMPLE_CONFIG);
    const std::string l_s_text(std::istreambuf_iterator<char>(l_c_file), {});
    for (std::size_t l_u_length = 0; l_u_length < l_s_text.size(); ++l_u_length) {
        std::ofstream("/tmp/path") << l_s_text.substr(0, l_u_length);
        const bool l_b_whole = l_u_length == l_s_text.size() - 1; // all but the last line end
        EXPECT_EQ(cDocument().LoadFile("/tmp/path", TIXML_DEFAULT_ENCODING), l_b_whole) << l_u_length;
    }

    // When the document is opened, the kernel asks for the lease back and blocks the open meanwhile.
    std::ofstream("/tmp/path") << "<c/>";
    std::ofstream("/tmp/new") << "<c><replaced/></c>";
    std::signal(SIGIO, ReplaceAndRelease);
    g_i_leased = open("/tmp/path", O_RDONLY);
    ASSERT_EQ(fcntl(g_i_leased, F_SETLEASE, F_WRLCK), 0);
    cDocument l_c_document;
    EXPECT_TRUE(l_c_document.LoadFile("/tmp/path", TIXML_DEFAULT_ENCODING)) << l_c_document.ErrorDesc();
    EXPECT_NE(l_c_document.RootElement()->FirstChild(), nullptr);
}
