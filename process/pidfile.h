#ifndef PIDFILE_H
#define PIDFILE_H

#include <cstdint>
#include <string>

/// Detects whether another process that runs the same program is alive, by means of the pid file
/// "/var/run/" + command name + ".pid", and maintains that file for its own lifetime.
///
/// The file holds a pid in decimal and nothing else. After construction the guard is
///   - inert: its own command name could not be read; or the file is no regular file, cannot be
///     read, or does not begin with a pid (after any white space), so it is not ours. It is left
///     unchanged, and nothing is logged;
///   - owner: the file was missing or empty, or held the pid of a process that is gone or runs
///     another program; it now holds the guard's own pid;
///   - duplicate: the file names a live process of the same program and is left unchanged.
/// Three decisions that callers may rely on:
///   - A missing or empty file is written too, not only one that names a dead process. Otherwise no
///     instance would ever record its pid.
///   - Only the guard that wrote the file removes it, and only while it still holds the guard's own
///     pid. A file that has become another instance's must not be removed.
///   - A file that already holds the guard's own pid makes it a duplicate: that process is alive
///     and runs the same program. Where /var/run outlives a boot, a daemon may well get the pid
///     that its predecessor had, so its start script removes the file when the system boots.
/// There is no lock: two instances that start at the same instant may both find no duplicate, and
/// the later write wins. Use it from one thread only.
class cPidFile
{
public:
    /// Performs the check. If a duplicate runs, logs it at LOG_ERR and, if a_b_exitOnDuplicate is
    /// set, ends the process with exit status 255. A file that cannot be written is silently
    /// ignored: the guard then owns nothing.
    explicit cPidFile(bool a_b_exitOnDuplicate);

    /// Removes the pid file if this guard wrote it and it still holds the guard's own pid.
    ~cPidFile();

    cPidFile(const cPidFile&) = delete;
    cPidFile& operator=(const cPidFile&) = delete;

    /// Whether the pid file named a live process of the same program at construction.
    bool IsDuplicateRunning() const { return m_b_duplicateRunning; }

    /// The pid that the file held at construction, even of a dead process; 0 if it held none.
    int GetDuplicatePID() const { return m_i_duplicatePid; }

    /// Writes the guard's own pid to the pid file (created or truncated) and logs it at LOG_NOTICE.
    /// Does nothing if the file cannot be opened or is no regular file; removes it if it cannot be
    /// written in full. Never waits.
    void WriteFile();

    /// The pid in the pid file: the leading decimal digits of its first word; 0 if there are none
    /// (a sign is no digit), or if they go on past the first 62 bytes. A number that does not fit
    /// into 32 bits yields -1, which names no process.
    int ReadPidFromFile() const;

    /// Whether process a_i_pid is alive and has the guard's own command name.
    bool IsProcessRunning(const int& a_i_pid) const;

    /// The command name of process a_i_pid: in the first word of its command line, what follows the
    /// last "/", up to the first NUL. Empty if the process table does not provide it.
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
