#ifndef PIDFILE_H
#define PIDFILE_H

#include <cstdint>
#include <string>

/// Tells whether another process that runs the same program is alive, by a pid file
/// "/var/run/" + command name + ".pid", and keeps that file for its own lifetime.
///
/// The file holds a pid in decimal and nothing else. After construction the guard is
///   - inert: the own command name could not be read; or the file cannot be read, or holds
///     something else than a pid, so that it is not ours. It stays as it is, and nothing is logged;
///   - owner: the file was missing or empty, or held the pid of a process that is gone or runs
///     another program; it now holds the own pid;
///   - duplicate: the file names a live process of the same program and stays as it is.
/// Two decisions that users may rely on:
///   - A missing or empty file is written as well, not only one that names a dead process.
///     Otherwise no instance would ever leave its pid.
///   - Only the guard that wrote the file removes it, and only while it still holds the own pid. A
///     file that has come to be another instance's must not be taken away.
/// There is no lock: of two instances that start at the same instant both can find no duplicate,
/// and the later write wins. For one thread.
class cPidFile
{
public:
    /// Performs the check. When a duplicate runs, logs it at LOG_ERR and, if a_b_exitOnDuplicate is
    /// set, ends the process with exit status 255. A file that cannot be written is passed over in
    /// silence: the guard then owns nothing.
    explicit cPidFile(bool a_b_exitOnDuplicate);

    /// Removes the pid file if this guard wrote it and it still holds the own pid.
    ~cPidFile();

    cPidFile(const cPidFile&) = delete;
    cPidFile& operator=(const cPidFile&) = delete;

    /// Whether the pid file named a live process of the same program at construction.
    bool IsDuplicateRunning() const { return m_b_duplicateRunning; }

    /// The pid that the file held at construction, of a dead process too; 0 when it held none.
    int GetDuplicatePID() const { return m_i_duplicatePid; }

    /// Writes the own pid into the pid file (created or truncated), with a line at LOG_NOTICE. Does
    /// nothing if the file cannot be opened; removes it if it cannot be written whole.
    void WriteFile();

    /// The pid in the pid file: the leading decimal digits of its first word, looked for in its
    /// first 63 bytes; 0 when there is none. A number that 32 bits cannot hold gives -1, which
    /// names no process.
    int ReadPidFromFile() const;

    /// Whether the process a_i_pid is alive with the guard's own command name.
    bool IsProcessRunning(const int& a_i_pid) const;

    /// The command name of the process a_i_pid: from the first word of its command line what
    /// follows the last "/", up to the first NUL. Empty when the process table does not tell.
    static std::string ReadCommandFromProcFile(const int& a_i_pid);

private:
    std::string m_s_processName;
    std::string m_s_pidFile;
    bool m_b_exitOnDuplicate;
    bool m_b_duplicateRunning = false;
    std::int32_t m_i_pid;
    std::int32_t m_i_duplicatePid = 0;
    bool m_b_fileWritten = false;
};

#endif
