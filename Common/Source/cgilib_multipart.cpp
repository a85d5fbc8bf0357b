#include "cgilib.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <syslog.h>
#include <unistd.h>

#include "accumulator.h"
#include "standard_input.h"
#include "upload_file.h"

namespace
{

constexpr const char* const FUNCTION = "ParseMultipartData";

constexpr std::string_view HEADER_END = "\r\n\r\n";
constexpr std::string_view CLOSING_END = "--\r\n";

// A part header that has not arrived in full must be shorter than this.
constexpr std::size_t MAX_WAITING_HEADER = 10240;

// The text between the first two double quotes after a_u_from, preceded by anything before the
// first quote; without quotes, everything up to the end of the header block.
std::string QuotedText(std::string_view a_s_header, std::size_t a_u_from)
{
    std::string l_s_text;
    int l_i_quotes = 0;
    for (const char l_i_byte : a_s_header.substr(a_u_from)) {
        if (l_i_byte != '"') {
            l_s_text += l_i_byte;
        } else if (++l_i_quotes == 2) {
            break;
        }
    }
    return l_s_text;
}

// The value of the attribute ("name=") in the header block; empty if it is absent.
std::string HeaderAttribute(std::string_view a_s_header, std::string_view a_s_attribute)
{
    const std::size_t l_u_found = a_s_header.find(a_s_attribute);
    return l_u_found == std::string_view::npos
               ? std::string()
               : QuotedText(a_s_header, l_u_found + a_s_attribute.size());
}

// Windows and Unix clients may send a path: it must not choose one of our directories.
std::string UploadPath(const std::string& a_s_clientName)
{
    const std::string l_s_name = a_s_clientName.substr(a_s_clientName.rfind('\\') + 1);
    return "/tmp/" + l_s_name.substr(l_s_name.rfind('/') + 1);
}

struct sFileCloser
{
    void operator()(std::FILE* a_p_file) const { std::fclose(a_p_file); }
};

// Makes standard output block again: some servers pass one socket as standard input and output, and
// no page expects a write that ends early.
struct sBlockingOutput
{
    sBlockingOutput() = default;
    sBlockingOutput(const sBlockingOutput&) = delete;
    sBlockingOutput& operator=(const sBlockingOutput&) = delete;
    ~sBlockingOutput()
    {
        fcntl(STDOUT_FILENO, F_SETFL, fcntl(STDOUT_FILENO, F_GETFL) & ~O_NONBLOCK);
    }
};

enum eParseState
{
    eREAD_ENTITY_HEADER,   // waiting for a part header, or for the closing boundary
    eREAD_ENTITY_BODY,     // collecting the content of an ordinary field
    eWRITE_ENTITY_AS_FILE, // writing the content of a file part
};

// The working data of one parse and its three steps. Each step works on what has been read so far
// and returns the next state.
class cMultipartParser
{
public:
    // Reads a_u_readSize bytes at a time directly into the buffer, which is replaced with one that
    // also has room for waiting bytes.
    cMultipartParser(const std::string& a_s_boundary, std::uint64_t a_u_length,
                     std::unique_ptr<char[]>& a_p_buffer, std::size_t a_u_readSize,
                     cCGI::tFormData& a_m_postData, std::string& a_s_storedUpload);

    // Reads once from standard input. Returns whether there is a step to take: false at the end of
    // the body and after an error.
    bool Refill();

    eParseState ReadHeader();
    eParseState ReadBody();
    eParseState WriteFile();

    // Ends the parse and returns its result.
    bool Finish();

    bool FoundClosingBoundary() const { return m_b_closed; }

private:
    enum eOutcome
    {
        eGOING,
        eFAILED,
        eABANDONED, // without a closing line in the log
    };

    eParseState AcceptHeader(std::string_view a_s_header);
    eParseState AcceptFileHeader(std::string_view a_s_header);
    void AcceptClosingBoundary();
    std::string_view TakeContent();
    bool OpenUpload();
    void Write(std::string_view a_s_chunk);

    const std::string m_s_delimiter;
    const std::size_t m_u_readSize;
    cAccumulator m_c_accumulator;
    std::uint64_t m_u_remaining; // bytes of the body not yet read
    cCGI::tFormData& m_m_postData;
    std::string& m_s_storedUpload;

    eOutcome m_e_outcome = eGOING;
    bool m_b_closed = false;     // nothing follows the closing boundary
    bool m_b_needsBytes = false; // the last step cannot continue with what has been read

