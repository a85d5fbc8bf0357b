// Logs a user in and out: a redirect after each POST, a session in a cookie, a message that
// survives the redirect, a token that keeps out other sites' forms, and a limit on guesses.
#include <cgilib.h>
#include <cgilib_cookie.h>
#include <cgilib_escape.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "page.h"
#include "request.h"

namespace
{

constexpr const char* const LOGIN_STYLE = R"css(
form { max-width: 24rem; }
label { display: block; margin-top: .75rem; }
input[type=submit] { margin-top: 1rem; }
)css";

constexpr const char* const FOLDER = "/tmp/login_page";
constexpr const char* const SESSION_FILE = "/tmp/login_page/session";
constexpr const char* const LAST_ATTEMPT_FILE = "/tmp/login_page/last_attempt";

// A real device looks up the user in its own file and checks the password with crypt(3).
bool IsKnown(const std::string& a_s_user, const std::string& a_s_password)
{
    return a_s_user == "admin" && a_s_password == "device";
}

// Cannot be guessed: 122 random bits from the kernel.
std::string Secret()
{
    std::string l_s_secret;
    if (!std::getline(std::ifstream("/proc/sys/kernel/random/uuid"), l_s_secret)) {
        std::exit(EXIT_FAILURE);
    }
    return l_s_secret;
}

// ---- Header fields, one per line, before BeginHtml() or the end of the header ----

// Scripts cannot read these cookies, and requests from other sites' pages do
// not carry them. Over TLS, add "; Secure".
void SetCookie(const std::string& a_s_name, const std::string& a_s_value)
{
    const char* const l_p_scope = "; HttpOnly; SameSite=Strict\n";
    std::cout << "Set-Cookie: " << a_s_name << "=" << a_s_value << l_p_scope;
}

// Answers a POST: the browser fetches the page by GET, so reloading it does
// not resend the form. The status must be the first line: otherwise servers
// may ignore it, or take the location for a local one.
void Redirect(const std::string& a_s_page, const cCGI::tFormData& a_m_cookies)
{
    std::cout << "Status: 303 See Other\n";
    for (const auto& l_c_cookie : a_m_cookies) {
        SetCookie(l_c_cookie.first, EscapeUrl(l_c_cookie.second));
    }
    std::cout << "Location: " << a_s_page << "\n\n";
}

// Show it through EscapeHtml(): a cookie is text from a client.
std::string TakeMessage()
{
    std::string l_s_message = GetCookie("message");
    cCGI::NormalizeData(l_s_message);
    if (!l_s_message.empty()) {
        std::cout << "Set-Cookie: message=; Max-Age=0\n";
    }
    return l_s_message;
}

// The form carries the cookie's secret in a Hidden field. Another site's page
// can send a form here but does not know the secret.
bool IsFromOwnForm(const cCGI& a_c_page)
{
    const std::string l_s_token = GetCookie("token");
    return !l_s_token.empty() && l_s_token == a_c_page.GetField("token");
}

// Another server on the device shares its cookies, whatever its port, but not its origin. Browsers
// send the origin with every POST; without one, no page sent the request.
bool IsFromOwnOrigin()
{
    const char* const l_p_origin = std::getenv("HTTP_ORIGIN");
    const char* const l_p_host = std::getenv("HTTP_HOST");
    const std::string l_s_scheme = std::getenv("HTTPS") == nullptr ? "http://" : "https://";
    return l_p_origin == nullptr || (l_p_host != nullptr && l_p_origin == l_s_scheme + l_p_host);
}

// ---- The session: only one, from the last login. A real device also ends it after a while ----

// No upload can reach a directory below /tmp, but others might have put one there, with a session.
bool HasOwnFolder()
{
    mkdir(FOLDER, S_IRWXU);
    struct stat l_c_folder = {};
    return lstat(FOLDER, &l_c_folder) == 0 && S_ISDIR(l_c_folder.st_mode) &&
           l_c_folder.st_uid == geteuid();
}

// The session's secret, or an empty string if it could not be stored. Requires the own folder.
std::string BeginSession()
{
    const std::string l_s_secret = Secret();
    return std::ofstream(SESSION_FILE) << l_s_secret << std::endl ? l_s_secret : "";
}

bool HasSession()
{
    std::string l_s_secret;
    return HasOwnFolder() && std::getline(std::ifstream(SESSION_FILE), l_s_secret) &&
           !l_s_secret.empty() && l_s_secret == GetCookie("session");
}

