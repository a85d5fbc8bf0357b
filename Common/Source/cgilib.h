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
/// A page or handler creates one cCGI, calls ParseData() once and reads the form fields from
/// GetData(). All strings are byte strings: nothing is converted between character sets.
///
///     cCGI l_c_request(cCGI::eXHTML_1_0_STRICT);
///     if (l_c_request.ParseData()) {
///         std::string l_s_name = l_c_request.GetField("name");
///     }
///
/// Pass it by reference: a copied or moved object has no environment and no fields.
/// Use it from one thread only. No operation throws an exception of its own; std::bad_alloc
/// propagates.
class cCGI
{
public:
    /// Form data: field name to field value, in ascending byte order of the names. If several
    /// fields have the same name, the first one wins, so a group of check boxes or a list with
    /// several selections cannot be read back: give every box a name of its own.
    using tFormData = std::map<std::string, std::string>;

    /// The markup to generate. Parsing does not depend on it.
    enum eCompliance : std::uint8_t
    {
        eHTML_LEVEL_0 = 0, ///< HTML 4.01 Transitional, like the next four levels.
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

    /// Takes a snapshot of 21 environment variables (those of RFC 3875 and a few that servers add)
    /// and allocates the read buffer. Reads nothing from standard input.
    explicit cCGI(eCompliance a_e_compliance);

    /// The copy has the source's compliance level, indent, upload flag, upload file name and read
    /// buffer contents. Its environment, GET data and POST data are empty: IsGetRsp(), IsPostRsp()
    /// and all parsers return false. A move is a copy.
    cCGI(const cCGI& a_c_source);

    /// Copies only the indent.
    cCGI& operator=(const cCGI& a_c_source);

    /// Leaves an uploaded file where it was stored.
    virtual ~cCGI();

    // ---- Parsing ----

    /// Parses the query string of a GET request or the body of a POST request, never both. Returns
    /// false for any other method and for a body that could not be read; fields stored before an
    /// error remain. Call it once: a body can be read only once.
    /// For HEAD, call ParseGetData() and answer as for GET: the server drops the body. For any
    /// other method, answer with status 405, as shown at BeginHtml().
    bool ParseData();

    /// Whether the last parse read the whole body: every byte that CONTENT_LENGTH announced (or, of
    /// a URL-encoded body, everything up to its first line feed) and, of a multipart body, the
    /// closing boundary. True if there was none to read: after ParseGetData(). False after end of
    /// input, a read error, a refused body or any other fault in it, before the first parse, and in
    /// a copy. Says nothing about how much of an upload the disk took.
    /// A page that stores what it was sent asks this first: a lost connection may cut off the last
    /// field.
    bool IsBodyComplete() const { return m_b_bodyComplete; }

    /// Whether REQUEST_METHOD is "GET" or "get"; no other spelling counts.
    bool IsGetRsp() const;

    /// Whether REQUEST_METHOD is "POST" or "post"; no other spelling counts.
    bool IsPostRsp() const;

    /// Splits QUERY_STRING into fields, decodes them and stores them in the GET data. A field ends
    /// at "&", its name at the first "=". A segment without "=" becomes part of the next field's
    /// name; at the end of the text it is dropped. Returns true, even if nothing was stored; false
    /// only for a copied object, which has no QUERY_STRING.
    bool ParseGetData();

    /// Reads the body of a POST request into the POST data. Passes a body whose CONTENT_TYPE
    /// contains "multipart/form-data" to ParseMultipartData(). Treats any other body as
    /// URL-encoded: reads at most CONTENT_LENGTH bytes, up to the first line feed or the end of
    /// input, truncates the text at the first NUL, and splits and decodes it like a query string.
    /// Never waits for a byte past CONTENT_LENGTH. Reads C's stdin: to redirect std::cin has no
    /// effect.
    /// For a URL-encoded body, returns false, with standard input untouched, if CONTENT_LENGTH is
    /// missing, is not a positive number or exceeds 16 MiB. A body cut off by a lost connection is
    /// taken as it is, and the result is true: ask IsBodyComplete().
    bool ParsePostData();

