#ifndef INTERPOSED_H
#define INTERPOSED_H

#include <cgilib.h>

#include <tuple>

/// All that the parse of a POST leaves behind: result, fields, log, and the stored upload, which is
/// taken away from /tmp. The log has a line for each message, the priority first.
using tOutcome = std::tuple<bool, cCGI::tFormData, std::string, std::string>;

/// Parses a body that arrives in pieces of a size: each time the code under test waits in poll, which
/// the test program has of its own too, the next one is there. Behind the body comes the end of input
/// if a length is given for it, otherwise a wait for one byte more throws std::logic_error.
tOutcome Parse(const std::string& a_s_type, const std::string& a_s_body, std::size_t a_u_piece = std::string::npos,
               const char* a_p_length = nullptr);

/// How many allocations of the whole program succeed before one fails; below 0 none fails.
extern long g_i_allocationsLeft;

#endif