    std::string m_s_fieldName;
    std::string m_s_fieldValue;
    std::string m_s_uploadPath;
    std::unique_ptr<std::FILE, sFileCloser> m_p_uploadFile;
    off_t m_i_writeOffset = 0;
    static_assert(sizeof(off_t) == 8, "a file may pass 2 GiB where long has 32 bits");
    unsigned m_u_completedFiles = 0;
};

cMultipartParser::cMultipartParser(const std::string& a_s_boundary, std::uint64_t a_u_length,
                                   std::unique_ptr<char[]>& a_p_buffer, std::size_t a_u_readSize,
                                   cCGI::tFormData& a_m_postData, std::string& a_s_storedUpload)
    : m_s_delimiter("\r\n--" + a_s_boundary), m_u_readSize(a_u_readSize),
      m_c_accumulator(a_p_buffer, std::max(m_u_readSize, m_s_delimiter.size()), m_u_readSize),
      m_u_remaining(a_u_length), m_m_postData(a_m_postData), m_s_storedUpload(a_s_storedUpload)
{
    // The first boundary is not preceded by a CRLF; with this one it matches the delimiter like
    // every later boundary.
    std::memcpy(m_c_accumulator.Room(2), "\r\n", 2);
    m_c_accumulator.Added(2);
}

// Nothing is read while a step can be taken and a full read is already waiting: otherwise every
// small part before a file would add another read to what is held in memory.
bool cMultipartParser::Refill()
{
    const std::size_t l_u_waiting = m_c_accumulator.Bytes().size();
    if (m_e_outcome != eGOING || (m_u_remaining == 0 && l_u_waiting == 0)) {
        return false;
    }
    if (!m_b_needsBytes && l_u_waiting >= m_u_readSize) {
        return true;
    }
    if (std::feof(stdin) != 0) {
        m_e_outcome = eFAILED;
        return false;
    }

    const auto l_u_wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_u_remaining, m_u_readSize));
    const std::size_t l_u_read =
        l_u_wanted == 0 ? 0 : std::fread(m_c_accumulator.Room(l_u_wanted), 1, l_u_wanted, stdin);
    // Without new bytes the step would find what it found last time. If none can arrive, the body
    // has ended inside a part; otherwise sleep rather than spin.
    const bool l_b_stuck = l_u_read == 0 && m_b_needsBytes;
    if (l_b_stuck && (l_u_wanted == 0 || !AwaitStandardInput())) {
        m_e_outcome = eFAILED;
    }
    m_u_remaining -= l_u_read;
    m_c_accumulator.Added(l_u_read);
    return m_e_outcome == eGOING;
}

eParseState cMultipartParser::ReadHeader()
{
    const std::size_t l_u_end = m_c_accumulator.ResumeFind(HEADER_END);
    const std::string_view l_s_bytes = m_c_accumulator.Bytes();
    if (l_u_end != std::string_view::npos) {
        m_b_needsBytes = false;
        const std::size_t l_u_length = l_u_end + HEADER_END.size();
        const eParseState l_e_next = AcceptHeader(l_s_bytes.substr(0, l_u_length));
        m_c_accumulator.Consume(l_u_length);
        return l_e_next;
    }
    if (l_s_bytes.size() >= MAX_WAITING_HEADER) {
        syslog(LOG_ERR, "%s - Entity Header length exceeds maximum allowable length.", FUNCTION);
        m_e_outcome = eFAILED;
    } else if (m_u_remaining == 0) {
        AcceptClosingBoundary();
    }
    m_b_needsBytes = true;
    return eREAD_ENTITY_HEADER;
}

eParseState cMultipartParser::AcceptHeader(std::string_view a_s_header)
{
    if (a_s_header.substr(0, m_s_delimiter.size()) != m_s_delimiter) {
        syslog(LOG_ERR, "%s - Entity header (%s) does NOT begin with boundary (%s).", FUNCTION,
               std::string(a_s_header).c_str(), m_s_delimiter.c_str());
        m_e_outcome = eFAILED;
        return eREAD_ENTITY_HEADER;
    }
    m_s_fieldName = HeaderAttribute(a_s_header, "name=");
    if (m_s_fieldName.empty()) {
        syslog(LOG_ERR, "%s - Entity Header does NOT contain name attribute.", FUNCTION);
        m_e_outcome = eFAILED;
        return eREAD_ENTITY_HEADER;
    }
    syslog(LOG_DEBUG, "%s - Parsed name attribute from entity header (%s)", FUNCTION,
           m_s_fieldName.c_str());
    return a_s_header.find("filename=") == std::string_view::npos ? eREAD_ENTITY_BODY
                                                                  : AcceptFileHeader(a_s_header);
}

