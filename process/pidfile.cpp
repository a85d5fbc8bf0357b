#include "pidfile.h"

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include "itos.h"

namespace
{

struct sFileCloser
{
    void operator()(std::FILE* a_p_file) const { std::fclose(a_p_file); }
};
using tFile = std::unique_ptr<std::FILE, sFileCloser>;

// Opens a regular file. Returns -1 and sets errno for anything else: to open or read a FIFO could
// take forever.
int OpenRegular(const std::string& a_s_path, int a_i_flags)
{
    constexpr mode_t ALL_MAY_READ_AND_WRITE = 0666; // minus the umask
    const int l_i_file =
        open(a_s_path.c_str(), a_i_flags | O_NONBLOCK | O_CLOEXEC, ALL_MAY_READ_AND_WRITE);
    struct stat l_c_status = {};
    if (l_i_file >= 0 && fstat(l_i_file, &l_c_status) == 0 && !S_ISREG(l_c_status.st_mode)) {
        close(l_i_file);
        errno = EINVAL;
        return -1;
    }
    return l_i_file;
}

// The pid at the start of the file, after any white space: 0 if the file is missing or empty,
// nullopt if it holds anything else or cannot be read. Allocates nothing, so a process that has run
// out of memory can still tell whether the file is its own.
std::optional<std::int32_t> StoredPid(const std::string& a_s_path)
{
    const int l_i_file = OpenRegular(a_s_path, O_RDONLY);
    if (l_i_file < 0) {
        return errno == ENOENT ? std::optional(0) : std::nullopt;
    }
    char l_text[64] = {};
    const ssize_t l_i_length = read(l_i_file, l_text, sizeof l_text - 1);
    close(l_i_file);
    if (l_i_length == 0) {
        return 0;
    }
    const char* const l_p_end = l_text + sizeof l_text - 1;
    std::uint32_t l_u_number = 0;
    const auto [l_p_rest, l_e_error] =
        std::from_chars(l_text + std::strspn(l_text, " \t\n\v\f\r"), l_p_end, l_u_number);
    if (l_p_rest == l_p_end) {
        return std::nullopt; // the number may go on
    }
    if (l_e_error == std::errc::result_out_of_range) {
        return -1; // names no process
    }
    return l_u_number == 0 ? std::nullopt : std::optional(static_cast<std::int32_t>(l_u_number));
}

// The first word of the file, after any white space; empty if the file cannot be read. NUL is not
// white space, so the word runs past the separators of a command line. std::ifstream would pull in
// the locales, a large part of a static program.
std::string ReadWord(const std::string& a_s_path)
{
    std::string l_s_word;
    const tFile l_p_file(std::fopen(a_s_path.c_str(), "re"));
    if (!l_p_file) {
        return l_s_word;
    }
    int l_i_byte = std::getc(l_p_file.get());
    while (std::isspace(l_i_byte) != 0) {
        l_i_byte = std::getc(l_p_file.get());
    }
    while (l_i_byte != EOF && std::isspace(l_i_byte) == 0) {
        l_s_word += static_cast<char>(l_i_byte);
        l_i_byte = std::getc(l_p_file.get());
    }
    return l_s_word;
}

} // namespace

cPidFile::cPidFile(bool a_b_exitOnDuplicate)
    : m_b_exitOnDuplicate(a_b_exitOnDuplicate), m_i_pid(getpid())
{
    m_s_processName = ReadCommandFromProcFile(m_i_pid);
    if (m_s_processName.empty()) {
        return;
    }
    m_s_pidFile = "/var/run/" + m_s_processName + ".pid";
    const std::optional<std::int32_t> l_c_stored = StoredPid(m_s_pidFile);
    if (!l_c_stored) {
        return;
    }
    m_i_duplicatePid = *l_c_stored;
    m_b_duplicateRunning = m_i_duplicatePid != 0 && IsProcessRunning(m_i_duplicatePid);
    if (!m_b_duplicateRunning) {
        WriteFile();
        return;
    }
    syslog(LOG_ERR,
           "  cPidFile::cPidFile(): Found another instance of process running (PROCESS: %s, "
           "PID: %d)",
           m_s_processName.c_str(), m_i_duplicatePid);
    if (m_b_exitOnDuplicate) {
        std::exit(-1);
    }
}

cPidFile::~cPidFile()
{
    if (m_b_fileWritten && StoredPid(m_s_pidFile) == m_i_pid) {
        unlink(m_s_pidFile.c_str());
    }
}

void cPidFile::WriteFile()
{
    const int l_i_file = OpenRegular(m_s_pidFile, O_WRONLY | O_CREAT | O_TRUNC);
    if (l_i_file < 0) {
        return;
    }
    syslog(LOG_NOTICE, "  cPidFile::WriteFile(): Writing pid %d to pidfile '%s'", m_i_pid,
           m_s_pidFile.c_str());
    const std::string l_s_pid = itos(m_i_pid);
    const ssize_t l_i_written = write(l_i_file, l_s_pid.data(), l_s_pid.size());
    m_b_fileWritten = close(l_i_file) == 0 && l_i_written == static_cast<ssize_t>(l_s_pid.size());
    // A truncated pid would name another process.
    if (!m_b_fileWritten) {
        unlink(m_s_pidFile.c_str());
    }
}

int cPidFile::ReadPidFromFile() const
{
    return StoredPid(m_s_pidFile).value_or(0);
}

bool cPidFile::IsProcessRunning(const int& a_i_pid) const
{
    return ReadCommandFromProcFile(a_i_pid) == m_s_processName;
}

std::string cPidFile::ReadCommandFromProcFile(const int& a_i_pid)
{
    std::string l_s_command = ReadWord("/proc/" + itos(a_i_pid) + "/cmdline");
    l_s_command.erase(0, l_s_command.rfind('/') + 1);
    return l_s_command.substr(0, l_s_command.find('\0'));
}
