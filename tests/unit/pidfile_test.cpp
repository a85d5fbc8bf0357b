#include <itos.h>
#include <pidfile.h>

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

static const char* const PID_FILE = "/var/run/unit_tests.pid";

TEST(PidFile, EndsADuplicateIfAsked)
{
    EXPECT_FALSE(cPidFile(true).IsDuplicateRunning());
    std::ofstream(PID_FILE) << getpid(); // counts as another instance
    EXPECT_EQ(cPidFile(false).GetDuplicatePID(), getpid());
    EXPECT_TRUE(cPidFile(false).IsDuplicateRunning());
    EXPECT_EXIT(cPidFile(true), testing::ExitedWithCode(255), "");
}

TEST(PidFile, NeverWaitsForAFifo)
{
    unlink(PID_FILE);
    mkfifo(PID_FILE, 0666);
    cPidFile l_c_guard(false);
    l_c_guard.WriteFile();
    const int l_i_reader = open(PID_FILE, O_RDONLY | O_NONBLOCK);
    l_c_guard.WriteFile();
    char l_byte = 0;
    EXPECT_EQ(read(l_i_reader, &l_byte, 1), 0);
    EXPECT_EQ(unlink(PID_FILE), 0);
}

TEST(Numbers, AsText)
{
    std::string l_s_texts = itos(-42);
    for (const auto& [l_u_value, l_u_radix] : std::map<unsigned, unsigned>{
             {0, 10}, {10, 8}, {255, 16}, {0x80000000U, 10}, {0xFEDCBA98U, 16}, {0U - 7, 10}}) {
        char l_buffer[12];
        l_s_texts.append(" ").append(_itoa(l_u_value, l_buffer, l_u_radix));
    }
    EXPECT_EQ(l_s_texts, "-42 0 10 FF -2147483648 FEDCBA98 -7");
}