eParseState cMultipartParser::AcceptFileHeader(std::string_view a_s_header)
{
    const std::string l_s_clientName = HeaderAttribute(a_s_header, "filename=");
    m_s_uploadPath.clear();
    if (!l_s_clientName.empty()) {
        m_s_uploadPath = UploadPath(l_s_clientName);
        syslog(LOG_DEBUG, "%s - Parsed filename attribute from entity header (%s).", FUNCTION,
               m_s_uploadPath.c_str());
        m_m_postData.emplace(m_s_fieldName, m_s_uploadPath);
    }
    m_s_fieldName.clear();
    return eWRITE_ENTITY_AS_FILE;
}

void cMultipartParser::AcceptClosingBoundary()
{
    const std::string_view l_s_bytes = m_c_accumulator.Bytes();
    if (l_s_bytes.size() != m_s_delimiter.size() + CLOSING_END.size()) {
        syslog(LOG_ERR, "%s - Entity Header is NOT correct last header: BAD LENGTH", FUNCTION);
        m_e_outcome = eFAILED;
    } else if (l_s_bytes.find(CLOSING_END) != m_s_delimiter.size()) {
        syslog(LOG_ERR, "%s - Entity Header is NOT correct last header: BAD FORMAT", FUNCTION);
        m_e_outcome = eFAILED;
    } else {
        m_c_accumulator.Consume(l_s_bytes.size());
        m_b_closed = true;
        syslog(LOG_DEBUG, "%s - Found END-OF-POST for file upload.", FUNCTION);
    }
}

// Takes what certainly belongs to the content of the part: everything before the delimiter or, if
// none has been found, everything except a tail that may begin one. In the second case the next
// step needs more bytes. The tail begins at the first CR that is near enough to the end, whatever
// follows it: the result of a body that was cut off must not depend on how its bytes arrived.
std::string_view cMultipartParser::TakeContent()
{
    const std::string_view l_s_bytes = m_c_accumulator.Bytes();
    std::size_t l_u_length = FindText(l_s_bytes, m_s_delimiter, 0);
    m_b_needsBytes = l_u_length == std::string_view::npos;
    if (m_b_needsBytes) {
        const std::size_t l_u_near = std::min(l_s_bytes.size(), m_s_delimiter.size() - 1);
        l_u_length = std::min(l_s_bytes.find('\r', l_s_bytes.size() - l_u_near), l_s_bytes.size());
    }
    m_c_accumulator.Consume(l_u_length);
    return l_s_bytes.substr(0, l_u_length);
}

eParseState cMultipartParser::ReadBody()
{
    m_s_fieldValue += TakeContent();
    if (m_b_needsBytes) {
        return eREAD_ENTITY_BODY;
    }
    syslog(LOG_DEBUG, "%s - Parsed entity value (%s) for name (%s)", FUNCTION,
           m_s_fieldValue.c_str(), m_s_fieldName.c_str());
    m_m_postData.emplace(std::move(m_s_fieldName), std::move(m_s_fieldValue));
    m_s_fieldName.clear();
    m_s_fieldValue.clear();
    return eREAD_ENTITY_HEADER;
}

eParseState cMultipartParser::WriteFile()
{
    if (m_u_completedFiles != 0) {
        syslog(LOG_ERR, "%s - POST data contains multiple file uploads: Unsupported.", FUNCTION);
        m_e_outcome = eFAILED;
        return eWRITE_ENTITY_AS_FILE;
    }
    if (m_p_uploadFile == nullptr && !OpenUpload()) {
        m_e_outcome = eABANDONED;
        return eWRITE_ENTITY_AS_FILE;
    }

    Write(TakeContent());
    if (m_b_needsBytes) {
        return eWRITE_ENTITY_AS_FILE;
    }
    ++m_u_completedFiles;
    return eREAD_ENTITY_HEADER;
}