    /// Reads a multipart/form-data body (RFC 7578) of CONTENT_LENGTH bytes. Fields are stored in
    /// the POST data as raw bytes. The content of at most one file part is streamed into a file in
    /// "/tmp/" under the base name that the client sent; its path becomes the value of the part's
    /// field. A file of that name is replaced, and a symbolic link followed, if it belongs to root
    /// or the effective user and has no second name; any other is refused, as is a FIFO.
    /// Standard input is made non-blocking and remains so, unless standard output is the same
    /// socket, as some servers have it: standard output blocks afterwards.
    /// The boundary is everything after the first "=" of CONTENT_TYPE, including any quotes;
    /// nothing may precede the first boundary or follow the closing one.
    ///
    /// Returns false at the first error, which is logged to syslog at LOG_ERR; fields and file
    /// bytes stored before it remain. A file field left empty is such an error, as is a second
    /// file: put an optional file in a form of its own, or last. Progress is logged at LOG_DEBUG.
    /// Only the text fields are held in memory.
    ///
    /// If the input ends before CONTENT_LENGTH bytes, the result is false, but nothing is logged as
    /// an error; the same if the body ends inside a text field that contains a CR, or inside a file
    /// less than the length of a boundary after a CR. If it ends elsewhere inside a part, the
    /// result is true, although the field is missing or the file cut off: ask IsBodyComplete().
    bool ParseMultipartData();

    /// Decodes application/x-www-form-urlencoded text in place, in linear time: first every "+"
    /// becomes a space, then every "%" and the two characters after it (or one, if no second
    /// follows) become one byte. The characters are not checked: those other than hexadecimal
    /// digits have the values that Htoi() assigns. A "%" at the end is kept.
    static void NormalizeData(std::string& a_s_text);

    // ---- Access ----

    /// Replaces a field name with the field's value in the POST data and returns true, or leaves
    /// the name unchanged and returns false if there is no such field. Never looks at the GET data.
    bool GetFormElementVal(std::string& a_s_name) const;

    /// The value of a field in the data that GetData() returns, or the default if there is no such
    /// field. An empty value is a value. Adds nothing to the data, unlike GetData()["name"].
    std::string GetField(const std::string& a_s_name, const std::string& a_s_default = "") const;

    /// SERVER_NAME followed directly by SCRIPT_NAME: "box/cgi-bin/query". No scheme, no port.
    std::string Url();

    // References into the object remain valid as long as the object exists.

    /// The captured variables; a variable that was not set has an empty value. Others, such as
    /// HTTP_COOKIE, HTTP_HOST and HTTPS, are not captured: read them with std::getenv().
    tFormData& GetEnvironment() { return m_m_environment; }
    tFormData& GetGetData() { return m_m_getData; }
    tFormData& GetPostData() { return m_m_postData; }

    /// The POST data for a POST request, otherwise the GET data.
    tFormData& GetData() { return IsPostRsp() ? m_m_postData : m_m_getData; }

    /// The path of the file in which the last parse stored an upload, or part of one; empty if
    /// there is none. The upload's field has the same value, but so can a text field that a client
    /// sends: a page must not move or remove a file for that.
    const std::string& GetStoredUpload() const { return m_s_storedUpload; }

    /// Always empty after a parse: see GetStoredUpload().
    std::string& GetUploadFilename() { return m_s_uploadFilename; }

    /// Always false after a parse.
    bool IsFileUpload() const { return m_b_fileUpload; }

    /// Writes a short diagnostic text that includes the indent in decimal, and flushes the stream.
    friend std::ostream& operator<<(std::ostream& a_c_stream, const cCGI& a_c_request);

    // ==== HTML ====
    //
    // BeginHtml() to EndForm() and the Disp operations write to standard output; all other
    // operations return their text and write nothing. Nothing is escaped: names, values and
    // contents are copied byte for byte. Pass text from a client through EscapeHtml() first
    // (cgilib_escape.h).
    //
    // The following are not well-formed XML at any level: CheckBoxGroup(), RadioGroup(),
    // ResetButton(), the diagnostic listings, and minimized attributes. Write
    // {"checked", "checked"} instead of {"checked", ""}.
    //
    // The examples show XHTML at indent 0; in HTML 4.01 an element without an end tag ends with ">"
    // instead of " />" (XHTML 1.0, C.2). The indent is a number of spaces. \n stands for a newline;
    // a one-line example ends with one unless stated otherwise.

    /// Attribute name to value. Attributes are written in the byte order of their names.
    using tAttributes = std::map<std::string, std::string>;

    using tStrings = std::vector<std::string>;

    /// Option text to the attributes of that option.
    using tOptions = std::map<std::string, tAttributes>;

    /// The decorations of DecorateText(), named after their tags.
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
    /// and <body> with the given attributes, each a complete one such as class="main".
    /// Writes a newline after each head line. Flushes after every line and sets the indent to 2.
    /// Write Status, Set-Cookie and other header fields before it, one per line:
    /// std::cout << "Status: 405 Method Not Allowed\nAllow: GET, POST\n";
    /// The XML declaration always says iso-8859-1, which browsers ignore. The first head line of a
    /// page in UTF-8 must be
    /// Meta({{"http-equiv", "Content-Type"}, {"content", "text/html; charset=utf-8"}}).
    void BeginHtml(const std::string& a_s_title, const tStrings& a_c_bodyAttributes,
                   const tStrings& a_c_headLines);

