// Logs a user in and out: a redirect after each POST, a session in a cookie, a message that
// survives the redirect, and a token that keeps out other sites' forms.
#include <cgilib.h>
#include <cgilib_cookie.h>
#include <cgilib_escape.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
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

// ---- The session: only one, from the last login. A real device also ends it after a while ----

// No upload can reach a directory below /tmp, but others might have put one there, with a session.
bool HasOwnFolder()
{
    mkdir(FOLDER, S_IRWXU);
    struct stat l_c_folder = {};
    return lstat(FOLDER, &l_c_folder) == 0 && S_ISDIR(l_c_folder.st_mode) &&
           l_c_folder.st_uid == geteuid();
}

// The session's secret, or an empty string if it could not be stored.
std::string BeginSession()
{
    const std::string l_s_secret = Secret();
    return HasOwnFolder() && (std::ofstream(SESSION_FILE) << l_s_secret << std::endl) ? l_s_secret
                                                                                        : "";
}

bool HasSession()
{
    std::string l_s_secret;
    return HasOwnFolder() && std::getline(std::ifstream(SESSION_FILE), l_s_secret) &&
           !l_s_secret.empty() && l_s_secret == GetCookie("session");
}

// ---- The page ----

// Does what the form asks for and redirects, or returns what is wrong with it.
std::string Serve(const cCGI& a_c_page)
{
    if (!IsFromOwnForm(a_c_page)) {
        return "Please send the form again. The browser has to accept cookies.";
    }
    if (HasSession() && a_c_page.GetField("action") == "Log out") {
        std::remove(SESSION_FILE);
        Redirect("login_page", {{"message", "Logged out."}});
        return "";
    }
    if (!IsKnown(a_c_page.GetField("user"), a_c_page.GetField("password"))) {
        return "The name or the password is wrong.";
    }
    const std::string l_s_session = BeginSession();
    if (l_s_session.empty()) {
        return "The session cannot be stored.";
    }
    Redirect("login_page", {{"message", "Logged in as " + a_c_page.GetField("user") + "."},
                            {"session", l_s_session}});
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
