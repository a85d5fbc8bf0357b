#ifndef CGILIB_H
#define CGILIB_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// One CGI request (RFC 3875), and a toolkit that generates HTML pages.
///
/// A page or handler builds one cCGI, calls ParseData() once and reads the form fields from
/// GetData(). All texts are byte strings: nothing is converted between character sets.
///
///     cCGI l_c_request(cCGI::eXHTML_1_0_STRICT);
///     if (l_c_request.ParseData()) {
///         std::string l_s_name = l_c_request.GetField("name");
///     }
///
/// Pass it by reference: a copied object, a moved one too, has lost the request.
/// For one thread. No operation throws an exception of its own; std::bad_alloc passes through.
class cCGI
{
public:
    /// Form data: field name to field value, in ascending byte order of the names. Of several
    /// fields with one name the first counts, so a group of check boxes or a list with several
    /// selections cannot be read back: give every box a name of its own.
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
    /// neither IsGetRsp() nor IsPostRsp(). Moving copies.
    cCGI(const cCGI& a_c_source);

    /// Copies the indent only.
    cCGI& operator=(const cCGI& a_c_source);

    /// Leaves an uploaded file where it was stored.
    virtual ~cCGI();

    // ---- Parsing ----

    /// Parses the query string of a GET request or the body of a POST request, never both. Returns
    /// false for any other method and for a body that could not be read; fields stored before a
    /// fault remain. Call it once: a body can be read only once.
    /// HEAD is answered like GET: call ParseGetData(), the server drops the body. To any other
    /// method answer with the status 405, as BeginHtml() tells.
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
    /// and file bytes stored before it stay. A file field left empty is such a fault, and a second
    /// file: put a file that need not be sent into a form of its own, or last. Progress is told at
    /// LOG_DEBUG. Memory is that of the text fields; a file passes through.
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

    /// The value of a field in what GetData() gives, or the default if there is no such field. An
    /// empty value is a value. Adds nothing to the data, unlike GetData()["name"].
    std::string GetField(const std::string& a_s_name, const std::string& a_s_default = "") const;

    /// SERVER_NAME followed directly by SCRIPT_NAME: "box/cgi-bin/query". No scheme, no port.
    std::string Url();

    // References into the object, valid as long as it lives.

    /// The captured variables; one that was not set has an empty value. Others, such as
    /// HTTP_COOKIE, HTTP_HOST and HTTPS, are not captured: std::getenv() tells them.
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

    // ==== HTML ====
    //
    // BeginHtml() to EndForm() and the Disp operations write to standard output; every other
    // operation returns its text and writes nothing. Nothing is escaped: names, values and contents
    // are copied byte for byte. What comes from a client goes through EscapeHtml() first
    // (cgilib_escape.h).
    //
    // Not well-formed XML, at the XHTML levels too: CheckBoxGroup(), RadioGroup(), ResetButton(),
    // the listings of Disp operations, and an attribute without value where it is minimized. Write
    // {"checked", "checked"} instead of {"checked", ""}.
    //
    // The examples show XHTML at indent 0; HTML 4.01 closes an element without end tag by ">"
    // instead of " />" (XHTML 1.0, C.2). The indent counts blanks. \n stands for a line end, and
    // a one-line example ends in one unless the text says otherwise.

    /// Attribute name to value. Attributes appear in the byte order of their names.
    using tAttributes = std::map<std::string, std::string>;

    using tStrings = std::vector<std::string>;

    /// Option text to the attributes of that option.
    using tOptions = std::map<std::string, tAttributes>;

    /// A decoration of text, named like its tag.
    enum eTextDisplayID : std::uint8_t
    {
        eDISPLAY_ACRONYM = 0,
        eDISPLAY_B = 1,
        eDISPLAY_CENTER = 2,
        eDISPLAY_EM = 3,
        eDISPLAY_H1 = 4,
        eDISPLAY_H2 = 5,
        eDISPLAY_H3 = 6,
        eDISPLAY_H4 = 7,
        eDISPLAY_H5 = 8,
        eDISPLAY_H6 = 9,
        eDISPLAY_I = 10,
        eDISPLAY_STRIKE = 11,
        eDISPLAY_STRONG = 12,
        eDISPLAY_SUB = 13,
        eDISPLAY_SUP = 14,
        eDISPLAY_TT = 15,
        eDISPLAY_U = 16,
    };

