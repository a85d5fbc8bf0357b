#ifndef UPLOAD_FILE_H
#define UPLOAD_FILE_H

#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

// Anybody can put things into /tmp under the name of an upload: a link or a second name, to have
// any file of ours replaced, or a file of his own, to change the upload later. The kernel's
// protection (fs.protected_symlinks and the like) is off by default.
//
// Static, so that a page linked with the library can use the names itself.

/// Whether only root or we ourselves can have put a link or file where it was found. A second name
/// may be a stranger's.
static inline bool IsTrusted(const struct stat& a_c_status)
{
    const bool l_b_own = a_c_status.st_uid == 0 || a_c_status.st_uid == geteuid();
    return l_b_own && a_c_status.st_nlink <= 1;
}

/// Replaces the path of a trusted symbolic link with the path that it leads to; otherwise returns
/// false and sets errno. Reads the very link that it has examined: names may be swapped meanwhile.
static inline bool FollowTrustedLink(std::string& a_s_path)
{
    const int l_i_link = open(a_s_path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    struct stat l_c_status = {};
    char l_target[PATH_MAX];
    ssize_t l_i_length = -1;
    if (fstat(l_i_link, &l_c_status) == 0 && IsTrusted(l_c_status)) {
        l_i_length = readlinkat(l_i_link, "", l_target, sizeof l_target);
    }
    close(l_i_link);
    if (l_i_length <= 0) {
        errno = EACCES;
        return false;
    }
    a_s_path.resize(l_target[0] == '/' ? 0 : a_s_path.rfind('/') + 1);
    a_s_path.append(l_target, static_cast<std::size_t>(l_i_length));
    return true;
}

/// Empties what has been opened for an upload. Returns false and sets errno if that fails, for a
/// regular file that is not trusted, and for a FIFO: every write to it could wait forever.
static inline bool EmptyIfTrusted(int a_i_file)
{
    struct stat l_c_status = {};
    if (fstat(a_i_file, &l_c_status) != 0) {
        return false;
    }
    const bool l_b_fifo = S_ISFIFO(l_c_status.st_mode);
    const bool l_b_regular = S_ISREG(l_c_status.st_mode);
    if (l_b_fifo || (l_b_regular && !IsTrusted(l_c_status))) {
        errno = l_b_fifo ? ENXIO : EACCES; // as if the FIFO had no reader
        return false;
    }
    return !l_b_regular || ftruncate(a_i_file, 0) == 0;
}

/// Opens a file for writing as fopen() does, but follows trusted links only and refuses what
/// EmptyIfTrusted() does. Returns null and sets errno where fopen() does.
static inline std::FILE* OpenUploadFile(std::string a_s_path)
{
    constexpr int FLAGS = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    constexpr mode_t ALL_MAY_READ_AND_WRITE = 0666; // minus the umask
    int l_i_linksLeft = 40;                         // as many as Linux follows
    int l_i_file = -1;
    do {
        l_i_file = open(a_s_path.c_str(), FLAGS, ALL_MAY_READ_AND_WRITE);
    } while (l_i_file < 0 && errno == ELOOP && l_i_linksLeft-- > 0 && FollowTrustedLink(a_s_path));
    if (l_i_file < 0) {
        return nullptr;
    }
    std::FILE* l_p_file = nullptr;
    // Writes may block again: a device may be slow.
    if (EmptyIfTrusted(l_i_file) && fcntl(l_i_file, F_SETFL, 0) == 0) {
        l_p_file = fdopen(l_i_file, "w");
    }
    if (l_p_file == nullptr) {
        close(l_i_file);
    }
    return l_p_file;
}

#endif
