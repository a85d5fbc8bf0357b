#include <itos.h>
#include <pidfile.h>

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

#include "interposed.h"

namespace
{

const char* const PID_FILE = "/var/run/unit_tests.pid";

std::string Content()
{
    std::ifstream l_c_file(PID_FILE);
    return {std::istreambuf_iterator<char>(l_c_file), {}};
}

// A process that lives until Kill: of this program, or of another one.
pid_t Spawn(const char* a_p_program)
{
    const pid_t l_i_pid = fork();
    if (l_i_pid == 0) {
        execlp(a_p_program, a_p_program, "1000", nullptr);
        pause();
    }
    while (*a_p_program != '\0' && cPidFile::ReadCommandFromProcFile(l_i_pid) != a_p_program) {
    }
    return l_i_pid;
}

void Kill(pid_t a_i_pid)
{
    kill(a_i_pid, SIGKILL);
    waitpid(a_i_pid, nullptr, 0);
}

} // namespace

TEST(PidFile, OwnsAFileThatTellsNoLiveInstance)
{
    const pid_t l_i_gone = Spawn("");
    Kill(l_i_gone);
    const pid_t l_i_other = Spawn("sleep");
    const std::string l_s_own = itos(getpid());
    const std::string l_s_line = "5   cPidFile::WriteFile(): Writing pid " + l_s_own + " to pidfile '" + PID_FILE + "'";
    const std::pair<std::string, int> l_cases[] = {
        {"", 0},
        {"99999999999999999999", -1},
        {itos(l_i_gone), l_i_gone},
        {itos(l_i_other), l_i_other},
    };
    for (const auto& [l_s_stored, l_i_read] : l_cases) {
        std::ofstream(PID_FILE) << l_s_stored;
        Logged().clear();
        {
            const cPidFile l_c_guard(true);
            EXPECT_FALSE(l_c_guard.IsDuplicateRunning());
            EXPECT_EQ(l_c_guard.GetDuplicatePID(), l_i_read);
            EXPECT_EQ(Content(), l_s_own);
            EXPECT_EQ(Logged(), std::vector<std::string>{l_s_line});
        }
        EXPECT_NE(access(PID_FILE, F_OK), 0) << "left behind";
    }
    Kill(l_i_other);
}

TEST(PidFile, LeavesWhatIsNotItsOwn)
{
    Logged().clear();
    for (const char* l_p_stored : {"word", "0", "\n"}) {
        std::ofstream(PID_FILE) << l_p_stored;
        EXPECT_EQ(cPidFile(true).GetDuplicatePID(), 0);
        EXPECT_EQ(Content(), l_p_stored);
    }
    EXPECT_EQ(Logged(), std::vector<std::string>());
    unlink(PID_FILE);
    {
        const cPidFile l_c_guard(true);
        EXPECT_EQ(Content(), itos(getpid()));
        std::ofstream(PID_FILE) << getpid() + 1;
    }
    EXPECT_EQ(Content(), itos(getpid() + 1)) << "another instance's by now";
}

TEST(PidFile, MeetsALiveInstance)
{
    const pid_t l_i_live = Spawn("");
    const std::string l_s_stored = "  " + itos(l_i_live) + "abc rest";
    const std::string l_s_line =
        "3   cPidFile::cPidFile(): Found another instance of process running (PROCESS: unit_tests, PID: " +
        itos(l_i_live) + ")";
    std::ofstream(PID_FILE) << l_s_stored;
    Logged().clear();
    {
        const cPidFile l_c_guard(false);
        EXPECT_TRUE(l_c_guard.IsDuplicateRunning());
        EXPECT_EQ(l_c_guard.GetDuplicatePID(), l_i_live);
    }
    EXPECT_EQ(Logged(), std::vector<std::string>{l_s_line});
    EXPECT_EXIT(cPidFile(true), testing::ExitedWithCode(255), "");
    EXPECT_EQ(Content(), l_s_stored) << "the live instance's file";
    Kill(l_i_live);
}

TEST(Numbers, AsText)
{
    EXPECT_EQ(itos(-42), "-42");
    const std::tuple<unsigned, unsigned, const char*> l_cases[] = {
        {255, 16, "FF"},          {0, 10, "0"},  {0U - 7, 10, "-7"},
        {0U - 7, 16, "FFFFFFF9"}, {10, 8, "10"}, {0x80000000U, 10, "-2147483648"},
    };
    for (const auto& [l_u_value, l_u_radix, l_p_expected] : l_cases) {
        char l_buffer[12];
        EXPECT_STREQ(_itoa(l_u_value, l_buffer, l_u_radix), l_p_expected);
    }
}
