#include <cstdio>
#include <map>
#include <string>
#include <syslog.h>
#include <tinyxml.h>
#include <unistd.h>

#include <cgilib.h>
#include <pidfile.h>

#include "extraction.h"
#include "heap.h"
#include "paths.h"
#include "peers.h"
#include "response.h"

namespace
{

constexpr int RESPONSE_WRITTEN = 0;
constexpr int NOTHING_WRITTEN = -1;

// The configuration is rewritten in place while the device runs, so a document that does not parse
// gets a second chance.
bool LoadConfig(TiXmlDocument& a_c_document, const std::string& a_s_path)
{
    // Row and column of every node, which nobody reads, cost a pass over the whole text.
    a_c_document.SetTabSize(0);

    if (a_c_document.LoadFile(a_s_path, TIXML_DEFAULT_ENCODING)) {
        return true;
    }
    syslog(LOG_ERR, "  main(): Failed to parse config (%s): %s. Retrying...", a_s_path.c_str(),
           a_c_document.ErrorDesc());
    sleep(1);
    if (a_c_document.LoadFile(a_s_path, TIXML_DEFAULT_ENCODING)) {
        return true;
    }
    syslog(LOG_ERR, "  main(): Unable to parse config file (%s): %s.", a_s_path.c_str(),
           a_c_document.ErrorDesc());
    return false;
}

// Closes standard output as well: the web server can pass the answer on while the rest of the
// process is still being taken down.
bool WriteResponse(const std::string& a_s_response)
{
    std::fputs("Content-type: application/json\r\n\r\n", stdout);
    std::fwrite(a_s_response.data(), 1, a_s_response.size(), stdout);
    const bool l_b_written = std::ferror(stdout) == 0;
    return std::fclose(stdout) == 0 && l_b_written;
}

} // namespace

int main()
{
    const std::string l_s_configPath = CONFIG_PATH;
    std::map<std::string, std::string> l_m_query;
    std::map<std::string, std::string> l_m_result;

    SignalPeers();

    cCGI l_c_request(cCGI::eXHTML_1_0_TRANSITIONAL);
    if (!l_c_request.ParseData()) {
        syslog(LOG_ERR, "  main(): CGI parse failed.");
        return NOTHING_WRITTEN;
    }
    l_m_query = l_c_request.GetData();

    const cPidFile l_c_guard(false);
    if (access(l_s_configPath.c_str(), R_OK) != 0) {
        syslog(LOG_ERR, "  main(): Config file (%s) is missing or not readable.",
               l_s_configPath.c_str());
        return NOTHING_WRITTEN;
    }

    FetchHeapFor(l_s_configPath);
    TiXmlDocument l_c_document;
    std::string l_s_response = ERROR_RESPONSE;
    if (LoadConfig(l_c_document, l_s_configPath)) {
        l_m_result = ExtractValues(l_c_document, l_m_query);
        l_s_response = ComposeResponse(l_m_result);
    }
    if (!WriteResponse(l_s_response)) {
        syslog(LOG_ERR, "  main(): Unable to write response.");
        return NOTHING_WRITTEN;
    }
    return RESPONSE_WRITTEN;
}