// Whether a password may be tried: one per second, whoever sends it, and however many at a time. No
// client can evade that, but one that keeps guessing also keeps everybody else out.
bool MayTry()
{
    const int l_i_file =
        HasOwnFolder() ? open(LAST_ATTEMPT_FILE, O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)
                       : -1;
    flock(l_i_file, LOCK_EX);
    const std::time_t l_i_now = std::time(nullptr);
    std::time_t l_i_last = 0;
    const bool l_b_may = pread(l_i_file, &l_i_last, sizeof l_i_last, 0) >= 0 &&
                         l_i_last != l_i_now && pwrite(l_i_file, &l_i_now, sizeof l_i_now, 0) > 0;
    close(l_i_file);
    return l_b_may;
}

// ---- The page ----

// Does what the form asks for and redirects, or returns what is wrong with it.
std::string Serve(const cCGI& a_c_page)
{
    if (!IsFromOwnOrigin() || !IsFromOwnForm(a_c_page)) {
        return "Please send the form again. The browser has to accept cookies.";
    }
    if (HasSession() && a_c_page.GetField("action") == "Log out") {
        std::remove(SESSION_FILE);
        Redirect("login_page", {{"message", "Logged out."}});
        return "";
    }
    if (!MayTry()) {
        return HasOwnFolder() ? "Another password was tried just now. Please try again."
                              : "The session cannot be stored.";
    }
    if (!IsKnown(a_c_page.GetField("user"), a_c_page.GetField("password"))) {
        return "The name or the password is wrong.";
    }
    const std::string l_s_session = BeginSession();
    if (l_s_session.empty()) {
        return "The session cannot be stored.";
    }
    Redirect("login_page", {{"message", "Logged in as " + a_c_page.GetField("user") + "."},
                            {"session", l_s_session},
                            {"token", Secret()}}); // the last one may be known to another site
    return "";
}

void ShowForm(cCGI& a_c_page, const std::string& a_s_token)
{
    const std::string l_s_hidden = a_c_page.Hidden({{"name", "token"}}, EscapeHtml(a_s_token));
    const std::string l_s_login =
        Label("user", "Name") + "\n" +
        a_c_page.Text(Named("user"), EscapeHtml(a_c_page.GetField("user"))) +
        Label("password", "Password") + "\n" + a_c_page.Password(Named("password")) +
        a_c_page.Submit({{"class", "main"}, {"name", "action"}}, "Log in");
    a_c_page.BeginForm({{"action", "login_page"}, {"method", "post"}});
    a_c_page.DispText(a_c_page.Div(
        {}, l_s_hidden +
                (HasSession() ? a_c_page.Submit({{"name", "action"}}, "Log out") : l_s_login)));
    a_c_page.EndForm();
}

void Show(cCGI& a_c_page, const std::string& a_s_fault)
{
    const std::string l_s_message = TakeMessage();
    const std::string l_s_token = GetCookie("token").empty() ? Secret() : GetCookie("token");
    SetCookie("token", l_s_token);
    std::cout << "Cache-Control: no-store\n"; // a page for one user that contains a secret
    BeginPage(a_c_page, "Login", LOGIN_STYLE);
    a_c_page.DispLine(a_c_page.DecorateText(cCGI::eDISPLAY_H1, "Login"));
    if (!a_s_fault.empty()) {
        a_c_page.DispText(Paragraph(a_c_page, {{"class", "failed"}, {"role", "alert"}}, a_s_fault));
    } else if (!l_s_message.empty()) {
        a_c_page.DispText(
            Paragraph(a_c_page, {{"class", "done"}, {"role", "status"}}, EscapeHtml(l_s_message)));
    }
    ShowForm(a_c_page, l_s_token);
    a_c_page.EndHtml();
}

} // namespace

int main()
{
    cCGI l_c_page(cCGI::eXHTML_1_0_STRICT);
    std::string l_s_fault;
    if (!ParseOrRefuse(l_c_page)) {
        l_s_fault = NOT_ARRIVED;
    } else if (l_c_page.IsPostRsp()) {
        l_s_fault = Serve(l_c_page);
        if (l_s_fault.empty()) {
            return 0;
        }
        std::cout << "Status: 403 Forbidden\n";
    }
    Show(l_c_page, l_s_fault);
    return 0;
}
