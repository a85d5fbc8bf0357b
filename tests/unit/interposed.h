#ifndef INTERPOSED_H
#define INTERPOSED_H

#include <cgilib.h>

#include <tuple>

/// All that parsing a POST leaves behind: result, whether the body is complete, fields, log (a line
/// per message, beginning with the priority), and the stored upload, which is removed from /tmp.
using tOutcome = std::tuple<bool, bool, cCGI::tFormData, std::string, std::string>;

/// Parses a body that arrives in pieces of a given size: each time the code under test waits in
/// poll, which the test program replaces, the next piece is there. If a length is given, the body
/// is followed by the end of input; otherwise waiting for one more byte throws std::logic_error.
tOutcome Parse(const std::string& a_s_type, const std::string& a_s_body,
               std::size_t a_u_piece = std::string::npos, const char* a_p_length = nullptr);

/// How many allocations in the whole program succeed before one fails; if negative, none fails.
extern long g_i_allocationsLeft;

#endif
