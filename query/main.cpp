#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <syslog.h>
#include <unistd.h>

#include <cgilib.h>
#include <pidfile.h>

#include "document.h"
#include "extraction.h"
#include "heap.h"
#include "paths.h"
#include "peers.h"
#include "request_limits.h"
#include "response.h"
#include "streams.h"

namespace
{

constexpr int RESPONSE_WRITTEN = 0;

using tDocument = std::unique_ptr<TiXmlDocument>;

// Some servers pass the words of a query string without "=" (RFC 3875, 4.4), and anyone who looks
// up the program's name in the process table would find it in those words.
void BlankArguments(int a_i_count, char* a_p_arguments[])
{
    for (int l_i_argument = 1; l_i_argument < a_i_count; ++l_i_argument) {
        std::memset(a_p_arguments[l_i_argument], 0, std::strlen(a_p_arguments[l_i_argument]));
    }
}

// Only the tree is allocated in its memory: the fault, for one, outlives a failed document.
bool LoadTree(TiXmlDocument& a_c_document, const std::string& a_s_path)
{
    const cTreeMemory l_c_memory(a_s_path);
    return LoadDocument(a_c_document, a_s_path);
}

// Loads the document; one that is too large for the available memory counts as unparsable. If it
// cannot be loaded, deletes what there is of it, sets the fault and returns null.
tDocument LoadConfigOnce(const std::string& a_s_path, std::string& a_s_fault)
{
    auto l_p_document = std::make_unique<TiXmlDocument>();
    const std::new_handler l_p_handler = std::set_new_handler(nullptr);
    try {
        if (!LoadTree(*l_p_document, a_s_path)) {
            a_s_fault = l_p_document->ErrorDesc();
            l_p_document.reset();
        }
    } catch (const std::bad_alloc&) {
        a_s_fault = "Out of memory";
        l_p_document.reset();
    }
    std::set_new_handler(l_p_handler);
    return l_p_document;
}

// The configuration is rewritten in place while the device runs, so a document that does not parse
// gets a second chance.
tDocument LoadConfig(const std::string& a_s_path)
{
    std::string l_s_fault;
    tDocument l_p_document = LoadConfigOnce(a_s_path, l_s_fault);
    if (l_p_document == nullptr) {
        syslog(LOG_ERR, "  main(): Failed to parse config (%s): %s. Retrying...", a_s_path.c_str(),
               l_s_fault.c_str());
        sleep(1);
        l_p_document = LoadConfigOnce(a_s_path, l_s_fault);
    }
    if (l_p_document == nullptr) {
        syslog(LOG_ERR, "  main(): Unable to parse config file (%s): %s.", a_s_path.c_str(),
               l_s_fault.c_str());
    }
    return l_p_document;
}

bool WriteResponse(const std::string& a_s_response)
{
    std::fputs("Content-type: application/json\r\n\r\n", stdout);
    std::fwrite(a_s_response.data(), 1, a_s_response.size(), stdout);
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

} // namespace

int main(int a_i_count, char* a_p_arguments[])
{
    OpenStandardStreams();
    BlankArguments(a_i_count, a_p_arguments);
    const std::string l_s_configPath = CONFIG_PATH;

    SignalPeers();

    LimitProcess();
    LimitProcessorTime(); // for parsing
    cCGI l_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    if (!l_c_request.ParseData()) {
        syslog(LOG_ERR, "  main(): CGI parse failed.");
        return NOT_ANSWERED;
    }
    LimitProcessorTime(); // for the rest

    // Static, so that its file is also removed when exit() ends the process.
    static std::optional<cPidFile> l_c_guard(std::in_place, false);
    if (access(l_s_configPath.c_str(), R_OK) != 0) {
        syslog(LOG_ERR, "  main(): Config file (%s) is missing or not readable.",
               l_s_configPath.c_str());
        return NOT_ANSWERED;
    }

    std::string l_s_response = ERROR_RESPONSE;
    const tDocument l_p_document = LoadConfig(l_s_configPath);
    if (l_p_document != nullptr) {
        l_s_response =
            ComposeResponse(ExtractValues(*l_p_document, std::move(l_c_request.GetData())));
    }
    bool l_b_written = WriteResponse(l_s_response);
    // Some servers end a program that keeps running after its answer, and the answer ends when
    // standard output is closed: anything essential must be done by then.
    l_c_guard.reset();
    l_b_written = std::fclose(stdout) == 0 && l_b_written;
    if (!l_b_written) {
        syslog(LOG_ERR, "  main(): Unable to write response.");
    }
    // Ending the process frees the tree faster than its destructor would.
    _exit(l_b_written ? RESPONSE_WRITTEN : NOT_ANSWERED);
}