    // ---- Page framing ----

    /// Writes everything up to the start of the body: the CGI header, the XML declaration, the
    /// document type, the head with the title (no title element if it is empty) and the head lines,
    /// and <body> with the body attributes as they are given: complete ones, such as class="main".
    /// Each head line gets a line end. Flushes after every line and sets the indent to 2.
    /// Status, Set-Cookie and other header fields go out before it, a line each:
    /// std::cout << "Status: 405 Method Not Allowed\nAllow: GET, POST\n";
    /// The XML declaration always says iso-8859-1. Browsers do not go by it; a page in UTF-8 has as
    /// its first head line
    /// Meta({{"http-equiv", "Content-Type"}, {"content", "text/html; charset=utf-8"}}).
    void BeginHtml(const std::string& a_s_title, const tStrings& a_c_bodyAttributes,
                   const tStrings& a_c_headLines);

    /// Writes </body> and </html>. The indent stays.
    void EndHtml() const;

    /// Writes <form action="/cgi" method="post"> at the indent and raises the indent by 1.
    void BeginForm(const tAttributes& a_m_attributes);

    /// Lowers the indent by 1 and writes </form> at it. At 0 the indent stays.
    void EndForm();

    // Texts of the page between these, most of them made by what follows.

    /// Writes the text at the indent, a line end, and flushes.
    void DispLine(std::string a_s_text) const;
    /// Writes the text at the indent and nothing after it.
    void DispText(std::string a_s_text) const;

    // ---- Attributes ----

    /// The attributes of an element without content, " alt=\"\" src=\"a.png\"": without line end.
    std::string InflateAtomicTag(const tAttributes& a_m_attributes) const;

    /// The attributes, the end of the start tag and the content: " class=\"x\" nowrap>text". An
    /// attribute without value is minimized to its name (HTML 4.01, 3.3.4). The indent's blanks
    /// stand before the content, also before an empty one. With a_b_newline a line end stands
    /// before them, and one after the content unless it is empty or ends with one.
    std::string InflateDiatomicTag(const tAttributes& a_m_attributes,
                                   const std::string& a_s_content, bool a_b_newline) const;

    // ---- Elements without end tag ----
    // Not indented.

    /// <input type="button" name="n" value="v" />
    std::string Button(const tAttributes& a_m_attributes, const std::string& a_s_value) const;
    /// <input type="checkbox" name="n" />
    std::string CheckBox(const tAttributes& a_m_attributes) const;
    /// <input type="submit" name="n" value="Reset to Defaults" />
    std::string DefaultsButton(const tAttributes& a_m_attributes) const;
    /// <input type="file" name="n" />
    std::string FileUpload(const tAttributes& a_m_attributes) const;
    /// <frame src="menu.html" name="n" />
    std::string Frame(const tAttributes& a_m_attributes, const std::string& a_s_source) const;
    /// <input type="hidden" name="n" value="v" />
    std::string Hidden(const tAttributes& a_m_attributes, const std::string& a_s_value) const;
    /// <hr class="c" />
    std::string Hr(const tAttributes& a_m_attributes) const;
    /// <img src="a.png" alt="A" />
    std::string Img(const tAttributes& a_m_attributes, const std::string& a_s_source) const;
    /// <input type="image" src="a.png" />
    std::string ImgButton(const tAttributes& a_m_attributes) const;
    /// <link href="a.css" rel="stylesheet" />
    std::string Link(const tAttributes& a_m_attributes) const;
    /// <meta content="10" http-equiv="refresh" />
    std::string Meta(const tAttributes& a_m_attributes) const;
    /// <input type="password" name="n" />
    std::string Password(const tAttributes& a_m_attributes) const;
    /// <input type="radio" name="n" />
    std::string RadioButton(const tAttributes& a_m_attributes) const;
    /// <input type="reset" name="n" value="v">, in XHTML too, and without line end.
    std::string ResetButton(const tAttributes& a_m_attributes, const std::string& a_s_value) const;
    /// <input type="submit" name="n" value="v" />
    std::string Submit(const tAttributes& a_m_attributes, const std::string& a_s_value) const;
    /// <input type="text" name="n" value="v" />
    std::string Text(const tAttributes& a_m_attributes, const std::string& a_s_value) const;

