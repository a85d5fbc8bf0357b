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

std::string Content(const char* a_p_path)
{
    std::ifstream l_c_file(a_p_path);
    return {std::istreambuf_iterator<char>(l_c_file), {}};
}

void Store(const std::string& a_s_text)
{
    std::ofstream(PID_FILE) << a_s_text;
}

// A process that lives until Kill: this program's child, or one that became another program.
pid_t Spawn(const char* a_p_program)
{
    const pid_t l_i_pid = fork();
    if (l_i_pid == 0) {
        if (a_p_program != nullptr) {
            execlp(a_p_program, a_p_program, "1000", nullptr);
        }
        pause();
        _exit(0);
    }
    while (a_p_program != nullptr && cPidFile::ReadCommandFromProcFile(l_i_pid) != a_p_program) {
    }
    return l_i_pid;
}

void Kill(pid_t a_i_pid)
{
    kill(a_i_pid, SIGKILL);
    waitpid(a_i_pid, nullptr, 0);
}

void ExpectOwner(const std::string& a_s_stored, int a_i_pidRead)
{
    Store(a_s_stored);
    Logged().clear();
    const std::string l_s_own = itos(getpid());
    {
        const cPidFile l_c_guard(true);
        EXPECT_FALSE(l_c_guard.IsDuplicateRunning());
        EXPECT_EQ(l_c_guard.GetDuplicatePID(), a_i_pidRead);
        EXPECT_EQ(Content(PID_FILE), l_s_own);
        EXPECT_EQ(Logged(), std::vector<std::string>{"5   cPidFile::WriteFile(): Writing pid " +
                                                     l_s_own + " to pidfile '" + PID_FILE + "'"});
    }
    EXPECT_NE(access(PID_FILE, F_OK), 0) << "left behind";
}

} // namespace

TEST(PidFile, OwnsAFileThatTellsNoLiveInstance)
{
    const pid_t l_i_gone = Spawn(nullptr);
    Kill(l_i_gone);
    const pid_t l_i_other = Spawn("sleep");
    ExpectOwner("", 0);
    ExpectOwner("word", 0);
    ExpectOwner(itos(l_i_gone), l_i_gone);
    ExpectOwner(itos(l_i_other) + "\n", l_i_other);
    ExpectOwner("99999999999999999999", -1);
    unlink(PID_FILE);
    Kill(l_i_other);
}

TEST(PidFile, MeetsALiveInstance)
{
    const pid_t l_i_live = Spawn(nullptr);
    const std::string l_s_stored = "  " + itos(l_i_live) + "abc rest";
    const std::string l_s_message = "Found another instance of process running (PROCESS: "
                                    "unit_tests, PID: " +
                                    itos(l_i_live) + ")";
    Store(l_s_stored);
    Logged().clear();
    {
        const cPidFile l_c_guard(false);
        EXPECT_TRUE(l_c_guard.IsDuplicateRunning());
        EXPECT_EQ(l_c_guard.GetDuplicatePID(), l_i_live);
    }
    EXPECT_EQ(Content(PID_FILE), l_s_stored) << "the live instance's file";
    EXPECT_EQ(Logged(), std::vector<std::string>{"3   cPidFile::cPidFile(): " + l_s_message});
    EXPECT_EXIT(cPidFile(true), testing::ExitedWithCode(255), "");
    EXPECT_EQ(Content(PID_FILE), l_s_stored);
    Kill(l_i_live);
    unlink(PID_FILE);
}

TEST(Numbers, AsText)
{
    EXPECT_EQ(itos(-42), "-42");
    EXPECT_EQ(itos(0), "0");
    const std::tuple<unsigned, unsigned, const char*> l_cases[] = {
        {255, 16, "FF"},
        {0, 10, "0"},
        {static_cast<unsigned>(-7), 10, "-7"},
        {static_cast<unsigned>(-7), 16, "FFFFFFF9"},
        {10, 8, "10"},
        {0x80000000U, 10, "-2147483648"},
        {4294967295U, 8, "4294967295"},
    };
    for (const auto& [l_u_value, l_u_radix, l_p_expected] : l_cases) {
        char l_buffer[12];
        EXPECT_STREQ(_itoa(l_u_value, l_buffer, l_u_radix), l_p_expected);
    }
}
