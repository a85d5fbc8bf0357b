#ifndef CGILIB_H
#define CGILIB_H

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>

/// One CGI request (RFC 3875), and a toolkit that generates HTML pages.
///
/// A page or handler builds one cCGI, calls ParseData() once and reads the form fields from
/// GetData(). All texts are byte strings: nothing is converted between character sets.
///
///     cCGI l_c_request(cCGI::eXHTML_1_0_STRICT);
///     if (l_c_request.ParseData()) {
///         std::string l_s_name = l_c_request.GetData()["name"];
///     }
///
/// For one thread. No operation throws an exception of its own; std::bad_alloc passes through.
class cCGI
{
public:
    /// Form data: field name to field value, in ascending byte order of the names. Of several
    /// fields with one name the first counts.
    using tFormData = std::map<std::string, std::string>;

    /// Markup that the HTML side generates. The request side does not read it.
    enum eCompliance : std::uint8_t
    {
        eHTML_LEVEL_0 = 0, ///< HTML 4.01 Transitional, like the four levels that follow.
        eHTML_LEVEL_1 = 1,
        eHTML_LEVEL_2 = 2,
        eHTML_LEVEL_3 = 3,
        eHTML_LEVEL_4 = 4,
        eXHTML_1_0_FRAMESET = 5,
        eXHTML_1_0_STRICT = 6,
        eXHTML_1_0_TRANSITIONAL = 7,
        eXHTML_NO_DOCTYPE = 8, ///< XHTML syntax without a document type declaration.
    };

    // ---- The object ----

    /// Takes a snapshot of 21 environment variables (those of RFC 3875 with a few that servers add)
    /// and allocates the read buffer. Reads nothing from standard input yet.
    explicit cCGI(eCompliance a_e_compliance);

    /// The copy takes the source's compliance level, indent, upload flag, upload file name and the
    /// bytes of its read buffer; its environment, GET data and POST data are empty, so it satisfies
    /// neither IsGetRsp() nor IsPostRsp().
    cCGI(const cCGI& a_c_source);

    /// Copies the indent only.
    cCGI& operator=(const cCGI& a_c_source);

    /// Leaves an uploaded file where it was stored.
    virtual ~cCGI();

    // ---- Parsing ----

    /// Parses the query string of a GET request or the body of a POST request, never both. Returns
    /// false for any other method and for a body that could not be read; fields stored before a
    /// fault remain. Call it once: a body can be read only once.
    bool ParseData();

    /// Whether REQUEST_METHOD is "GET" or "get"; no other spelling counts.
    bool IsGetRsp() const;

    /// Whether REQUEST_METHOD is "POST" or "post"; no other spelling counts.
    bool IsPostRsp() const;

    /// Splits QUERY_STRING into the GET data and decodes it. Fields end at "&", names at the first
    /// "="; a segment without "=" becomes part of the next field's name, at the end of the text it
    /// is dropped. Returns true, also when nothing was stored; false only for a copied object,
    /// which has no QUERY_STRING.
    bool ParseGetData();

    /// Reads the body of a POST request into the POST data. A CONTENT_TYPE that contains
    /// "multipart/form-data" is handed to ParseMultipartData(). Any other body counts as
    /// URL-encoded: at most CONTENT_LENGTH bytes are read, up to the first line feed or the end of
    /// input, and the text ends at the first NUL; it is split like a query string. No byte past
    /// CONTENT_LENGTH is waited for.
    /// Returns false, with standard input untouched, when CONTENT_LENGTH is missing, is not a
    /// positive number or exceeds 16 MiB.
    bool ParsePostData();

    /// Reads a multipart/form-data body (RFC 7578) of CONTENT_LENGTH bytes. Fields go to the POST
    /// data as raw bytes; the content of one file part at most is streamed into "/tmp/" + the base
    /// name that the client gave, and its path stored under the part's field name. Standard input
    /// is made non-blocking and stays so. The boundary is what follows the first "=" of
    /// CONTENT_TYPE, to its end and with any quotes; the body is exactly the parts and the closing
    /// boundary, without preamble or epilogue.
    /// Returns false at the first fault, which is told to syslog at LOG_ERR (the end of input
    /// before CONTENT_LENGTH bytes, or inside a part after a CR, goes without a message); fields
    /// and file bytes stored before it stay. Progress is told at LOG_DEBUG. Memory is that of the
    /// text fields; a file passes through.
    bool ParseMultipartData();

    /// Decodes application/x-www-form-urlencoded text in place, in linear time: first every "+"
    /// becomes a blank, then every "%" and the two characters after it one byte (a single one, if
    /// no second follows). The characters are not tested: other than hexadecimal digits count as
    /// Htoi() takes them. A "%" at the end stays.
    static void NormalizeData(std::string& a_s_text);

    // ---- Access ----

    /// Replaces a field name by the field's value in the POST data and returns true; leaves it
    /// unchanged and returns false if there is no such field. Never looks at the GET data.
    bool GetFormElementVal(std::string& a_s_name) const;

    /// SERVER_NAME followed directly by SCRIPT_NAME: "box/cgi-bin/query". No scheme, no port.
    std::string Url();

    // References into the object, valid as long as it lives.

    /// The captured variables; one that was not set has an empty value.
    tFormData& GetEnvironment() { return m_m_environment; }
    tFormData& GetGetData() { return m_m_getData; }
    tFormData& GetPostData() { return m_m_postData; }

    /// The POST data for a POST request, otherwise the GET data.
    tFormData& GetData() { return IsPostRsp() ? m_m_postData : m_m_getData; }

    /// Always empty after a parse: the path of a stored upload is the value of its form field.
    std::string& GetUploadFilename() { return m_s_uploadFilename; }

    /// Always false after a parse, like GetUploadFilename().
    bool IsFileUpload() const { return m_b_fileUpload; }

    /// Writes a short diagnostic text, the indent in it, and flushes the stream.
    friend std::ostream& operator<<(std::ostream& a_c_stream, const cCGI& a_c_request);

private:
    // What one read of a multipart body may take.
    static constexpr std::size_t READ_BUFFER_SIZE = 131072;

    // The value of a captured variable, or null in a copied object, which has none.
    const std::string* Environment(const char* a_p_name) const;

    // Splits and decodes URL-encoded text, for both kinds of request.
    static void StoreFields(const std::string& a_s_text, tFormData& a_m_data);

    eCompliance m_e_compliance;
    tFormData m_m_environment;
    tFormData m_m_getData;
    tFormData m_m_postData;
    std::uint32_t m_u_indent = 0;
    bool m_b_fileUpload = false;
    std::string m_s_uploadFilename;
    std::unique_ptr<char[]> m_p_readBuffer; // multipart bodies pass through it
};

/// The number that a zero-terminated text of hexadecimal digits gives. Any other character counts
/// as its low four bits, plus 9 if bit 0x40 is set, and a digit above 15 carries: "zz" gives 323.
/// Past 32 bits the high bits are lost.
// NOLINTNEXTLINE(readability-non-const-parameter): callers hold a pointer to this very type.
int Htoi(char* a_p_digits);

#endif