    /// Writes </body> and </html>. Leaves the indent unchanged.
    void EndHtml() const;

    /// Writes <form action="/cgi" method="post"> at the indent and raises the indent by 1.
    void BeginForm(const tAttributes& a_m_attributes);

    /// Lowers the indent by 1, unless it is 0, and writes </form> at it.
    void EndForm();

    // The text between these, most of it made by the operations below.

    /// Writes the text at the indent and a newline, and flushes.
    void DispLine(std::string a_s_text) const;
    /// Writes the text at the indent and nothing after it.
    void DispText(std::string a_s_text) const;

    // ---- Attributes ----

    /// The attributes of an element without content: " alt=\"\" src=\"a.png\"", without a newline.
    std::string InflateAtomicTag(const tAttributes& a_m_attributes) const;

    /// The attributes, the end of the start tag, the indent and the content:
    /// " class=\"x\" nowrap>text". An attribute with an empty value is minimized to its name
    /// (HTML 4.01, 3.3.4). The indent is written even if the content is empty. If a_b_newline is
    /// set, a newline precedes the indent, and another follows the content unless it is empty or
    /// ends with one.
    std::string InflateDiatomicTag(const tAttributes& a_m_attributes,
                                   const std::string& a_s_content, bool a_b_newline) const;

    // ---- Elements without an end tag ----
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
    /// <input type="reset" name="n" value="v">, at every level, without a newline.
    std::string ResetButton(const tAttributes& a_m_attributes, const std::string& a_s_value) const;
    /// <input type="submit" name="n" value="v" />
    std::string Submit(const tAttributes& a_m_attributes, const std::string& a_s_value) const;
    /// <input type="text" name="n" value="v" />
    std::string Text(const tAttributes& a_m_attributes, const std::string& a_s_value) const;

    // ---- Elements with content ----
    // Attributes and content are written as InflateDiatomicTag() returns them, except in Script(),
    // whose attributes are not minimized and whose code is not indented.

