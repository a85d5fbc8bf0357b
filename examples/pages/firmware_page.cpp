// Receives a firmware image: limits its size, moves it where no other upload can reach it, and
// verifies it. The script shows how much has been sent; the form also works without it. The page
// installs nothing. One that does must also know who is asking and that the request comes from its
// own form, as login_page shows, and verify a signature, which, unlike a checksum, an attacker
// cannot make.
#include <cgilib.h>
#include <cgilib_escape.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "head.h"
#include "request.h"

namespace
{

constexpr long long LARGEST_BODY = 48LL << 20U; // the space available in /tmp

constexpr const char* const FIRMWARE_STYLE = R"css(
.done { padding: .6rem .8rem; background: #e6f4ea; border-left: 4px solid #1e7d3c; }
.actions { margin-top: 1rem; }
progress { flex: 1; }
)css";

// Sends the form and copies the result from the returned page into this one.
constexpr const char* const FIRMWARE_SCRIPT = R"js(
const form = document.getElementById("firmware");
const result = document.getElementById("result");
const bar = document.createElement("progress");
bar.setAttribute("aria-label", "Sent");
form.image.required = true;
form.addEventListener("submit", (event) => {
  event.preventDefault();
  const request = new XMLHttpRequest();
  request.upload.onprogress = (sent) => { bar.max = sent.total; bar.value = sent.loaded; };
  request.onloadend = () => {
    const received = request.response && request.response.getElementById("result");
    result.innerHTML = received ? received.innerHTML : "";
    if (!received) result.textContent = `No answer: HTTP ${request.status} ${request.statusText}`;
    form.send.disabled = false;
  };
  form.send.disabled = true;
  result.textContent = "";
  form.send.after(bar);
  request.open("POST", form.action);
  request.responseType = "document";
  request.send(new FormData(form));
});
)js";

// A file in a new directory that only its owner can access. Removed with the object.
class cImage
{
public:
    // Moves an upload there. The value of its field may instead be text that the client sent: only
    // a file directly in /tmp, where uploads are stored, can be an upload.
    explicit cImage(const std::string& a_s_upload)
    {
        struct stat l_c_file = {};
        char l_folder[] = "/tmp/firmware.XXXXXX";
        if (a_s_upload.compare(0, 5, "/tmp/") == 0 &&
            a_s_upload.find('/', 5) == std::string::npos &&
            lstat(a_s_upload.c_str(), &l_c_file) == 0 && S_ISREG(l_c_file.st_mode) &&
            mkdtemp(l_folder) != nullptr) {
            m_s_folder = l_folder;
            m_b_moved = std::rename(a_s_upload.c_str(), Path().c_str()) == 0;
        }
    }

    ~cImage()
    {
        if (!m_s_folder.empty()) {
            std::remove(Path().c_str());
            std::remove(m_s_folder.c_str());
        }
    }

    cImage(const cImage&) = delete;
    cImage& operator=(const cImage&) = delete;

    bool IsMoved() const { return m_b_moved; }
    std::string Path() const { return m_s_folder + "/image"; }

private:
    std::string m_s_folder;
    bool m_b_moved = false;
};

std::array<std::uint32_t, 256> CrcTable()
{
    std::array<std::uint32_t, 256> l_table;
    for (std::uint32_t l_u_byte = 0; l_u_byte < 256; ++l_u_byte) {
        l_table[l_u_byte] = l_u_byte;
        for (int l_i_bit = 0; l_i_bit < 8; ++l_i_bit) {
            l_table[l_u_byte] = l_table[l_u_byte] >> 1U ^ (l_table[l_u_byte] & 1U) * 0xEDB88320U;
        }
    }
    return l_table;
}

// An image ends with the CRC-32 (as in zlib) of everything before it, low byte first, so the CRC-32
// of the whole file is always the same. An upload truncated by a full disk fails here.
bool IsIntact(const std::string& a_s_path)
{
    const std::array<std::uint32_t, 256> l_table = CrcTable();
    std::uint32_t l_u_crc = 0xFFFFFFFFU;
    std::ifstream l_c_file(a_s_path, std::ios::binary);
    std::array<char, 65536> l_block;
    while (l_c_file.read(l_block.data(), l_block.size()), l_c_file.gcount() > 0) {
        for (std::streamsize l_i_at = 0; l_i_at < l_c_file.gcount(); ++l_i_at) {
            const auto l_u_byte =
                static_cast<unsigned char>(l_block[static_cast<std::size_t>(l_i_at)]);
            l_u_crc = l_u_crc >> 8U ^ l_table[(l_u_crc ^ l_u_byte) & 0xFFU];
        }
    }
    return (l_u_crc ^ 0xFFFFFFFFU) == 0x2144DF1CU;
}

std::string Told(const char* a_p_class, const std::string& a_s_text)
{
    return "<p class=\"" + std::string(a_p_class) + "\">" + a_s_text + "</p>\n";
}

// The outcome of the request, to be shown. Writes the status of a request that is refused.
std::string Receive(cCGI& a_c_page)
{
    // Before anything is read, because parsing stores a file of any size.
    if (std::atoll(a_c_page.GetEnvironment()["CONTENT_LENGTH"].c_str()) > LARGEST_BODY) {
        std::cout << "Status: 413 Content Too Large\n";
        return Told("failed", "The image is too large.");
    }
    const bool l_b_parsed = ParsedOrRefused(a_c_page);
    const std::string l_s_upload = a_c_page.IsPostRsp() ? a_c_page.GetField("image") : "";
    const cImage l_c_image(l_s_upload); // even if interrupted, or it would remain in /tmp
    if (!l_b_parsed) {
        return Told("failed", "No image arrived, or not all of it.");
    }
    if (!a_c_page.IsPostRsp()) {
        return "";
    }
    if (!l_c_image.IsMoved() || !IsIntact(l_c_image.Path())) {
        return Told("failed", "This is no image, or it was damaged on its way.");
    }
    return Told("done", EscapeHtml(l_s_upload.substr(5)) +
                            " is intact. This page is an example: nothing was installed.");
}

} // namespace

int main()
{
    cCGI l_c_page(cCGI::eXHTML_1_0_TRANSITIONAL);
    const std::string l_s_result = Receive(l_c_page);
    l_c_page.BeginHtml("Firmware", {}, HeadLines(l_c_page, FIRMWARE_STYLE));
    l_c_page.DispLine(l_c_page.DecorateText(cCGI::eDISPLAY_H1, "Firmware"));
    l_c_page.DispText(l_c_page.Div({{"id", "result"}, {"role", "status"}}, l_s_result));
    l_c_page.BeginForm({{"action", "firmware_page"},
                        {"enctype", "multipart/form-data"},
                        {"id", "firmware"},
                        {"method", "post"}});
    l_c_page.DispText(
        l_c_page.Div({}, "<label for=\"image\">Image</label>\n" +
                             l_c_page.FileUpload({{"id", "image"}, {"name", "image"}})));
    l_c_page.DispText(l_c_page.Div({{"class", "actions"}},
                                   l_c_page.Submit({{"class", "main"}, {"id", "send"}}, "Send")));
    l_c_page.EndForm();
    l_c_page.DispText(l_c_page.Script({}, FIRMWARE_SCRIPT));
    l_c_page.EndHtml();
    return 0;
}
