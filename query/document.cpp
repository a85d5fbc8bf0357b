#include "document.h"

#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// The text of the file; empty if it cannot be read in one go.
static std::string TextOf(const std::string& a_s_path)
{
    struct stat l_c_status = {};
    if (stat(a_s_path.c_str(), &l_c_status) != 0 ||
        static_cast<std::uintmax_t>(l_c_status.st_size) > std::string().max_size()) {
        return {};
    }
    std::string l_s_text(static_cast<std::size_t>(l_c_status.st_size), '\0');
    const int l_i_file = open(a_s_path.c_str(), O_RDONLY | O_CLOEXEC);
    if (l_i_file < 0) {
        return {};
    }
    if (read(l_i_file, l_s_text.data(), l_s_text.size()) != l_c_status.st_size) {
        l_s_text.clear();
    }
    close(l_i_file);
    return l_s_text;
}

bool cDocument::LoadFile(const std::string& a_s_path, TiXmlEncoding a_e_encoding)
{
    const std::string l_s_text = TextOf(a_s_path);
    if (l_s_text.empty() || l_s_text.find('\r') != std::string::npos) {
        return TiXmlDocument::LoadFile(a_s_path, a_e_encoding);
    }
    Clear();
    SetValue(a_s_path);
    Parse(l_s_text.c_str(), nullptr, a_e_encoding); // which ends at a NUL, as LoadFile does
    return !Error();
}
