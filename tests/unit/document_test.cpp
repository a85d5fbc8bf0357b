#include <document.h>

#include <atomic>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <stdio.h>
#include <thread>

TEST(Document, LoadsOnlyWhole)
{
    std::ifstream l_c_file(EXAMPLE_CONFIG);
    const std::string l_s_text(std::istreambuf_iterator<char>(l_c_file), {});
    for (std::size_t l_u_length = 0; l_u_length < l_s_text.size(); ++l_u_length) {
        std::ofstream("/tmp/whole") << l_s_text.substr(0, l_u_length);
        const bool l_b_whole = l_u_length == l_s_text.size() - 1; // but for the last line end
        EXPECT_EQ(cDocument().LoadFile("/tmp/whole", TIXML_DEFAULT_ENCODING), l_b_whole) << l_u_length;
    }

    // Now that one, now a shorter one stands under the name.
    std::ofstream("/tmp/other") << "<c/>" << std::string(999, ' ');
    std::atomic<bool> l_b_done = false;
    std::thread l_c_writer([&] {
        while (!l_b_done) {
            renameat2(AT_FDCWD, "/tmp/whole", AT_FDCWD, "/tmp/other", RENAME_EXCHANGE);
        }
    });
    for (int l_i_turn = 0; l_i_turn < 5000; ++l_i_turn) {
        cDocument l_c_document;
        EXPECT_TRUE(l_c_document.LoadFile("/tmp/whole", TIXML_DEFAULT_ENCODING)) << l_c_document.ErrorDesc();
    }
    l_b_done = true;
    l_c_writer.join();
}
