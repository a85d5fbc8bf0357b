#include <itos.h>
#include <pidfile.h>

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

TEST(PidFile, EndsADuplicateIfAsked)
{
    EXPECT_FALSE(cPidFile(true).IsDuplicateRunning());
    std::ofstream("/var/run/unit_tests.pid") << getpid(); // counts as another instance
    EXPECT_EQ(cPidFile(false).GetDuplicatePID(), getpid());
    EXPECT_TRUE(cPidFile(false).IsDuplicateRunning());
    EXPECT_EXIT(cPidFile(true), testing::ExitedWithCode(255), "");
}

TEST(Numbers, AsText)
{
    std::string l_s_texts = itos(-42);
    for (const auto& [l_u_value, l_u_radix] :
         std::map<unsigned, unsigned>{{0, 10}, {10, 8}, {255, 16}, {0x80000000U, 10}, {0U - 8, 16}, {0U - 7, 10}}) {
        char l_buffer[12];
        l_s_texts.append(" ").append(_itoa(l_u_value, l_buffer, l_u_radix));
    }
    EXPECT_EQ(l_s_texts, "-42 0 10 FF -2147483648 FFFFFFF8 -7");
}