bool cMultipartParser::OpenUpload()
{
    if (m_s_uploadPath.empty()) {
        syslog(LOG_ERR, "%s() - Unable to open tmp file for writing, filename is empty", FUNCTION);
        return false;
    }
    m_p_uploadFile.reset(OpenUploadFile(m_s_uploadPath));
    if (m_p_uploadFile == nullptr) {
        syslog(LOG_ERR, "%s() - Unable to open tmp file %s for writing: error %s", FUNCTION,
               m_s_uploadPath.c_str(), std::strerror(errno));
        return false;
    }
    m_s_storedUpload = m_s_uploadPath;
    // Unbuffered, so what fwrite reports as written is in the file, and large chunks are not split.
    std::setvbuf(m_p_uploadFile.get(), nullptr, _IONBF, 0);
    return true;
}

void cMultipartParser::Write(std::string_view a_s_chunk)
{
    // After a short write (a full disk) the next chunk is written where that one ended.
    fseeko(m_p_uploadFile.get(), m_i_writeOffset, SEEK_SET);
    m_i_writeOffset += static_cast<off_t>(
        std::fwrite(a_s_chunk.data(), 1, a_s_chunk.size(), m_p_uploadFile.get()));
}

bool cMultipartParser::Finish()
{
    m_p_uploadFile.reset();
    if (m_e_outcome == eABANDONED) {
        return false;
    }
    // A value that was cut off after a CR may have been cut off inside a delimiter.
    const bool l_b_success =
        m_e_outcome == eGOING && m_s_fieldValue.find('\r') == std::string::npos;
    syslog(LOG_DEBUG, "%s - returning %d", FUNCTION, l_b_success ? 1 : 0);
    return l_b_success;
}

} // namespace

bool cCGI::ParseMultipartData()
{
    const sBlockingOutput l_c_output;
    m_b_bodyComplete = false;
    m_s_storedUpload.clear();
    syslog(LOG_DEBUG, "cCGI::%s", FUNCTION);

    if (fcntl(STDIN_FILENO, F_SETFL, fcntl(STDIN_FILENO, F_GETFL) | O_NONBLOCK) == -1) {
        syslog(LOG_ERR, "%s - Unable to set STDIN to non-blocking.", FUNCTION);
        return false;
    }
    // A pipe holds 64 KiB by default, so a fast client would wait for every read. This fails if
    // standard input is not a pipe.
    fcntl(STDIN_FILENO, F_SETPIPE_SZ, static_cast<int>(2 * READ_BUFFER_SIZE));

    const std::string* l_p_length = Environment("CONTENT_LENGTH");
    if (l_p_length == nullptr) {
        syslog(LOG_ERR, "%s - Unable to get CONTENT_LENGTH value from env.", FUNCTION);
        return false;
    }
    const std::string* l_p_type = Environment("CONTENT_TYPE");
    if (l_p_type == nullptr) {
        syslog(LOG_ERR, "%s - Unable to get CONTENT_TYPE value from env.", FUNCTION);
        return false;
    }
    if (l_p_type->find("boundary") == std::string::npos) {
        syslog(LOG_ERR, "%s - No boundary found in content type.", FUNCTION);
        return false;
    }
    const std::size_t l_u_equals = l_p_type->find('=');
    if (l_u_equals == std::string::npos) {
        syslog(LOG_ERR, "%s - No (=) found in boundary assignment (%s)", FUNCTION,
               l_p_type->c_str());
        return false;
    }

    // 64 bits even if long has 32: the count of a body past 4 GiB must not wrap.
    const std::uint64_t l_u_length = std::strtoull(l_p_length->c_str(), nullptr, 10);
    cMultipartParser l_c_parser(l_p_type->substr(l_u_equals + 1), l_u_length, m_p_readBuffer,
                                READ_BUFFER_SIZE, m_m_postData, m_s_storedUpload);
    eParseState l_e_parseState = eREAD_ENTITY_HEADER;
    while (l_c_parser.Refill()) {
        switch (l_e_parseState) {
        case eREAD_ENTITY_HEADER:
            l_e_parseState = l_c_parser.ReadHeader();
            break;
        case eREAD_ENTITY_BODY:
            l_e_parseState = l_c_parser.ReadBody();
            break;
        case eWRITE_ENTITY_AS_FILE:
            l_e_parseState = l_c_parser.WriteFile();
            break;
        }
    }
    const bool l_b_success = l_c_parser.Finish();
    m_b_bodyComplete = l_c_parser.FoundClosingBoundary();
    return l_b_success;
}
