#include "document.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// The parser steps over a UTF-8 character by the length given in its first byte. If the text ends
// inside a character, the step passes the terminating NUL by at most this many bytes.
constexpr std::size_t LONGEST_STEP_TOO_FAR = 3;

// Opens a file without waiting for the other end of a FIFO, but until a lease has been given back.
int Open(const char* a_p_path)
{
    const int l_i_file = open(a_p_path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    return l_i_file < 0 && errno == EWOULDBLOCK ? open(a_p_path, O_RDONLY | O_CLOEXEC) : l_i_file;
}

class cOpenFile
{
public:
    explicit cOpenFile(const std::string& a_s_path) : m_i_file(Open(a_s_path.c_str())) {}
    ~cOpenFile() { close(m_i_file); }
    cOpenFile(const cOpenFile&) = delete;
    cOpenFile& operator=(const cOpenFile&) = delete;

    // The text of the file, followed by LONGEST_STEP_TOO_FAR NUL bytes; empty if it cannot be read.
    std::string Text() const
    {
        struct stat l_c_status = {};
        if (fstat(m_i_file, &l_c_status) != 0 ||
            static_cast<std::uintmax_t>(l_c_status.st_size) >
                std::string().max_size() - LONGEST_STEP_TOO_FAR) {
            return {};
        }
        const auto l_u_size = static_cast<std::size_t>(l_c_status.st_size);
        std::string l_s_text(l_u_size + LONGEST_STEP_TOO_FAR, '\0');
        if (read(m_i_file, l_s_text.data(), l_u_size) < 0) {
            l_s_text.clear();
        }
        return l_s_text;
    }

private:
    const int m_i_file;
};

// Converts every CR LF and every other CR to LF (XML 1.0, 2.11).
void UnifyLineEnds(std::string& a_s_text)
{
    std::size_t l_u_write = std::min(a_s_text.find('\r'), a_s_text.size());
    for (std::size_t l_u_read = l_u_write; l_u_read < a_s_text.size(); ++l_u_read) {
        const bool l_b_cr = a_s_text[l_u_read] == '\r';
        if (!l_b_cr || a_s_text[l_u_read + 1] != '\n') {
            a_s_text[l_u_write++] = l_b_cr ? '\n' : a_s_text[l_u_read];
        }
    }
    a_s_text.resize(l_u_write);
}

} // namespace

bool LoadDocument(TiXmlDocument& a_c_document, const std::string& a_s_path)
{
    a_c_document.SetTabSize(0); // no rows and columns
    std::string l_s_text = cOpenFile(a_s_path).Text();
    if (l_s_text.empty()) {
        a_c_document.LoadFile(a_s_path); // sets the error
    } else {
        UnifyLineEnds(l_s_text);
        a_c_document.Clear();
        a_c_document.SetValue(a_s_path);
        a_c_document.Parse(l_s_text.c_str());
    }
    if (a_c_document.RootElement() == nullptr) { // an error, unless one is set
        a_c_document.SetError(TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY, nullptr, nullptr,
                              TIXML_DEFAULT_ENCODING);
    }
    return !a_c_document.Error();
}
