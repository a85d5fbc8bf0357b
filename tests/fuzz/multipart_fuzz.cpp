// Any multipart body is parsed to the same result in whatever pieces it arrives.
//
// The first byte tells the length of the pieces, the next the length of the boundary, which
// follows; the rest is the body. The inputs stay below the limit of a waiting part header.

#include <cgilib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <tuple>
#include <unistd.h>

#include "interposed.h"

namespace
{

using tOutcome = std::tuple<bool, cCGI::tFormData, std::vector<std::string>, std::string>;

const std::string FILE_LINE = "7 ParseMultipartData - Parsed filename attribute from entity header (";

// The stored upload, if any. It is removed: thousands of runs must not fill the file system.
std::string TakeUpload()
{
    for (const std::string& l_s_line : Logged()) {
        if (l_s_line.rfind(FILE_LINE, 0) == 0) {
            const std::string l_s_path = l_s_line.substr(FILE_LINE.size(), l_s_line.size() - FILE_LINE.size() - 2);
            std::error_code l_c_unnameable;
            if (std::filesystem::is_regular_file(l_s_path, l_c_unnameable)) {
                std::ifstream l_c_file(l_s_path);
                std::string l_s_content(std::istreambuf_iterator<char>(l_c_file), {});
                unlink(l_s_path.c_str());
                return l_s_content;
            }
        }
    }
    return {};
}

tOutcome Parse(cCGI& a_c_request, const std::string& a_s_body, std::size_t a_u_piece)
{
    std::vector<std::string> l_v_pieces;
    for (std::size_t l_u_from = 0; l_u_from < a_s_body.size(); l_u_from += a_u_piece) {
        l_v_pieces.push_back(a_s_body.substr(l_u_from, a_u_piece));
    }
    Logged().clear();
    a_c_request.GetEnvironment()["CONTENT_LENGTH"] = std::to_string(a_s_body.size());
    a_c_request.GetPostData().clear();
    const cDelivery l_c_delivery(l_v_pieces, true);
    const bool l_b_result = a_c_request.ParseMultipartData();
    return {l_b_result, a_c_request.GetPostData(), Logged(), TakeUpload()};
}

// A body that ends inside a file part succeeds or fails by how much of the delimiter's length was
// waiting when it ended, which the pieces decide.
bool EndsInAFile(const tOutcome& a_c_outcome)
{
    const std::vector<std::string>& l_v_log = std::get<2>(a_c_outcome);
    return l_v_log.size() >= 2 && l_v_log.end()[-2].rfind(FILE_LINE, 0) == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* a_p_data, std::size_t a_u_size)
{
    if (a_u_size < 2 || a_u_size < 2U + a_p_data[1]) {
        return 0;
    }
    const auto* l_p_boundary = reinterpret_cast<const char*>(a_p_data + 2);
    const std::string l_s_boundary(l_p_boundary, a_p_data[1]);
    const std::string l_s_body(l_p_boundary + a_p_data[1], a_u_size - 2 - a_p_data[1]);
    static cCGI s_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    s_c_request.GetEnvironment()["CONTENT_TYPE"] = "boundary=" + l_s_boundary;

    const tOutcome l_c_whole = Parse(s_c_request, l_s_body, l_s_body.size() + 1);
    const tOutcome l_c_split = Parse(s_c_request, l_s_body, a_p_data[0] + 1U);
    if (!EndsInAFile(l_c_whole) && l_c_whole != l_c_split) {
        std::abort();
    }
    return 0;
}