    // ---- Elements with content ----
    // Attributes and content as InflateDiatomicTag() gives them.

    /// <a href="/">\ncontent\n</a>, without indent before it and line end after it.
    std::string A(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    /// "  <div  id="d">\ncontent\n  </div>", or "  <div  id="d"></div>" if there is no content.
    std::string Div(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    /// "  <font color="red">text</font>", without line end.
    std::string Font(const tAttributes& a_m_attributes, const std::string& a_s_text) const;
    /// "  <form action="/cgi">\ncontent\n  </form>". Unlike BeginForm() it leaves the indent alone.
    std::string Form(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    /// "  <option value="1">label  </option>"
    std::string Option(const tAttributes& a_m_attributes, const std::string& a_s_label) const;
    /// Like Div(): "  <span  id="s">\ncontent\n  </span>"
    std::string Span(const tAttributes& a_m_attributes, const std::string& a_s_content) const;

    /// <script language="javascript" type="text/javascript">\n <!--\ncode //-->\n</script>: a
    /// comment hides the code from old browsers (HTML 4.01, 18.3.2). The code should end in a line
    /// end, for none is added. Without code <script language="javascript"
    /// type="text/javascript"></script>.
    std::string Script(const tAttributes& a_m_attributes, const std::string& a_s_code) const;

    /// <textarea cols="40" rows="4" name="n">\ncontent\n</textarea>, sized in lines and characters;
    /// from 2^31 up a size appears negative. Empty values are minimized; nothing is indented.
    /// The line end after the content comes back as a part of the field: cut "\r\n" off its end, or
    /// the text grows each time.
    std::string TextArea(const tAttributes& a_m_attributes, const std::string& a_s_content,
                         unsigned int a_u_rows, unsigned int a_u_cols) const;

    // ---- Choice lists ----
    // <select name="n">\n, a line for each choice, </select>; not indented. The lines are
    //   of values    " <option value="v">v</option>". The attribute "DEFAULT" does not appear: it
    //                names the value that is marked, " <option selected="selected" value=...".
    //   of options   " <option value="1">text</option>", with the attributes of the option, an
    //                empty value minimized. "DEFAULT" is an attribute like any other.
    //   of items     the items as they are, for example Option() texts. "DEFAULT" likewise.
    // DEFAULT is compared as it is given: escape both it and the values, or neither.
    // A size counts visible lines; from 2^31 up it appears negative.

    /// <select name="n">...
    std::string PopupMenu(const tAttributes& a_m_attributes, const tStrings& a_c_values) const;
    std::string PopupMenu(const tAttributes& a_m_attributes, const tOptions& a_m_options) const;
    std::string DropDownList(const tAttributes& a_m_attributes, const tStrings& a_c_items) const;

    /// <select name="n" size="5">...
    std::string ScrollList(unsigned int a_u_size, const tAttributes& a_m_attributes,
                           const tStrings& a_c_values) const;
    std::string ScrollList(unsigned int a_u_size, const tAttributes& a_m_attributes,
                           const tOptions& a_m_options) const;

    /// <select size="5" name="n">...
    std::string ScrollList(const tAttributes& a_m_attributes, const tStrings& a_c_items,
                           unsigned int a_u_size) const;

    // For each value, at the indent and without line end after the label. "DEFAULT" names the value
    // that is marked; checked="checked" takes its place among the attributes.
    // A value stands beside its box, but is no label that a screen reader tells or a click reaches:
    // accessible pages use CheckBox() and RadioButton() with a <label for="id">.

    /// <input type=checkbox  name="n" value="v" />\nv
    std::string CheckBoxGroup(const tAttributes& a_m_attributes, const tStrings& a_c_values) const;
    /// <input type=radio  name="n" value= "v" />\nv
    std::string RadioGroup(const tAttributes& a_m_attributes, const tStrings& a_c_values) const;

    // ---- Tables and framesets ----
    // The content stands as it is, without line end. Of the elements of a list, cells and frames
    // get the indent and a line end, rows nothing. End tags stand at the indent.

    /// <table border="1">\ncontent</table>; of a list <table  border="1">\nrows</table>.
    std::string Table(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Table(const tAttributes& a_m_attributes, const tStrings& a_c_rows) const;
    /// " <tr align="left">\ncontent </tr>"
    std::string Tr(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Tr(const tAttributes& a_m_attributes, const tStrings& a_c_cells) const;
    /// "  <td nowrap>\ncontent\n  </td>", as InflateDiatomicTag() gives it; of a list a cell each.
    std::string Td(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Td(const tAttributes& a_m_attributes, const tStrings& a_c_contents) const;
    /// " <frameset cols="50%,50%">\ncontent </frameset>"
    std::string Frameset(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Frameset(const tAttributes& a_m_attributes, const tStrings& a_c_frames) const;

    // ---- Text ----

    /// <h3>text</h3>, without line end. An identifier outside the enumeration ends the process with
    /// a failed assertion, in a Release build too.
    std::string DecorateText(eTextDisplayID a_e_display, std::string a_s_text) const;

    /// a_u_count times <br />\n, in HTML 4.01 <br>\n; nothing at a level outside eCompliance.
    std::string Br(unsigned int a_u_count) const;

    // ---- Listings for diagnosis ----
    // They show the client's texts unescaped: never on a public page.

    /// Writes "key = 'value'<BR>" at the indent, a flushed line for each variable.
    void DispEnvironment() const;
    /// Writes "key = 'value'<BR>" at the indent, a flushed line for each field.
    void DispGetData() const;
    /// Writes "key = 'value'<br>" at the indent, a flushed line for each field.
    void DispPostData() const;

    // ---- Braced lists ----
    // Lists stand in one pair of braces, Tr(attributes, {"a", l_s_b}), and options are pairs,
    // PopupMenu(attributes, {{"a", {}}, {"b", {{"value", "2"}}}}). For two iterators write
    // tStrings(l_c_begin, l_c_end).
    // Without these overloads the braces could also mean one std::string, or one map, made of two
    // iterators.

    using tBracedList = std::initializer_list<std::string>;
    std::string Table(const tAttributes& a_m_attributes, tBracedList a_c_rows) const
    {
        return Table(a_m_attributes, tStrings(a_c_rows));
    }
    std::string Tr(const tAttributes& a_m_attributes, tBracedList a_c_cells) const
    {
        return Tr(a_m_attributes, tStrings(a_c_cells));
    }
    std::string Td(const tAttributes& a_m_attributes, tBracedList a_c_contents) const
    {
        return Td(a_m_attributes, tStrings(a_c_contents));
    }
    std::string Frameset(const tAttributes& a_m_attributes, tBracedList a_c_frames) const
    {
        return Frameset(a_m_attributes, tStrings(a_c_frames));
    }

    /// A value in braces: what turns into a std::string by itself. An option without attributes,
    /// {"b", {}}, must not turn into one, and two std::strings must not count as two iterators.
    struct sBracedValue
    {
        template<class tText, class = typename std::enable_if<
                                  std::is_convertible<tText, std::string>::value>::type>
        sBracedValue(tText&& a_text) : m_s_text(std::forward<tText>(a_text))
        {
        }
        operator std::string() const { return m_s_text; }
        std::string m_s_text;
    };
    using tBracedValues = std::initializer_list<sBracedValue>;
    std::string PopupMenu(const tAttributes& a_m_attributes, tBracedValues a_c_values) const
    {
        return PopupMenu(a_m_attributes, tStrings(a_c_values.begin(), a_c_values.end()));
    }
    std::string ScrollList(unsigned int a_u_size, const tAttributes& a_m_attributes,
                           tBracedValues a_c_values) const
    {
        return ScrollList(a_u_size, a_m_attributes, tStrings(a_c_values.begin(), a_c_values.end()));
    }

    // Templates, so that empty braces mean no values.
    using tBracedOptions = std::initializer_list<tOptions::value_type>;
    template<int = 0>
    std::string PopupMenu(const tAttributes& a_m_attributes, tBracedOptions a_c_options) const
    {
        return PopupMenu(a_m_attributes, tOptions(a_c_options));
    }
    template<int = 0>
    std::string ScrollList(unsigned int a_u_size, const tAttributes& a_m_attributes,
                           tBracedOptions a_c_options) const
    {
        return ScrollList(a_u_size, a_m_attributes, tOptions(a_c_options));
    }

private:
    // What one read of a multipart body may take.
    static constexpr std::size_t READ_BUFFER_SIZE = 131072;

    // The value of a captured variable, or null in a copied object, which has none.
    const std::string* Environment(const char* a_p_name) const;

    // Splits and decodes URL-encoded text, for both kinds of request.
    static void StoreFields(const std::string& a_s_text, tFormData& a_m_data);

    // ---- HTML ----

    // What depends on the compliance level. The document type is empty where there is none.
    const char* DocumentType() const;
    const char* EmptyElementEnd() const;
    const char* LineBreak() const;

    // NOLINTNEXTLINE(modernize-return-braced-init-list): in braces it would mean two characters.
    std::string Indent() const { return std::string(m_u_indent, ' '); }

    // ` name="value"`
    static std::string Attribute(const std::string& a_s_name, const std::string& a_s_value);

    // Like InflateAtomicTag(), but an empty value leaves the name alone.
    static std::string MinimizedAttributes(const tAttributes& a_m_attributes);

    static std::string Decimal(unsigned int a_u_number);

    // The items, each with a text before and one after it.
    static std::string Listed(const tStrings& a_c_items, const std::string& a_s_before,
                              const std::string& a_s_after);

    // The families of elements; see their users for what tells the members apart.
    std::string EmptyElement(const std::string& a_s_opening, const tAttributes& a_m_attributes,
                             const std::string& a_s_value = "") const;
    std::string Container(const char* a_p_opening, const tAttributes& a_m_attributes,
                          const std::string& a_s_content, const char* a_p_closing) const;
    std::string Enclosed(const std::string& a_s_opening, const tAttributes& a_m_attributes,
                         const std::string& a_s_content, const char* a_p_closing) const;
    std::string Group(const char* a_p_opening, const char* a_p_value,
                      const tAttributes& a_m_attributes, const tStrings& a_c_values) const;
    static std::string OptionLines(const tOptions& a_m_options);

    eCompliance m_e_compliance;
    tFormData m_m_environment;
    tFormData m_m_getData;
    tFormData m_m_postData;
    std::uint32_t m_u_indent = 0;
    bool m_b_fileUpload = false;
    std::string m_s_uploadFilename;
    std::unique_ptr<char[]> m_p_readBuffer; // multipart bodies pass through it
};

std::ostream& operator<<(std::ostream& a_c_stream, const cCGI& a_c_request);

/// The number that a zero-terminated text of hexadecimal digits gives. Any other character counts
/// as its low four bits, plus 9 if bit 0x40 is set, and a digit above 15 carries: "zz" gives 323.
/// Past 32 bits the high bits are lost.
// NOLINTNEXTLINE(readability-non-const-parameter): callers hold a pointer to this very type.
int Htoi(char* a_p_digits);

#endif