    /// <a href="/">\ncontent\n</a>, without an indent before it or a newline after it.
    std::string A(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    /// "  <div  id="d">\ncontent\n  </div>", or "  <div  id="d"></div>" if there is no content.
    std::string Div(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    /// "  <font color="red">text</font>", without a newline.
    std::string Font(const tAttributes& a_m_attributes, const std::string& a_s_text) const;
    /// "  <form action="/cgi">\ncontent\n  </form>". Unlike BeginForm() it leaves the indent alone.
    std::string Form(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    /// "  <option value="1">label  </option>"
    std::string Option(const tAttributes& a_m_attributes, const std::string& a_s_label) const;
    /// Like Div(): "  <span  id="s">\ncontent\n  </span>"
    std::string Span(const tAttributes& a_m_attributes, const std::string& a_s_content) const;

    /// <script language="javascript" type="text/javascript">\n <!--\ncode //-->\n</script>: a
    /// comment hides the code from old browsers (HTML 4.01, 18.3.2). The code should end with a
    /// newline; none is added. Without code: <script language="javascript"
    /// type="text/javascript"></script>.
    std::string Script(const tAttributes& a_m_attributes, const std::string& a_s_code) const;

    /// <textarea cols="40" rows="4" name="n">\ncontent\n</textarea>, sized in lines and characters;
    /// a size above 2147483647 is written as a negative number. Attributes with empty values are
    /// minimized; nothing is indented.
    /// The newline after the content comes back as part of the field: remove "\r\n" from its end,
    /// or the text grows each time.
    std::string TextArea(const tAttributes& a_m_attributes, const std::string& a_s_content,
                         unsigned int a_u_rows, unsigned int a_u_cols) const;

    // ---- Choice lists ----
    // <select name="n">\n, one line per choice, </select>; not indented. The lines are
    //   for values   " <option value="v">v</option>". The attribute "DEFAULT" names the one that is
    //                selected, " <option selected="selected" value=...", and is not itself written.
    //   for options  " <option value="1">text</option>", with the attributes of the option, those
    //                with empty values minimized. "DEFAULT" is an attribute like any other.
    //   for items    the items unchanged, such as those that Option() returns. "DEFAULT" likewise.
    // DEFAULT is compared with the values as given: escape both or neither.
    // A size is in visible lines; above 2147483647 it is written as a negative number.

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

    // A control with a label for each value, at the indent, without a newline after the label.
    // "DEFAULT" names the one that is checked; checked="checked" replaces it among the attributes.
    // The values appear next to their boxes, but a screen reader does not announce them, and
    // clicking them has no effect on the box: accessible pages use CheckBox() and RadioButton()
    // with a <label for="id">.

    /// <input type=checkbox  name="n" value="v" />\nv
    std::string CheckBoxGroup(const tAttributes& a_m_attributes, const tStrings& a_c_values) const;
    /// <input type=radio  name="n" value= "v" />\nv
    std::string RadioGroup(const tAttributes& a_m_attributes, const tStrings& a_c_values) const;

    // ---- Tables and framesets ----
    // The content is copied unchanged, and no newline is added. In a list, each cell or frame gets
    // the indent and a newline, a row neither. End tags are written at the indent.

    /// <table border="1">\ncontent</table>; for a list <table  border="1">\nrows</table>.
    std::string Table(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Table(const tAttributes& a_m_attributes, const tStrings& a_c_rows) const;
    /// " <tr align="left">\ncontent </tr>"
    std::string Tr(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Tr(const tAttributes& a_m_attributes, const tStrings& a_c_cells) const;
    /// "  <td nowrap>\ncontent\n  </td>", see InflateDiatomicTag(); for a list, one cell each.
    std::string Td(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Td(const tAttributes& a_m_attributes, const tStrings& a_c_contents) const;
    /// " <frameset cols="50%,50%">\ncontent </frameset>"
    std::string Frameset(const tAttributes& a_m_attributes, const std::string& a_s_content) const;
    std::string Frameset(const tAttributes& a_m_attributes, const tStrings& a_c_frames) const;

    // ---- Text ----

    /// <h3>text</h3>, without a newline. Ends the process with a failed assertion, in every build
    /// type, if the identifier is outside the enumeration.
    std::string DecorateText(eTextDisplayID a_e_display, std::string a_s_text) const;

    /// a_u_count times <br />\n, or <br>\n in HTML 4.01; empty at a level outside eCompliance.
    std::string Br(unsigned int a_u_count) const;

    // ---- Diagnostic listings ----
    // They show client data unescaped: never use them on a public page.

    /// Writes one flushed line per variable at the indent, "key = 'value'<BR>".
    void DispEnvironment() const;
    /// Writes one flushed line per field at the indent, "key = 'value'<BR>".
    void DispGetData() const;
    /// Writes one flushed line per field at the indent, "key = 'value'<br>".
    void DispPostData() const;

    // ---- Lists in braces ----
    // Values go in one pair of braces, Tr(attributes, {"a", l_s_b}); options are pairs,
    // PopupMenu(attributes, {{"a", {}}, {"b", {{"value", "2"}}}}). For two iterators, write
    // tStrings(l_c_begin, l_c_end).
    // Without these overloads the braces could also mean one std::string, or one map, made from
    // two iterators.

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

    /// A value in braces: anything that converts implicitly to std::string. An option without
    /// attributes, {"b", {}}, must not, and two std::strings must not count as two iterators.
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
    // The most that one read of a multipart body may take.
    static constexpr std::size_t READ_BUFFER_SIZE = 131072;

    // The value of a captured variable, or null in a copied object, which has none of them.
    const std::string* Environment(const char* a_p_name) const;

    // Splits and decodes URL-encoded text, for GET and POST.
    static void StoreFields(const std::string& a_s_text, tFormData& a_m_data);

    // ---- HTML ----

    // These depend on the compliance level. The document type is empty if there is none.
    const char* DocumentType() const;
    const char* EmptyElementEnd() const;
    const char* LineBreak() const;

    // NOLINTNEXTLINE(modernize-return-braced-init-list): in braces it would mean two characters.
    std::string Indent() const { return std::string(m_u_indent, ' '); }

    // ` name="value"`
    static std::string Attribute(const std::string& a_s_name, const std::string& a_s_value);

    // Like InflateAtomicTag(), but an attribute with an empty value is minimized to its name.
    static std::string MinimizedAttributes(const tAttributes& a_m_attributes);

    static std::string Decimal(unsigned int a_u_number);

    // The items, each between the two strings.
    static std::string Listed(const tStrings& a_c_items, const std::string& a_s_before,
                              const std::string& a_s_after);

    // The families of elements; the callers show how the members differ.
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
    std::unique_ptr<char[]> m_p_readBuffer; // for multipart bodies
    bool m_b_bodyComplete = false;
    std::string m_s_storedUpload;
};

std::ostream& operator<<(std::ostream& a_c_stream, const cCGI& a_c_request);

/// The value of a null-terminated string of hexadecimal digits. Any other character has the value
/// of its low four bits, plus 9 if bit 0x40 is set; a value above 15 carries: "zz" yields 323.
/// Beyond 32 bits the high bits are lost.
// NOLINTNEXTLINE(readability-non-const-parameter): callers rely on this exact type.
int Htoi(char* a_p_digits);

#endif
