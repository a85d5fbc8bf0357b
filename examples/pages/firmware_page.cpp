// Receives a firmware image: limits its size, moves it where no other upload can reach it, and
// verifies it. The script shows how much has been sent; the form also works without it. The page
// installs nothing. One that does must also know who is asking and that the request comes from its
// own form, as login_page shows, and verify a signature, which, unlike a checksum, an attacker
// cannot make.
#include <cgilib.h>
#include <cgilib_escape.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <unistd.h>

#include "page.h"
#include "request.h"

namespace
{

constexpr long long LARGEST_BODY = 48LL << 20U; // the space available in /tmp

constexpr const char* const FIRMWARE_STYLE = R"css(
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
    // Moves an upload there.
    explicit cImage(const std::string& a_s_upload)
    {
        char l_folder[] = "/tmp/firmware.XXXXXX";
        if (!a_s_upload.empty() && mkdtemp(l_folder) != nullptr) {
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

// The CRC-32 of each half byte, as in zlib.
constexpr std::uint32_t CRC_OF_HALF[] = {
    0x00000000, 0x1DB71064, 0x3B6E20C8, 0x26D930AC, 0x76DC4190, 0x6B6B51F4, 0x4DB26158, 0x5005713C,
    0xEDB88320, 0xF00F9344, 0xD6D6A3E8, 0xCB61B38C, 0x9B64C2B0, 0x86D3D2D4, 0xA00AE278, 0xBDBDF21C};

// An image ends with the CRC-32 of everything before it, low byte first, so the CRC-32 of the whole
// file is always the same. An upload truncated by a full disk fails here.
bool IsIntact(const std::string& a_s_path)
{
    std::uint32_t l_u_crc = 0xFFFFFFFFU;
    std::ifstream l_c_file(a_s_path, std::ios::binary);
    for (std::istreambuf_iterator<char> l_c_next(l_c_file), l_c_end; l_c_next != l_c_end;
         ++l_c_next) {
        l_u_crc ^= static_cast<unsigned char>(*l_c_next);
        l_u_crc = l_u_crc >> 4U ^ CRC_OF_HALF[l_u_crc & 15U];
        l_u_crc = l_u_crc >> 4U ^ CRC_OF_HALF[l_u_crc & 15U];
    }
    return (l_u_crc ^ 0xFFFFFFFFU) == 0x2144DF1CU;
}

// The outcome of the request, to be shown. Writes the status of a request that is refused.
std::string Receive(cCGI& a_c_page)
{
    // Before anything is read, because parsing stores a file of any size.
    if (std::atoll(a_c_page.GetEnvironment()["CONTENT_LENGTH"].c_str()) > LARGEST_BODY) {
        std::cout << "Status: 413 Content Too Large\n";
        return Paragraph(a_c_page, {{"class", "failed"}}, "The image is too large.");
    }
    const bool l_b_parsed = ParseOrRefuse(a_c_page);
    // Not the value of the field, which the client may have sent as a text.
    const std::string l_s_upload = a_c_page.GetStoredUpload();
    const cImage l_c_image(l_s_upload); // even if interrupted, or it would remain in /tmp
    if (!l_b_parsed) {
        return Paragraph(a_c_page, {{"class", "failed"}}, "No image arrived, or not all of it.");
    }
    if (!a_c_page.IsPostRsp()) {
        return "";
    }
    if (!l_c_image.IsMoved() || !IsIntact(l_c_image.Path())) {
        return Paragraph(a_c_page, {{"class", "failed"}},
                         "This is no image, or it was damaged on its way.");
    }
    return Paragraph(a_c_page, {{"class", "done"}},
                     EscapeHtml(l_s_upload.substr(5)) +
                         " is intact. This page is an example: nothing was installed.");
}

} // namespace

int main()
{
    cCGI l_c_page(cCGI::eXHTML_1_0_TRANSITIONAL);
    const std::string l_s_result = Receive(l_c_page);
    BeginPage(l_c_page, "Firmware", FIRMWARE_STYLE);
    l_c_page.DispLine(l_c_page.DecorateText(cCGI::eDISPLAY_H1, "Firmware"));
    l_c_page.DispText(l_c_page.Div({{"id", "result"}, {"role", "status"}}, l_s_result));
    l_c_page.BeginForm({{"action", "firmware_page"},
                        {"enctype", "multipart/form-data"},
                        {"id", "firmware"},
                        {"method", "post"}});
    l_c_page.DispText(
        l_c_page.Div({}, Label("image", "Image") + "\n" + l_c_page.FileUpload(Named("image"))));
    l_c_page.DispText(l_c_page.Div({{"class", "actions"}},
                                   l_c_page.Submit({{"class", "main"}, {"id", "send"}}, "Send")));
    l_c_page.EndForm();
    l_c_page.DispText(l_c_page.Script({}, FIRMWARE_SCRIPT));
    l_c_page.EndHtml();
    return 0;
}
